// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/bit_stream.h"

namespace zetac::aac {
namespace {

// data_stream_element() (ISO/IEC 13818-7, 8.6).
void readDataStreamElement(BitReader& stream, int& tag, int& count, Zet8u* data) {
    tag = ownsGetBits_AAC(stream, 4);
    const bool isAligned = getFlag(stream);  // data_byte_align_flag
    int bytes = getByte(stream);
    if (bytes == 255) bytes += getByte(stream);
    if (isAligned) ownsByteAlign_AAC(stream);
    getBytes(stream, data, bytes);
    count = bytes;
}

}  // namespace
}  // namespace zetac::aac

using namespace zetac;

ZetStatus zetsDecodeDatStrElt_AAC(Zet8u** ppBitStream, int* pOffset, int* pDataTag, int* pDataCnt,
                                  Zet8u* pData) {
    ZETAC_REQUIRE(aac::isSet(ppBitStream) && core::allSet(pOffset, pDataTag, pDataCnt, pData),
                  zetStsNullPointer);
    ZETAC_REQUIRE(aac::isBitOffset(pOffset), zetStsAacBitOffsetErr);
    aac::BitReader stream(ppBitStream, pOffset);
    aac::readDataStreamElement(stream, *pDataTag, *pDataCnt, pData);
    stream.store(ppBitStream, pOffset);
    return zetStsOk;
}
