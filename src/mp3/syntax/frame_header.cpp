// The header of an MPEG audio frame (ISO/IEC 11172-3, 2.4.1.3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "core/checks.h"
#include "mp3/syntax/fields.h"

namespace zetac::mp3 {
namespace {

// A reader takes the syncword, and where MPEG-2.5 is in use the bit that tells it, as they are.
template <class Fields, class Header>
void frameHeader(Fields& fields, Header& header) {
    fields.constant(0xfff, 12);
    fields.field(header.ID, 1);
    fields.field(header.layer, 2);
    fields.field(header.protection_bit, 1);
    fields.field(header.bitrate_index, 4);
    fields.field(header.sampling_frequency, 2);
    fields.field(header.padding_bit, 1);
    fields.field(header.private_bit, 1);
    fields.field(header.mode, 2);
    fields.field(header.mode_extension, 2);
    fields.field(header.copyright, 1);
    fields.field(header.original_copy, 1);
    fields.field(header.emphasis, 2);
    if ((header.protection_bit & 1) == 0) fields.field(header.crc_check, 16);
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsUnpackFrameHeader_MP3(Zet8u** ppStream, ZetMP3Header* pHeader) {
    ZETAC_REQUIRE(core::isSet(ppStream) && pHeader, zetStsNullPointer);
    mp3::FieldReader fields{core::BitReader(ppStream)};
    mp3::frameHeader(fields, *pHeader);
    fields.stream.store(ppStream);
    return zetStsOk;
}

ZetStatus zetsPackFrameHeader_MP3(const ZetMP3Header* pSrcFrameHeader, Zet8u** ppBitStream) {
    ZETAC_REQUIRE(pSrcFrameHeader && core::isSet(ppBitStream), zetStsNullPointer);
    mp3::FieldWriter fields{core::BitWriter(ppBitStream)};
    mp3::frameHeader(fields, *pSrcFrameHeader);
    fields.stream.store(ppBitStream);
    return zetStsOk;
}
