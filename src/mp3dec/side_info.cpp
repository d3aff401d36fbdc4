// The side information of a Layer III frame (ISO/IEC 11172-3, 2.4.1.7; 13818-3, 2.4.1.7).
#include "mp3dec/bit_stream.h"
#include "mp3dec/syntax.h"

namespace zetac::mp3 {
namespace {

constexpr int kScfsiBands = 4;

// With window switching both regions together cover all long bands. The standard's implicit
// region1_count of 36 has the same effect, but leads beyond the band table.
constexpr int kSwitchedRegionCounts = 20;

ZetStatus readSwitchedWindow(BitReader& stream, ZetMP3GranuleSideInfo& info) {
    info.block_type = ownGetBits_MP3(stream, 2);
    if (info.block_type == 0) return zetStsBadSideInfo;
    info.mixed_block_flag = ownGetBits_MP3(stream, 1);
    for (int region = 0; region < 2; ++region)
        info.table_select[region] = ownGetBits_MP3(stream, 5);
    for (Zet32s& gain : info.subblock_gain) gain = ownGetBits_MP3(stream, 3);
    const bool isPureShort = info.block_type == kShortBlock && !info.mixed_block_flag;
    info.region0_count = isPureShort ? 8 : 7;
    info.region1_count = kSwitchedRegionCounts - info.region0_count;
    return zetStsOk;
}

void readNormalWindow(BitReader& stream, ZetMP3GranuleSideInfo& info) {
    info.block_type = 0;
    info.mixed_block_flag = 0;
    for (Zet32s& table : info.table_select) table = ownGetBits_MP3(stream, 5);
    info.region0_count = ownGetBits_MP3(stream, 4);
    info.region1_count = ownGetBits_MP3(stream, 3);
}

ZetStatus readGranule(BitReader& stream, bool isMpeg1, ZetMP3GranuleSideInfo& info) {
    info.part2_3_length = ownGetBits_MP3(stream, 12);
    info.big_values = ownGetBits_MP3(stream, 9);
    info.global_gain = ownGetBits_MP3(stream, 8);
    info.scalefac_compress = ownGetBits_MP3(stream, isMpeg1 ? 4 : 9);
    info.window_switching_flag = ownGetBits_MP3(stream, 1);
    if (info.window_switching_flag) {
        const ZetStatus status = readSwitchedWindow(stream, info);
        if (status != zetStsOk) return status;
    } else {
        readNormalWindow(stream, info);
    }
    if (isMpeg1) info.preflag = ownGetBits_MP3(stream, 1);
    info.scalefac_scale = ownGetBits_MP3(stream, 1);
    info.count1table_select = ownGetBits_MP3(stream, 1);
    return zetStsOk;
}

ZetStatus readSideInfo(BitReader& stream, const ZetMP3Header& header,
                       ZetMP3GranuleSideInfo* granuleInfo, int& mainDataBegin, int& privateBits,
                       int* scfsi) {
    const bool isMpeg1 = header.ID == 1;
    const int channels = header.mode == kSingleChannel ? 1 : 2;
    mainDataBegin = ownGetBits_MP3(stream, isMpeg1 ? 9 : 8);
    privateBits = ownGetBits_MP3(stream, isMpeg1 ? (channels == 1 ? 5 : 3) : channels);
    if (isMpeg1) {
        for (int i = 0; i < channels * kScfsiBands; ++i) scfsi[i] = ownGetBits_MP3(stream, 1);
    }
    const int records = channels * (isMpeg1 ? 2 : 1);
    for (int i = 0; i < records; ++i) {
        const ZetStatus status = readGranule(stream, isMpeg1, granuleInfo[i]);
        if (status != zetStsOk) return status;
    }
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsUnpackSideInfo_MP3(Zet8u** ppStream, ZetMP3GranuleSideInfo* pGranuleInfo,
                                 int* pMainDataBegin, int* pPrivateBits, int* pScfsi,
                                 ZetMP3Header* pHeader) {
    ZETAC_REQUIRE(mp3::isSet(ppStream) &&
                      core::allSet(pGranuleInfo, pMainDataBegin, pPrivateBits, pScfsi, pHeader),
                  zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(pHeader->ID, 0, 1), zetStsBadFrameHeader);
    ZETAC_REQUIRE(pHeader->layer == 1, zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pHeader->mode, 0, 3), zetStsBadFrameHeader);
    mp3::BitReader stream(ppStream);
    const ZetStatus status =
        mp3::readSideInfo(stream, *pHeader, pGranuleInfo, *pMainDataBegin, *pPrivateBits, pScfsi);
    stream.store(ppStream);
    return status;
}
