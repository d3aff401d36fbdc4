// One granule of one channel, quantised so that its noise stands a given number of decibels above
// or below the thresholds.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "mp3/encode/band_layout.h"
#include "mp3/encode/line_quantizer.h"
#include "mp3/encode/scale_factor_choice.h"

namespace zetac::mp3 {

inline constexpr int kMaxPart23Bits = 4095;  // 12 bits of part2_3_length

// Noise levels are counted in sixteenths of a doubling: all noise may be 2^(level/16) times its
// threshold. At the coarsest level no ratio of 31 fractional bits leaves a band anything to code.
inline constexpr int kLevelsPerOctave = 16;
inline constexpr int kCoarsestLevel = 34 * kLevelsPerOctave;
inline constexpr int kFinestLevel = -24 * kLevelsPerOctave;

// A granule ready to be packed, but for stuffing and signs.
struct GranuleCode {
    ZetMP3GranuleSideInfo info;  // part2_3_length without stuffing
    int part2Bits;
    int count1Len;
    int nonZero;  // lines
    int scfsi[4];
    Zet16s scaleFactors[ZETAC_MP3_SCF_MAX];
    Zet16s magnitudes[ZETAC_MP3_GRANULE_LEN];
};

// Where intensity stereo begins in the right channel, and its positions.
struct IntensityBounds {
    const Zet32s* bound;     // null: no intensity stereo
    const Zet8s* positions;  // by place of the scale factor
};

class GranuleCoder {
  public:
    // bandwidth: lines from here on are left out; a multiple of 6. isExact: at level 0 the noise of
    // every band is within its threshold, whatever its width.
    void prepare(const Zet32s* lines, const ZetMP3GranuleSideInfo& info, const ZetMP3PsyOutput& psy,
                 int sampling_frequency, int bandwidth, const IntensityBounds& intensity,
                 bool isExact);

    // granule0: the code of granule 0 where scfsi may refer to it, or null.
    void code(int level, const GranuleCode* granule0, GranuleCode& out);

    // Nothing at all.
    void codeSilence(GranuleCode& out) const;

    bool isShort() const { return layout_->hasShort; }

  private:
    struct BandState {
        BandLevels levels;
        Zet32f threshold;
        Zet32f share;  // of noise, beside other bands
        Zet32f floor;  // noise below this is of no use
        int finest, coarsest;
        Zet32f target;  // noise at the level in question
        // The last step found, its noise, and the noise of the next coarser one.
        bool isMeasured;
        int step;
        Noise noise;
        Zet32f noiseAbove;
    };

    void limitBandwidth(int bandwidth);
    void prepareBands(const ZetMP3PsyOutput& psy);
    Zet32f thresholdOf(int b, const ZetMP3PsyOutput& psy) const;
    int demandAt(int level, BandDemand* demands);
    void findStep(const Band& band, BandState& state);
    static int startingStep(const BandState& state);
    bool tightenDemands(const StepChoice& choice, BandDemand* demands) const;
    void quantize(int level, const GranuleCode* granule0, GranuleCode& out);
    void placeScaleFactors(GranuleCode& out) const;
    void placePositions(GranuleCode& out) const;

    Spectrum spectrum_;
    BandState states_[kMaxBands];
    const BandLayout* layout_;
    const Zet16s* longStarts_;
    ZetMP3GranuleSideInfo info_;
    IntensityBounds intensity_;
    bool isExact_;
};

}  // namespace zetac::mp3
