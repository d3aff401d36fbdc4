// Direct tables for the first bits of an AAC codeword: one load instead of a walk bit by bit. They
// are small enough to stay in the first-level cache; the rare longer codewords continue in the
// tree.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "tables/aac/spectral_books.h"
#include "tables/table.h"

namespace zetac::tables {

// The number of stream bits that index a book's table, by codebook number. Were every codeword as
// frequent as its length stands for, a longer one would come up in 3 % of the cases with book 9, in
// 2 % or less with the others and the scalefactors, and never with book 2.
inline constexpr int kSpectralLookupBits[12] = {0, 9, 9, 10, 10, 10, 9, 10, 9, 10, 10, 10};
inline constexpr int kScalefactorLookupBits = 8;

extern const Table<std::uint32_t, 512> kSpectralLookup1;
extern const Table<std::uint32_t, 512> kSpectralLookup2;
extern const Table<std::uint32_t, 1024> kSpectralLookup3;
extern const Table<std::uint32_t, 1024> kSpectralLookup4;
extern const Table<std::uint32_t, 1024> kSpectralLookup5;
extern const Table<std::uint32_t, 512> kSpectralLookup6;
extern const Table<std::uint32_t, 1024> kSpectralLookup7;
extern const Table<std::uint32_t, 512> kSpectralLookup8;
extern const Table<std::uint32_t, 1024> kSpectralLookup9;
extern const Table<std::uint32_t, 1024> kSpectralLookup10;
extern const Table<std::uint32_t, 1024> kSpectralLookup11;

// By codebook number.
inline constexpr const std::uint32_t* kSpectralLookup[12] = {
    nullptr,          kSpectralLookup1, kSpectralLookup2,  kSpectralLookup3,
    kSpectralLookup4, kSpectralLookup5, kSpectralLookup6,  kSpectralLookup7,
    kSpectralLookup8, kSpectralLookup9, kSpectralLookup10, kSpectralLookup11};

// An entry of a spectral table. Where the bits hold a whole codeword:
//   0..5    bits of the codeword and its sign bits together, 1..20;
//   6       one of the values is the escape of codebook 11;
//   7..11   bits of the codeword alone, 1..16;
//   12..15  which values have a sign bit in the stream: of d values the first at bit 11 + d, the
//           last at bit 12; 0 in the signed books;
//   16..31  the values, two's complement, the first at the top: four of 4 bits or two of 8 bits.
// Where the codeword is longer: bits 0..15 are 0, and 16..31 are the node of the codebook's tree,
// in entries, from which the walk goes on with the bit after these.
struct SpectralEntry {
    std::uint32_t packed;

    constexpr bool continuesInTree() const { return totalBits() == 0; }
    constexpr int treeNode() const { return static_cast<int>(packed >> 16); }

    constexpr int totalBits() const { return static_cast<int>(packed & 63); }
    constexpr int codeBits() const { return static_cast<int>(packed >> 7 & 31); }
    constexpr std::uint32_t signMask() const { return packed >> 12 & 15; }
    constexpr bool hasEscape() const { return packed & 64; }

    template <int dimension>
    constexpr std::int32_t value(int i) const {
        constexpr int width = 16 / dimension;
        return static_cast<std::int32_t>(packed << (width * i)) >> (32 - width);
    }
};

// The entry of a tuple with a codeword of codeBits bits.
constexpr SpectralEntry makeSpectralEntry(const SpectralTupleShape& shape,
                                          const SpectralTuple& tuple, int codeBits) {
    constexpr int kEscape = 16;
    const int width = 16 / shape.dimension;
    int totalBits = codeBits;
    std::uint32_t packed = static_cast<std::uint32_t>(codeBits) << 7;
    for (int i = 0; i < shape.dimension; ++i) {
        const int value = tuple.values[i];
        const bool hasSign = shape.isUnsigned() && value != 0;
        const bool isEscape = shape.isUnsigned() && value == kEscape;
        const auto bits = static_cast<std::uint32_t>(value) & ((1U << width) - 1);
        totalBits += hasSign;
        packed |= std::uint32_t{hasSign} << (11 + shape.dimension - i);
        packed |= std::uint32_t{isEscape} << 6;
        packed |= bits << (32 - width * (i + 1));
    }
    return {packed | static_cast<std::uint32_t>(totalBits)};
}

// An entry of the scalefactor table: bits 0..5 the length of the codeword and 8..15 the difference
// plus 60; where the codeword is longer than the table's bits, length 0 and the node of
// _pHfTableScf.
extern const Table<std::uint16_t, 256> kScalefactorLookup;

}  // namespace zetac::tables
