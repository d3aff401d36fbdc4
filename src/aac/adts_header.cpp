// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/bit_stream.h"

namespace zetac::aac {
namespace {

void readFixedHeader(BitReader& stream, ZetAACADTSHeader& header) {
    stream.skip(12);  // syncword
    header.id = ownsGetBits_AAC(stream, 1);
    header.layer = ownsGetBits_AAC(stream, 2);
    header.protection_absent = ownsGetBits_AAC(stream, 1);
    header.profile = ownsGetBits_AAC(stream, 2);
    header.sampling_frequency_index = ownsGetBits_AAC(stream, 4);
    header.private_bit = ownsGetBits_AAC(stream, 1);
    header.channel_configuration = ownsGetBits_AAC(stream, 3);
    header.original_copy = ownsGetBits_AAC(stream, 1);
    header.home = ownsGetBits_AAC(stream, 1);
}

void readVariableHeader(BitReader& stream, ZetAACADTSHeader& header) {
    header.copyright_identification_bit = ownsGetBits_AAC(stream, 1);
    header.copyright_identification_start = ownsGetBits_AAC(stream, 1);
    header.frame_length = ownsGetBits_AAC(stream, 13);
    header.adts_buffer_fullness = ownsGetBits_AAC(stream, 11);
    header.number_of_raw_data_blocks_in_frame = ownsGetBits_AAC(stream, 2);
}

// adts_fixed_header(), adts_variable_header(), adts_error_check() (ISO/IEC 13818-7, 6.2).
void readAdtsHeader(BitReader& stream, ZetAACADTSHeader& header) {
    readFixedHeader(stream, header);
    readVariableHeader(stream, header);
    if (!header.protection_absent) header.crc_check = ownsGetBits_AAC(stream, 16);
}

}  // namespace
}  // namespace zetac::aac

using namespace zetac;

ZetStatus zetsUnpackADTSFrameHeader_AAC(Zet8u** ppBitStream, ZetAACADTSHeader* pHeader) {
    ZETAC_REQUIRE(aac::isSet(ppBitStream) && pHeader, zetStsNullPointer);
    aac::BitReader stream(ppBitStream);
    aac::readAdtsHeader(stream, *pHeader);
    stream.store(ppBitStream);
    return zetStsOk;
}
