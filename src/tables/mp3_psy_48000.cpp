// Psychoacoustic model two at 48 kHz: the calculation partitions of ISO/IEC 11172-3, C.1.5.3 and
// the tables that follow from them.
#include <iterator>

#include "tables/mp3_psy.h"
#include "tables/mp3_psy_formulas.h"

namespace zetac::tables {
namespace {

// clang-format off
// Lines in each partition.
constexpr int kLinesLong[] = {
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2,
    3, 3, 3, 3, 3, 4, 4, 4, 4, 4, 5, 5, 5, 6, 7, 7, 8, 8, 8, 10, 10, 10, 13, 13, 14, 18, 18,
    20, 25, 25, 35, 67, 67,
};
constexpr int kLinesShort[] = {
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3,
    4, 4, 5, 5, 5, 7, 7, 11, 17,
};
// The partition in which each scale-factor band begins, the last one's end behind, and how many
// thousandths of that partition belong to the band.
constexpr std::uint8_t pPartToSfbBuoLong48000[kPsySfbLong + 1] = {
    0, 4, 7, 11, 14, 17, 19, 22, 24, 27, 30, 33, 36, 40, 43, 46, 49, 52, 54, 57, 59, 60,
};
constexpr int kThousandthsLong[kPsySfbLong + 1] = {
    1000, 944, 389, 833, 278, 361, 583, 917, 250, 583, 352, 389, 375, 856, 611, 840, 783,
    816, 114, 687, 548, 92,
};
constexpr std::uint8_t pPartToSfbBuoShort48000[kPsySfbShort + 1] = {
    0, 3, 5, 8, 11, 15, 19, 22, 26, 30, 32, 35, 37,
};
constexpr int kThousandthsShort[kPsySfbShort + 1] = {
    1000, 833, 167, 500, 833, 833, 417, 83, 55, 958, 433, 833, 382,
};
// clang-format on

constexpr auto pPsyPartitionTableLong48000 = psy::makePartitions(48000, 1024, kLinesLong);
constexpr auto pPsyPartitionTableShort48000 = psy::makePartitions(48000, 256, kLinesShort);
constexpr auto pSprdngBoundLong48000 = psy::spreadingBounds(pPsyPartitionTableLong48000);
constexpr auto pSprdngPackedLong48000 =
    psy::packedSpreading<psy::packedSize(pSprdngBoundLong48000)>(pPsyPartitionTableLong48000,
                                                                 pSprdngBoundLong48000);
constexpr auto pBMLDRatioLong48000 = psy::bmldRatios(pPsyPartitionTableLong48000);
constexpr auto pQuietThresholdLong48000 = psy::quietThresholds(pPsyPartitionTableLong48000);
constexpr auto pPartToSfbWeightLong48000 = psy::weights(kThousandthsLong);
constexpr auto pSprdngBoundShort48000 = psy::spreadingBounds(pPsyPartitionTableShort48000);
constexpr auto pSprdngPackedShort48000 =
    psy::packedSpreading<psy::packedSize(pSprdngBoundShort48000)>(pPsyPartitionTableShort48000,
                                                                  pSprdngBoundShort48000);
constexpr auto pBMLDRatioShort48000 = psy::bmldRatios(pPsyPartitionTableShort48000);
constexpr auto pQuietThresholdShort48000 = psy::quietThresholds(pPsyPartitionTableShort48000);
constexpr auto pPartToSfbWeightShort48000 = psy::weights(kThousandthsShort);
constexpr auto kBlocksLong = psy::spreadingBlocks(pSprdngBoundLong48000);
constexpr auto kRowsLong = psy::blockSpreading<psy::blockRows(pSprdngBoundLong48000)>(
    pSprdngBoundLong48000, pSprdngPackedLong48000);
constexpr auto kBlocksShort = psy::spreadingBlocks(pSprdngBoundShort48000);
constexpr auto kRowsShort = psy::blockSpreading<psy::blockRows(pSprdngBoundShort48000)>(
    pSprdngBoundShort48000, pSprdngPackedShort48000);
constexpr auto pSMRShort48000 = psy::shortRatios<std::size(kLinesShort)>();

}  // namespace

constexpr PsyTables kPsyTables48000 = {
    .pPsyPartitionTableLong = pPsyPartitionTableLong48000.first,
    .pPsyPartitionTableShort = pPsyPartitionTableShort48000.first,
    .numLong = std::size(kLinesLong),
    .numShort = std::size(kLinesShort),
    .pSprdngBoundLong = pSprdngBoundLong48000.data(),
    .pSprdngPackedLong = pSprdngPackedLong48000.data(),
    .pSprdngBoundShort = pSprdngBoundShort48000.data(),
    .pSprdngPackedShort = pSprdngPackedShort48000.data(),
    .pBMLDRatioLong = pBMLDRatioLong48000.data(),
    .pBMLDRatioShort = pBMLDRatioShort48000.data(),
    .pQuietThresholdLong = pQuietThresholdLong48000.data(),
    .pQuietThresholdShort = pQuietThresholdShort48000.data(),
    .pPartToSfbBuoLong = pPartToSfbBuoLong48000,
    .pPartToSfbWeightLong = pPartToSfbWeightLong48000.data(),
    .pPartToSfbBuoShort = pPartToSfbBuoShort48000,
    .pPartToSfbWeightShort = pPartToSfbWeightShort48000.data(),
    .pSMRShort = pSMRShort48000.data(),
    .blocksLong = kBlocksLong.data(),
    .rowsLong = kRowsLong.weights,
    .blocksShort = kBlocksShort.data(),
    .rowsShort = kRowsShort.weights,
};

}  // namespace zetac::tables
