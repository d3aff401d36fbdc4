// Scale factor band boundaries of Layer III (ISO/IEC 11172-3, Table B.8; ISO/IEC 13818-3, Annex B).
// Rows by ID * 3 + sampling_frequency; band b covers the lines entry[b] .. entry[b + 1] - 1.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

namespace zetac::tables {

inline constexpr int kMP3SfbRows = 6;
inline constexpr int kMP3SfbLongEntries = 23;
inline constexpr int kMP3SfbShortEntries = 14;

// clang-format off
// Long blocks, lines 0..576. Boundary 18 at 24 kHz is 332 as the standard prints it; listings with
// 330 are about.
inline constexpr std::int16_t _zet_pMP3SfbTableLong[kMP3SfbRows * kMP3SfbLongEntries] = {
    /* 22050 */ 0, 6, 12, 18, 24, 30, 36, 44, 54, 66, 80, 96, 116,
                140, 168, 200, 238, 284, 336, 396, 464, 522, 576,
    /* 24000 */ 0, 6, 12, 18, 24, 30, 36, 44, 54, 66, 80, 96, 114,
                136, 162, 194, 232, 278, 332, 394, 464, 540, 576,
    /* 16000 */ 0, 6, 12, 18, 24, 30, 36, 44, 54, 66, 80, 96, 116,
                140, 168, 200, 238, 284, 336, 396, 464, 522, 576,
    /* 44100 */ 0, 4, 8, 12, 16, 20, 24, 30, 36, 44, 52, 62, 74,
                90, 110, 134, 162, 196, 238, 288, 342, 418, 576,
    /* 48000 */ 0, 4, 8, 12, 16, 20, 24, 30, 36, 42, 50, 60, 72,
                88, 106, 128, 156, 190, 230, 276, 330, 384, 576,
    /* 32000 */ 0, 4, 8, 12, 16, 20, 24, 30, 36, 44, 54, 66, 82,
                102, 126, 156, 194, 240, 296, 364, 448, 550, 576,
};

// Short blocks, lines 0..192 of one window.
inline constexpr std::int16_t _zet_pMP3SfbTableShort[kMP3SfbRows * kMP3SfbShortEntries] = {
    /* 22050 */ 0, 4, 8, 12, 18, 24, 32, 42, 56, 74, 100, 132, 174, 192,
    /* 24000 */ 0, 4, 8, 12, 18, 26, 36, 48, 62, 80, 104, 136, 180, 192,
    /* 16000 */ 0, 4, 8, 12, 18, 26, 36, 48, 62, 80, 104, 134, 174, 192,
    /* 44100 */ 0, 4, 8, 12, 16, 22, 30, 40, 52, 66, 84, 106, 136, 192,
    /* 48000 */ 0, 4, 8, 12, 16, 22, 28, 38, 50, 64, 80, 100, 126, 192,
    /* 32000 */ 0, 4, 8, 12, 16, 22, 30, 42, 58, 78, 104, 138, 180, 192,
};
// clang-format on

// Preemphasis of the long bands (Table B.6).
inline constexpr std::int8_t kMP3Pretab[22] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                               1, 1, 1, 1, 2, 2, 3, 3, 3, 2, 0};

}  // namespace zetac::tables
