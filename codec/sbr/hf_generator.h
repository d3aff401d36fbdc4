// HF generator: copies low subbands upwards and flattens them (ISO/IEC 14496-3, 4.6.18.6).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr/data.h"
#include "sbr/subbands.h"

namespace zetac::codec {

/** Of one channel. */
class SbrHfGenerator {
  public:
    /** Takes over the inverse filtering of a frame. Call once a frame, first.
     *  @return the low subbands whose prediction it needs, a bit for each */
    uint32_t begin(const SbrFrequencyTables& tables, const SbrChannel& channel);

    /** Makes the high band of the frame's envelopes.
     *  @param high  out: rows of the slots from the first to the last border; columns up to the
     *               padded count */
    void generate(const LowBand& low, const LowPrediction& prediction,
                  const SbrFrequencyTables& tables, const SbrChannel& channel, HighBand& high);

  private:
    /** The predictor of each high subband: those of its source, damped by its chirp factor. */
    struct Filter {
        float a0Re[kSbrBandsMax], a0Im[kSbrBandsMax], a1Re[kSbrBandsMax], a1Im[kSbrBandsMax];
    };

    void makeFilter(const LowPrediction& prediction, const SbrFrequencyTables& tables,
                    Filter& filter) const;
    static void copy(const LowBand& low, int slot, const SbrPatch& patch, int first,
                     HighBand& high);
    static void filter(const LowBand& low, int slot, const SbrPatch& patch, int first,
                       const Filter& filter, HighBand& high);

    uint8_t mode_[kSbrNoiseBandsMax] = {};  // bs_invf_mode of the frame before
    float chirp_[kSbrNoiseBandsMax] = {};   // bwArray
    bool isFlattened_ = false;              // somewhere in this frame
};

}  // namespace zetac::codec
