// The driver of psychoacoustic model two.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/psycho/model.h"

#include <algorithm>

#include "core/checks.h"
#include "core/spec.h"
#include "mp3/psycho/kernels.h"
#include "mp3/psycho/prediction_kernels.h"
#include "tables/mp3/psycho_spectrum.h"

namespace zetac::mp3 {
namespace {

constexpr int kShortOffset = 256;
constexpr int kShortHop = 128;

// Entropies and ratios of one granule, by analysis channel.
struct GranuleResult {
    Zet32s pe[kAnalysisChannels];
    BandRatios ratios[kAnalysisChannels];
};

// Spectra and unpredictability of one channel; src is its first sample.
void analyseChannel(const PsyContext& context, const Zet16s* src, int channel) {
    const PsyKernels& kernels = context.kernels;
    const int stride = context.channels;
    Spectra& spectra = context.work.spectra;
    Zet16s block[kLongBlockLen];
    kernels.applyWindow(src, stride, tables::pHannWinLong_MP3, block, kLongBlockLen);
    kernels.ownsFFTFwd1024_Audio_16s32sc(block, spectra.longLines[channel]);
    for (int window = 0; window < kWindows; ++window) {
        const Zet16s* start = src + (kShortOffset + kShortHop * window) * stride;
        kernels.applyWindow(start, stride, tables::pHannWinShort_MP3, block, kShortBlockLen);
        kernels.ownsFFTFwd256_Audio_16s32sc(block, spectra.shortLines[channel][window]);
    }
    ZetMP3PsyChannelState& state = context.state.channel[channel];
    Zet32s* unpredictability = spectra.unpredictability[channel];
    ownsCalUnpredictMeasureCw06_Psy_MP3(spectra.longLines[channel], state, unpredictability);
    context.prediction.ownsCalUnpredictMeasureCwAbove06_Psy_MP3(
        spectra.shortLines[channel], state, unpredictability + ZETAC_MP3_PSY_LONG_LINES);
}

// The ratios that are delivered or kept. Of the last granule the state keeps all; one before it is
// delivered by this call, in long blocks unless its type is short already, in short blocks unless
// it is normal: a stop may still become short.
RatiosWanted wantedRatios(const PsyContext& context, bool isLast) {
    RatiosWanted wanted = {isLast, isLast};
    for (int channel = 0; channel < context.channels; ++channel) {
        const BlockType type = typeOf(context.state.channel[channel]);
        wanted.longBands |= type != BlockType::kShort;
        wanted.shortBands |= type != BlockType::kNormal;
    }
    return wanted;
}

void analyseGranule(const PsyContext& context, const Zet16s* src, bool isLast,
                    GranuleResult& result, ZetMP3GranuleSideInfo* sideInfo) {
    for (int channel = 0; channel < context.channels; ++channel) {
        analyseChannel(context, src + channel, channel);
    }
    context.kernels.ownsCalEnergyUnpredict_Psy_MP3(context);
    context.kernels.ownsCalEnergyShort_Psy_MP3(context);
    ownsCalSpreadedEnergyThreshold_Psy_MP3(context);
    for (int channel = 0; channel < context.analysisChannels; ++channel) {
        result.pe[channel] = ownsCalPerceptualEntropy_Psy_MP3(context, channel);
    }
    ownsSwitchBlockType_Psy_MP3(context, result.pe, sideInfo);

    const RatiosWanted wanted = wantedRatios(context, isLast);
    if (wanted.shortBands) ownsCalSpreadedEnergyThresholdShort_Psy_MP3(context);
    for (int channel = 0; channel < context.analysisChannels; ++channel) {
        ownsConvertThresholdToSfb_Psy_MP3(context, channel, wanted, result.ratios[channel]);
    }
}

// What was found in the last call.
void takePending(const ZetMP3PsyState& state, int channels, GranuleResult& result) {
    for (int channel = 0; channel < channels; ++channel) {
        const ZetMP3PsyChannelState& from = state.channel[channel];
        result.pe[channel] = from.pe;
        std::copy_n(from.ratioLong, kRatios, result.ratios[channel].ratioLong);
        std::copy_n(from.ratioShort, kRatios, result.ratios[channel].ratioShort);
    }
}
void keepPending(const GranuleResult& result, int channels, ZetMP3PsyState& state) {
    for (int channel = 0; channel < channels; ++channel) {
        ZetMP3PsyChannelState& to = state.channel[channel];
        to.pe = result.pe[channel];
        to.block_type = state.channel[channel % 2].block_type;
        std::copy_n(result.ratios[channel].ratioLong, kRatios, to.ratioLong);
        std::copy_n(result.ratios[channel].ratioShort, kRatios, to.ratioShort);
    }
}

void deliver(const GranuleResult& result, int analysed, bool isShort, ZetMP3PsyOutput& output) {
    const BandRatios& ratios = result.ratios[analysed];
    std::copy_n(isShort ? ratios.ratioShort : ratios.ratioLong, kRatios, output.ratio);
    output.pe = result.pe[analysed];
}

// Intensity stereo at low bit rates: the first band of each granule slot, by
// (bitrate_index - 6) * 3 + sampling_frequency.
constexpr int kIntensityFirstRate = 6;
constexpr int kIntensityLastRate = 8;
constexpr Zet32s pIsSfbBoundTableLong[9] = {13, 12, 13, 15, 15, 16, 18, 18, 18};
constexpr Zet32s pIsSfbBoundTableShort[9] = {6, 6, 7, 8, 8, 8, 10, 10, 10};

void setIntensityBounds(Zet32s* bounds, int row, const ZetMP3GranuleSideInfo* sideInfo,
                        int granules) {
    for (int granule = 0; granule < granules; ++granule, bounds += kWindows) {
        if (isShort(sideInfo[2 * granule]))
            std::fill_n(bounds, kWindows, pIsSfbBoundTableShort[row]);
        else
            bounds[0] = pIsSfbBoundTableLong[row];
    }
}

Workspace& workspaceIn(Zet8u* buffer) {
    return *reinterpret_cast<Workspace*>(core::alignUp(buffer, alignof(Workspace)));
}

void analyseFrame(const Zet16s* src, ZetMP3PsyOutput* output, Zet32s* isSfbBound,
                  ZetMP3GranuleSideInfo* sideInfo, ZetMP3Header& header, ZetMP3PsyState& state,
                  Zet8u* buffer) {
    const int rate = core::inRange(header.sampling_frequency, 0, 2) ? header.sampling_frequency : 0;
    const int channels = numChannels(header);
    const int granules = numGranules(header);
    const PsyContext context = {
        .tables = tables::_zet_pPsyTables_MP3[rate],
        .kernels = core::select(kPsyKernels),
        .prediction = core::select(kPredictionKernels),
        .state = state,
        .work = workspaceIn(buffer),
        .channels = channels,
        .analysisChannels = isMode(header, Mode::kJointStereo) ? kAnalysisChannels : channels};

    GranuleResult results[3];  // the pending granule, then those of this frame
    takePending(state, context.analysisChannels, results[0]);
    for (int granule = 0; granule < granules; ++granule) {
        analyseGranule(context, src + granule * ZETAC_MP3_GRANULE_LEN * channels,
                       granule == granules - 1, results[granule + 1],
                       sideInfo + granule * channels);
    }
    keepPending(results[granules], context.analysisChannels, state);

    int midSide = 0;
    if (context.analysisChannels == kAnalysisChannels) {
        const Zet32s* const pe[2] = {results[0].pe, results[1].pe};
        midSide = ownsCalStereoMode_Psy_MP3(pe, sideInfo, granules);
    }
    for (int record = 0; record < granules * channels; ++record) {
        deliver(results[record / channels], record % channels + 2 * midSide,
                isShort(sideInfo[record]), output[record]);
    }

    const bool intensity = channels == 2 && core::inRange(header.bitrate_index, kIntensityFirstRate,
                                                          kIntensityLastRate);
    header.mode_extension = 2 * midSide + (intensity ? 1 : 0);
    if (intensity) {
        setIntensityBounds(isSfbBound, (header.bitrate_index - kIntensityFirstRate) * 3 + rate,
                           sideInfo, granules);
    }
}

}  // namespace
}  // namespace zetac::mp3

using zetac::core::allSet;

ZetStatus zetsPsychoacousticModelTwo_MP3_16s(const Zet16s* pSrc, ZetMP3PsyOutput* pOutput,
                                             Zet32s* pIsSfbBound, ZetMP3GranuleSideInfo* pSideInfo,
                                             ZetMP3Header* pHeader, ZetMP3PsyState* pState,
                                             void* /*pReserved*/, Zet8u* pBuffer) {
    ZETAC_REQUIRE(allSet(pSrc, pHeader, pSideInfo, pOutput), zetStsNullPointer);
    ZETAC_REQUIRE(allSet(pState, pBuffer), zetStsNullPointer);
    ZETAC_REQUIRE(allSet(pIsSfbBound), zetStsNullPointer);

    zetac::mp3::analyseFrame(pSrc, pOutput, pIsSfbBound, pSideInfo, *pHeader, *pState, pBuffer);
    return zetStsOk;
}
