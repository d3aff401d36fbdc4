// individual_channel_stream() (ISO/IEC 13818-7, 8.3; 14496-3, 4.4.2.7) in its three forms.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/ics_info.h"
#include "aac/individual_channel_stream.h"
#include "aac/tns_data.h"
#include "aac/window_lengths.h"
#include "tables/aac/swb_offset.h"

namespace zetac::aac {
namespace {

// Where a channel's data go.
struct ChannelOutput {
    Zet16s* scaleFactor;
    Zet32s* spectrum;
    Zet8u* sfbCb;
    Zet8s* tnsCoef;
};

BandLayout makeLayout(int windowSequence, int maxSfb, int numGroups, const Zet32s* groupLength,
                      int samplingFreqIndex) {
    if (windowSequence == zetAacEightShort)
        return {true,
                kShortLen,
                kShortWindows,
                tables::_pAACNumSwbTableShort[samplingFreqIndex],
                tables::_pAACSwbOffsetTableShort[samplingFreqIndex],
                maxSfb,
                numGroups,
                groupLength};
    return {false,
            kLongLen,
            1,
            tables::_pAACNumSwbTableLong[samplingFreqIndex],
            tables::_pAACSwbOffsetTableLong[samplingFreqIndex],
            maxSfb,
            numGroups,
            groupLength};
}

BandLayout makeLayout(const ZetAACIcsInfo& ics, int samplingFreqIndex) {
    return makeLayout(ics.window_sequence, ics.max_sfb, ics.num_window_groups,
                      ics.window_group_length, samplingFreqIndex);
}

void publish(const BandLayout& layout, ZetAACChanInfo& info) {
    info.window_length = layout.windowLength;
    info.num_windows = layout.numWindows;
    info.num_swb = layout.numSwb;
}

// Groups that come from the caller and not from this stream might not fit the window sequence;
// this keeps every later stage inside the caller's arrays.
bool groupsFit(const BandLayout& layout) {
    if (!core::inRange(layout.numGroups, 0, ZETAC_AAC_GROUPS_MAX)) return false;
    int windows = 0;
    for (int g = 0; g < layout.numGroups; ++g) {
        if (!core::inRange(layout.groupLength[g], 0, layout.numWindows)) return false;
        windows += layout.groupLength[g];
    }
    return windows <= layout.numWindows &&
           layout.numGroups * layout.maxSfb <= ZETAC_AAC_GROUP_BANDS_MAX;
}

ZetStatus readSectionsAndScaleFactors(BitReader& stream, const BandLayout& layout,
                                      ScaleFactorForm form, ZetAACChanInfo& info,
                                      const ChannelOutput& out) {
    publish(layout, info);
    if (!groupsFit(layout)) return zetStsAacSectDataErr;
    const ZetStatus status = ownsDecodeSectData_AAC(stream, layout, info, out.sfbCb);
    if (status != zetStsOk) return status;
    return readScaleFactorData(stream, layout, info, form, out.scaleFactor);
}

ZetStatus readOptionalPulses(BitReader& stream, const BandLayout& layout, ZetAACChanInfo& info,
                             PulseData& pulses) {
    info.pulse_data_present = ownsGetBits_AAC(stream, 1);
    if (!info.pulse_data_present) return zetStsOk;
    if (layout.isShort) return zetStsAacPulseStartSfbErr;
    return readPulseData(stream, layout, pulses);
}

ZetStatus readOptionalTns(BitReader& stream, bool isShort, ZetAACChanInfo& info, Zet8s* coefs) {
    for (Zet32s& filters : info.tns.n_filt) filters = 0;
    info.tns_data_present = ownsGetBits_AAC(stream, 1);
    return info.tns_data_present ? readTnsData(stream, isShort, info.tns, coefs) : zetStsOk;
}

ZetStatus rejectGainControl(BitReader& stream, ZetAACChanInfo& info) {
    info.gain_control_data_present = ownsGetBits_AAC(stream, 1);
    return info.gain_control_data_present ? zetStsAacGainControlErr : zetStsOk;
}

// Pulse, TNS and gain-control data.
ZetStatus readTools(BitReader& stream, const BandLayout& layout, ZetAACChanInfo& info,
                    Zet8s* tnsCoef, PulseData& pulses) {
    ZetStatus status = readOptionalPulses(stream, layout, info, pulses);
    if (status == zetStsOk) status = readOptionalTns(stream, layout.isShort, info, tnsCoef);
    if (status == zetStsOk) status = rejectGainControl(stream, info);
    return status;
}

// Everything behind the stream information, in a channel that has all tools in its own stream.
ZetStatus readChannel(BitReader& stream, const BandLayout& layout, ScaleFactorForm form,
                      ZetAACChanInfo& info, const ChannelOutput& out) {
    PulseData pulses = {};
    ZetStatus status = readSectionsAndScaleFactors(stream, layout, form, info, out);
    if (status == zetStsOk) status = readTools(stream, layout, info, out.tnsCoef, pulses);
    if (status == zetStsOk) status = readSpectralData(stream, layout, info, out.spectrum);
    if (status == zetStsOk) status = addPulses(pulses, layout, out.spectrum);
    return status;
}

// The same in a scalable layer, whose header has the TNS data.
ZetStatus readScalableChannel(BitReader& stream, const BandLayout& layout, ScaleFactorForm form,
                              ZetAACChanInfo& info, const ChannelOutput& out) {
    const ZetStatus status = readSectionsAndScaleFactors(stream, layout, form, info, out);
    return status == zetStsOk ? readSpectralData(stream, layout, info, out.spectrum) : status;
}

ZetStatus decodeLowComplexity(BitReader& stream, bool isCommonWindow, ZetAACChanInfo& info,
                              const ChannelOutput& out) {
    ZetAACIcsInfo& ics = *info.pIcsInfo;
    info.global_gain = ownsGetBits_AAC(stream, 8);
    if (!isCommonWindow) {
        const ZetStatus status = readIcsInfo(stream, ics, 0);
        if (status != zetStsOk) return status;
    }
    const BandLayout layout = makeLayout(ics, info.sampling_frequency_index);
    if (!core::inRange(layout.maxSfb, 0, layout.numSwb)) {
        publish(layout, info);
        return zetStsAacMaxSfbErr;
    }
    return readChannel(stream, layout, ScaleFactorForm::kLowComplexity, info, out);
}

// The arguments of the MPEG-4 form.
struct Mp4Context {
    int windowSequence;
    int maxSfb;
    bool isCommonWindow;
    bool isScalable;
    int audioObjectType;
    ScaleFactorForm form;
};

ZetStatus decodeMp4(BitReader& stream, const Mp4Context& context, ZetAACMainHeader& header,
                    ZetAACChanInfo& info, const ChannelOutput& out) {
    ZetAACIcsInfo& ics = *info.pIcsInfo;
    info.global_gain = ownsGetBits_AAC(stream, 8);
    if (context.isScalable) {
        const BandLayout layout =
            makeLayout(context.windowSequence, context.maxSfb, header.num_window_groups,
                       header.window_group_length, info.sampling_frequency_index);
        return readScalableChannel(stream, layout, context.form, info, out);
    }
    if (!context.isCommonWindow) {
        header.ltp[0].ltp_data_present = 0;
        const ZetStatus status =
            readIcsInfoMp4(stream, ics, info.predSfbMax, context.audioObjectType, header.ltp, 1);
        if (status != zetStsOk) return status;
    }
    if (!core::inRange(ics.max_sfb, 0, ZETAC_AAC_SFB_MAX)) return zetStsAacMaxSfbErr;
    return readChannel(stream, makeLayout(ics, info.sampling_frequency_index), context.form, info,
                       out);
}

// The checks and the call that the two MPEG-4 decoders share.
ZetStatus checkAndDecodeMp4(Zet8u** ppBitStream, int* pOffset, ZetAACMainHeader* pMainHeader,
                            const ChannelOutput& out, ZetAACChanInfo* pChanInfo, int windowSequence,
                            int maxSfb, int commonWin, int scalableFlag, int audioObjectType,
                            ScaleFactorForm form) {
    ZETAC_REQUIRE(isSet(ppBitStream) &&
                      core::allSet(pOffset, pMainHeader, out.scaleFactor, out.spectrum, out.sfbCb,
                                   out.tnsCoef, pChanInfo) &&
                      pChanInfo->pIcsInfo,
                  zetStsNullPointer);
    ZETAC_REQUIRE(isBitOffset(pOffset), zetStsAacBitOffsetErr);
    ZETAC_REQUIRE(core::inRange(commonWin, 0, 1), zetStsAacCommonWinErr);
    ZETAC_REQUIRE(core::inRange(windowSequence, 0, 3), zetStsAacWinSeqErr);
    ZETAC_REQUIRE(core::inRange(scalableFlag, 0, 1), zetStsAacScalableFlagErr);
    ZETAC_REQUIRE(core::inRange(audioObjectType, 0, 16), zetStsAacAotErr);
    ZETAC_REQUIRE(core::inRange(maxSfb, 0, ZETAC_AAC_SFB_MAX), zetStsAacMaxSfbErr);
    ZETAC_REQUIRE(core::inRange(pChanInfo->sampling_frequency_index, 0, 11),
                  zetStsAacSmpRateIdxErr);
    const Mp4Context context = {windowSequence,    maxSfb,          commonWin == 1,
                                scalableFlag == 1, audioObjectType, form};
    BitReader stream(ppBitStream, pOffset);
    const ZetStatus status = decodeMp4(stream, context, *pMainHeader, *pChanInfo, out);
    stream.store(ppBitStream, pOffset);
    return status;
}

}  // namespace
}  // namespace zetac::aac

