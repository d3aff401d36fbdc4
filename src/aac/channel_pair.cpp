// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/bit_stream.h"
#include "aac/ics_info.h"

namespace zetac::aac {
namespace {

void readMsMask(BitReader& stream, const ZetAACIcsInfo& ics, ZetAACChanPairElt& pair) {
    pair.ms_mask_present = ownsGetBits_AAC(stream, 2);
    if (pair.ms_mask_present != 1) return;
    for (int g = 0; g < ics.num_window_groups; ++g)
        getFlags(stream, pair.ms_used[g], 0, ics.max_sfb);
}

// channel_pair_element() between the instance tag and the channels; readInfo reads ics_info().
template <class ReadInfo>
ZetStatus readChannelPair(BitReader& stream, ZetAACIcsInfo& ics, ZetAACChanPairElt& pair,
                          ReadInfo readInfo) {
    pair.common_window = ownsGetBits_AAC(stream, 1);
    if (!pair.common_window) return zetStsOk;
    const ZetStatus status = readInfo();
    if (status == zetStsOk) readMsMask(stream, ics, pair);
    return status;
}

}  // namespace
}  // namespace zetac::aac

using namespace zetac;

ZetStatus zetsDecodeChanPairElt_AAC(Zet8u** ppBitStream, int* pOffset, ZetAACIcsInfo* pIcsInfo,
                                    ZetAACChanPairElt* pChanPairElt, int predSfbMax) {
    ZETAC_REQUIRE(aac::isSet(ppBitStream) && core::allSet(pOffset, pIcsInfo, pChanPairElt),
                  zetStsNullPointer);
    ZETAC_REQUIRE(aac::isBitOffset(pOffset), zetStsAacBitOffsetErr);
    ZETAC_REQUIRE(core::inRange(predSfbMax, 0, 41), zetStsAacPredSfbMaxErr);
    aac::BitReader stream(ppBitStream, pOffset);
    const ZetStatus status = aac::readChannelPair(stream, *pIcsInfo, *pChanPairElt, [&] {
        return aac::readIcsInfo(stream, *pIcsInfo, predSfbMax);
    });
    stream.store(ppBitStream, pOffset);
    return status;
}

ZetStatus zetsDecodeChanPairElt_MP4_AAC(Zet8u** ppBitStream, int* pOffset, ZetAACIcsInfo* pIcsInfo,
                                        ZetAACChanPairElt* pChanPairElt, ZetAACLtpInfo* pLtpInfo,
                                        int predSfbMax, int audioObjectType) {
    ZETAC_REQUIRE(
        aac::isSet(ppBitStream) && core::allSet(pOffset, pIcsInfo, pChanPairElt, pLtpInfo),
        zetStsNullPointer);
    ZETAC_REQUIRE(aac::isBitOffset(pOffset), zetStsAacBitOffsetErr);
    ZETAC_REQUIRE(core::inRange(predSfbMax, 0, ZETAC_AAC_SFB_MAX), zetStsAacMaxSfbErr);
    aac::BitReader stream(ppBitStream, pOffset);
    pLtpInfo[0].ltp_data_present = 0;
    pLtpInfo[1].ltp_data_present = 0;
    const ZetStatus status = aac::readChannelPair(stream, *pIcsInfo, *pChanPairElt, [&] {
        return aac::readIcsInfoMp4(stream, *pIcsInfo, predSfbMax, audioObjectType, pLtpInfo, 2);
    });
    stream.store(ppBitStream, pOffset);
    return status;
}
