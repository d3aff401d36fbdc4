// Packs the header of an MPEG audio frame (ISO/IEC 11172-3, 2.4.1.3).
#include "mp3enc/bit_stream.h"

namespace zetac::mp3enc {
namespace {

void writeHeader(BitWriter& stream, const ZetMP3Header& header) {
    ownSetBits(stream, 0xfff, 12);
    ownSetBits(stream, header.ID, 1);
    ownSetBits(stream, header.layer, 2);
    ownSetBits(stream, header.protection_bit, 1);
    ownSetBits(stream, header.bitrate_index, 4);
    ownSetBits(stream, header.sampling_frequency, 2);
    ownSetBits(stream, header.padding_bit, 1);
    ownSetBits(stream, header.private_bit, 1);
    ownSetBits(stream, header.mode, 2);
    ownSetBits(stream, header.mode_extension, 2);
    ownSetBits(stream, header.copyright, 1);
    ownSetBits(stream, header.original_copy, 1);
    ownSetBits(stream, header.emphasis, 2);
    if ((header.protection_bit & 1) == 0) ownSetBits(stream, header.crc_check, 16);
}

}  // namespace
}  // namespace zetac::mp3enc

using namespace zetac;

ZetStatus zetsPackFrameHeader_MP3(const ZetMP3Header* pSrcFrameHeader, Zet8u** ppBitStream) {
    ZETAC_REQUIRE(pSrcFrameHeader && core::isSet(ppBitStream), zetStsNullPointer);
    mp3enc::BitWriter stream(ppBitStream);
    mp3enc::writeHeader(stream, *pSrcFrameHeader);
    stream.store(ppBitStream);
    return zetStsOk;
}
