// The floating analysis banks (ISO/IEC 14496-3, 4.6.18.4.1 and 4.6.18.8.2.1). The banks check their
// arguments in different orders.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include "core/checks.h"
#include "sbr/qmf_float_bank.h"
#include "transform/fft_spec.h"

namespace zetac::sbr {
namespace {

constexpr int kBands = 32;

struct Input {
    const Zet32f* samples;
    const Zet32f* window;
    int numSlots;
};

template <class Row, class Transform>
ZetStatus analyze(const Input& input, const QmfMatrix<Row>& output, int kx, const QmfSpec& spec,
                  void (*QmfFloatKernels::*kernel)(const AnalysisBatch&, const Transform&),
                  const Transform& transform) {
    forBatches(input.numSlots, [&](const QmfFloatKernels& kernels, int first, int count) {
        const Zet32f* samples = input.samples + int64_t{kBands} * first;
        (kernels.*kernel)(
            {count, kx, samples, input.window, spec.delayLine(), output.rows(first, count)},
            transform);
    });
    return zetStsOk;
}

template <class Row>
ZetStatus analyzeComplex(const Input& input, const QmfMatrix<Row>& output, int kx,
                         const QmfSpec& spec) {
    const auto* fft = static_cast<const transform::FftSpec*>(spec.transform);
    return analyze(input, output, kx, spec, &QmfFloatKernels::analyzeComplex, fft->plan);
}

ZetStatus analyzeReal(const Input& input, const QmfMatrix<Zet32f>& output, int kx,
                      const QmfSpec& spec) {
    const auto* dct = static_cast<const transform::DctSpec*>(spec.transform);
    return analyze(input, output, kx, spec, &QmfFloatKernels::analyzeReal, *dct);
}

}  // namespace
}  // namespace zetac::sbr

using namespace zetac;
using namespace zetac::sbr;

ZetStatus zetsAnalysisFilter_SBR_RToR_32f_D2L(const Zet32f* pSrc, Zet32f* pDst[],
                                              const Zet32f* pWindow, int numSlots, int offset,
                                              int kx,
                                              const ZetsAnalysisFilterSpec_SBR_RToR_32f* pSpec,
                                              Zet8u* pWorkBuf) {
    ZETAC_REQUIRE(core::allSet(pSpec, pWindow), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pWorkBuf), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(kx, 0, kBands), zetStsBadSize);
    return analyzeReal({pSrc, pWindow, numSlots}, {pDst + offset, nullptr}, kx, *pSpec);
}

ZetStatus zetsAnalysisFilter_SBR_RToC_32f_D2L(const Zet32f* pSrc, Zet32f* pDstRe[],
                                              Zet32f* pDstIm[], const Zet32f* pWindow, int numSlots,
                                              int offset, int kx,
                                              const ZetsAnalysisFilterSpec_SBR_RToC_32f* pSpec,
                                              Zet8u* pWorkBuf) {
    ZETAC_REQUIRE(core::allSet(pSpec, pWindow, pWorkBuf), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::inRange(kx, 0, kBands), zetStsBadSize);
    ZETAC_REQUIRE(core::allSet(pSrc, pDstRe, pDstIm), zetStsNullPointer);
    const QmfMatrix<Zet32f> output = {pDstRe + offset, pDstIm + offset};
    return analyzeComplex({pSrc, pWindow, numSlots}, output, kx, *pSpec);
}

ZetStatus zetsAnalysisFilter_SBR_RToC_32f32fc_D2L(
    const Zet32f* pSrc, Zet32fc* pDst[], const Zet32f* pWindow, int numSlots, int offset, int kx,
    const ZetsAnalysisFilterSpec_SBR_RToC_32f32fc* pSpec, Zet8u* pWorkBuf) {
    ZETAC_REQUIRE(core::allSet(pSpec, pWindow, pWorkBuf), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::inRange(kx, 0, kBands), zetStsBadSize);
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    const QmfMatrix<Zet32fc> output = {pDst + offset, nullptr};
    return analyzeComplex({pSrc, pWindow, numSlots}, output, kx, *pSpec);
}
