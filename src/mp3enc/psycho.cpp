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
    BandRatios ratios[kAnalysisChannels];
};

// Spectra and unpredictability of one channel; src is its first sample.
void analyseChannel(const PsyContext& context, const Zet16s* src, int channel) {
    const PsyKernels& kernels = context.kernels;
    const int stride = context.channels;
    Spectra& spectra = context.work.spectra;
    Zet16s block[kLongBlock];
    kernels.applyWindow(src, stride, tables::pHannWinLong_MP3, block, kLongBlock);
    kernels.ownsFFTFwd1024_Audio_16s32sc(block, spectra.longLines[channel]);
    for (int window = 0; window < kWindows; ++window) {
        const Zet16s* start = src + (kShortOffset + kShortHop * window) * stride;
        kernels.applyWindow(start, stride, tables::pHannWinShort_MP3, block, kShortBlock);
        kernels.ownsFFTFwd256_Audio_16s32sc(block, spectra.shortLines[channel][window]);
    }
    ZetMP3PsyChannelState& state = context.state.channel[channel];
    Zet32s* unpredictability = spectra.unpredictability[channel];
    ownsCalUnpredictMeasureCw06_Psy_MP3(spectra.longLines[channel], state, unpredictability);
    ownsCalUnpredictMeasureCwAbove06_Psy_MP3(spectra.shortLines[channel], state,
                                             unpredictability + ZETAC_MP3_PSY_LONG_LINES);
}

void analyseGranule(const PsyContext& context, const Zet16s* src, GranuleResult& result, Zet32s* pe,
                    ZetMP3GranuleSideInfo* sideInfo) {
    for (int channel = 0; channel < context.channels; ++channel) {
        analyseChannel(context, src + channel, channel);
    }
    context.kernels.ownsCalEnergyUnpredict_Psy_MP3(context);
    context.kernels.ownsCalEnergyShort_Psy_MP3(context);
    ownsCalSpreadedEnergyThreshold_Psy_MP3(context);
    ownsCalSpreadedEnergyThresholdShort_Psy_MP3(context);
    for (int channel = 0; channel < context.analysisChannels; ++channel) {
        pe[channel] = ownsCalPerceptualEntropy_Psy_MP3(context, channel);
        ownsConvertThresholdToSfb_Psy_MP3(context, channel, result.ratios[channel]);
    }
    ownsSwitchBlockType_Psy_MP3(context, pe, sideInfo);
}

void deliver(const Zet32s* ratioLong, const Zet32s* ratioShort, Zet32s pe, Zet32s blockType,
             ZetMP3PsyOutput& output) {
    std::copy_n(blockType == kShort ? ratioShort : ratioLong, 36, output.ratio);
    output.pe = pe;
}

void keep(const BandRatios& ratios, Zet32s pe, Zet32s blockType, ZetMP3PsyChannelState& state) {
    std::copy_n(ratios.ratioLong, 36, state.ratioLong);
    std::copy_n(ratios.ratioShort, 36, state.ratioShort);
    state.pe = pe;
    state.block_type = blockType;
}

// Intensity stereo at low bit rates: the first band of each granule slot, by (bitrate_index - 6) *
// 3
// + sampling_frequency.
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

    // Row 0: the pending granule; row g + 1: granule g.
    Zet32s pe[3][kAnalysisChannels];
    GranuleResult results[2];
    for (int channel = 0; channel < context.analysisChannels; ++channel) {
        pe[0][channel] = state.channel[channel].pe;
    }
    for (int granule = 0; granule < granules; ++granule) {
        analyseGranule(context, src + granule * ZETAC_MP3_GRANULE_LEN * channels, results[granule],
                       pe[granule + 1], sideInfo + granule * channels);
    }

    const int midSide = ownsCalStereoMode_Psy_MP3(context, pe, sideInfo, granules);
    for (int granule = 0; granule < granules; ++granule) {
        for (int channel = 0; channel < channels; ++channel) {
            const int analysed = channel + 2 * midSide;
            const int record = granule * channels + channel;
            const Zet32s blockType = sideInfo[record].block_type;
            const ZetMP3PsyChannelState& pending = state.channel[analysed];
            const BandRatios& first = results[0].ratios[analysed];
            deliver(granule == 0 ? pending.ratioLong : first.ratioLong,
                    granule == 0 ? pending.ratioShort : first.ratioShort, pe[granule][analysed],
                    blockType, output[record]);
        }
    }
    for (int channel = 0; channel < context.analysisChannels; ++channel) {
        keep(results[granules - 1].ratios[channel], pe[granules][channel],
             state.channel[channel % 2].block_type, state.channel[channel]);
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
