// The AAC filter bank: window sequences and shapes (ISO/IEC 14496-3, 4.6.11).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <bit>
#include <cstring>

#include "aac/filter_bank.h"
#include "aac/filter_bank_kernels.h"
#include "aac/window_lengths.h"
#include "core/checks.h"
#include "core/fixed_point.h"
#include "tables/aac/windows.h"

namespace zetac::aac {
namespace {

using core::allSet;
using core::inRange;
using core::select;

constexpr int kFlat = (kLongLen - kShortLen) / 2;  // ones or zeros on either side of a short slope

const Zet32s* longWindow(int shape) {
    return shape == zetAacKBD ? tables::pWinKBDLong : tables::pWinSINLong;
}
const Zet32s* shortWindow(int shape) {
    return shape == zetAacKBD ? tables::pWinKBDShort : tables::pWinSINShort;
}

// The first half of a long window: it starts short after eight short windows.
void applyRisingHalf(const FilterBankKernels& kernels, Zet32s* z, int winSequence, int shape) {
    if (winSequence != zetAacLongStop) {
        kernels.multiplyRising(z, longWindow(shape), kLongLen);
        return;
    }
    std::fill_n(z, kFlat, 0);
    kernels.multiplyRising(z + kFlat, shortWindow(shape), kShortLen);
}

// The second half of a long window: it ends short before eight short windows.
void applyFallingHalf(const FilterBankKernels& kernels, Zet32s* z, int winSequence, int shape) {
    if (winSequence != zetAacLongStart) {
        kernels.multiplyFalling(z, longWindow(shape), kLongLen);
        return;
    }
    kernels.multiplyFalling(z + kFlat, shortWindow(shape), kShortLen);
    std::fill_n(z + kFlat + kShortLen, kFlat, 0);
}

// The two windowed halves of the folded transform y of a long window.
void windowLong(const FilterBankKernels& kernels, const Zet32s* y, Zet32s* first, Zet32s* second,
                int winSequence, int winShape, int prevWinShape) {
    kernels.unfoldLong(y, first, second);
    applyRisingHalf(kernels, first, winSequence, prevWinShape);
    applyFallingHalf(kernels, second, winSequence, winShape);
}

// LONG_START and LONG_STOP, and in place: y becomes the output samples.
void overlapAddTransition(const FilterBankKernels& kernels, Zet32s* y, Zet32s* overlap,
                          int winSequence, int winShape, int prevWinShape) {
    Zet32s first[kLongLen];
    Zet32s second[kLongLen];
    windowLong(kernels, y, first, second, winSequence, winShape, prevWinShape);
    kernels.roundToPcm(first, overlap, y, kLongLen);
    std::memcpy(overlap, second, sizeof second);
}

// Window w covers the samples 448 + 128 w .. 703 + 128 w of the frame and its successor; what the
// eight of them do not reach is zero.
constexpr int kShortSpan = kFlat + 9 * kShortLen;

// The windowed sum of eight folded short transforms, its first kShortSpan samples.
void windowShorts(const FilterBankKernels& kernels, const Zet32s* y, Zet32s* sum, int winShape,
                  int prevWinShape) {
    std::fill_n(sum, kFlat + kShortLen, 0);
    const Zet32s* rising = shortWindow(prevWinShape);
    for (int window = 0; window < kShortWindows; ++window) {
        kernels.windowShort(y + kShortLen * window, rising, shortWindow(winShape),
                            sum + kFlat + kShortLen * window);
        rising = shortWindow(winShape);
    }
}

void overlapAddShort(const FilterBankKernels& kernels, Zet32s* y, Zet32s* overlap, int winShape,
                     int prevWinShape) {
    constexpr int kIntoNext = kShortSpan - kLongLen;
    Zet32s sum[kShortSpan];
    windowShorts(kernels, y, sum, winShape, prevWinShape);
    kernels.roundToPcm(sum, overlap, y, kLongLen);
    std::memcpy(overlap, sum + kLongLen, kIntoNext * sizeof *overlap);
    std::fill_n(overlap + kIntoNext, kLongLen - kIntoNext, 0);
}

// The spectrum becomes 1024 output samples, without clipping, in the same place.
void synthesize(const FilterBankKernels& kernels, Zet32s* spectrum, Zet32s* overlap,
                int winSequence, int winShape, int prevWinShape) {
    if (winSequence == zetAacEightShort) {
        kernels.inverseTransformShort(spectrum);
        overlapAddShort(kernels, spectrum, overlap, winShape, prevWinShape);
        return;
    }
    kernels.inverseTransformLong(spectrum);
    if (winSequence == zetAacOnlyLong) {
        kernels.overlapAddLong(spectrum, overlap, longWindow(prevWinShape), longWindow(winShape));
    } else {
        overlapAddTransition(kernels, spectrum, overlap, winSequence, winShape, prevWinShape);
    }
}

void windowForward(const FilterBankKernels& kernels, Zet32s* z, int winSequence, int winShape,
                   int prevWinShape) {
    if (winSequence == zetAacEightShort) {
        kernels.multiplyRising(z, shortWindow(prevWinShape), kShortLen);
        kernels.multiplyFalling(z + kShortLen, shortWindow(winShape), kShortLen);
    } else {
        applyRisingHalf(kernels, z, winSequence, prevWinShape);
        applyFallingHalf(kernels, z + kLongLen, winSequence, winShape);
    }
}

// The left shift that brings the largest magnitude of x to 29 bits; negative for large values.
int normalizingShift(const Zet32s* x, int len) {
    uint32_t bits = 0;
    for (int n = 0; n < len; ++n) bits |= static_cast<uint32_t>(x[n] < 0 ? ~x[n] : x[n]);
    return 29 - std::bit_width(bits);
}

Zet32s shiftLeft(Zet32s x, int shift) {
    return shift >= 0 ? core::shiftLeftWrap(x, shift) : core::roundShift(x, -shift);
}

// Folds 2 * len windowed samples into the input of a DCT-IV, shifted left by shift.
void fold(const Zet32s* z, Zet32s* u, int len, int shift) {
    const int half = len / 2;
    const auto at = [&](int n) { return shiftLeft(z[n], shift); };
    for (int n = 0; n < half; ++n) {
        u[n] = -at(3 * half - 1 - n) - at(3 * half + n);
        u[half + n] = at(n) - at(len - 1 - n);
    }
}

// value * 2^shift, rounded and saturated; |shift| below 64.
Zet32s scaleSaturated(Zet32s value, int shift) {
    if (shift > 31) return value == 0 ? 0 : value > 0 ? core::kMax32s : core::kMin32s;
    if (shift >= 0) return core::saturate32(static_cast<int64_t>(value) << shift);
    return -shift > 31 ? 0 : core::roundShift(value, -shift);
}

void analyze(const FilterBankKernels& kernels, const Zet32s* src, Zet32s* dst, int winSequence,
             int winShape, int prevWinShape, Zet32s* work) {
    const bool isShort = winSequence == zetAacEightShort;
    const int len = isShort ? kShortLen : kLongLen;
    std::memmove(work, src, 2 * static_cast<size_t>(len) * sizeof *src);
    windowForward(kernels, work, winSequence, winShape, prevWinShape);

    const int normalization = normalizingShift(work, 2 * len);
    Zet32s folded[kLongLen];
    fold(work, folded, len, normalization);
    const int shift = isShort ? kernels.forwardTransformShort(folded, work)
                              : kernels.forwardTransformLong(folded, work);
    // 4 from the two rotations, 2 from the definition.
    for (int k = 0; k < len; ++k) dst[k] = scaleSaturated(work[k], 3 + shift - normalization);
}

bool shapesValid(int winShape, int prevWinShape) {
    return inRange(winShape, zetAacSine, zetAacKBD) && inRange(prevWinShape, zetAacSine, zetAacKBD);
}

// Window products to nearest. Truncated ones are off by -1/2 in the mean, which a loop through the
// history of long-term prediction would add up to an audible offset.
Zet32s timesWindow(Zet32s z, Zet32s window) {
    return static_cast<Zet32s>((int64_t{z} * window + (int64_t{1} << 30)) >> 31);
}
void multiplyRisingRounded(Zet32s* z, const Zet32s* rising, int len) {
    for (int n = 0; n < len; ++n) z[n] = timesWindow(z[n], rising[n]);
}
void multiplyFallingRounded(Zet32s* z, const Zet32s* rising, int len) {
    for (int n = 0; n < len; ++n) z[n] = timesWindow(z[n], rising[len - 1 - n]);
}
void windowShortRounded(const Zet32s* y, const Zet32s* rising, const Zet32s* falling, Zet32s* sum) {
    for (int n = 0; n < kShortLen; ++n) {
        const int mirror = kShortLen - 1 - n;
        const int folded = std::min(n, mirror);
        const Zet32s first = n < mirror ? y[folded] : core::subWrap(0, y[folded]);
        sum[n] = core::addWrap(sum[n], timesWindow(first, rising[n]));
        sum[kShortLen + n] = timesWindow(y[kShortLen / 2 + folded], falling[mirror]);
    }
}

void scale(Zet32s* samples, int shift) {
    for (int n = 0; n < kLongLen; ++n) samples[n] = scaleSaturated(samples[n], shift);
}

FilterBankKernels roundingKernels() {
    FilterBankKernels kernels = select(kFilterBankKernels);
    kernels.multiplyRising = multiplyRisingRounded;
    kernels.multiplyFalling = multiplyFallingRounded;
    kernels.windowShort = windowShortRounded;
    return kernels;
}

}  // namespace

void synthesizeWindowed(Zet32s* spectrum, Zet32s* windowed, int winSequence, int winShape,
                        int prevWinShape) {
    const FilterBankKernels kernels = roundingKernels();
    const int shift = std::clamp(normalizingShift(spectrum, kLongLen), 0, kExtraBits);
    for (int k = 0; k < kLongLen; ++k) spectrum[k] = core::shiftLeftWrap(spectrum[k], shift);
    if (winSequence == zetAacEightShort) {
        kernels.inverseTransformShort(spectrum);
        scale(spectrum, kExtraBits - shift);
        windowShorts(kernels, spectrum, windowed, winShape, prevWinShape);
        std::fill(windowed + kShortSpan, windowed + 2 * kLongLen, 0);
    } else {
        kernels.inverseTransformLong(spectrum);
        scale(spectrum, kExtraBits - shift);
        windowLong(kernels, spectrum, windowed, windowed + kLongLen, winSequence, winShape,
                   prevWinShape);
    }
}

}  // namespace zetac::aac

