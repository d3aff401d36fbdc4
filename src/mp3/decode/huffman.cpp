// The exported Huffman decoders, which differ in their checks and in how they divide the big values
// of a granule with window switching.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "core/bits.h"
#include "core/checks.h"
#include "mp3/decode/huffman_data.h"
#include "mp3/syntax/bands.h"

namespace zetac::mp3 {
namespace {

constexpr int kMaxBigValues = ZETAC_MP3_GRANULE_LEN / 2;

using core::inRange;

// Whatever a caller's table holds, regions are made of pairs and lie within the big values.
BigValueRegions limitedRegions(int end0, int end1, int bigValues) {
    const int end = 2 * bigValues;
    end0 = std::clamp(end0, 0, end) & ~1;
    end1 = std::clamp(end1, end0, end) & ~1;
    return {{end0, end1, end}};
}

BigValueRegions normalRegions(const ZetMP3GranuleSideInfo& info, const Zet16s* longBands) {
    const int band1 = info.region0_count + 1;
    const int band2 = band1 + info.region1_count + 1;
    return limitedRegions(longBands[band1], longBands[band2], info.big_values);
}

// Window switching fixes the regions (ISO/IEC 11172-3, 2.4.2.7): region 1 takes what region 0
// leaves.
BigValueRegions switchedRegions(const ZetMP3GranuleSideInfo& info, int end0) {
    return limitedRegions(end0, ZETAC_MP3_GRANULE_LEN, info.big_values);
}

// The ends of kSwitchedRegion0Bands long bands at all MPEG-1 rates and at all LSF rates, and of
// kSwitchedRegion0ShortBands short ones at all rates.
int fixedRegion0End(const ZetMP3GranuleSideInfo& info, const ZetMP3Header& header) {
    return isMpeg1(header) || isShort(info) ? 36 : 54;
}

// Region 0 of a mixed block: the long bands up to a switch point, then a number of windows of the
// short bands behind it. The band before the first is counted twice and each other one three times.
int mixedRegion0End(const Zet16s* longBands, const Zet16s* shortBands, const Zet16s* partition) {
    int end = longBands[partition[0]];
    int first = 0;
    while (first < kShortBands && shortBands[first] * kWindows <= end) ++first;
    for (int i = 1; i <= partition[1]; ++i) {
        const int band = first - 1 + i / kWindows;
        if (!inRange(band, 0, kShortBands - 1)) break;
        end += shortBands[band + 1] - shortBands[band];
    }
    return end;
}

int tableRegion0End(const ZetMP3GranuleSideInfo& info, const Zet16s* longBands,
                    const Zet16s* shortBands, const Zet16s* partition) {
    if (!isShort(info)) return longBands[kSwitchedRegion0Bands];
    if (info.mixed_block_flag) return mixedRegion0End(longBands, shortBands, partition);
    return kWindows * shortBands[kSwitchedRegion0ShortBands];
}

// The checks that all forms make last.
ZetStatus checkRegions(const ZetMP3GranuleSideInfo& info) {
    const bool isSwitched = info.window_switching_flag == 1;
    ZETAC_REQUIRE(isSwitched ? info.block_type != 0 : hasRegionCounts(info), zetStsBadSideInfo);
    for (int region = 0; region < (isSwitched ? 2 : kRegions); ++region)
        ZETAC_REQUIRE(inRange(info.table_select[region], 0, 31), zetStsBadSideInfo);
    return zetStsOk;
}

// Reads the data and moves the position by hufSize bits, whatever they hold.
ZetStatus decode(Zet8u** ppStream, int* pBitOffset, Zet32s* pDst, int* pNonZeroBound,
                 const ZetMP3GranuleSideInfo& info, int hufSize, const BigValueRegions& regions) {
    if (hufSize == 0) {
        std::fill(pDst, pDst + ZETAC_MP3_GRANULE_LEN, 0);
        *pNonZeroBound = 0;
        return zetStsOk;
    }
    core::BitReader stream(ppStream, pBitOffset);
    const ZetStatus status =
        readHuffmanData(*ppStream, *pBitOffset, hufSize, regions, info, pDst, *pNonZeroBound);
    stream.skip(static_cast<uint32_t>(hufSize));
    stream.store(ppStream, pBitOffset);
    return status;
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsHuffmanDecodeSfb_MP3_1u32s(Zet8u** ppStream, int* pBitOffset, Zet32s* pDst,
                                         int* pNonZeroBound, ZetMP3GranuleSideInfo* pGranuleInfo,
                                         ZetMP3Header* pHeader, int hufSize,
                                         const Zet16s* pSfbTableLong) {
    ZETAC_REQUIRE(core::isSet(ppStream) &&
                      core::allSet(pBitOffset, pDst, pNonZeroBound, pGranuleInfo, pHeader),
                  zetStsNullPointer);
    const ZetMP3GranuleSideInfo& info = *pGranuleInfo;
    ZETAC_REQUIRE(core::isBitOffset(pBitOffset), zetStsBadArg);
    ZETAC_REQUIRE(core::inRange(hufSize, 0, info.part2_3_length), zetStsBadArg);
    ZETAC_REQUIRE(core::inRange(info.big_values, 0, mp3::kMaxBigValues), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(info.block_type, 0, 3), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(info.window_switching_flag, 0, 1), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(info.count1table_select, 0, 1), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(pHeader->ID, 0, 1), zetStsBadFrameHeader);
    ZETAC_REQUIRE(pHeader->layer == 1, zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pHeader->sampling_frequency, 0, 2), zetStsBadFrameHeader);
    const ZetStatus status = mp3::checkRegions(info);
    ZETAC_REQUIRE(status == zetStsOk, status);
    const auto regions = info.window_switching_flag
                             ? mp3::switchedRegions(info, mp3::fixedRegion0End(info, *pHeader))
                             : mp3::normalRegions(info, mp3::longBandsOf(*pHeader, pSfbTableLong));
    return mp3::decode(ppStream, pBitOffset, pDst, pNonZeroBound, info, hufSize, regions);
}

ZetStatus zetsHuffmanDecode_MP3_1u32s(Zet8u** ppStream, int* pBitOffset, Zet32s* pDst,
                                      int* pNonZeroBound, ZetMP3GranuleSideInfo* pGranuleInfo,
                                      ZetMP3Header* pHeader, int hufSize) {
    return zetsHuffmanDecodeSfb_MP3_1u32s(ppStream, pBitOffset, pDst, pNonZeroBound, pGranuleInfo,
                                          pHeader, hufSize, tables::_zet_pMP3SfbTableLong);
}

ZetStatus zetsHuffmanDecodeSfbMbp_MP3_1u32s(Zet8u** ppStream, int* pBitOffset, Zet32s* pDst,
                                            int* pNonZeroBound, ZetMP3GranuleSideInfo* pGranuleInfo,
                                            ZetMP3Header* pHeader, int hufSize,
                                            const Zet16s* pSfbTableLong,
                                            const Zet16s* pSfbTableShort, const Zet16s* pMbpTable) {
    ZETAC_REQUIRE(
        core::isSet(ppStream) && core::allSet(pBitOffset, pDst, pNonZeroBound, pGranuleInfo,
                                              pHeader, pSfbTableLong, pSfbTableShort, pMbpTable),
        zetStsNullPointer);
    const ZetMP3GranuleSideInfo& info = *pGranuleInfo;
    ZETAC_REQUIRE(core::isBitOffset(pBitOffset), zetStsBadArg);
    ZETAC_REQUIRE(core::inRange(pHeader->ID, 0, 1), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(info.big_values, 0, mp3::kMaxBigValues), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(info.block_type, 0, 3), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(info.window_switching_flag, 0, 1), zetStsBadSideInfo);
    ZETAC_REQUIRE(!info.window_switching_flag || info.block_type != 0, zetStsBadSideInfo);
    ZETAC_REQUIRE(pHeader->layer == 1, zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pHeader->sampling_frequency, 0, 2), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(info.count1table_select, 0, 1), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(hufSize, 0, info.part2_3_length), zetStsBadSideInfo);
    const ZetStatus status = mp3::checkRegions(info);
    ZETAC_REQUIRE(status == zetStsOk, status);
    const Zet16s* longBands = mp3::longBandsOf(*pHeader, pSfbTableLong);
    const Zet16s* shortBands = mp3::shortBandsOf(*pHeader, pSfbTableShort);
    const Zet16s* partition = pMbpTable + 2 * mp3::bandRow(*pHeader);
    const auto regions =
        info.window_switching_flag
            ? mp3::switchedRegions(info,
                                   mp3::tableRegion0End(info, longBands, shortBands, partition))
            : mp3::normalRegions(info, longBands);
    return mp3::decode(ppStream, pBitOffset, pDst, pNonZeroBound, info, hufSize, regions);
}
