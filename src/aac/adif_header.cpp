// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/bit_stream.h"
#include "aac/program_config.h"

namespace zetac::aac {
namespace {

// adif_header() up to the number of program config elements.
void readFixedFields(BitReader& stream, ZetAACADIFHeader& header) {
    const uint32_t high = stream.get(16);
    header.adif_id = static_cast<Zet32s>(high << 16 | stream.get(16));
    header.copyright_id_present = ownsGetBits_AAC(stream, 1);
    if (header.copyright_id_present) getBytes(stream, header.copyright_id, 9);
    header.original_copy = ownsGetBits_AAC(stream, 1);
    header.home = ownsGetBits_AAC(stream, 1);
    header.bitstream_type = ownsGetBits_AAC(stream, 1);
    header.bitrate = ownsGetBits_AAC(stream, 23);
    header.num_program_config_elements = ownsGetBits_AAC(stream, 4) + 1;
}

// adif_header() (ISO/IEC 13818-7, 6.2).
ZetStatus readAdifHeader(BitReader& stream, ZetAACADIFHeader& header, ZetAACPrgCfgElt* elements,
                         int maxElements) {
    readFixedFields(stream, header);
    if (header.num_program_config_elements > maxElements) return zetStsAacPrgNumErr;
    for (int i = 0; i < header.num_program_config_elements; ++i) {
        if (header.bitstream_type == 0)
            header.adif_buffer_fullness[i] = ownsGetBits_AAC(stream, 20);
        readProgramConfigElement(stream, elements[i]);
    }
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::aac

using namespace zetac;

ZetStatus zetsUnpackADIFHeader_AAC(Zet8u** ppBitStream, ZetAACADIFHeader* pHeader,
                                   ZetAACPrgCfgElt* pPrgCfgElt, int prgCfgEltMax) {
    ZETAC_REQUIRE(aac::isSet(ppBitStream) && core::allSet(pHeader, pPrgCfgElt), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(prgCfgEltMax, 1, 16), zetStsAacPrgNumErr);
    aac::BitReader stream(ppBitStream);
    const ZetStatus status = aac::readAdifHeader(stream, *pHeader, pPrgCfgElt, prgCfgEltMax);
    stream.store(ppBitStream);
    return status;
}
