// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/prediction.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace zetac::codec {
namespace {

// Scalefactor bands of long windows (ISO/IEC 14496-3, 4.5.4) up to the limit of prediction.
constexpr int kBands96k[] = {0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  44,
                             48,  52,  56,  64,  72,  80,  88,  96,  108, 120, 132, 144,
                             156, 172, 188, 212, 240, 276, 320, 384, 448, 512};
constexpr int kBands64k[] = {0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  44,  48,
                             52,  56,  64,  72,  80,  88,  100, 112, 124, 140, 156, 172, 192,
                             216, 240, 268, 304, 344, 384, 424, 464, 504, 544, 584, 624, 664};
constexpr int kBands48k[] = {0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  48,  56,  64,
                             72,  80,  88,  96,  108, 120, 132, 144, 160, 176, 196, 216, 240, 264,
                             292, 320, 352, 384, 416, 448, 480, 512, 544, 576, 608, 640, 672};
constexpr int kBands24k[] = {0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  44,  52,  60,
                             68,  76,  84,  92,  100, 108, 116, 124, 136, 148, 160, 172, 188, 204,
                             220, 240, 260, 284, 308, 336, 364, 396, 432, 468, 508, 552, 600, 652};
constexpr int kBands16k[] = {0,   8,   16,  24,  32,  40,  48,  56,  64,  72,  80,  88,  100,
                             112, 124, 136, 148, 160, 172, 184, 196, 212, 228, 244, 260, 280,
                             300, 320, 344, 368, 396, 424, 456, 492, 532, 572, 616, 664};
constexpr int kBands8k[] = {0,   12,  24,  36,  48,  60,  72,  84,  96,  108, 120, 132,
                            144, 156, 172, 188, 204, 220, 236, 252, 268, 288, 308, 328,
                            348, 372, 396, 420, 448, 476, 508, 544, 580, 620, 664};

struct PredictedBands {
    const int* offset;
    int count;

    template <int entries>
    constexpr PredictedBands(const int (&table)[entries]) : offset(table), count(entries - 1) {}
};

/** By sampling_frequency_index; 32 kHz differs from 44.1 and 48 kHz in higher bands only. */
constexpr PredictedBands kPredictedBands[] = {kBands96k, kBands96k, kBands64k, kBands48k,
                                              kBands48k, kBands48k, kBands24k, kBands24k,
                                              kBands16k, kBands16k, kBands16k, kBands8k};

constexpr int kResetGroups = 30;

/** Limited to the largest single below 2^31: converting more has no defined result. A damaged
 *  stream may drive a predictor to what is no number. */
Zet32s toQ3(Zet32f value) {
    if (std::isnan(value)) return 0;
    return static_cast<Zet32s>(std::lrint(std::clamp(value * 8, -2147483520.f, 2147483520.f)));
}

}  // namespace

int predictionBands(int samplingFrequencyIndex) {
    return kPredictedBands[samplingFrequencyIndex].count;
}

// --- Main ---------------------------------------------------------------------------------------

MainPrediction::MainPrediction(int samplingFrequencyIndex)
    : bandOffset_(kPredictedBands[samplingFrequencyIndex].offset),
      bands_(kPredictedBands[samplingFrequencyIndex].count) {
    ZetsFDPState_32f* state = nullptr;
    if (zetsFDPInitAlloc_32f(&state, lines()) != zetStsOk) throw std::bad_alloc();
    state_.reset(state);
}

size_t MainPrediction::allocatedBytes() const {
    int size = 0;
    zetsFDPGetSize_32f(lines(), &size);
    return sizeof *this + static_cast<size_t>(size);
}

/** Without a codebook, or with one that stands for noise or intensity, a band has zeros. */
void MainPrediction::dequantise(const ChannelData& channel) {
    constexpr int kUnityGain = 100;
    constexpr int kQuantisedMax = 8191;
    const ZetAACIcsInfo& ics = channel.ics();
    std::fill_n(lines_, kPredictedLinesMax, 0.f);
    const int bands = std::min(bands_, ics.max_sfb);
    if (ics.window_sequence == zetAacEightShort || bands == 0) return;
    alignas(64) Zet16s quantised[kPredictedLinesMax];
    alignas(64) Zet32f gain[ZETAC_AAC_SFB_MAX];
    const int count = bandOffset_[bands];
    for (int k = 0; k < count; ++k) {
        quantised[k] =
            static_cast<Zet16s>(std::clamp(channel.spectrum[k], -kQuantisedMax, kQuantisedMax));
    }
    zetsPow43_16s32f(quantised, lines_, count);
    zetsCalcSF_16s32f(channel.scaleFactor, kUnityGain, gain, bands);
    zetsScale_32f_I(lines_, gain, bandOffset_, bands);
}

