// Preselection: the vectors of one book that promise the smallest distance.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "vq/subvector.h"

namespace zetac::vq {
namespace {

// The best candidates so far, the best first.
class CandidateList {
  public:
    CandidateList(Zet32s* words, int capacity) : words_(words), capacity_(capacity) {}

    // Of equal scores the earlier one stays in front.
    void offer(Candidate candidate, Zet32f score) {
        if (count_ == capacity_) {
            if (!(score > scores_[count_ - 1])) return;
            --count_;
        }
        int place = count_++;
        for (; place > 0 && score > scores_[place - 1]; --place) {
            scores_[place] = scores_[place - 1];
            words_[place] = words_[place - 1];
        }
        scores_[place] = score;
        words_[place] = candidate.word;
    }

  private:
    Zet32s* words_;
    int capacity_;
    int count_ = 0;
    Zet32f scores_[ZETAC_VQ_CANDIDATES_MAX];
};

void preSelectSubvector(const Subvector& subvector, const ZetVQCodebook& book,
                        CandidateList& candidates) {
    Zet32f weighted[ZETAC_VQ_VECTOR_MAX];
    const Zet32f* weight = subvector.weight;
    for (int i = 0; i < subvector.length; ++i) weighted[i] = weight[i] * subvector.target[i];
    for (Zet32s number = 0; number < book.numCodes; ++number) {
        const Zet32f* code = vectorOf(book, number);
        const Zet32f correlation =
            sum(subvector.length, [&](int i) { return weighted[i] * code[i]; });
        const Zet32f energy =
            sum(subvector.length, [&](int i) { return weight[i] * (code[i] * code[i]); });
        candidates.offer(Candidate::of(number, false), correlation - 0.25F * energy);
        if (book.signBit)
            candidates.offer(Candidate::of(number, true), -correlation - 0.25F * energy);
    }
}

void preSelect(const Zet32f* src, const Zet32f* weights, const Interleaving& lines,
               const ZetVQCodebook& book, Zet32s* words, int count) {
    for (int d = 0; d < lines.nDiv; ++d, words += count) {
        CandidateList candidates(words, count);
        preSelectSubvector(Subvector(src, weights, lines, d), book, candidates);
    }
}

}  // namespace
}  // namespace zetac::vq

using namespace zetac;

ZetStatus zetsVQPreSelect_32f(const Zet32f* pSrc, const Zet32f* pWeights, int len, int nDiv,
                              const ZetVQCodebook* pBook, Zet32s* pCand, int numCand) {
    const vq::Interleaving lines = {len, nDiv};
    ZETAC_REQUIRE(core::allSet(pSrc, pWeights, pCand) && vq::isSet(pBook, 1), zetStsNullPointer);
    ZETAC_REQUIRE(lines.isValid() && numCand >= 1, zetStsBadSize);
    ZETAC_REQUIRE(vq::hasCodes(pBook, 1) && lines.fits(pBook, 1), zetStsBadSize);
    ZETAC_REQUIRE(vq::hasValidSignBit(pBook, 1), zetStsBadArg);
    ZETAC_REQUIRE(vq::isCandidateCount(numCand, *pBook), zetStsBadArg);
    vq::preSelect(pSrc, pWeights, lines, *pBook, pCand, numCand);
    return zetStsOk;
}
