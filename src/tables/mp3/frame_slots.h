// Sizes of the frames of MPEG-1 Layer III (ISO/IEC 11172-3, 2.4.2.3 and 2.4.3.1).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

namespace zetac::tables {

// kbit/s by bitrate_index; 0 is free format.
inline constexpr int kMpeg1BitRate[15] = {0,   32,  40,  48,  56,  64,  80, 96,
                                          112, 128, 160, 192, 224, 256, 320};

// Bytes without padding, by sampling_frequency (44.1, 48, 32 kHz) and bitrate_index.
struct SlotTable {
    std::int16_t bytes[3][15];
};

constexpr SlotTable makeSlotTable() {
    constexpr int kSamplingRate[3] = {44100, 48000, 32000};
    SlotTable table{};
    for (int rate = 0; rate < 3; ++rate)
        for (int i = 0; i < 15; ++i)
            table.bytes[rate][i] =
                static_cast<std::int16_t>(144000 * kMpeg1BitRate[i] / kSamplingRate[rate]);
    return table;
}
inline constexpr SlotTable _pMPEG1_nSlotTable = makeSlotTable();

}  // namespace zetac::tables