void MainPrediction::matrixStereo(const ZetAACChanPairElt& pair, const ChannelData& left,
                                  const ChannelData& right, MainPrediction& leftPrediction,
                                  MainPrediction& rightPrediction) {
    const ZetAACIcsInfo& ics = left.ics();
    if (pair.ms_mask_present == 0 || ics.window_sequence == zetAacEightShort) return;
    const int* offset = leftPrediction.bandOffset_;
    for (int sfb = 0; sfb < std::min(leftPrediction.bands_, ics.max_sfb); ++sfb) {
        const bool isSelected = pair.ms_mask_present == 2 || pair.ms_used[0][sfb];
        const bool isCoded =
            left.codebook[sfb] < zetAacNoiseCb && right.codebook[sfb] < zetAacNoiseCb;
        for (int k = offset[sfb]; isSelected && isCoded && k < offset[sfb + 1]; ++k) {
            const Zet32f middle = leftPrediction.lines_[k];
            const Zet32f side = rightPrediction.lines_[k];
            leftPrediction.lines_[k] = middle + side;
            rightPrediction.lines_[k] = middle - side;
        }
    }
}

void MainPrediction::apply(ChannelData& channel) {
    if (channel.ics().window_sequence == zetAacEightShort) {
        reset();
    } else {
        applyToLong(channel);
    }
}

/** Predictors run in all bands below the limit, whether they are used or not. Bands of noise have
 *  no prediction and leave their predictors reset; a reset group is reset behind the frame. */
void MainPrediction::applyToLong(ChannelData& channel) {
    const ZetAACIcsInfo& ics = channel.ics();
    Zet8u isUsed[ZETAC_AAC_SFB_MAX] = {};
    Zet8u isNoise[ZETAC_AAC_SFB_MAX] = {};
    for (int sfb = 0; sfb < std::min(bands_, ics.max_sfb); ++sfb) {
        isNoise[sfb] = channel.codebook[sfb] == zetAacNoiseCb;
        isUsed[sfb] = ics.predictor_data_present && ics.prediction_used[sfb] && !isNoise[sfb];
    }

    zetsFDPInv_32f_I(lines_, bandOffset_, bands_, isUsed, state_.get());
    for (int k = 0; k < lines(); ++k) channel.spectrum[k] = toQ3(lines_[k]);

    zetsFDPResetSfb_32f(bandOffset_, bands_, isNoise, state_.get());
    if (ics.predictor_data_present && ics.predictor_reset) {
        const int group = ics.predictor_reset_group_number;
        if (group >= 1 && group <= kResetGroups) {
            zetsFDPResetGroup_32f(kResetGroups, group - 1, state_.get());
        }
    }
}

// --- Long-term ----------------------------------------------------------------------------------

Fault LongTermPrediction::apply(ChannelData& channel, int previousShape) const {
    const ZetAACIcsInfo& ics = channel.ics();
    ZetAACLtpInfo& ltp = channel.ltp;
    if (!ltp.ltp_data_present || ics.window_sequence == zetAacEightShort) return Fault::kNone;
    for (int sfb = 0; sfb < std::min(ics.max_sfb, ZETAC_AAC_LTP_SFB_MAX); ++sfb) {
        if (channel.codebook[sfb] == zetAacNoiseCb) ltp.ltp_long_used[sfb] = 0;
    }

    alignas(64) Zet32s predicted[2 * ZETAC_AAC_FRAME_LEN];
    alignas(64) Zet32s work[2 * ZETAC_AAC_FRAME_LEN];
    Zet32s reserved = 0;
    const int rate = channel.info.sampling_frequency_index;
    zetsLongTermPredict_AAC_32s(history_, predicted, &ltp);
    zetsMDCTFwd_AAC_32s_I(predicted, &reserved, ics.window_sequence, ics.window_shape,
                          previousShape, work);
    if (channel.info.tns_data_present) {
        const Fault fault =
            faultOf(zetsEncodeTNS_AAC_32s_I(predicted, &channel.info.tns, channel.tnsCoef,
                                            ics.max_sfb, rate, channel.info.window_length, 1));
        if (failed(fault)) return fault;
    }
    return faultOf(zetsLongTermReconstruct_AAC_32s(predicted, channel.spectrum, &ltp,
                                                   ics.window_sequence, rate));
}

void LongTermPrediction::synthesise(ChannelData& channel, int previousShape, const PcmPlane& pcm) {
    const ZetAACIcsInfo& ics = channel.ics();
    zetsLtpUpdate_AAC_32s(channel.spectrum, history_, ics.window_sequence, ics.window_shape,
                          previousShape);
    const Zet32s* samples = history_ + ZETAC_AAC_FRAME_LEN;
    if (pcm.format() == SampleFormat::kS16) {
        zetsConvert_32s16s_Sfs(samples, pcm.samples16(), ZETAC_AAC_FRAME_LEN,
                               ZETAC_AAC_LTP_HISTORY_BITS);
    } else {
        pcm.put(0, samples, ZETAC_AAC_LTP_HISTORY_BITS, ZETAC_AAC_FRAME_LEN);
    }
}

}  // namespace zetac::codec
