// Reconstruction of the spectrum from indexes.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "vq/subvector.h"

namespace zetac::vq {
namespace {

bool areIndexesValid(const Zet32s* index, int nDiv, const ZetVQCodebook* books) {
    for (int d = 0; d < nDiv; ++d, index += 2)
        for (int i = 0; i < 2; ++i)
            if (!PackedIndex::unpack(index[i], books[i]).isOf(books[i])) return false;
    return true;
}

void reconstruct(const Zet32s* index, const ZetVQCodebook* books, Zet32f gain, Zet32f* dst,
                 const Interleaving& lines) {
    for (int d = 0; d < lines.nDiv; ++d, index += 2) {
        const Candidate first = PackedIndex::unpack(index[0], books[0]);
        const Candidate second = PackedIndex::unpack(index[1], books[1]);
        const Zet32f* code0 = vectorOf(books[0], first.number());
        const Zet32f* code1 = vectorOf(books[1], second.number());
        size_t line = static_cast<size_t>(d);
        for (int i = 0; i < lines.length(d); ++i, line += static_cast<size_t>(lines.nDiv))
            dst[line] = gain * (first.half() * code0[i] + second.half() * code1[i]);
    }
}

}  // namespace
}  // namespace zetac::vq

using namespace zetac;

ZetStatus zetsVQReconstruction_32s32f(const Zet32s* pIndex, const ZetVQCodebook* pBooks,
                                      Zet32f gain, Zet32f* pDst, int len, int nDiv) {
    const vq::Interleaving lines = {len, nDiv};
    ZETAC_REQUIRE(core::allSet(pIndex, pDst) && vq::isSet(pBooks, 2), zetStsNullPointer);
    ZETAC_REQUIRE(lines.isValid(), zetStsBadSize);
    ZETAC_REQUIRE(vq::hasCodes(pBooks, 2) && lines.fits(pBooks, 2), zetStsBadSize);
    ZETAC_REQUIRE(vq::hasValidSignBit(pBooks, 2), zetStsBadArg);
    ZETAC_REQUIRE(vq::areIndexesValid(pIndex, nDiv, pBooks), zetStsOutOfRange);
    vq::reconstruct(pIndex, pBooks, gain, pDst, lines);
    return zetStsOk;
}
