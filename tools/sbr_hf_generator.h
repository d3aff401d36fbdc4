// HF generator: copies low subbands upwards and flattens them (ISO/IEC 14496-3, 4.6.18.6).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr_data.h"
#include "sbr_subbands.h"

namespace zetac::codec {

/** Of one channel. */
class SbrHfGenerator {
  public:
    /** Makes the high band of one frame's envelopes. Call once a frame.
     *  @param high  out: rows of the slots from the first to the last border; columns up to the
     *               padded count */
    void generate(const LowBand& low, const LowPrediction& prediction,
                  const SbrFrequencyTables& tables, const SbrChannel& channel, HighBand& high);

  private:
    /** The predictor of each high subband: those of its source, damped by its chirp factor. */
    struct Filter {
        float a0Re[kSbrBandsMax], a0Im[kSbrBandsMax], a1Re[kSbrBandsMax], a1Im[kSbrBandsMax];
    };

    void updateChirp(const uint8_t* bs_invf_mode, int bands);
    void makeFilter(const LowPrediction& prediction, const SbrFrequencyTables& tables,
                    Filter& filter) const;

    uint8_t mode_[kSbrNoiseBandsMax] = {};  // bs_invf_mode of the frame before
    float chirp_[kSbrNoiseBandsMax] = {};   // bwArray
};

}  // namespace zetac::codec
