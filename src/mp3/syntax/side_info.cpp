// The side information of a Layer III frame (ISO/IEC 11172-3, 2.4.1.7; 13818-3, 2.4.1.7).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "core/checks.h"
#include "mp3/syntax/bands.h"
#include "mp3/syntax/fields.h"

namespace zetac::mp3 {
namespace {

// With window switching both regions together cover all long bands. The standard's implicit
// region1_count of 36 has the same effect, but leads beyond the band table.
void setSwitchedRegions(ZetMP3GranuleSideInfo& info) {
    constexpr int kSwitchedShortBands = kSwitchedRegion0ShortBands * kWindows;
    const bool isPureShort = blockKindOf(info) == kShortBlock;
    info.region0_count = (isPureShort ? kSwitchedShortBands : kSwitchedRegion0Bands) - 1;
    info.region1_count = kLongBands - 2 - info.region0_count;
}

// A block type of 0 ends both ways: read, it is behind the position, and it is not written.
template <class Fields, class Info>
ZetStatus switchedWindow(Fields& fields, Info& info) {
    if (Fields::kWrites && typeOf(info) == BlockType::kNormal) return zetStsBadSideInfo;
    fields.field(info.block_type, 2);
    if (!Fields::kWrites && typeOf(info) == BlockType::kNormal) return zetStsBadSideInfo;
    fields.field(info.mixed_block_flag, 1);
    for (int region = 0; region < 2; ++region) fields.field(info.table_select[region], 5);
    for (auto& gain : info.subblock_gain) fields.field(gain, 3);
    if constexpr (!Fields::kWrites) setSwitchedRegions(info);
    return zetStsOk;
}

template <class Fields, class Info>
void normalWindow(Fields& fields, Info& info) {
    if constexpr (!Fields::kWrites) info.block_type = info.mixed_block_flag = 0;
    for (auto& table : info.table_select) fields.field(table, 5);
    fields.field(info.region0_count, 4);
    fields.field(info.region1_count, 3);
}

template <class Fields, class Info>
ZetStatus granule(Fields& fields, bool mpeg1, Info& info) {
    fields.field(info.part2_3_length, 12);
    fields.field(info.big_values, 9);
    fields.field(info.global_gain, 8);
    fields.field(info.scalefac_compress, mpeg1 ? 4 : 9);
    fields.field(info.window_switching_flag, 1);
    if (info.window_switching_flag & 1) {
        if (const ZetStatus status = switchedWindow(fields, info)) return status;
    } else {
        normalWindow(fields, info);
    }
    if (mpeg1) fields.field(info.preflag, 1);
    fields.field(info.scalefac_scale, 1);
    fields.field(info.count1table_select, 1);
    return zetStsOk;
}

template <class Fields, class Info, class Int, class Flag>
ZetStatus sideInfo(Fields& fields, const ZetMP3Header& header, Info* info, Int& mainDataBegin,
                   Int& privateBits, Flag* scfsi) {
    const bool mpeg1 = isMpeg1(header);
    const int channels = numChannels(header);
    fields.field(mainDataBegin, mpeg1 ? 9 : 8);
    fields.field(privateBits, !mpeg1 ? channels : channels == 1 ? 5 : 3);
    for (int i = 0; mpeg1 && i < channels * kScfsiGroups; ++i) fields.field(scfsi[i], 1);
    for (int i = 0; i < channels * numGranules(header); ++i)
        if (const ZetStatus status = granule(fields, mpeg1, info[i])) return status;
    return zetStsOk;
}

ZetStatus checkHeader(const ZetMP3Header& header) {
    ZETAC_REQUIRE(core::inRange(header.ID, 0, 1), zetStsBadFrameHeader);
    ZETAC_REQUIRE(header.layer == 1, zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(header.mode, 0, 3), zetStsBadFrameHeader);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsUnpackSideInfo_MP3(Zet8u** ppStream, ZetMP3GranuleSideInfo* pGranuleInfo,
                                 int* pMainDataBegin, int* pPrivateBits, int* pScfsi,
                                 ZetMP3Header* pHeader) {
    ZETAC_REQUIRE(core::isSet(ppStream) &&
                      core::allSet(pGranuleInfo, pMainDataBegin, pPrivateBits, pScfsi, pHeader),
                  zetStsNullPointer);
    if (const ZetStatus status = mp3::checkHeader(*pHeader)) return status;
    mp3::FieldReader fields{core::BitReader(ppStream)};
    const ZetStatus status =
        mp3::sideInfo(fields, *pHeader, pGranuleInfo, *pMainDataBegin, *pPrivateBits, pScfsi);
    fields.stream.store(ppStream);
    return status;
}

ZetStatus zetsPackSideInfo_MP3(const ZetMP3GranuleSideInfo* pSrcSideInfo, Zet8u** ppBitStream,
                               int mainDataBegin, int privateBits, const int* pSrcScfsi,
                               const ZetMP3Header* pFrameHeader) {
    ZETAC_REQUIRE(core::isSet(ppBitStream) && core::allSet(pSrcSideInfo, pSrcScfsi, pFrameHeader),
                  zetStsNullPointer);
    if (const ZetStatus status = mp3::checkHeader(*pFrameHeader)) return status;
    mp3::FieldWriter fields{core::BitWriter(ppBitStream)};
    const ZetStatus status =
        mp3::sideInfo(fields, *pFrameHeader, pSrcSideInfo, mainDataBegin, privateBits, pSrcScfsi);
    fields.stream.store(ppBitStream);
    return status;
}
