// Codebooks, and what the stages say of their vectors.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <bit>

#include "core/checks.h"

namespace zetac::vq {

inline const Zet32f* vectorOf(const ZetVQCodebook& book, Zet32s number) {
    return book.pVectors + static_cast<size_t>(number) * static_cast<size_t>(book.codeLen);
}

// A vector with a sign: number, or ~number for the negated vector.
struct Candidate {
    Zet32s word;

    static Candidate of(Zet32s number, bool isNegative) { return {isNegative ? ~number : number}; }
    bool isNegative() const { return word < 0; }
    Zet32s number() const { return isNegative() ? ~word : word; }
    // The vector's share of the mean of two.
    Zet32f half() const { return isNegative() ? -0.5F : 0.5F; }
    bool isOf(const ZetVQCodebook& book) const {
        return number() < book.numCodes && (book.signBit == 1 || !isNegative());
    }
};

// The index in the stream: the number, and above the bits that the largest one needs, the sign.
struct PackedIndex {
    static int numberBits(const ZetVQCodebook& book) {
        return std::bit_width(static_cast<uint32_t>(book.numCodes - 1));
    }
    static Zet32s pack(Candidate candidate, const ZetVQCodebook& book) {
        const uint32_t sign = candidate.isNegative();
        return static_cast<Zet32s>(sign << numberBits(book) |
                                   static_cast<uint32_t>(candidate.number()));
    }
    // What the index stands for, which may be no vector of the book: see Candidate::isOf.
    static Candidate unpack(Zet32s index, const ZetVQCodebook& book) {
        const auto bits = static_cast<uint32_t>(index);
        if (book.signBit == 0) return {static_cast<Zet32s>(bits)};
        const uint32_t signMask = 1U << numberBits(book);
        return Candidate::of(static_cast<Zet32s>(bits & ~signMask), (bits & signMask) != 0);
    }
};

inline bool isSet(const ZetVQCodebook* books, int count) {
    if (!books) return false;
    for (int i = 0; i < count; ++i)
        if (!books[i].pVectors) return false;
    return true;
}

inline bool hasCodes(const ZetVQCodebook* books, int count) {
    for (int i = 0; i < count; ++i)
        if (books[i].numCodes < 1 || books[i].codeLen < 1) return false;
    return true;
}

inline bool hasValidSignBit(const ZetVQCodebook* books, int count) {
    for (int i = 0; i < count; ++i)
        if (!core::inRange(books[i].signBit, 0, 1)) return false;
    return true;
}

// Whether a stage may keep so many candidates of a book, which are vectors with signs.
inline bool isCandidateCount(int count, const ZetVQCodebook& book) {
    return count <= ZETAC_VQ_CANDIDATES_MAX &&
           (count + book.signBit) >> book.signBit <= book.numCodes;
}

}  // namespace zetac::vq
