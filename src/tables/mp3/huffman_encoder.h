// The Huffman books of Layer III as an encoder picks them by table number, and how long their codes
// are.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "tables/huffman_code.h"
#include "tables/table.h"

namespace zetac::tables {

// The codeword of the magnitudes (x, y) is codes[x * radix + y]. Where a table has linbits,
// magnitudes from radix - 1 = 15 on are escaped.
struct PairEncoder {
    const HuffmanCode* codes;  // null where the table codes nothing
    int radix;
};
extern const PairEncoder kPairEncoder[32];

// By count1table_select: the codeword of (v, w, x, y), each 0 or 1, is at 8 v + 4 w + 2 x + y.
extern const HuffmanCode* const kQuadEncoder[2];

// Lengths with the sign bits, all books side by side, so that what a region costs with each of them
// is counted at once.

// The lanes of a row: the books of kPairBookTable, and how many of x and y need linbits.
inline constexpr int kPairLanes = 16;
inline constexpr int kPairBooks = 15;
inline constexpr int kEscapeLane = 15;

// table_select of each book; the last two stand for 16..23 and 24..31.
inline constexpr std::uint8_t kPairBookTable[kPairBooks] = {1,  2,  3,  5,  6,  7,  8, 9,
                                                            10, 11, 12, 13, 15, 16, 24};

// Stands for a pair that a book does not hold. Two of them, added with saturation, are more than
// any region can cost.
inline constexpr std::int16_t kNoPairCode = 0x4000;

// Rows by 16 * x + y, magnitudes from 15 on as 15. Without linbits.
extern const Table<std::int16_t, 256 * kPairLanes> kPairLengths;

// By count1table_select * 16 + 8 * v + 4 * w + 2 * x + y.
extern const Table<std::uint8_t, 32> kQuadLengths;

}  // namespace zetac::tables
