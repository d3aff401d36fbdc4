// The Huffman books of Layer III in the form that the decoder reads: a direct table for the first
// bits of a codeword, and behind it one table for each group of longer codewords with these bits.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

namespace zetac::tables {

// Bits that index the first table of every pair book. Nine are up to 5 % slower, at high rates;
// twelve 15 to 20 %, since the books of a granule then crowd each other out of the nearest cache.
inline constexpr int kPairLookupBits = 10;

// By table_select; null where the table codes nothing.
extern const std::uint32_t* const kPairLookup[32];

// An entry of a pair table. Where the bits hold a whole codeword:
//   0..4    bits of the codeword and its sign bits together, 1..21;
//   6       linbits follow one of the values: books 16 and 24;
//   8..12   bits of the codeword alone, 1..19;
//   14      x is not 0;
//   16..23  x;
//   24..31  y.
// The counts stand below two or more zeros, so that a shift can take the entry as its count.
// Where the codeword is longer: bit 7 is set, 0..4 are the bits that index the next table, and
// 16..31 its place, in entries.
struct PairEntry {
    std::uint32_t packed;

    constexpr bool isLink() const { return packed & 128; }
    constexpr int linkBits() const { return static_cast<int>(packed & 31); }
    constexpr std::uint32_t linkPlace() const { return packed >> 16; }

    constexpr std::uint32_t totalBits() const { return packed & 31; }
    constexpr std::uint32_t codeBits() const { return packed >> 8 & 31; }
    constexpr bool isEscaped() const { return packed & 64; }
    constexpr std::uint32_t hasX() const { return packed >> 14 & 1; }
    constexpr std::int32_t x() const { return static_cast<std::int32_t>(packed >> 16 & 255); }
    constexpr std::int32_t y() const { return static_cast<std::int32_t>(packed >> 24); }
};

// The longest codeword of a quadruple with its signs, and thus the bits that index its table.
inline constexpr int kQuadLookupBits[2] = {10, 8};

// By count1table_select. An entry:
//   0..5    bits of the codeword with its signs, 1..10;
//   8..15   v, w, x and y as signed 2-bit fields, v at the top.
extern const std::uint16_t* const kQuadLookup[2];

}  // namespace zetac::tables