using namespace zetac;

ZetStatus zetsNoiselessDecoder_LC_AAC(Zet8u** ppBitStream, int* pOffset, int commonWin,
                                      ZetAACChanInfo* pChanInfo, Zet16s* pScaleFactor,
                                      Zet32s* pSpectrum, Zet8u* pSfbCb, Zet8s* pTnsCoef) {
    ZETAC_REQUIRE(aac::isSet(ppBitStream) &&
                      core::allSet(pOffset, pChanInfo, pScaleFactor, pSpectrum, pSfbCb, pTnsCoef) &&
                      pChanInfo->pIcsInfo,
                  zetStsNullPointer);
    ZETAC_REQUIRE(aac::isBitOffset(pOffset), zetStsAacBitOffsetErr);
    ZETAC_REQUIRE(core::inRange(commonWin, 0, 1), zetStsAacCommonWinErr);
    ZETAC_REQUIRE(core::inRange(pChanInfo->sampling_frequency_index, 0, 11),
                  zetStsAacSmpRateIdxErr);
    ZETAC_REQUIRE(pChanInfo->predSfbMax == 0, zetStsAacPredSfbMaxErr);
    aac::BitReader stream(ppBitStream, pOffset);
    const ZetStatus status = aac::decodeLowComplexity(stream, commonWin == 1, *pChanInfo,
                                                      {pScaleFactor, pSpectrum, pSfbCb, pTnsCoef});
    stream.store(ppBitStream, pOffset);
    return status;
}

