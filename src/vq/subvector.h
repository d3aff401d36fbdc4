// The subvectors of an interleaved spectrum, and sums over them.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <algorithm>

#include "vq/codebook.h"

namespace zetac::vq {

// Subvector d has the lines d, d + nDiv, d + 2 nDiv, ...
struct Interleaving {
    int len;
    int nDiv;

    bool isValid() const { return nDiv >= 1 && len >= nDiv; }
    int length(int d) const { return (len - d - 1) / nDiv + 1; }
    int longest() const { return length(0); }
    // Whether every subvector fits the stages, and the vectors of the books cover it.
    bool fits(const ZetVQCodebook* books, int count) const {
        bool covered = longest() <= ZETAC_VQ_VECTOR_MAX;
        for (int i = 0; i < count; ++i) covered = covered && books[i].codeLen >= longest();
        return covered;
    }
};

// A target and its weights, taken out of the spectrum.
struct Subvector {
    int length;
    Zet32f target[ZETAC_VQ_VECTOR_MAX];
    Zet32f weight[ZETAC_VQ_VECTOR_MAX];

    Subvector(const Zet32f* src, const Zet32f* weights, const Interleaving& lines, int d)
        : length(lines.length(d)) {
        const auto step = static_cast<size_t>(lines.nDiv);
        size_t line = static_cast<size_t>(d);
        for (int i = 0; i < length; ++i, line += step) {
            target[i] = src[line];
            weight[i] = weights[line];
        }
    }
};

// The sum of term(i) for i below length, in one order on every machine: eight partial sums by
// i mod 8, added pairwise.
template <class Term>
inline Zet32f sum(int length, Term term) {
    Zet32f part[8] = {};
    int i = 0;
    for (; i + 8 <= length; i += 8)
        for (int k = 0; k < 8; ++k) part[k] += term(i + k);
    for (int k = 0; i + k < length; ++k) part[k] += term(i + k);
    return ((part[0] + part[1]) + (part[2] + part[3])) +
           ((part[4] + part[5]) + (part[6] + part[7]));
}

}  // namespace zetac::vq
