// The scalefactor bands of one channel: the checks that the band tools share, and their loop.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "aac/window_lengths.h"
#include "core/checks.h"
#include "tables/aac/swb_offset.h"

namespace zetac::aac {

constexpr bool isIntensity(Zet8u codebook) {
    return codebook == zetAacIntensityCb || codebook == zetAacIntensityCb2;
}
constexpr bool hasSpectrum(Zet8u codebook) {
    return codebook != zetAacZeroCb && codebook != zetAacNoiseCb && !isIntensity(codebook);
}

// The number of bands of a window; 0 where the standard has no table.
inline int bandCount(int samplingFreqIndex, int winLen) {
    if (samplingFreqIndex >= tables::kNumSamplingFrequencies) return 0;
    return winLen == kLongLen ? tables::_pAACNumSwbTableLong[samplingFreqIndex]
                              : tables::_pAACNumSwbTableShort[samplingFreqIndex];
}

// The first line of each band of a window, and the end of the last. Null where bandCount is 0.
inline const int16_t* bandOffsets(int samplingFreqIndex, int winLen) {
    if (samplingFreqIndex >= tables::kNumSamplingFrequencies) return nullptr;
    return winLen == kLongLen ? tables::_pAACSwbOffsetTableLong[samplingFreqIndex]
                              : tables::_pAACSwbOffsetTableShort[samplingFreqIndex];
}

// The arguments that describe the bands of a channel, as the public header names them.
struct BandArgs {
    int numWinGrp;
    const Zet32s* pWinGrpLen;
    int maxSfb;
    int samplingFreqIndex;
    int winLen;
};

inline ZetStatus checkWindowLength(int winLen) {
    ZETAC_REQUIRE(winLen == kLongLen || winLen == kShortLen, zetStsAacWinLenErr);
    return zetStsOk;
}

inline ZetStatus checkBandRanges(const BandArgs& args, int maxGroups, int maxIndex) {
    if (const ZetStatus status = checkWindowLength(args.winLen)) return status;
    ZETAC_REQUIRE(core::inRange(args.numWinGrp, 1, maxGroups), zetStsAacWinGrpErr);
    ZETAC_REQUIRE(core::inRange(args.maxSfb, 0, ZETAC_AAC_SFB_MAX), zetStsAacMaxSfbErr);
    ZETAC_REQUIRE(core::inRange(args.samplingFreqIndex, 0, maxIndex), zetStsAacSmpRateIdxErr);
    return zetStsOk;
}

// The band checks come in two halves, because M/S stereo has one of its own between them.
inline ZetStatus checkBandRanges(const BandArgs& args) {
    return checkBandRanges(args, args.winLen == kLongLen ? 1 : ZETAC_AAC_GROUPS_MAX, 11);
}
inline ZetStatus checkBandCount(const BandArgs& args) {
    ZETAC_REQUIRE(args.maxSfb <= bandCount(args.samplingFreqIndex, args.winLen),
                  zetStsAacMaxSfbErr);
    return zetStsOk;
}
inline ZetStatus checkBands(const BandArgs& args) {
    if (const ZetStatus status = checkBandRanges(args)) return status;
    return checkBandCount(args);
}

// One band of one group: its windows' parts lie one after another.
struct Band {
    int group;
    int sfb;
    int index;    // in arrays with maxSfb entries per group
    int start;    // first line
    int width;    // lines of one window
    int windows;  // of the group
    int lines() const { return width * windows; }
};

// Whether ms_mask_present 1 selects a band by its flag in ms_used.
inline bool isFlagged(const Band& band, int msMaskPresent, const Zet8u* msUsed) {
    return msMaskPresent == 1 && msUsed[band.group * ZETAC_AAC_MS_ROW + band.sfb] != 0;
}

// for (const Band band : BandWalk(args)) visits every band below maxSfb, group after group.
class BandWalk {
  public:
    explicit BandWalk(const BandArgs& args)
        : args_(args), offset_(bandOffsets(args.samplingFreqIndex, args.winLen)) {}

    struct End {};
    class Iterator {
      public:
        explicit Iterator(const BandWalk& walk)
            : walk_(walk), group_(walk.args_.maxSfb > 0 ? 0 : walk.args_.numWinGrp) {}

        bool operator!=(End) const { return group_ < walk_.args_.numWinGrp; }

        Band operator*() const {
            const int windows = walk_.args_.pWinGrpLen[group_];
            const int offset = walk_.offset_[sfb_];
            return {.group = group_,
                    .sfb = sfb_,
                    .index = group_ * walk_.args_.maxSfb + sfb_,
                    .start = groupStart_ + offset * windows,
                    .width = walk_.offset_[sfb_ + 1] - offset,
                    .windows = windows};
        }

        Iterator& operator++() {
            if (++sfb_ < walk_.args_.maxSfb) return *this;
            groupStart_ += walk_.args_.pWinGrpLen[group_++] * walk_.args_.winLen;
            sfb_ = 0;
            return *this;
        }

      private:
        const BandWalk& walk_;
        int group_;
        int sfb_ = 0;
        int groupStart_ = 0;
    };

    Iterator begin() const { return Iterator(*this); }
    End end() const { return {}; }

  private:
    BandArgs args_;
    const int16_t* offset_;
};

}  // namespace zetac::aac
