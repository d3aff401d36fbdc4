// Index selection: what the stream says of the chosen candidates.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "vq/candidates.h"

namespace zetac::vq {
namespace {

bool areChoicesValid(const Zet32s* selected, int nDiv, const CandidatePairs& pairs) {
    for (int d = 0; d < nDiv; ++d, selected += 2)
        for (int book = 0; book < 2; ++book)
            if (!core::inRange(selected[book], 0, pairs.count[book] - 1)) return false;
    return true;
}

void selectIndexes(const CandidatePairs& pairs, const Zet32s* selected, int nDiv, Zet32s* index) {
    for (int d = 0; d < nDiv; ++d, selected += 2, index += 2)
        for (int book = 0; book < 2; ++book)
            index[book] =
                PackedIndex::pack({pairs.wordsOf(book, d)[selected[book]]}, pairs.books[book]);
}

}  // namespace
}  // namespace zetac::vq

using namespace zetac;

ZetStatus zetsVQIndexSelect_32s(const Zet32s* pSel, int nDiv, const ZetVQCodebook* pBooks,
                                const Zet32s* pCand0, int numCand0, const Zet32s* pCand1,
                                int numCand1, Zet32s* pIndex) {
    const vq::CandidatePairs pairs = {pBooks, {pCand0, pCand1}, {numCand0, numCand1}};
    ZETAC_REQUIRE(core::allSet(pSel, pCand0, pCand1, pIndex) && vq::isSet(pBooks, 2),
                  zetStsNullPointer);
    ZETAC_REQUIRE(nDiv >= 1 && numCand0 >= 1 && numCand1 >= 1, zetStsBadSize);
    ZETAC_REQUIRE(vq::hasCodes(pBooks, 2), zetStsBadSize);
    ZETAC_REQUIRE(vq::hasValidSignBit(pBooks, 2), zetStsBadArg);
    ZETAC_REQUIRE(pairs.areCountsValid() && pairs.areValid(nDiv), zetStsBadArg);
    ZETAC_REQUIRE(vq::areChoicesValid(pSel, nDiv, pairs), zetStsBadArg);
    vq::selectIndexes(pairs, pSel, nDiv, pIndex);
    return zetStsOk;
}
