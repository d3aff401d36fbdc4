// The driver of psychoacoustic model two.
#include "mp3enc/psycho.h"

#include <algorithm>

#include "core/checks.h"
#include "mp3enc/psycho_kernels.h"
#include "tables/mp3_psy_windows.h"

namespace zetac::mp3enc {
namespace {

constexpr int kShortOffset = 256;
constexpr int kShortHop = 128;
constexpr int kModeJointStereo = 1;
constexpr int kModeSingleChannel = 3;

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
    kernels.ownsCalUnpredictMeasureCwAbove06_Psy_MP3(spectra.shortLines[channel], state,
                                                     unpredictability + ZETAC_MP3_PSY_LONG_LINES);
}

// The ratios that someone can see. Of the last granule the state keeps all; one before it is
// delivered by this call, in long blocks unless its type is short already, in short blocks unless
// it is normal: a stop may still become short.
RatiosWanted wantedRatios(const PsyContext& context, bool isLast) {
    RatiosWanted wanted = {isLast, isLast};
    for (int channel = 0; channel < context.channels; ++channel) {
        const Zet32s type = context.state.channel[channel].block_type;
        wanted.longBands |= type != kShort;
        wanted.shortBands |= type != kNormal;
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
        std::copy_n(from.ratioLong, 36, result.ratios[channel].ratioLong);
        std::copy_n(from.ratioShort, 36, result.ratios[channel].ratioShort);
    }
}
void keepPending(const GranuleResult& result, int channels, ZetMP3PsyState& state) {
    for (int channel = 0; channel < channels; ++channel) {
        ZetMP3PsyChannelState& to = state.channel[channel];
        to.pe = result.pe[channel];
        to.block_type = state.channel[channel % 2].block_type;
        std::copy_n(result.ratios[channel].ratioLong, 36, to.ratioLong);
        std::copy_n(result.ratios[channel].ratioShort, 36, to.ratioShort);
    }
}

void deliver(const GranuleResult& result, int analysed, Zet32s blockType, ZetMP3PsyOutput& output) {
    const BandRatios& ratios = result.ratios[analysed];
    std::copy_n(blockType == kShort ? ratios.ratioShort : ratios.ratioLong, 36, output.ratio);
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
        if (sideInfo[2 * granule].block_type == kShort)
            std::fill_n(bounds, kWindows, pIsSfbBoundTableShort[row]);
        else
            bounds[0] = pIsSfbBoundTableLong[row];
    }
}

Workspace& workspaceIn(Zet8u* buffer) {
    const auto address = reinterpret_cast<uintptr_t>(buffer);
    return *reinterpret_cast<Workspace*>(buffer + (-address & 7));
}

void analyseFrame(const Zet16s* src, ZetMP3PsyOutput* output, Zet32s* isSfbBound,
                  ZetMP3GranuleSideInfo* sideInfo, ZetMP3Header& header, ZetMP3PsyState& state,
                  Zet8u* buffer) {
    const int rate = core::inRange(header.sampling_frequency, 0, 2) ? header.sampling_frequency : 0;
    const int channels = header.mode == kModeSingleChannel ? 1 : 2;
    const int granules = header.ID == 1 ? 2 : 1;
    const PsyContext context = {
        .tables = *tables::_zet_pPsyTables_MP3[rate],
        .kernels = kPsyKernels[static_cast<unsigned>(core::currentLevel())],
        .state = state,
        .work = workspaceIn(buffer),
        .channels = channels,
        .analysisChannels = header.mode == kModeJointStereo ? kAnalysisChannels : channels};

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
                sideInfo[record].block_type, output[record]);
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
}  // namespace zetac::mp3enc

using zetac::core::allSet;

ZetStatus zetsPsychoacousticModelTwo_MP3_16s(const Zet16s* pSrc, ZetMP3PsyOutput* pOutput,
                                             Zet32s* pIsSfbBound, ZetMP3GranuleSideInfo* pSideInfo,
                                             ZetMP3Header* pHeader, ZetMP3PsyState* pState,
                                             void* /*pReserved*/, Zet8u* pBuffer) {
    ZETAC_REQUIRE(allSet(pSrc, pHeader, pSideInfo, pOutput), zetStsNullPointer);
    ZETAC_REQUIRE(allSet(pState, pBuffer), zetStsNullPointer);
    ZETAC_REQUIRE(allSet(pIsSfbBound), zetStsNullPointer);

    zetac::mp3enc::analyseFrame(pSrc, pOutput, pIsSfbBound, pSideInfo, *pHeader, *pState, pBuffer);
    return zetStsOk;
}
