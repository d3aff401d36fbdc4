// Long-term prediction (ISO/IEC 14496-3, 4.6.7).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <cstring>

#include "aac/filter_bank.h"
#include "aac/window_lengths.h"
#include "core/checks.h"
#include "core/fixed_point.h"
#include "tables/aac/dequant.h"
#include "tables/aac/swb_offset.h"

namespace zetac::aac {
namespace {

using core::allSet;
using core::inRange;

constexpr int kShortBandsMax = 8;

// --- Prediction ---------------------------------------------------------------------------------

constexpr int kGainBits = 29;
constexpr int kPredictionBits = 5;  // fractional bits of predictions, in time and in the spectrum
constexpr int kEstimateShift = kGainBits + 3 + kExtraBits - kPredictionBits;

// Records hold the eight gains of the standard with 14 bits, whose rounding would be heard in the
// loop as an error of up to 2^-14 of the signal. A gain of the table stands for the exact one.
// Others are limited to less than 4, which keeps the products below half of the range of dst.
Zet32s exactGain(Zet32s ltpCoef) {
    for (int i = 0; i < 8; ++i) {
        if (ltpCoef == tables::_Tab_LtpCoef_AAC[i]) return tables::kLtpGain.values[i];
    }
    return core::saturate32(int64_t{ltpCoef} << (kGainBits - 14));
}

// What precedes and what follows the history counts as silence.
void estimate(const Zet32s* history, Zet32s* dst, const ZetAACLtpInfo& ltp) {
    const int64_t start = 2 * int64_t{kLongLen} - ltp.ltp_lag;
    const int64_t begin = std::clamp<int64_t>(-start, 0, 2 * kLongLen);
    const int64_t end = std::clamp<int64_t>(ZETAC_AAC_LTP_HISTORY_LEN - start, begin, 2 * kLongLen);
    const int64_t gain = exactGain(ltp.ltp_coef);
    const int64_t half = int64_t{1} << (kEstimateShift - 1);
    std::fill_n(dst, 2 * kLongLen, 0);
    for (int64_t i = begin; i < end; ++i)
        dst[i] = static_cast<Zet32s>((gain * history[start + i] + half) >> kEstimateShift);
}

// --- Reconstruction -----------------------------------------------------------------------------

void addLines(const Zet32s* predicted, Zet32s* spectrum, int begin, int end) {
    for (int k = begin; k < end; ++k) {
        const Zet32s value = core::roundShift(predicted[k], kPredictionBits - 3);
        spectrum[k] = core::saturate32(int64_t{spectrum[k]} + value);
    }
}

void addLong(const Zet32s* predicted, Zet32s* spectrum, const ZetAACLtpInfo& ltp, int rate) {
    const Zet16s* offset = tables::_pAACSwbOffsetTableLong[rate];
    for (int sfb = 0; sfb < ZETAC_AAC_LTP_SFB_MAX; ++sfb) {
        if (ltp.ltp_long_used[sfb]) addLines(predicted, spectrum, offset[sfb], offset[sfb + 1]);
    }
}

void addShort(const Zet32s* predicted, Zet32s* spectrum, const ZetAACLtpInfo& ltp, int rate) {
    const int end = tables::_pAACSwbOffsetTableShort[rate][kShortBandsMax];
    for (int w = 0; w < kShortWindows; ++w) {
        const int start = w * kShortLen;
        if (ltp.ltp_short_used[w]) addLines(predicted + start, spectrum + start, 0, end);
    }
}

// --- History ------------------------------------------------------------------------------------

void advance(Zet32s* spectrum, Zet32s* history, int winSequence, int winShape, int prevWinShape) {
    Zet32s windowed[2 * kLongLen];
    synthesizeWindowed(spectrum, windowed, winSequence, winShape, prevWinShape);
    std::memcpy(history, history + kLongLen, kLongLen * sizeof *history);
    Zet32s* newest = history + kLongLen;
    Zet32s* overlap = history + 2 * kLongLen;
    for (int n = 0; n < kLongLen; ++n)
        newest[n] = core::saturate32(int64_t{windowed[n]} + overlap[n]);
    std::memcpy(overlap, windowed + kLongLen, kLongLen * sizeof *overlap);
}

}  // namespace
}  // namespace zetac::aac

using namespace zetac::aac;

ZetStatus zetsLongTermPredict_AAC_32s(const Zet32s* pHistory, Zet32s* pDst,
                                      const ZetAACLtpInfo* pLtpInfo) {
    ZETAC_REQUIRE(allSet(pHistory, pDst, pLtpInfo), zetStsNullPointer);
    estimate(pHistory, pDst, *pLtpInfo);
    return zetStsOk;
}

ZetStatus zetsLongTermReconstruct_AAC_32s(const Zet32s* pSrc, Zet32s* pSrcDst,
                                          const ZetAACLtpInfo* pLtpInfo, int winSequence,
                                          int samplingFreqIndex) {
    ZETAC_REQUIRE(allSet(pSrc, pSrcDst, pLtpInfo), zetStsNullPointer);
    ZETAC_REQUIRE(inRange(winSequence, zetAacOnlyLong, zetAacLongStop), zetStsAacWinSeqErr);
    ZETAC_REQUIRE(inRange(samplingFreqIndex, 0, 12), zetStsAacSmpRateIdxErr);
    if (winSequence == zetAacEightShort)
        addShort(pSrc, pSrcDst, *pLtpInfo, samplingFreqIndex);
    else
        addLong(pSrc, pSrcDst, *pLtpInfo, samplingFreqIndex);
    return zetStsOk;
}

ZetStatus zetsLtpUpdate_AAC_32s(Zet32s* pSrc, Zet32s* pHistory, int winSequence, int winShape,
                                int prevWinShape) {
    ZETAC_REQUIRE(allSet(pSrc, pHistory), zetStsNullPointer);
    ZETAC_REQUIRE(inRange(winSequence, zetAacOnlyLong, zetAacLongStop), zetStsAacWinSeqErr);
    ZETAC_REQUIRE(inRange(winShape, zetAacSine, zetAacKBD), zetStsAacWinShapeErr);
    ZETAC_REQUIRE(inRange(prevWinShape, zetAacSine, zetAacKBD), zetStsAacWinShapeErr);
    advance(pSrc, pHistory, winSequence, winShape, prevWinShape);
    return zetStsOk;
}
