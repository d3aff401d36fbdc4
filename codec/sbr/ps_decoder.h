// Parametric stereo (ISO/IEC 14496-3, 8.6.4): makes the subbands of two channels from those of one.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr/banks.h"
#include "sbr/ps_decorrelator.h"
#include "sbr/ps_hybrid.h"
#include "sbr/ps_mixer.h"

namespace zetac::codec {

class PsDecoder {
  public:
    /** Decodes a frame.
     *  @param low   the core
     *  @param high  the high band */
    void decode(const PsFrame& frame, const LowBand& low, const OutputBand& high,
                const SbrSplit& split);

    /** Takes note of a frame that is still mono: both channels are the signal itself. */
    void listen(bool is34, const LowBand& low, const OutputBand& high, const SbrSplit& split);

    SubbandRows left() const { return SubbandRows(left_.whole, kPsLongDelay, columns_); }
    SubbandRows right() const { return SubbandRows(right_.whole, kPsLongDelay, columns_); }

  private:
    const PsBands& bands() const { return is34_ ? kPsBands34 : kPsBands20; }
    void join(const LowBand& low, const OutputBand& high, const SbrSplit& split);
    void keepHistory();
    void forgetHistory();

    PsHybridAnalysis analysis_;
    PsDecorrelator decorrelator_;
    PsMixer mixer_;
    PsSignal left_ = {};   // before mixing: the signal, behind rows of the frame before
    PsSignal right_ = {};  // before mixing: the decorrelated signal
    bool is34_ = false;
    int end_ = kLowBands;      // of the subbands in the frame before
    int columns_ = kLowBands;  // of the QMF subbands that are worked on
};

}  // namespace zetac::codec
