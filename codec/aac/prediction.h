// The two kinds of prediction from frame to frame, as a decoder of one channel needs them.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <memory>

#include "aac/block.h"
#include "base/pcm.h"

namespace zetac::codec {

/** Limit of Main prediction in bands (ISO/IEC 14496-3, 4.6.6).
 *  @param samplingFrequencyIndex  0..11 */
int predictionBands(int samplingFrequencyIndex);

inline constexpr int kPredictedLinesMax = 672;

/** Prediction of the Main profile: line by line in the spectrum. The predictors keep 8 bits of
 *  mantissa, and what is lost in an input may tip such a value over; where the signal is tonal this
 *  lasts. So they are fed from the quantised values in single precision, beside the fixed-point
 *  spectrum, which has this one's lines in the end. */
class MainPrediction {
  public:
    /** @param samplingFrequencyIndex  0..11 */
    explicit MainPrediction(int samplingFrequencyIndex);

    /** First step of a frame: dequantises for itself. The spectrum is still the reader's. */
    void dequantise(const ChannelData& channel);
    /** Second step, in a pair with a common window. */
    static void matrixStereo(const ZetAACChanPairElt& pair, const ChannelData& left,
                             const ChannelData& right, MainPrediction& leftPrediction,
                             MainPrediction& rightPrediction);
    /** Last step: predicts and writes to the spectrum, before noise, intensity and TNS. Every frame
     *  of the channel must come here, predicted or not. */
    void apply(ChannelData& channel);
    /** For a frame whose spectrum is not known. */
    void reset() { zetsFDPReset_32f(state_.get()); }

    size_t allocatedBytes() const;

  private:
    struct Free {
        void operator()(ZetsFDPState_32f* state) const { zetsFDPFree_32f(state); }
    };
    void applyToLong(ChannelData& channel);
    int lines() const { return bandOffset_[bands_]; }

    alignas(64) Zet32f lines_[kPredictedLinesMax] = {};
    const int* bandOffset_;
    int bands_;
    std::unique_ptr<ZetsFDPState_32f, Free> state_;
};

/** Long-term prediction, in time. Its history is the state of the filter bank too. */
class LongTermPrediction {
  public:
    /** Adds what the frame predicts to its spectrum: behind M/S, before noise, intensity and TNS.
     *  @param previousShape  window shape of the frame before */
    Fault apply(ChannelData& channel, int previousShape) const;

    /** Runs the filter bank. The spectrum is destroyed.
     *  @param pcm  out: 1024 samples */
    void synthesise(ChannelData& channel, int previousShape, const PcmPlane& pcm);

  private:
    alignas(64) Zet32s history_[ZETAC_AAC_LTP_HISTORY_LEN] = {};
};

}  // namespace zetac::codec
