// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/decode/stereo.h"

#include <algorithm>

#include "core/checks.h"
#include "core/fixed_point.h"
#include "tables/aac/dequant.h"
#include "tables/mp3/stereo.h"

namespace zetac::mp3 {
namespace {

// Whether a band is at or above the right channel's bound.
bool isAboveLong(const Channel& right, int band) {
    return right.bands.longStart[band] >= right.reach.lines;
}
bool isAboveShort(const Channel& right, int band, int window) {
    return band >= right.reach.shortBands[window];
}

// The uppermost band has no scale factor of its own. Where the band below it is in intensity stereo
// too, that band's position goes on; else the filler behind the scale factors is the position.
int longPosition(const Channel& right, int band) {
    const bool goesOn = band == kLongBands - 1 && isAboveLong(right, band - 1);
    return right.scaleFactors[goesOn ? band - 1 : band];
}
int shortPosition(const Channel& right, int band, int window) {
    const bool goesOn = band == kShortBands - 1 && isAboveShort(right, band - 1, window);
    return right.scaleFactors[right.bands.shortScaleFactor(goesOn ? band - 1 : band, window)];
}

bool isIllegal(const ZetMP3Header& header, int position) {
    return isMpeg1(header) ? position == 7 : position < 0;
}

constexpr Zet32s saturateIf(Zet32s overflow, Zet32s wrapped, Zet32s sign) {
    return (wrapped & ~overflow) | ((sign ^ core::kMax32s) & overflow);
}

void middleSide(Zet32s* __restrict left, Zet32s* __restrict right, int count) {
    for (int i = 0; i < count; ++i) {
        const Zet32s m = left[i], s = right[i], sign = m >> 31;
        const Zet32s sum = core::addWrap(m, s), difference = core::subWrap(m, s);
        left[i] = saturateIf(((m ^ sum) & ~(m ^ s)) >> 31, sum, sign);
        right[i] = saturateIf(((m ^ difference) & (m ^ s)) >> 31, difference, sign);
    }
}

void intensity(Zet32s* __restrict left, Zet32s* __restrict right, int count, int is_pos) {
    const Zet32s share = tables::kMP3IntensityShare[is_pos];
    for (int i = 0; i < count; ++i) {
        const Zet32s sum = left[i];
        left[i] = core::mulQ31(sum, share);
        right[i] = sum - left[i];
    }
}

// One of the channels is 2^(-steps/4) of the other, which is as coded (ISO/IEC 13818-3, 2.4.3.2).
void intensityLsf(Zet32s* left, Zet32s* right, int count, int is_pos, int intensity_scale) {
    const int steps = ((is_pos + 1) / 2) << intensity_scale;
    const Zet32s factor = tables::kQuarterPower[steps % 4];
    const int shift = std::min(steps / 4, 31);
    Zet32s* const scaled = is_pos % 2 != 0 ? left : right;
    for (int i = 0; i < count; ++i) {
        const Zet32s value = left[i];
        right[i] = value;
        scaled[i] = core::mulQ31(value, factor) >> shift;
    }
}

void undo(const ZetMP3Header& header, BandStereo stereo, const Channel& left, const Channel& right,
          Run run, int is_pos) {
    Zet32s* const l = left.lines + run.start;
    Zet32s* const r = right.lines + run.start;
    if (stereo == BandStereo::kMiddleSide)
        middleSide(l, r, run.count);
    else if (stereo == BandStereo::kIntensity && isMpeg1(header))
        intensity(l, r, run.count, is_pos);
    else if (stereo == BandStereo::kIntensity)
        intensityLsf(l, r, run.count, is_pos, right.info->scalefac_compress & 1);
}

// What MPEG-1 has shares for; LSF knows every position that is not negative.
bool isKnown(BandStereo stereo, int position) {
    return stereo != BandStereo::kIntensity || core::inRange(position, 0, 6);
}

}  // namespace

StereoPlan planStereo(const ZetMP3Header& header, const Channel& left, const Channel& right) {
    StereoPlan plan;
    const bool useIntensity = hasIntensity(header);
    const BandStereo belowBound =
        hasMiddleSide(header) ? BandStereo::kMiddleSide : BandStereo::kSeparate;
    const auto stereoOf = [&](bool isAbove, int position) {
        return useIntensity && isAbove && !isIllegal(header, position) ? BandStereo::kIntensity
                                                                       : belowBound;
    };
    const GranuleBands& bands = left.bands;
    for (int band = 0; band < bands.numLong; ++band)
        plan.ofLong[band] = stereoOf(isAboveLong(right, band), longPosition(right, band));
    for (int band = bands.firstShort; band < kShortBands; ++band)
        for (int window = 0; window < kWindows; ++window)
            plan.ofShort[band][window] =
                stereoOf(isAboveShort(right, band, window), shortPosition(right, band, window));
    return plan;
}

bool hasKnownPositions(const ZetMP3Header& header, const StereoPlan& plan, const Channel& right) {
    if (!isMpeg1(header)) return true;
    const GranuleBands& bands = right.bands;
    for (int band = 0; band < bands.numLong; ++band)
        if (!isKnown(plan.ofLong[band], longPosition(right, band))) return false;
    for (int band = bands.firstShort; band < kShortBands; ++band)
        for (int window = 0; window < kWindows; ++window)
            if (!isKnown(plan.ofShort[band][window], shortPosition(right, band, window)))
                return false;
    return true;
}

// Bands in middle/side are undone together with their neighbours.
void _sStereoLong_MP3_32s_I(const ZetMP3Header& header, const StereoPlan& plan, Channel& left,
                            Channel& right) {
    const GranuleBands& bands = left.bands;
    const int lines = std::max(left.reach.lines, right.reach.lines);
    const int longLines = std::min(lines, bands.longEnd());
    for (int band = 0, next = 1; band < bands.numLong; band = next++) {
        const int start = bands.longStart[band];
        if (start >= longLines) break;
        const BandStereo stereo = plan.ofLong[band];
        if (stereo == BandStereo::kMiddleSide)
            while (next < bands.numLong && plan.ofLong[next] == stereo) ++next;
        const Run run = {start, std::min<int>(bands.longStart[next], longLines) - start};
        undo(header, stereo, left, right, run, longPosition(right, band));
    }
    left.reach.lines = right.reach.lines = lines;
}

void _sStereoShort_MP3_32s_I(const ZetMP3Header& header, const StereoPlan& plan, int window,
                             Channel& left, Channel& right) {
    const GranuleBands& bands = left.bands;
    const int end = std::max(left.reach.shortBands[window], right.reach.shortBands[window]);
    for (int band = bands.firstShort; band < end; ++band)
        undo(header, plan.ofShort[band][window], left, right, bands.shortRun(band, window),
             shortPosition(right, band, window));
    left.reach.shortBands[window] = right.reach.shortBands[window] = end;
}

}  // namespace zetac::mp3
