// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/mp3/psycho.h"

#include <algorithm>
#include <iterator>

#include "tables/mp3/psycho_formulas.h"

namespace zetac::tables {
namespace {

// What the standard lists for a sampling frequency (ISO/IEC 11172-3, C.1.5.3): the lines in each
// calculation partition, the partition in which each scale-factor band begins, the last one's end
// behind, and how many thousandths of that partition belong to the band.
// clang-format off
struct Rate44100 {
    static constexpr int kRate = 44100;
    static constexpr int kLinesLong[] = {
        1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 3,
        3, 3, 3, 3, 3, 3, 4, 4, 4, 5, 5, 5, 6, 6, 7, 7, 7, 9, 9, 9, 10, 10, 11, 14, 14, 15, 20,
        20, 21, 27, 27, 36, 73, 18,
    };
    static constexpr int kLinesShort[] = {
        1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3,
        3, 4, 4, 5, 5, 5, 7, 7, 7, 19,
    };
    static constexpr std::uint8_t pPartToSfbBuoLong[kPsySfbLong + 1] = {
        0, 4, 7, 11, 14, 17, 18, 21, 24, 27, 30, 33, 36, 40, 43, 46, 49, 52, 55, 57, 59, 61,
    };
    static constexpr int kThousandthsLong[kPsySfbLong + 1] = {
        1000, 944, 389, 833, 278, 861, 83, 417, 750, 194, 426, 463, 180, 900, 532, 376, 550,
        448, 597, 357, 278, 40,
    };
    static constexpr std::uint8_t pPartToSfbBuoShort[kPsySfbShort + 1] = {
        0, 3, 5, 8, 11, 15, 20, 23, 27, 30, 33, 36, 38,
    };
    static constexpr int kThousandthsShort[kPsySfbShort + 1] = {
        1000, 833, 167, 500, 833, 833, 750, 417, 944, 625, 700, 833, 0,
    };
};
struct Rate48000 {
    static constexpr int kRate = 48000;
    static constexpr int kLinesLong[] = {
        1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2,
        3, 3, 3, 3, 3, 4, 4, 4, 4, 4, 5, 5, 5, 6, 7, 7, 8, 8, 8, 10, 10, 10, 13, 13, 14, 18, 18,
        20, 25, 25, 35, 67, 67,
    };
    static constexpr int kLinesShort[] = {
        1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3,
        4, 4, 5, 5, 5, 7, 7, 11, 17,
    };
    static constexpr std::uint8_t pPartToSfbBuoLong[kPsySfbLong + 1] = {
        0, 4, 7, 11, 14, 17, 19, 22, 24, 27, 30, 33, 36, 40, 43, 46, 49, 52, 54, 57, 59, 60,
    };
    static constexpr int kThousandthsLong[kPsySfbLong + 1] = {
        1000, 944, 389, 833, 278, 361, 583, 917, 250, 583, 352, 389, 375, 856, 611, 840, 783,
        816, 114, 687, 548, 92,
    };
    static constexpr std::uint8_t pPartToSfbBuoShort[kPsySfbShort + 1] = {
        0, 3, 5, 8, 11, 15, 19, 22, 26, 30, 32, 35, 37,
    };
    static constexpr int kThousandthsShort[kPsySfbShort + 1] = {
        1000, 833, 167, 500, 833, 833, 417, 83, 55, 958, 433, 833, 382,
    };
};
struct Rate32000 {
    static constexpr int kRate = 32000;
    static constexpr int kLinesLong[] = {
        2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3, 3, 4, 4,
        4, 5, 5, 5, 5, 5, 6, 6, 6, 8, 8, 8, 10, 10, 10, 12, 12, 13, 14, 14, 16, 20, 20, 23, 27,
        27, 32, 37, 37, 12,
    };
    static constexpr int kLinesShort[] = {
        1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3,
        3, 3, 3, 4, 4, 4, 5, 5, 6, 7, 7, 8, 10,
    };
    static constexpr std::uint8_t pPartToSfbBuoLong[kPsySfbLong + 1] = {
        0, 2, 4, 6, 7, 9, 11, 14, 16, 19, 22, 26, 30, 34, 37, 41, 44, 48, 51, 54, 56, 58,
    };
    static constexpr int kThousandthsLong[kPsySfbLong + 1] = {
        1000, 472, 694, 917, 139, 361, 583, 917, 250, 130, 167, 611, 522, 967, 83, 383, 5, 726,
        519, 739, 116, 0,
    };
    static constexpr std::uint8_t pPartToSfbBuoShort[kPsySfbShort + 1] = {
        0, 3, 5, 8, 11, 15, 20, 24, 29, 33, 37, 40, 41,
    };
    static constexpr int kThousandthsShort[kPsySfbShort + 1] = {
        1000, 833, 167, 500, 833, 833, 750, 750, 944, 625, 528, 62, 0,
    };
};
// clang-format on

// What follows for one length of block.
template <int kRate, int kFftLength, const auto& kLines>
struct Block {
    static constexpr auto kPartitions = psy::makePartitions(kRate, kFftLength, kLines);
    static constexpr auto kBounds = psy::spreadingBounds(kPartitions);
    static constexpr auto kPacked =
        psy::packedSpreading<psy::packedSize(kBounds)>(kPartitions, kBounds);
    static constexpr auto kBlocks = psy::spreadingBlocks(kBounds);
    static constexpr auto kRows = psy::blockSpreading<psy::blockRows(kBounds)>(kBounds, kPacked);
    static constexpr auto kBmld = psy::bmldRatios(kPartitions);
    static constexpr auto kQuiet = psy::quietThresholds(kPartitions);
    static_assert(*std::max_element(kQuiet.begin(), kQuiet.end()) < std::uint64_t{1} << 42,
                  "a bound of the model");
};

template <class Rate>
struct Tables {
    using Long = Block<Rate::kRate, 1024, Rate::kLinesLong>;
    using Short = Block<Rate::kRate, 256, Rate::kLinesShort>;
    static constexpr auto kWeightLong = psy::weights(Rate::kThousandthsLong);
    static constexpr auto kWeightShort = psy::weights(Rate::kThousandthsShort);
    static constexpr auto kRatioShort = psy::shortRatios<std::size(Rate::kLinesShort)>();
    static constexpr PsyTables kAll = {
        .pPsyPartitionTableLong = Long::kPartitions.first,
        .pPsyPartitionTableShort = Short::kPartitions.first,
        .numLong = std::size(Rate::kLinesLong),
        .numShort = std::size(Rate::kLinesShort),
        .pSprdngBoundLong = Long::kBounds.data(),
        .pSprdngPackedLong = Long::kPacked.data(),
        .pSprdngBoundShort = Short::kBounds.data(),
        .pSprdngPackedShort = Short::kPacked.data(),
        .pBMLDRatioLong = Long::kBmld.data(),
        .pBMLDRatioShort = Short::kBmld.data(),
        .pQuietThresholdLong = Long::kQuiet.data(),
        .pQuietThresholdShort = Short::kQuiet.data(),
        .pPartToSfbBuoLong = Rate::pPartToSfbBuoLong,
        .pPartToSfbWeightLong = kWeightLong.data(),
        .pPartToSfbBuoShort = Rate::pPartToSfbBuoShort,
        .pPartToSfbWeightShort = kWeightShort.data(),
        .pSMRShort = kRatioShort.data(),
        .blocksLong = Long::kBlocks.data(),
        .rowsLong = Long::kRows.weights,
        .blocksShort = Short::kBlocks.data(),
        .rowsShort = Short::kRows.weights,
    };
};

}  // namespace

constexpr PsyTables _zet_pPsyTables_MP3[3] = {Tables<Rate44100>::kAll, Tables<Rate48000>::kAll,
                                              Tables<Rate32000>::kAll};

}  // namespace zetac::tables