ZetStatus zetsNoiselessDecode_AAC(Zet8u** ppBitStream, int* pOffset, ZetAACMainHeader* pMainHeader,
                                  Zet16s* pScaleFactor, Zet32s* pSpectrum, Zet8u* pSfbCb,
                                  Zet8s* pTnsCoef, ZetAACChanInfo* pChanInfo, int windowSequence,
                                  int maxSfb, int commonWin, int scalableFlag,
                                  int audioObjectType) {
    return aac::checkAndDecodeMp4(ppBitStream, pOffset, pMainHeader,
                                  {pScaleFactor, pSpectrum, pSfbCb, pTnsCoef}, pChanInfo,
                                  windowSequence, maxSfb, commonWin, scalableFlag, audioObjectType,
                                  aac::ScaleFactorForm::kSharedNoise);
}

ZetStatus zetsNoiselessDecode_MP4_AAC(Zet8u** ppBitStream, int* pOffset,
                                      ZetAACMainHeader* pMainHeader, Zet16s* pScaleFactor,
                                      Zet32s* pSpectrum, Zet8u* pSfbCb, Zet8s* pTnsCoef,
                                      ZetAACChanInfo* pChanInfo, int windowSequence, int maxSfb,
                                      int commonWin, int scalableFlag, int audioObjectType) {
    return aac::checkAndDecodeMp4(ppBitStream, pOffset, pMainHeader,
                                  {pScaleFactor, pSpectrum, pSfbCb, pTnsCoef}, pChanInfo,
                                  windowSequence, maxSfb, commonWin, scalableFlag, audioObjectType,
                                  aac::ScaleFactorForm::kSeparateNoise);
}
