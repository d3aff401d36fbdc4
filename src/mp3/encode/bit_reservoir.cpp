// The record of the bit reservoir (ISO/IEC 11172-3, C.1.5.4.2.2).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "core/checks.h"
#include "tables/mp3/frame_slots.h"

namespace zetac::mp3 {
namespace {

// A decoder's buffer, and the reach of main_data_begin in whole bytes (2.4.3.1).
constexpr int kDecoderBits = 7680;
constexpr int kReachBits = 8 * 511;

ZetMP3BitReservoir emptyReservoir(const ZetMP3Header& header) {
    const int slots =
        tables::_pMPEG1_nSlotTable.bytes[header.sampling_frequency][header.bitrate_index];
    return {.held = 0,
            .capacity = std::min(kReachBits, kDecoderBits - std::min(kDecoderBits, 8 * slots))};
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsBitReservoirInit_MP3(ZetMP3BitReservoir* pBitReservoir,
                                   const ZetMP3Header* pFrameHeader) {
    ZETAC_REQUIRE(core::allSet(pBitReservoir, pFrameHeader), zetStsNullPointer);
    ZETAC_REQUIRE(pFrameHeader->ID == 1, zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pFrameHeader->sampling_frequency, 0, 2), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pFrameHeader->bitrate_index, 0, 14), zetStsBadFrameHeader);
    *pBitReservoir = mp3::emptyReservoir(*pFrameHeader);
    return zetStsOk;
}
