// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/mp3/huffman_encoder.h"

#include "tables/mp3/huffman_books.h"

namespace zetac::tables {
namespace {

template <std::size_t numCodes>
constexpr PairEncoder encoderOf(const HuffmanCode (&book)[numCodes]) {
    return {book, pairRadix(book)};
}

constexpr PairEncoder kNothing = {nullptr, 0};

using Rows = Table<std::int16_t, 256 * kPairLanes>;

template <std::size_t numCodes>
constexpr void fillLane(Rows& rows, int lane, const HuffmanCode (&book)[numCodes]) {
    const int radix = pairRadix(book);
    for (int x = 0; x < 16; ++x) {
        for (int y = 0; y < 16; ++y) {
            const bool has = x < radix && y < radix;
            const int bits = has ? book[x * radix + y].length + (x > 0) + (y > 0) : kNoPairCode;
            rows.values[(16 * x + y) * kPairLanes + lane] = static_cast<std::int16_t>(bits);
        }
    }
}

// In the order of kPairBookTable.
template <class... Books>
constexpr void fillLanes(Rows& rows, const Books&... books) {
    int lane = 0;
    (fillLane(rows, lane++, books), ...);
}

constexpr Rows makePairLengths() {
    Rows rows{};
    fillLanes(rows, kPairBook1, kPairBook2, kPairBook3, kPairBook5, kPairBook6, kPairBook7,
              kPairBook8, kPairBook9, kPairBook10, kPairBook11, kPairBook12, kPairBook13,
              kPairBook15, kPairBook16, kPairBook24);
    for (int pair = 0; pair < 256; ++pair)
        rows.values[pair * kPairLanes + kEscapeLane] =
            static_cast<std::int16_t>((pair / 16 == 15) + (pair % 16 == 15));
    return rows;
}

constexpr Table<std::uint8_t, 32> makeQuadLengths() {
    Table<std::uint8_t, 32> table{};
    for (int quad = 0; quad < 16; ++quad) {
        const int signs = (quad & 1) + (quad >> 1 & 1) + (quad >> 2 & 1) + (quad >> 3);
        table.values[quad] = static_cast<std::uint8_t>(kQuadBookA[quad].length + signs);
        table.values[16 + quad] = static_cast<std::uint8_t>(kQuadBookB[quad].length + signs);
    }
    return table;
}

}  // namespace

constexpr PairEncoder kPairEncoder[32] = {kNothing,
                                          encoderOf(kPairBook1),
                                          encoderOf(kPairBook2),
                                          encoderOf(kPairBook3),
                                          kNothing,
                                          encoderOf(kPairBook5),
                                          encoderOf(kPairBook6),
                                          encoderOf(kPairBook7),
                                          encoderOf(kPairBook8),
                                          encoderOf(kPairBook9),
                                          encoderOf(kPairBook10),
                                          encoderOf(kPairBook11),
                                          encoderOf(kPairBook12),
                                          encoderOf(kPairBook13),
                                          kNothing,
                                          encoderOf(kPairBook15),
                                          encoderOf(kPairBook16),
                                          encoderOf(kPairBook16),
                                          encoderOf(kPairBook16),
                                          encoderOf(kPairBook16),
                                          encoderOf(kPairBook16),
                                          encoderOf(kPairBook16),
                                          encoderOf(kPairBook16),
                                          encoderOf(kPairBook16),
                                          encoderOf(kPairBook24),
                                          encoderOf(kPairBook24),
                                          encoderOf(kPairBook24),
                                          encoderOf(kPairBook24),
                                          encoderOf(kPairBook24),
                                          encoderOf(kPairBook24),
                                          encoderOf(kPairBook24),
                                          encoderOf(kPairBook24)};

const HuffmanCode* const kQuadEncoder[2] = {kQuadBookA, kQuadBookB};

constexpr Rows kPairLengths = makePairLengths();
constexpr Table<std::uint8_t, 32> kQuadLengths = makeQuadLengths();

}  // namespace zetac::tables
