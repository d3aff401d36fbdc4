// The hybrid filter bank of parametric stereo (ISO/IEC 14496-3, 8.6.4.3): splits the lowest QMF
// subbands into parts and adds them up again.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr/ps_bands.h"

namespace zetac::codec {

class PsHybridAnalysis {
  public:
    /** Splits the subbands of the core over a frame. The filters reach six slots ahead, which are
     *  there already, because the core waits so long for the high band.
     *  @param hybrid  out: up to the padded number of subbands */
    void split(const LowBand& low, bool is34, PsHybridBand& hybrid);

  private:
    static constexpr int kHistory = 12;

    void split20(int slot, float* re, float* im) const;
    void split34(int slot, float* re, float* im) const;

    // Rows of samples by QMF subband; the filters of slot i reach from sample i to i + 12.
    float re_[kPsSplitMax][kHistory + kSbrSlots] = {};
    float im_[kPsSplitMax][kHistory + kSbrSlots] = {};
};

/** Adds the parts of each split QMF subband up. */
void joinParts(bool is34, PsSignal& signal);

}  // namespace zetac::codec
