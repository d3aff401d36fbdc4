// The tables of psychoacoustic model two, one set per sampling frequency.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstddef>
#include <cstdint>

namespace zetac::tables {

inline constexpr int kPsySfbLong = 21;  // scale-factor bands with a ratio
inline constexpr int kPsySfbShort = 12;

// The spreading of eight neighbouring partitions, for vectors of them: in row r, lane l is spread
// into by partition first + l + r.
struct SpreadingBlock {
    std::int16_t first;  // at least -kSpreadingMargin
    std::int16_t rows;
};
inline constexpr int kSpreadingMargin = 8;
template <std::size_t kRows>
struct SpreadingRows {
    alignas(32) std::int32_t weights[kRows][8];  // Q31
};

struct PsyTables {
    const std::int16_t* pPsyPartitionTableLong;  // first lines, and the end
    const std::int16_t* pPsyPartitionTableShort;
    int numLong;  // partitions
    int numShort;
    const std::uint32_t* pSprdngBoundLong;  // first (low half) and last partition of each range
    const std::int32_t* pSprdngPackedLong;  // Q31, range by range
    const std::uint32_t* pSprdngBoundShort;
    const std::int32_t* pSprdngPackedShort;
    const std::int32_t* pBMLDRatioLong;  // Q31
    const std::int32_t* pBMLDRatioShort;
    const std::uint64_t* pQuietThresholdLong;  // on the scale of the partition energies
    const std::uint64_t* pQuietThresholdShort;
    const std::uint8_t* pPartToSfbBuoLong;     // the partition that each band boundary falls in
    const std::int32_t* pPartToSfbWeightLong;  // its share above the boundary, Q31
    const std::uint8_t* pPartToSfbBuoShort;
    const std::int32_t* pPartToSfbWeightShort;
    const std::int32_t* pSMRShort;  // threshold over spread energy, Q31

    const SpreadingBlock* blocksLong;  // the spreading once more
    const std::int32_t (*rowsLong)[8];
    const SpreadingBlock* blocksShort;
    const std::int32_t (*rowsShort)[8];
};

// By sampling_frequency: 44.1, 48 and 32 kHz.
extern const PsyTables _zet_pPsyTables_MP3[3];

}  // namespace zetac::tables
