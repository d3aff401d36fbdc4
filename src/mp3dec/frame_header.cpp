// The header of an MPEG audio frame (ISO/IEC 11172-3, 2.4.1.3).
#include "mp3dec/bit_stream.h"

namespace zetac::mp3 {
namespace {

void readHeader(BitReader& stream, ZetMP3Header& header) {
    stream.skip(12);  // syncword and, where MPEG-2.5 is in use, the bit that tells it
    header.ID = ownGetBits_MP3(stream, 1);
    header.layer = ownGetBits_MP3(stream, 2);
    header.protection_bit = ownGetBits_MP3(stream, 1);
    header.bitrate_index = ownGetBits_MP3(stream, 4);
    header.sampling_frequency = ownGetBits_MP3(stream, 2);
    header.padding_bit = ownGetBits_MP3(stream, 1);
    header.private_bit = ownGetBits_MP3(stream, 1);
    header.mode = ownGetBits_MP3(stream, 2);
    header.mode_extension = ownGetBits_MP3(stream, 2);
    header.copyright = ownGetBits_MP3(stream, 1);
    header.original_copy = ownGetBits_MP3(stream, 1);
    header.emphasis = ownGetBits_MP3(stream, 2);
    if (header.protection_bit == 0) header.crc_check = ownGetBits_MP3(stream, 16);
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsUnpackFrameHeader_MP3(Zet8u** ppStream, ZetMP3Header* pHeader) {
    ZETAC_REQUIRE(mp3::isSet(ppStream) && pHeader, zetStsNullPointer);
    mp3::BitReader stream(ppStream);
    mp3::readHeader(stream, *pHeader);
    stream.store(ppStream);
    return zetStsOk;
}
