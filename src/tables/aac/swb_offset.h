// Scalefactor band tables for windows of 1024 and 128 lines (ISO/IEC 14496-3, 4.5.4). Band b covers
// the lines offset[b] .. offset[b + 1] - 1 of one window; the last offset closes the table.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

namespace zetac::tables {

// The number of sampling frequencies that have tables, indexed by sampling_frequency_index.
inline constexpr int kNumSamplingFrequencies = 13;

// 96000 and 88200 Hz.
inline constexpr std::int16_t kSwbOffsetLong96000[] = {
    0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  44,  48,  52,
    56,  64,  72,  80,  88,  96,  108, 120, 132, 144, 156, 172, 188, 212,
    240, 276, 320, 384, 448, 512, 576, 640, 704, 768, 832, 896, 960, 1024};

// 64000 Hz.
inline constexpr std::int16_t kSwbOffsetLong64000[] = {
    0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  44,  48,  52,  56,  64,
    72,  80,  88,  100, 112, 124, 140, 156, 172, 192, 216, 240, 268, 304, 344, 384,
    424, 464, 504, 544, 584, 624, 664, 704, 744, 784, 824, 864, 904, 944, 984, 1024};

// 48000 and 44100 Hz.
inline constexpr std::int16_t kSwbOffsetLong48000[] = {
    0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  48,  56,  64,  72,  80,  88,
    96,  108, 120, 132, 144, 160, 176, 196, 216, 240, 264, 292, 320, 352, 384, 416, 448,
    480, 512, 544, 576, 608, 640, 672, 704, 736, 768, 800, 832, 864, 896, 928, 1024};

// 32000 Hz.
inline constexpr std::int16_t kSwbOffsetLong32000[] = {
    0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  48,  56,  64,  72,  80,  88,  96,
    108, 120, 132, 144, 160, 176, 196, 216, 240, 264, 292, 320, 352, 384, 416, 448, 480, 512,
    544, 576, 608, 640, 672, 704, 736, 768, 800, 832, 864, 896, 928, 960, 992, 1024};

// 24000 and 22050 Hz.
inline constexpr std::int16_t kSwbOffsetLong24000[] = {
    0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  44,  52,  60,  68,  76,
    84,  92,  100, 108, 116, 124, 136, 148, 160, 172, 188, 204, 220, 240, 260, 284,
    308, 336, 364, 396, 432, 468, 508, 552, 600, 652, 704, 768, 832, 896, 960, 1024};

// 16000, 12000 and 11025 Hz.
inline constexpr std::int16_t kSwbOffsetLong16000[] = {
    0,   8,   16,  24,  32,  40,  48,  56,  64,  72,  80,  88,  100, 112, 124,
    136, 148, 160, 172, 184, 196, 212, 228, 244, 260, 280, 300, 320, 344, 368,
    396, 424, 456, 492, 532, 572, 616, 664, 716, 772, 832, 896, 960, 1024};

// 8000 and 7350 Hz.
inline constexpr std::int16_t kSwbOffsetLong8000[] = {
    0,   12,  24,  36,  48,  60,  72,  84,  96,  108, 120, 132, 144, 156,
    172, 188, 204, 220, 236, 252, 268, 288, 308, 328, 348, 372, 396, 420,
    448, 476, 508, 544, 580, 620, 664, 712, 764, 820, 880, 944, 1024};

inline constexpr const std::int16_t* _pAACSwbOffsetTableLong[kNumSamplingFrequencies] = {
    kSwbOffsetLong96000,  // 96000
    kSwbOffsetLong96000,  // 88200
    kSwbOffsetLong64000,  // 64000
    kSwbOffsetLong48000,  // 48000
    kSwbOffsetLong48000,  // 44100
    kSwbOffsetLong32000,  // 32000
    kSwbOffsetLong24000,  // 24000
    kSwbOffsetLong24000,  // 22050
    kSwbOffsetLong16000,  // 16000
    kSwbOffsetLong16000,  // 12000
    kSwbOffsetLong16000,  // 11025
    kSwbOffsetLong8000,   // 8000
    kSwbOffsetLong8000,   // 7350
};

inline constexpr std::int32_t _pAACNumSwbTableLong[kNumSamplingFrequencies] = {
    41, 41, 47, 49, 49, 51, 47, 47, 43, 43, 43, 40, 40};

// 96000, 88200 and 64000 Hz.
inline constexpr std::int16_t kSwbOffsetShort96000[] = {0,  4,  8,  12, 16, 20, 24,
                                                        32, 40, 48, 64, 92, 128};

// 48000, 44100 and 32000 Hz.
inline constexpr std::int16_t kSwbOffsetShort48000[] = {0,  4,  8,  12, 16, 20,  28, 36,
                                                        44, 56, 68, 80, 96, 112, 128};

// 24000 and 22050 Hz.
inline constexpr std::int16_t kSwbOffsetShort24000[] = {0,  4,  8,  12, 16, 20, 24,  28,
                                                        36, 44, 52, 64, 76, 92, 108, 128};

// 16000, 12000 and 11025 Hz.
inline constexpr std::int16_t kSwbOffsetShort16000[] = {0,  4,  8,  12, 16, 20, 24,  28,
                                                        32, 40, 48, 60, 72, 88, 108, 128};

// 8000 and 7350 Hz.
inline constexpr std::int16_t kSwbOffsetShort8000[] = {0,  4,  8,  12, 16, 20, 24,  28,
                                                       36, 44, 52, 60, 72, 88, 108, 128};

inline constexpr const std::int16_t* _pAACSwbOffsetTableShort[kNumSamplingFrequencies] = {
    kSwbOffsetShort96000,  // 96000
    kSwbOffsetShort96000,  // 88200
    kSwbOffsetShort96000,  // 64000
    kSwbOffsetShort48000,  // 48000
    kSwbOffsetShort48000,  // 44100
    kSwbOffsetShort48000,  // 32000
    kSwbOffsetShort24000,  // 24000
    kSwbOffsetShort24000,  // 22050
    kSwbOffsetShort16000,  // 16000
    kSwbOffsetShort16000,  // 12000
    kSwbOffsetShort16000,  // 11025
    kSwbOffsetShort8000,   // 8000
    kSwbOffsetShort8000,   // 7350
};

inline constexpr std::int32_t _pAACNumSwbTableShort[kNumSamplingFrequencies] = {
    12, 12, 12, 14, 14, 14, 15, 15, 15, 15, 15, 15, 15};

}  // namespace zetac::tables
