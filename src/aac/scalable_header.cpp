// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <cstring>

#include "aac/bit_stream.h"
#include "aac/ics_info.h"
#include "aac/ltp_data.h"
#include "aac/tns_data.h"

namespace zetac::aac {
namespace {

void readWindowInfo(BitReader& stream, ZetAACMainHeader& header) {
    header.window_sequence = ownsGetBits_AAC(stream, 2);
    header.window_shape = ownsGetBits_AAC(stream, 1);
    if (header.window_sequence == zetAacEightShort) {
        readShortWindows(stream, header);
        return;
    }
    header.max_sfb = ownsGetBits_AAC(stream, 6);
    header.num_window_groups = 1;
    std::memset(header.window_group_length, 0, sizeof header.window_group_length);
    header.window_group_length[0] = 1;
}

// The rows are walked as one array, because max_sfb of a long window reaches 63.
void readMsMask(BitReader& stream, ZetAACMainHeader& header) {
    header.ms_mask_present = ownsGetBits_AAC(stream, 2);
    Zet8u* used = &header.ms_used[0][0];
    for (int g = 0; g < header.num_window_groups; ++g, used += ZETAC_AAC_MS_ROW) {
        if (header.ms_mask_present == 1) getFlags(stream, used, 0, header.max_sfb);
        if (header.ms_mask_present == 2) std::memset(used, 1, static_cast<size_t>(header.max_sfb));
    }
}

// tns_data_present and tns_data() of one channel. An order beyond the limit stays in the record,
// where the TNS tools find it.
template <class Header>
void readTns(BitReader& stream, Header& header, int ch, bool isShort) {
    header.tns_data_present[ch] = ownsGetBits_AAC(stream, 1);
    if (header.tns_data_present[ch])
        readTnsData(stream, isShort, header.tns[ch], header.tns_coef[ch]);
}

// aac_scalable_main_header() (ISO/IEC 14496-3, 4.4.2.2).
void readMainHeader(BitReader& stream, ZetAACMainHeader& header, int numChannels) {
    readWindowInfo(stream, header);
    const bool isShort = header.window_sequence == zetAacEightShort;
    if (numChannels == 2) readMsMask(stream, header);
    for (int ch = 0; ch < numChannels; ++ch) {
        header.tns[ch] = {};
        readTns(stream, header, ch, isShort);
        header.ltp[ch] = {};
        readOptionalLtpData(stream, isShort, header.max_sfb, header.ltp[ch]);
    }
}

// What aac_scalable_extension_header() depends on besides the stream.
struct ExtensionContext {
    bool hasTns;
    bool isStereo;
    bool hasDiffControl;
    int prevMaxSfb;
    int prevMaxSfbSecond;
    bool isShort;
};

constexpr int kExtensionMaxSfb = 60;
constexpr int kExtensionShortGroups = 4;

void readExtensionMsMask(BitReader& stream, ZetAACExtHeader& header,
                         const ExtensionContext& context) {
    header.ms_mask_present = ownsGetBits_AAC(stream, 2);
    if (header.ms_mask_present != 1) return;
    const int numGroups = context.isShort ? kExtensionShortGroups : 1;
    for (int g = 0; g < numGroups; ++g)
        getFlags(stream, header.ms_used[g], context.prevMaxSfb, header.max_sfb);
}

// diff_control_data_lr(): the mono layers decide below prevMaxSfbSecond, and no flag is read again
// below prevMaxSfb, where an earlier stereo layer had it. Bands in M/S have none and get 0; their
// M/S flags from prevMaxSfb on are those of this header.
void readDiffControl(BitReader& stream, const ZetAACExtHeader& header,
                     const ExtensionContext& context, Zet8u* control) {
    if (context.isShort) {
        if (context.prevMaxSfb == 0) getFlags(stream, control, 0, ZETAC_AAC_GROUPS_MAX);
        return;
    }
    const int end = std::min(context.prevMaxSfbSecond, header.max_sfb);
    for (int sfb = context.prevMaxSfb; sfb < end; ++sfb) {
        const bool isMs =
            header.ms_mask_present == 2 || (header.ms_mask_present == 1 && header.ms_used[0][sfb]);
        control[sfb] = isMs ? 0 : getFlag(stream);
    }
}

// aac_scalable_extension_header() (ISO/IEC 14496-3, 4.4.2.2).
ZetStatus readExtensionHeader(BitReader& stream, ZetAACExtHeader& header,
                              const ExtensionContext& context) {
    header.max_sfb = ownsGetBits_AAC(stream, context.isShort ? 4 : 6);
    if (header.max_sfb > kExtensionMaxSfb) return zetStsAacMaxSfbErr;
    if (context.isStereo) readExtensionMsMask(stream, header, context);
    for (int ch = 0; context.hasTns && ch < 2; ++ch) readTns(stream, header, ch, context.isShort);
    for (int ch = 0; context.hasDiffControl && context.isStereo && ch < 2; ++ch)
        readDiffControl(stream, header, context, header.diff_control[ch]);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::aac

using namespace zetac;

ZetStatus zetsDecodeMainHeader_AAC(Zet8u** ppBitStream, int* pOffset, ZetAACMainHeader* pHeader,
                                   int channelNum, int layerFlag) {
    ZETAC_REQUIRE(aac::isSet(ppBitStream) && core::allSet(pOffset, pHeader), zetStsNullPointer);
    ZETAC_REQUIRE(aac::isBitOffset(pOffset), zetStsAacBitOffsetErr);
    ZETAC_REQUIRE(core::inRange(channelNum, 1, 2), zetStsAacChanNumErr);
    ZETAC_REQUIRE(core::inRange(layerFlag, 0, 1), zetStsAacLayerFlagErr);
    aac::BitReader stream(ppBitStream, pOffset);
    aac::readMainHeader(stream, *pHeader, channelNum);
    stream.store(ppBitStream, pOffset);
    return layerFlag ? zetStsAacLayerNotDone : zetStsOk;
}

ZetStatus zetsDecodeExtensionHeader_AAC(Zet8u** ppBitStream, int* pOffset, ZetAACExtHeader* pHeader,
                                        int tnsFlag, int stereoLayerFlag, int diffCtrlFlag,
                                        int prevMaxSfb, int prevMaxSfbSecond, int windowSequence) {
    ZETAC_REQUIRE(aac::isSet(ppBitStream) && core::allSet(pOffset, pHeader), zetStsNullPointer);
    ZETAC_REQUIRE(aac::isBitOffset(pOffset), zetStsAacBitOffsetErr);
    ZETAC_REQUIRE(core::inRange(tnsFlag, 0, 1), zetStsAacLayerFlagErr);
    ZETAC_REQUIRE(core::inRange(stereoLayerFlag, 0, 1), zetStsAacStereoLayerErr);
    ZETAC_REQUIRE(core::inRange(diffCtrlFlag, 0, 1), zetStsAacDiffCtrlFlagErr);
    ZETAC_REQUIRE(core::inRange(prevMaxSfb, 0, ZETAC_AAC_SFB_MAX), zetStsAacMaxSfbErr);
    ZETAC_REQUIRE(core::inRange(prevMaxSfbSecond, 0, ZETAC_AAC_SFB_MAX), zetStsAacMaxSfbErr);
    ZETAC_REQUIRE(core::inRange(windowSequence, 0, 3), zetStsAacWinSeqErr);
    const aac::ExtensionContext context = {tnsFlag == 1,      stereoLayerFlag == 1,
                                           diffCtrlFlag == 1, prevMaxSfb,
                                           prevMaxSfbSecond,  windowSequence == zetAacEightShort};
    aac::BitReader stream(ppBitStream, pOffset);
    const ZetStatus status = aac::readExtensionHeader(stream, *pHeader, context);
    stream.store(ppBitStream, pOffset);
    return status;
}
