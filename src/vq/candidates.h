// The candidates of both books, as they pass from stage to stage.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "vq/codebook.h"

namespace zetac::vq {

struct CandidatePairs {
    const ZetVQCodebook* books;
    const Zet32s* words[2];  // [nDiv][count]
    int count[2];

    const Zet32s* wordsOf(int book, int d) const {
        return words[book] + static_cast<size_t>(d) * static_cast<size_t>(count[book]);
    }
    bool areCountsValid() const {
        return isCandidateCount(count[0], books[0]) && isCandidateCount(count[1], books[1]);
    }
    bool areValid(int nDiv) const {
        for (int book = 0; book < 2; ++book)
            for (int d = 0; d < nDiv; ++d)
                for (int i = 0; i < count[book]; ++i)
                    if (!Candidate{wordsOf(book, d)[i]}.isOf(books[book])) return false;
        return true;
    }
};

}  // namespace zetac::vq
