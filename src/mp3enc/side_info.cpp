// Packs the side information of a Layer III frame (ISO/IEC 11172-3, 2.4.1.7; 13818-3, 2.4.1.7).
#include "mp3enc/bit_stream.h"
#include "mp3enc/syntax.h"

namespace zetac::mp3enc {
namespace {

constexpr int kScfsiBands = 4;

ZetStatus writeWindow(BitWriter& stream, const ZetMP3GranuleSideInfo& info) {
    ownSetBits(stream, info.window_switching_flag, 1);
    if (info.window_switching_flag & 1) {
        if (info.block_type == 0) return zetStsBadSideInfo;
        ownSetBits(stream, info.block_type, 2);
        ownSetBits(stream, info.mixed_block_flag, 1);
        for (int region = 0; region < 2; ++region) ownSetBits(stream, info.table_select[region], 5);
        for (const Zet32s gain : info.subblock_gain) ownSetBits(stream, gain, 3);
    } else {
        for (const Zet32s table : info.table_select) ownSetBits(stream, table, 5);
        ownSetBits(stream, info.region0_count, 4);
        ownSetBits(stream, info.region1_count, 3);
    }
    return zetStsOk;
}

ZetStatus writeGranule(BitWriter& stream, const ZetMP3GranuleSideInfo& info, bool isMpeg1) {
    ownSetBits(stream, info.part2_3_length, 12);
    ownSetBits(stream, info.big_values, 9);
    ownSetBits(stream, info.global_gain, 8);
    ownSetBits(stream, info.scalefac_compress, isMpeg1 ? 4 : 9);
    const ZetStatus status = writeWindow(stream, info);
    if (status != zetStsOk) return status;
    if (isMpeg1) ownSetBits(stream, info.preflag, 1);
    ownSetBits(stream, info.scalefac_scale, 1);
    ownSetBits(stream, info.count1table_select, 1);
    return zetStsOk;
}

ZetStatus writeGranules(BitWriter& stream, const ZetMP3GranuleSideInfo* info, int records,
                        bool isMpeg1) {
    for (int i = 0; i < records; ++i) {
        const ZetStatus status = writeGranule(stream, info[i], isMpeg1);
        if (status != zetStsOk) return status;
    }
    return zetStsOk;
}

ZetStatus encodeGranulesMPEG1_MP3(BitWriter& stream, const ZetMP3GranuleSideInfo* info,
                                  int channels) {
    return writeGranules(stream, info, 2 * channels, true);
}

ZetStatus encodeGranulesMPEG2_MP3(BitWriter& stream, const ZetMP3GranuleSideInfo* info,
                                  int channels) {
    return writeGranules(stream, info, channels, false);
}

ZetStatus writeSideInfo(BitWriter& stream, const ZetMP3Header& header,
                        const ZetMP3GranuleSideInfo* info, int mainDataBegin, int privateBits,
                        const int* scfsi) {
    const int channels = header.mode == kSingleChannel ? 1 : 2;
    if (header.ID == 0) {
        ownSetBits(stream, mainDataBegin, 8);
        ownSetBits(stream, privateBits, channels);
        return encodeGranulesMPEG2_MP3(stream, info, channels);
    }
    ownSetBits(stream, mainDataBegin, 9);
    ownSetBits(stream, privateBits, channels == 1 ? 5 : 3);
    for (int i = 0; i < channels * kScfsiBands; ++i) ownSetBits(stream, scfsi[i], 1);
    return encodeGranulesMPEG1_MP3(stream, info, channels);
}

}  // namespace
}  // namespace zetac::mp3enc

using namespace zetac;

ZetStatus zetsPackSideInfo_MP3(const ZetMP3GranuleSideInfo* pSrcSideInfo, Zet8u** ppBitStream,
                               int mainDataBegin, int privateBits, const int* pSrcScfsi,
                               const ZetMP3Header* pFrameHeader) {
    ZETAC_REQUIRE(core::isSet(ppBitStream) && core::allSet(pSrcSideInfo, pSrcScfsi, pFrameHeader),
                  zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(pFrameHeader->ID, 0, 1), zetStsBadFrameHeader);
    ZETAC_REQUIRE(pFrameHeader->layer == 1, zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pFrameHeader->mode, 0, 3), zetStsBadFrameHeader);
    mp3enc::BitWriter stream(ppBitStream);
    const ZetStatus status = mp3enc::writeSideInfo(stream, *pFrameHeader, pSrcSideInfo,
                                                   mainDataBegin, privateBits, pSrcScfsi);
    stream.store(ppBitStream);
    return status;
}
