// The floating synthesis banks of 64 and of 32 bands (ISO/IEC 14496-3, 4.6.18.4.2, 4.6.18.4.3 and
// 4.6.18.8.2.2). Real and complex ones check the work buffer in different places.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include "core/checks.h"
#include "sbr/qmf_float_bank.h"
#include "transform/fft_spec.h"

namespace zetac::sbr {
namespace {

struct Output {
    Zet32f* samples;
    const Zet32f* window;
    int numSlots;
};

template <int bands, class Row, class Transform>
ZetStatus synthesize(const QmfMatrix<Row>& input, const Output& output, const QmfSpec& spec,
                     void (*QmfFloatKernels::*kernel)(const SynthesisBatch&, const Transform&),
                     const Transform& transform) {
    forBatches(output.numSlots, [&](const QmfFloatKernels& kernels, int first, int count) {
        Zet32f* samples = output.samples + int64_t{bands} * first;
        (kernels.*kernel)(
            {count, samples, output.window, spec.delayLine(), input.rows(first, count)}, transform);
    });
    return zetStsOk;
}

template <int bands, class Spec>
ZetStatus synthesizeReal(const Zet32f* const* rows, const Output& output, const Spec* spec,
                         const Zet8u* work) {
    ZETAC_REQUIRE(core::allSet(spec, output.window), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(spec), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::allSet(rows, output.samples, work), zetStsNullPointer);
    const auto* dct = static_cast<const transform::DctSpec*>(spec->transform);
    constexpr auto kKernel =
        bands == 64 ? &QmfFloatKernels::synthesizeReal : &QmfFloatKernels::synthesizeDownReal;
    return synthesize<bands>(QmfMatrix<const Zet32f>{rows, nullptr}, output, *spec, kKernel, *dct);
}

// The checks of the complex banks, which give inputs of one or two matrices.
template <int bands, class Spec, class Row, class... Sources>
ZetStatus synthesizeComplex(const QmfMatrix<Row>& input, const Output& output, const Spec* spec,
                            const Zet8u* work, Sources... sources) {
    ZETAC_REQUIRE(core::allSet(spec, output.window, work), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(spec), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::allSet(sources..., output.samples), zetStsNullPointer);
    const auto* fft = static_cast<const transform::FftSpec*>(spec->transform);
    constexpr auto kKernel =
        bands == 64 ? &QmfFloatKernels::synthesizeComplex : &QmfFloatKernels::synthesizeDownComplex;
    return synthesize<bands>(input, output, *spec, kKernel, fft->plan);
}

template <int bands, class Spec>
ZetStatus synthesizeParts(const Zet32f* const* re, const Zet32f* const* im, const Output& output,
                          const Spec* spec, const Zet8u* work) {
    return synthesizeComplex<bands>(QmfMatrix<const Zet32f>{re, im}, output, spec, work, re, im);
}
template <int bands, class Spec>
ZetStatus synthesizePairs(const Zet32fc* const* rows, const Output& output, const Spec* spec,
                          const Zet8u* work) {
    return synthesizeComplex<bands>(QmfMatrix<const Zet32fc>{rows, nullptr}, output, spec, work,
                                    rows);
}

}  // namespace
}  // namespace zetac::sbr

using namespace zetac::sbr;

ZetStatus zetsSynthesisFilter_SBR_RToR_32f_D2L(const Zet32f* pSrc[], Zet32f* pDst,
                                               const Zet32f* pWindow, int numSlots,
                                               const ZetsSynthesisFilterSpec_SBR_RToR_32f* pSpec,
                                               Zet8u* pWorkBuf) {
    return synthesizeReal<64>(pSrc, {pDst, pWindow, numSlots}, pSpec, pWorkBuf);
}

ZetStatus zetsSynthesisFilter_SBR_CToR_32f_D2L(const Zet32f* pSrcRe[], const Zet32f* pSrcIm[],
                                               Zet32f* pDst, const Zet32f* pWindow, int numSlots,
                                               const ZetsSynthesisFilterSpec_SBR_CToR_32f* pSpec,
                                               Zet8u* pWorkBuf) {
    return synthesizeParts<64>(pSrcRe, pSrcIm, {pDst, pWindow, numSlots}, pSpec, pWorkBuf);
}

ZetStatus zetsSynthesisFilter_SBR_CToR_32fc32f_D2L(
    const Zet32fc* pSrc[], Zet32f* pDst, const Zet32f* pWindow, int numSlots,
    const ZetsSynthesisFilterSpec_SBR_CToR_32fc32f* pSpec, Zet8u* pWorkBuf) {
    return synthesizePairs<64>(pSrc, {pDst, pWindow, numSlots}, pSpec, pWorkBuf);
}

ZetStatus zetsSynthesisDownFilter_SBR_RToR_32f_D2L(
    const Zet32f* pSrc[], Zet32f* pDst, const Zet32f* pWindow, int numSlots,
    const ZetsSynthesisDownFilterSpec_SBR_RToR_32f* pSpec, Zet8u* pWorkBuf) {
    return synthesizeReal<32>(pSrc, {pDst, pWindow, numSlots}, pSpec, pWorkBuf);
}

ZetStatus zetsSynthesisDownFilter_SBR_CToR_32f_D2L(
    const Zet32f* pSrcRe[], const Zet32f* pSrcIm[], Zet32f* pDst, const Zet32f* pWindow,
    int numSlots, const ZetsSynthesisDownFilterSpec_SBR_CToR_32f* pSpec, Zet8u* pWorkBuf) {
    return synthesizeParts<32>(pSrcRe, pSrcIm, {pDst, pWindow, numSlots}, pSpec, pWorkBuf);
}

ZetStatus zetsSynthesisDownFilter_SBR_CToR_32fc32f_D2L(
    const Zet32fc* pSrc[], Zet32f* pDst, const Zet32f* pWindow, int numSlots,
    const ZetsSynthesisDownFilterSpec_SBR_CToR_32fc32f* pSpec, Zet8u* pWorkBuf) {
    return synthesizePairs<32>(pSrc, {pDst, pWindow, numSlots}, pSpec, pWorkBuf);
}
