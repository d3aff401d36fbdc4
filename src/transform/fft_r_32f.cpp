// The FFT of real values.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include <cstring>

#include "core/checks.h"
#include "transform/fft_real.h"
#include "transform/fft_spec.h"
namespace zetac::transform {
namespace {

using Format = void (*)(Zet32f* perm, int64_t len);

void keepPerm(Zet32f*, int64_t) {}
void permToCcs(Zet32f* spectrum, int64_t len) {
    const Zet32f middle = len > 1 ? spectrum[1] : 0;
    spectrum[1] = 0;
    if (len > 1) {
        spectrum[len] = middle;
        spectrum[len + 1] = 0;
    }
}
void permToPack(Zet32f* spectrum, int64_t len) {
    if (len < 2) return;
    const Zet32f middle = spectrum[1];
    std::memmove(spectrum + 1, spectrum + 2, static_cast<size_t>(len - 2) * sizeof *spectrum);
    spectrum[len - 1] = middle;
}

// The spectrum in Perm format, then in the one wanted. The halves of the pairing go into the scale.
ZetStatus forwardReal(const ZetsFFTSpec_R_32f& spec, const Zet32f* src, Zet32f* dst, Format format,
                      Zet8u* buffer) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    if (spec.order == 0) {
        dst[0] = src[0] * spec.forwardScale;
    } else {
        const FftKernels kernels = core::select(kFftKernels);
        auto* points = reinterpret_cast<Zet32fc*>(dst);
        kernels.forward(spec.plan, reinterpret_cast<const Zet32fc*>(src), points,
                        spec.forwardScale / 2, work.singles());
        const Zet32fc z = points[0];
        points[0] = {2 * (z.re + z.im), 2 * (z.re - z.im)};
        kernels.pairForward(points, points, spec.realTwiddles, spec.order);
    }
    format(dst, int64_t{1} << spec.order);
    return zetStsOk;
}

// A spectrum by its two real values and its complex ones: pairs points to where X[0] would stand.
struct Spectrum {
    Zet32f first;
    Zet32f middle;
    const Zet32f* pairs;
};

Spectrum fromCcs(const Zet32f* src, Zet32f*, int64_t len) {
    return {src[0], len > 1 ? src[len] : 0, src};
}
Spectrum fromPerm(const Zet32f* src, Zet32f*, int64_t len) {
    return {src[0], len > 1 ? src[1] : 0, src};
}
// The values are two places apart from where they have to be: they move to the destination first.
Spectrum fromPack(const Zet32f* src, Zet32f* dst, int64_t len) {
    if (len < 2) return {src[0], 0, dst};
    const Spectrum spectrum = {src[0], src[len - 1], dst};
    std::memmove(dst + 2, src + 1, static_cast<size_t>(len - 2) * sizeof *src);
    return spectrum;
}

using Reader = Spectrum (*)(const Zet32f* src, Zet32f* dst, int64_t len);

ZetStatus inverseReal(const ZetsFFTSpec_R_32f& spec, Reader reader, const Zet32f* src, Zet32f* dst,
                      Zet8u* buffer) {
    const FftWork work(buffer, spec.bufSize);
    if (work.failed()) return zetStsNoMemory;
    const Spectrum spectrum = reader(src, dst, int64_t{1} << spec.order);
    if (spec.order == 0) {
        dst[0] = spectrum.first * spec.inverseScale;
        return zetStsOk;
    }
    const FftKernels kernels = core::select(kFftKernels);
    auto* points = reinterpret_cast<Zet32fc*>(dst);
    kernels.pairInverse(reinterpret_cast<const Zet32fc*>(spectrum.pairs), points, spec.realTwiddles,
                        spec.order);
    points[0] = {spectrum.first + spectrum.middle, spectrum.first - spectrum.middle};
    kernels.inverse(spec.plan, points, points, spec.inverseScale, work.singles());
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

ZetStatus zetsFFTFwd_RToCCS_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec,
                                Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return forwardReal(*pSpec, pSrc, pDst, permToCcs, pBuffer);
}

ZetStatus zetsFFTFwd_RToCCS_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pBuffer) {
    return zetsFFTFwd_RToCCS_32f(pSrcDst, pSrcDst, pSpec, pBuffer);
}

ZetStatus zetsFFTInv_CCSToR_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec,
                                Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return inverseReal(*pSpec, fromCcs, pSrc, pDst, pBuffer);
}

ZetStatus zetsFFTInv_CCSToR_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec, Zet8u* pBuffer) {
    return zetsFFTInv_CCSToR_32f(pSrcDst, pSrcDst, pSpec, pBuffer);
}

ZetStatus zetsFFTFwd_RToPack_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec,
                                 Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return forwardReal(*pSpec, pSrc, pDst, permToPack, pBuffer);
}

ZetStatus zetsFFTFwd_RToPack_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec,
                                   Zet8u* pBuffer) {
    return zetsFFTFwd_RToPack_32f(pSrcDst, pSrcDst, pSpec, pBuffer);
}

ZetStatus zetsFFTInv_PackToR_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec,
                                 Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return inverseReal(*pSpec, fromPack, pSrc, pDst, pBuffer);
}

ZetStatus zetsFFTInv_PackToR_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec,
                                   Zet8u* pBuffer) {
    return zetsFFTInv_PackToR_32f(pSrcDst, pSrcDst, pSpec, pBuffer);
}

ZetStatus zetsFFTFwd_RToPerm_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec,
                                 Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return forwardReal(*pSpec, pSrc, pDst, keepPerm, pBuffer);
}

ZetStatus zetsFFTFwd_RToPerm_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec,
                                   Zet8u* pBuffer) {
    return zetsFFTFwd_RToPerm_32f(pSrcDst, pSrcDst, pSpec, pBuffer);
}

ZetStatus zetsFFTInv_PermToR_32f(const Zet32f* pSrc, Zet32f* pDst, const ZetsFFTSpec_R_32f* pSpec,
                                 Zet8u* pBuffer) {
    ZETAC_REQUIRE(core::allSet(pSrc, pDst, pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);
    return inverseReal(*pSpec, fromPerm, pSrc, pDst, pBuffer);
}

ZetStatus zetsFFTInv_PermToR_32f_I(Zet32f* pSrcDst, const ZetsFFTSpec_R_32f* pSpec,
                                   Zet8u* pBuffer) {
    return zetsFFTInv_PermToR_32f(pSrcDst, pSrcDst, pSpec, pBuffer);
}
