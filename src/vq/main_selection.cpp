// Main selection: the pair of candidates whose mean is nearest to the target.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "vq/candidates.h"
#include "vq/subvector.h"

namespace zetac::vq {
namespace {

struct Choice {
    Zet32s place[2];
    Zet32f distance;
};

// The target less the first vector's share.
void takeOff(const Subvector& subvector, Candidate candidate, const ZetVQCodebook& book,
             Zet32f* rest) {
    const Zet32f* code = vectorOf(book, candidate.number());
    const Zet32f half = candidate.half();
    for (int i = 0; i < subvector.length; ++i) rest[i] = subvector.target[i] - half * code[i];
}

Zet32f distanceOf(const Subvector& subvector, const Zet32f* rest, Candidate candidate,
                  const ZetVQCodebook& book) {
    const Zet32f* code = vectorOf(book, candidate.number());
    const Zet32f half = candidate.half();
    return sum(subvector.length, [&](int i) {
        const Zet32f error = rest[i] - half * code[i];
        return subvector.weight[i] * (error * error);
    });
}

Choice chooseNearest(const Subvector& subvector, const CandidatePairs& pairs, int d) {
    const Zet32s* words[2] = {pairs.wordsOf(0, d), pairs.wordsOf(1, d)};
    Choice best = {{0, 0}, 0};
    for (int i = 0; i < pairs.count[0]; ++i) {
        Zet32f rest[ZETAC_VQ_VECTOR_MAX];
        takeOff(subvector, {words[0][i]}, pairs.books[0], rest);
        for (int k = 0; k < pairs.count[1]; ++k) {
            const Zet32f distance = distanceOf(subvector, rest, {words[1][k]}, pairs.books[1]);
            if ((i == 0 && k == 0) || distance < best.distance) best = {{i, k}, distance};
        }
    }
    return best;
}

void mainSelect(const Zet32f* src, const Zet32f* weights, const Interleaving& lines,
                const CandidatePairs& pairs, Zet32s* selected, Zet32f* distance) {
    for (int d = 0; d < lines.nDiv; ++d, selected += 2) {
        const Choice choice = chooseNearest(Subvector(src, weights, lines, d), pairs, d);
        std::copy_n(choice.place, 2, selected);
        distance[d] = choice.distance;
    }
}

}  // namespace
}  // namespace zetac::vq

using namespace zetac;

ZetStatus zetsVQMainSelect_32f(const Zet32f* pSrc, const Zet32f* pWeights, int len, int nDiv,
                               const ZetVQCodebook* pBooks, const Zet32s* pCand0, int numCand0,
                               const Zet32s* pCand1, int numCand1, Zet32s* pSel,
                               Zet32f* pDistance) {
    const vq::Interleaving lines = {len, nDiv};
    const vq::CandidatePairs pairs = {pBooks, {pCand0, pCand1}, {numCand0, numCand1}};
    ZETAC_REQUIRE(
        core::allSet(pSrc, pWeights, pCand0, pCand1, pSel, pDistance) && vq::isSet(pBooks, 2),
        zetStsNullPointer);
    ZETAC_REQUIRE(lines.isValid() && numCand0 >= 1 && numCand1 >= 1, zetStsBadSize);
    ZETAC_REQUIRE(vq::hasCodes(pBooks, 2) && lines.fits(pBooks, 2), zetStsBadSize);
    ZETAC_REQUIRE(vq::hasValidSignBit(pBooks, 2), zetStsBadArg);
    ZETAC_REQUIRE(pairs.areCountsValid() && pairs.areValid(nDiv), zetStsBadArg);
    vq::mainSelect(pSrc, pWeights, lines, pairs, pSel, pDistance);
    return zetStsOk;
}
