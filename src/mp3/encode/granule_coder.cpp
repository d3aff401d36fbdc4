// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/encode/granule_coder.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "mp3/encode/bit_count.h"
#include "mp3/encode/scale_factor_choice.h"
#include "tables/mp3/scale_factor_lengths.h"

namespace zetac::mp3 {
namespace {

// Keeps quotients and logarithms of thresholds and noise within singles.
constexpr Zet32f kLeastEnergy = 0x1p-40f;

// The uppermost band has no ratio: it takes the one of the band below, but no more than this, since
// that band may be empty.
constexpr Zet32f kTopRatio = 1.0f / 16;

constexpr int kMostRefinements = 8;

constexpr int kNoPosition = 7;  // of intensity stereo

// What rounding to 16 bits makes of a line, 2048^2 / 12 / 288 by the gain of filter bank and
// transform, of a short block three times as much; and how much of that noise is worth no bit.
constexpr Zet32f kRoundingNoise = 1213.6f;
constexpr Zet32f kNoiseFloor = 1.5f * kRoundingNoise;

// A wide band costs more bits for the same noise over threshold than a narrow one: it may have
// more, by the square root of its width, between the equal shares that the ear asks for and those
// in proportion that would make the sum over bands the least. Bands of 16 lines have their share.
constexpr Zet32f kEvenWidth = 16;

// Noise of a fine quantiser grows by 3/8 of a doubling in a step.
constexpr Zet32f kStepsPerOctave = 8.0f / 3;

// The sum of the squared errors of lines x is about 4/27 * 2^(3e/8) * sum of sqrt|x|: an error
// uniform within a step that is 4/3 * |x|^(1/4) * 2^(3e/16) wide.
constexpr Zet32f kFineNoise = 4.0f / 27;

// What a quarter step finer costs in 1/16 bits: 3 for a line that is not 0, since magnitudes grow
// by 2^(3/16); about a half for one that is 0 and may not stay so.
int costOfStep(int width, int nonZero) {
    return 3 * nonZero + (width - nonZero) / 2;
}

}  // namespace

void GranuleCoder::prepare(const Zet32s* lines, const ZetMP3GranuleSideInfo& info,
                           const ZetMP3PsyOutput& psy, int sampling_frequency, int bandwidth,
                           const IntensityBounds& intensity, bool isExact) {
    layout_ = &bandLayout(sampling_frequency, info);
    longStarts_ = longBandStarts(sampling_frequency);
    info_ = ZetMP3GranuleSideInfo{};
    info_.block_type = info.block_type;
    info_.mixed_block_flag = info.mixed_block_flag;
    info_.window_switching_flag = typeOf(info) != BlockType::kNormal;
    intensity_ = intensity;
    isExact_ = isExact;
    takeLines(lines, spectrum_);
    limitBandwidth(bandwidth);
    prepareBands(psy);
}

void GranuleCoder::limitBandwidth(int bandwidth) {
    for (int b = 0; b < layout_->count; ++b) {
        const Band& band = layout_->bands[b];
        const bool isLong = band.stepClass == kLongClass;
        const int first = isLong ? band.start : (band.start - band.stepClass * band.width) / 3;
        const int kept = std::clamp((isLong ? bandwidth : bandwidth / 3) - first, 0, +band.width);
        std::fill_n(spectrum_.magnitude + band.start + kept, band.width - kept, 0.0f);
        std::fill_n(spectrum_.power + band.start + kept, band.width - kept, 0.0f);
    }
}

void GranuleCoder::prepareBands(const ZetMP3PsyOutput& psy) {
    for (int b = 0; b < layout_->count; ++b) {
        const Band& band = layout_->bands[b];
        BandState& state = states_[b];
        state.levels = levelsOf(spectrum_, band);
        state.isMeasured = false;
        state.threshold = thresholdOf(b, psy);
        const Zet32f windows = band.stepClass == kLongClass ? 1 : kWindows;
        const Zet32f width = windows * static_cast<Zet32f>(band.width);
        state.share = isExact_ ? 1 : std::sqrt(width / kEvenWidth);
        state.floor = kNoiseFloor * width;
        if (state.levels.peak > 0) {
            state.finest = finestStep(state.levels.peak);
            state.coarsest = coarsestStep(state.levels.peak);
        }
    }
}

Zet32f GranuleCoder::thresholdOf(int b, const ZetMP3PsyOutput& psy) const {
    const Band& band = layout_->bands[b];
    const Zet32f energy = states_[b].levels.energy;
    const Zet32s ratio = std::max(psy.ratio[band.ratio], 0);
    const Zet32f threshold = energy * (static_cast<Zet32f>(ratio) * 0x1p-31f);
    if (band.scaleFactor != kNoScaleFactor) return threshold;
    // What the band below masks, or the threshold in quiet there, holds above as well.
    const int below = b - (layout_->hasShort ? kWindows : 1);
    const Zet32f lines = static_cast<Zet32f>(band.width) / layout_->bands[below].width;
    return std::max(std::min(threshold, kTopRatio * energy), lines * states_[below].threshold);
}

// Extrapolates from the last noise measured, and the first time from that of a fine quantiser.
int GranuleCoder::startingStep(const BandState& state) {
    const Zet32f known = state.isMeasured ? std::max(state.noise.energy, kLeastEnergy)
                                          : kFineNoise * state.levels.rootSum;
    const int from = state.isMeasured ? state.step : 0;
    const int steps = static_cast<int>(kStepsPerOctave * roughLog2(state.target / known));
    return std::clamp(from + steps, state.finest, state.coarsest);
}

// The coarsest step with noise up to the target, as seen from the starting point.
void GranuleCoder::findStep(const Band& band, BandState& state) {
    const Zet32f target = state.target;
    if (state.isMeasured && state.noise.energy <= target && target < state.noiseAbove) return;
    state.step = startingStep(state);
    state.isMeasured = true;
    state.noise = noiseOf(spectrum_, band, state.step);
    if (state.noise.energy <= target) {
        state.noiseAbove = state.levels.energy;
        while (state.step < state.coarsest) {
            const Noise above = noiseOf(spectrum_, band, state.step + 1);
            state.noiseAbove = above.energy;
            if (above.energy > target) break;
            state.noise = above;
            ++state.step;
        }
    } else {
        state.noiseAbove = state.noise.energy;
        while (state.noise.energy > target && state.step > state.finest) {
            state.noiseAbove = state.noise.energy;
            state.noise = noiseOf(spectrum_, band, --state.step);
        }
    }
}

// What the bands need at a noise level; returns how many lines are then not 0.
int GranuleCoder::demandAt(int level, BandDemand* demands) {
    const Zet32f factor = sixteenthPower(level);
    int nonZero = 0;
    for (int b = 0; b < layout_->count; ++b) {
        BandState& state = states_[b];
        state.target = std::max(state.threshold * state.share * factor, state.floor);
        demands[b] = BandDemand{};
        demands[b].isCoded = state.levels.energy > state.target;
        if (!demands[b].isCoded) continue;
        findStep(layout_->bands[b], state);
        demands[b].step = state.step;
        demands[b].finest = state.finest;
        demands[b].weight = costOfStep(layout_->bands[b].width, state.noise.nonZero);
        nonZero += state.noise.nonZero;
    }
    return nonZero;
}

// A finer step than demanded makes less noise as a rule, but in bands of a few lines sometimes
// more. Demands steps that are finer still where that exceeds the target; returns whether it did.
bool GranuleCoder::tightenDemands(const StepChoice& choice, BandDemand* demands) const {
    bool hasChanged = false;
    for (int b = 0; b < layout_->count; ++b) {
        const Band& band = layout_->bands[b];
        if (!demands[b].isCoded || band.scaleFactor == kNoScaleFactor) continue;
        if (choice.steps[b] >= demands[b].step) continue;
        int step = choice.steps[b];
        while (step > demands[b].finest &&
               noiseOf(spectrum_, band, step).energy > states_[b].target)
            --step;
        if (step == choice.steps[b]) continue;
        demands[b].step = step;
        hasChanged = true;
    }
    return hasChanged;
}

void GranuleCoder::quantize(int level, const GranuleCode* granule0, GranuleCode& out) {
    BandDemand demands[kMaxBands];
    out.nonZero = demandAt(level, demands);
    const Zet16s* factors0 = granule0 != nullptr ? granule0->scaleFactors : nullptr;
    StepChoice choice = chooseSteps(*layout_, demands, factors0);
    for (int i = 0; isExact_ && i < kMostRefinements && tightenDemands(choice, demands); ++i)
        choice = chooseSteps(*layout_, demands, factors0);
    out.info.global_gain = choice.gain - kGainOffset;
    out.info.scalefac_scale = choice.scalefac_scale;
    out.info.preflag = choice.preflag;
    std::copy_n(choice.subblock_gain, kWindows, out.info.subblock_gain);
    std::copy_n(choice.reuses, kScfsiGroups, out.scfsi);
    for (int b = 0; b < layout_->count; ++b) {
        const Band& band = layout_->bands[b];
        if (band.scaleFactor != kNoScaleFactor)
            out.scaleFactors[band.scaleFactor] = choice.scaleFactors[b];
        if (demands[b].isCoded) {
            quantizeBand(spectrum_, band, choice.steps[b], out.magnitudes);
        } else {
            std::fill_n(out.magnitudes + band.start, band.width, Zet16s{0});
        }
    }
}

// In the right channel of intensity stereo the scale factors of intensity bands are positions. A
// decoder takes every band behind the last line that is not 0 for one: those below the bound get
// the position that is none.
void GranuleCoder::placePositions(GranuleCode& out) const {
    bool isBehindEnd[kClasses] = {true, true, true, true};
    for (int b = layout_->count - 1; b >= 0; --b) {
        const Band& band = layout_->bands[b];
        const bool isLong = band.stepClass == kLongClass;
        bool& isBehind = isBehindEnd[band.stepClass];
        const Zet16s* lines = out.magnitudes + band.start;
        if (std::any_of(lines, lines + band.width, [](Zet16s q) { return q != 0; }))
            isBehind = false;
        const int place = band.scaleFactor;
        if (!isBehind || place == kNoScaleFactor) continue;
        const Zet32s bound = intensity_.bound[isLong ? 0 : band.stepClass];
        out.scaleFactors[place] = static_cast<Zet16s>(
            band.number < bound ? kNoPosition
                                : std::clamp<int>(intensity_.positions[place], 0, kNoPosition));
    }
}

// Chooses scalefac_compress for the scale factors that are sent.
void GranuleCoder::placeScaleFactors(GranuleCode& out) const {
    if (intensity_.bound != nullptr) placePositions(out);
    int highest[2] = {}, numSent[2] = {};
    for (int b = 0; b < layout_->count; ++b) {
        const Band& band = layout_->bands[b];
        if (band.scaleFactor == kNoScaleFactor) continue;
        if (!layout_->hasShort && out.scfsi[band.scfsiGroup]) continue;
        int& top = highest[band.upper];
        top = std::max<int>(top, out.scaleFactors[band.scaleFactor]);
        ++numSent[band.upper];
    }
    const int compress = chooseCompress(bitsOfScaleFactor(highest[0]),
                                        bitsOfScaleFactor(highest[1]), numSent[0], numSent[1]);
    out.info.scalefac_compress = compress;
    out.part2Bits = numSent[0] * tables::ownMP3TableSlen[0][compress] +
                    numSent[1] * tables::ownMP3TableSlen[1][compress];
}

void GranuleCoder::code(int level, const GranuleCode* granule0, GranuleCode& out) {
    out.info = info_;
    std::fill(std::begin(out.scaleFactors), std::end(out.scaleFactors), Zet16s{0});
    quantize(level, intensity_.bound == nullptr ? granule0 : nullptr, out);
    placeScaleFactors(out);
    const HuffmanPlan plan =
        planHuffman(out.magnitudes, longStarts_, info_.window_switching_flag != 0);
    out.info.part2_3_length = out.part2Bits + plan.bits;
    out.info.big_values = plan.big_values;
    std::copy_n(plan.table_select, 3, out.info.table_select);
    out.info.region0_count = plan.region0_count;
    out.info.region1_count = plan.region1_count;
    out.info.count1table_select = plan.count1table_select;
    out.count1Len = plan.count1Len;
}

void GranuleCoder::codeSilence(GranuleCode& out) const {
    out = GranuleCode{};
    out.info = info_;
    const HuffmanPlan plan =
        planHuffman(out.magnitudes, longStarts_, info_.window_switching_flag != 0);
    out.info.region0_count = plan.region0_count;
    out.info.region1_count = plan.region1_count;
}

}  // namespace zetac::mp3
