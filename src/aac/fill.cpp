// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/bit_stream.h"

namespace zetac::aac {
namespace {

// fill_element() (ISO/IEC 13818-7, 8.7).
void readFillElement(BitReader& stream, int& count, Zet8u* data) {
    int bytes = ownsGetBits_AAC(stream, 4);
    if (bytes == 15) bytes += getByte(stream) - 1;
    getBytes(stream, data, bytes);
    count = bytes;
}

}  // namespace
}  // namespace zetac::aac

using namespace zetac;

ZetStatus zetsDecodeFillElt_AAC(Zet8u** ppBitStream, int* pOffset, int* pFillCnt,
                                Zet8u* pFillData) {
    ZETAC_REQUIRE(aac::isSet(ppBitStream) && core::allSet(pOffset, pFillCnt, pFillData),
                  zetStsNullPointer);
    ZETAC_REQUIRE(aac::isBitOffset(pOffset), zetStsAacBitOffsetErr);
    aac::BitReader stream(ppBitStream, pOffset);
    aac::readFillElement(stream, *pFillCnt, pFillData);
    stream.store(ppBitStream, pOffset);
    return zetStsOk;
}