using namespace zetac::aac;

ZetStatus zetsMDCTInv_AAC_32s16s(Zet32s* pSrc, Zet16s* pDst, Zet32s* pOverlap, int winSequence,
                                 int winShape, int prevWinShape, int pcmStep) {
    ZETAC_REQUIRE(allSet(pSrc, pDst, pOverlap), zetStsNullPointer);
    ZETAC_REQUIRE(inRange(winSequence, zetAacOnlyLong, zetAacLongStop), zetStsAacWinSeqErr);
    ZETAC_REQUIRE(shapesValid(winShape, prevWinShape), zetStsAacWinShapeErr);
    ZETAC_REQUIRE(inRange(pcmStep, 1, 2), zetStsAacPcmStepErr);

    const FilterBankKernels& kernels = select(kFilterBankKernels);
    synthesize(kernels, pSrc, pOverlap, winSequence, winShape, prevWinShape);
    kernels.storePcm(pSrc, pDst, pcmStep);
    return zetStsOk;
}

ZetStatus zetsMDCTInv_AAC_32s_I(Zet32s* pSrcDst, Zet32s* pOverlap, int winSequence, int winShape,
                                int prevWinShape, int len) {
    ZETAC_REQUIRE(allSet(pSrcDst, pOverlap), zetStsNullPointer);
    ZETAC_REQUIRE(inRange(winSequence, zetAacOnlyLong, zetAacLongStop), zetStsAacWinSeqErr);
    ZETAC_REQUIRE(shapesValid(winShape, prevWinShape), zetStsAacWinShapeErr);
    ZETAC_REQUIRE(len == kLongLen, zetStsBadSize);

    synthesize(select(kFilterBankKernels), pSrcDst, pOverlap, winSequence, winShape, prevWinShape);
    return zetStsOk;
}

ZetStatus zetsMDCTFwd_AAC_32s(const Zet32s* pSrc, Zet32s* pDst, Zet32s* pReserved, int winSequence,
                              int winShape, int prevWinShape, Zet32s* pWork) {
    ZETAC_REQUIRE(allSet(pSrc, pDst, pReserved, pWork), zetStsNullPointer);
    ZETAC_REQUIRE(inRange(winSequence, zetAacOnlyLong, zetAacLongStop), zetStsAacWinSeqErr);
    ZETAC_REQUIRE(shapesValid(winShape, prevWinShape), zetStsAacWinShapeErr);

    analyze(select(kFilterBankKernels), pSrc, pDst, winSequence, winShape, prevWinShape, pWork);
    return zetStsOk;
}

ZetStatus zetsMDCTFwd_AAC_32s_I(Zet32s* pSrcDst, Zet32s* pReserved, int winSequence, int winShape,
                                int prevWinShape, Zet32s* pWork) {
    return zetsMDCTFwd_AAC_32s(pSrcDst, pSrcDst, pReserved, winSequence, winShape, prevWinShape,
                               pWork);
}
