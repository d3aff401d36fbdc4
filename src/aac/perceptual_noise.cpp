// Perceptual noise substitution (ISO/IEC 14496-3, 4.6.13), with the energy of every band measured,
// so that it is met exactly and not only in the mean.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <bit>

#include "aac/band_walk.h"
#include "core/fixed_point.h"
#include "tables/aac/dequant.h"

namespace zetac::aac {
namespace {

// Squares of vectors that are shifted right by this much can be summed in 64 bits.
constexpr int kNoiseShift = 4;

// Draws count values from the linear congruential generator and returns the sum of their squares.
// Two successive values are never both small, so that the sum is never 0.
uint64_t drawNoise(Zet32s* line, int count, uint32_t& state) {
    uint64_t sum = 0;
    for (int i = 0; i < count; ++i) {
        state = 1664525u * state + 1013904223u;
        line[i] = static_cast<Zet32s>(state) >> kNoiseShift;
        sum += static_cast<uint64_t>(static_cast<int64_t>(line[i]) * line[i]);
    }
    return sum;
}

// Multiplies a vector of the given sum of squares by 2^(3 + energy / 4) over its norm.
void scaleNoise(Zet32s* line, int count, uint64_t sumOfSquares, int energy) {
    if (sumOfSquares == 0) return;
    // sqrt(sum) = sqrt(mantissa) * 2^(32 - halfShift), with the mantissa 1/4..1.
    const int halfShift = std::countl_zero(sumOfSquares) / 2;
    const auto mantissa = static_cast<uint32_t>((sumOfSquares << (2 * halfShift)) >> 32);
    const int exponent = (energy + 3) >> 2;
    const int64_t quarterPower = tables::kQuarterPower[4 * exponent - energy];
    const int64_t factor = (quarterPower * core::inverseSquareRoot(mantissa)) >> 31;  // Q30
    // At the lower limit the noise is far beyond full scale, at the upper one it is 0.
    const int shift = std::clamp(30 + 32 - halfShift - 3 - exponent, 1, 62);
    const int64_t half = int64_t{1} << (shift - 1);
    for (int i = 0; i < count; ++i) line[i] = core::saturate32((line[i] * factor + half) >> shift);
}

// Fills one band of one channel and moves the generator on.
void fillBand(Zet32s* spectrum, const Band& band, int energy, uint32_t& state) {
    Zet32s* line = spectrum + band.start;
    for (int window = 0; window < band.windows; ++window, line += band.width)
        scaleNoise(line, band.width, drawNoise(line, band.width, state), energy);
}

struct NoiseChannel {
    Zet32s* spectrum;
    const Zet16s* energies;
    const Zet8u* codebooks;

    bool isNoise(const Band& band) const { return codebooks[band.index] == zetAacNoiseCb; }
    void fill(const Band& band, uint32_t& state) const {
        fillBand(spectrum, band, energies[band.index], state);
    }
};

void decodePns(const NoiseChannel& channel, uint32_t& state, const BandArgs& args) {
    for (const Band band : BandWalk(args)) {
        if (channel.isNoise(band)) channel.fill(band, state);
    }
}

// The generator runs through the bands in order, left before right. A correlated right band starts
// from the state that its left one started from, which gives it the same vector.
void decodeMsPns(const NoiseChannel& left, const NoiseChannel& right, int msMaskPresent,
                 const Zet8u* msUsed, uint32_t& state, const BandArgs& args) {
    for (const Band band : BandWalk(args)) {
        const bool selected = msMaskPresent == 2 || isFlagged(band, msMaskPresent, msUsed);
        const uint32_t before = state;
        if (left.isNoise(band)) left.fill(band, state);
        if (!right.isNoise(band)) continue;
        if (selected) state = before;
        right.fill(band, state);
    }
}

ZetStatus checkNoiseBands(const BandArgs& args) {
    if (const ZetStatus status = checkBandRanges(args, ZETAC_AAC_GROUPS_MAX, 16)) return status;
    return checkBandCount(args);
}

}  // namespace
}  // namespace zetac::aac

ZetStatus zetsDecodePNS_AAC_32s(Zet32s* pSrcDst, Zet32s* pRandomState, const Zet16s* pScaleFactor,
                                int numWinGrp, const Zet32s* pWinGrpLen, int maxSfb,
                                const Zet8u* pSfbCb, int samplingFreqIndex, int winLen) {
    using namespace zetac;
    const aac::BandArgs args = {numWinGrp, pWinGrpLen, maxSfb, samplingFreqIndex, winLen};
    ZETAC_REQUIRE(core::allSet(pSrcDst, pRandomState, pScaleFactor, pWinGrpLen, pSfbCb),
                  zetStsNullPointer);
    if (const ZetStatus status = aac::checkNoiseBands(args)) return status;
    auto state = static_cast<uint32_t>(*pRandomState);
    aac::decodePns({pSrcDst, pScaleFactor, pSfbCb}, state, args);
    *pRandomState = static_cast<Zet32s>(state);
    return zetStsOk;
}

ZetStatus zetsDecodeMsPNS_AAC_32s(Zet32s* pSrcDstL, Zet32s* pSrcDstR, Zet32s* pRandomState,
                                  const Zet16s* pScaleFactorL, const Zet16s* pScaleFactorR,
                                  int msMaskPresent, const Zet8u* pMsUsed, int numWinGrp,
                                  const Zet32s* pWinGrpLen, int maxSfb, const Zet8u* pSfbCbL,
                                  const Zet8u* pSfbCbR, int samplingFreqIndex, int winLen) {
    using namespace zetac;
    const aac::BandArgs args = {numWinGrp, pWinGrpLen, maxSfb, samplingFreqIndex, winLen};
    ZETAC_REQUIRE(core::allSet(pSrcDstL, pSrcDstR, pRandomState, pScaleFactorL, pScaleFactorR,
                               pMsUsed, pWinGrpLen, pSfbCbL, pSfbCbR),
                  zetStsNullPointer);
    if (const ZetStatus status = aac::checkNoiseBands(args)) return status;
    auto state = static_cast<uint32_t>(*pRandomState);
    aac::decodeMsPns({pSrcDstL, pScaleFactorL, pSfbCbL}, {pSrcDstR, pScaleFactorR, pSfbCbR},
                     msMaskPresent, pMsUsed, state, args);
    *pRandomState = static_cast<Zet32s>(state);
    return zetStsOk;
}
