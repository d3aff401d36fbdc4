// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/mp3/huffman_decoder.h"

#include "tables/huffman_builder.h"
#include "tables/mp3/huffman_books.h"

namespace zetac::tables {
namespace {

constexpr std::uint32_t pairEntry(int x, int y, int length, bool hasLinbits) {
    const bool isEscaped = hasLinbits && (x == kEscapedMagnitude || y == kEscapedMagnitude);
    const int total = length + (x != 0) + (y != 0);
    return static_cast<std::uint32_t>(total) | static_cast<std::uint32_t>(isEscaped) << 6 |
           static_cast<std::uint32_t>(length) << 8 | static_cast<std::uint32_t>(x != 0) << 14 |
           static_cast<std::uint32_t>(x) << 16 | static_cast<std::uint32_t>(y) << 24;
}

constexpr std::uint32_t linkEntry(int bits, int place) {
    return static_cast<std::uint32_t>(bits) | 128 | static_cast<std::uint32_t>(place) << 16;
}

// The bits that codewords beginning with a prefix have behind it, at most.
template <std::size_t numCodes>
constexpr auto linkBits(const HuffmanCode (&book)[numCodes]) {
    Table<int, std::size_t{1} << kPairLookupBits> bits{};
    for (const auto& [length, codeword] : book) {
        const int rest = length - kPairLookupBits;
        if (rest <= 0) continue;
        int& most = bits.values[codeword >> rest];
        most = std::max(most, rest);
    }
    return bits;
}

template <std::size_t numCodes>
constexpr std::size_t lookupSize(const HuffmanCode (&book)[numCodes]) {
    std::size_t size = std::size_t{1} << kPairLookupBits;
    for (const int bits : linkBits(book)) size += bits ? std::size_t{1} << bits : 0;
    return size;
}

template <std::size_t size, std::size_t numCodes>
constexpr auto makePairLookup(const HuffmanCode (&book)[numCodes], bool hasLinbits) {
    Table<std::uint32_t, size> lookup{};
    const auto links = linkBits(book);
    int place = 1 << kPairLookupBits;
    for (int prefix = 0; prefix < 1 << kPairLookupBits; ++prefix) {
        const int bits = links.values[prefix];
        if (bits == 0) continue;
        lookup.values[prefix] = linkEntry(bits, place);
        place += 1 << bits;
    }
    const int radix = pairRadix(book);
    for (int i = 0; i < static_cast<int>(numCodes); ++i) {
        const auto [length, codeword] = book[i];
        std::uint32_t* table = lookup.values;
        std::uint32_t index = codeword;
        int spare = kPairLookupBits - length;
        if (spare < 0) {
            const std::uint32_t prefix = codeword >> -spare;
            table += lookup.values[prefix] >> 16;
            index = codeword & ((1U << -spare) - 1);
            spare += links.values[prefix];
        }
        std::uint32_t* first = table + (index << spare);
        std::fill(first, first + (1 << spare), pairEntry(i / radix, i % radix, length, hasLinbits));
    }
    return lookup;
}

#define ZETAC_PAIR_LOOKUP(number)    \
    constexpr auto kLookup##number = \
        makePairLookup<lookupSize(kPairBook##number)>(kPairBook##number, (number) >= 16)
ZETAC_PAIR_LOOKUP(1);
ZETAC_PAIR_LOOKUP(2);
ZETAC_PAIR_LOOKUP(3);
ZETAC_PAIR_LOOKUP(5);
ZETAC_PAIR_LOOKUP(6);
ZETAC_PAIR_LOOKUP(7);
ZETAC_PAIR_LOOKUP(8);
ZETAC_PAIR_LOOKUP(9);
ZETAC_PAIR_LOOKUP(10);
ZETAC_PAIR_LOOKUP(11);
ZETAC_PAIR_LOOKUP(12);
ZETAC_PAIR_LOOKUP(13);
ZETAC_PAIR_LOOKUP(15);
ZETAC_PAIR_LOOKUP(16);
ZETAC_PAIR_LOOKUP(24);
#undef ZETAC_PAIR_LOOKUP

// Every codeword with every combination of its signs.
template <int bits>
constexpr auto makeQuadLookup(const HuffmanCode (&book)[16]) {
    Table<std::uint16_t, std::size_t{1} << bits> lookup{};
    for (int quad = 0; quad < 16; ++quad) {
        const auto [length, codeword] = book[quad];
        const int spare = bits - length;
        for (int tail = 0; tail < 1 << spare; ++tail) {
            unsigned fields = 0;
            int signs = 0;
            for (int bit = 3; bit >= 0; --bit) {
                if (!(quad >> bit & 1)) continue;
                ++signs;
                fields |= (tail >> (spare - signs) & 1 ? 3U : 1U) << 2 * bit;
            }
            lookup.values[(static_cast<int>(codeword) << spare) + tail] =
                static_cast<std::uint16_t>(fields << 8 | static_cast<unsigned>(length + signs));
        }
    }
    return lookup;
}

constexpr auto kLookupA = makeQuadLookup<kQuadLookupBits[0]>(kQuadBookA);
constexpr auto kLookupB = makeQuadLookup<kQuadLookupBits[1]>(kQuadBookB);

}  // namespace

const std::uint32_t* const kPairLookup[32] = {
    nullptr,   kLookup1,  kLookup2,  kLookup3,  nullptr,   kLookup5,  kLookup6,  kLookup7,
    kLookup8,  kLookup9,  kLookup10, kLookup11, kLookup12, kLookup13, nullptr,   kLookup15,
    kLookup16, kLookup16, kLookup16, kLookup16, kLookup16, kLookup16, kLookup16, kLookup16,
    kLookup24, kLookup24, kLookup24, kLookup24, kLookup24, kLookup24, kLookup24, kLookup24};

const std::uint16_t* const kQuadLookup[2] = {kLookupA, kLookupB};

}  // namespace zetac::tables
