// Psychoacoustic model two at 32 kHz: the calculation partitions of ISO/IEC 11172-3, C.1.5.3 and
// the tables that follow from them.
#include <iterator>

#include "tables/mp3_psy.h"
#include "tables/mp3_psy_formulas.h"

namespace zetac::tables {
namespace {

// clang-format off
// Lines in each partition.
constexpr int kLinesLong[] = {
    2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3, 3, 4, 4,
    4, 5, 5, 5, 5, 5, 6, 6, 6, 8, 8, 8, 10, 10, 10, 12, 12, 13, 14, 14, 16, 20, 20, 23, 27,
    27, 32, 37, 37, 12,
};
constexpr int kLinesShort[] = {
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3,
    3, 3, 3, 4, 4, 4, 5, 5, 6, 7, 7, 8, 10,
};
// The partition in which each scale-factor band begins, the last one's end behind, and how many
// thousandths of that partition belong to the band.
constexpr std::uint8_t pPartToSfbBuoLong32000[kPsySfbLong + 1] = {
    0, 2, 4, 6, 7, 9, 11, 14, 16, 19, 22, 26, 30, 34, 37, 41, 44, 48, 51, 54, 56, 58,
};
constexpr int kThousandthsLong[kPsySfbLong + 1] = {
    1000, 472, 694, 917, 139, 361, 583, 917, 250, 130, 167, 611, 522, 967, 83, 383, 5, 726,
    519, 739, 116, 0,
};
constexpr std::uint8_t pPartToSfbBuoShort32000[kPsySfbShort + 1] = {
    0, 3, 5, 8, 11, 15, 20, 24, 29, 33, 37, 40, 41,
};
constexpr int kThousandthsShort[kPsySfbShort + 1] = {
    1000, 833, 167, 500, 833, 833, 750, 750, 944, 625, 528, 62, 0,
};
// clang-format on

constexpr auto pPsyPartitionTableLong32000 = psy::makePartitions(32000, 1024, kLinesLong);
constexpr auto pPsyPartitionTableShort32000 = psy::makePartitions(32000, 256, kLinesShort);
constexpr auto pSprdngBoundLong32000 = psy::spreadingBounds(pPsyPartitionTableLong32000);
constexpr auto pSprdngPackedLong32000 =
    psy::packedSpreading<psy::packedSize(pSprdngBoundLong32000)>(pPsyPartitionTableLong32000,
                                                                 pSprdngBoundLong32000);
constexpr auto pBMLDRatioLong32000 = psy::bmldRatios(pPsyPartitionTableLong32000);
constexpr auto pQuietThresholdLong32000 = psy::quietThresholds(pPsyPartitionTableLong32000);
constexpr auto pPartToSfbWeightLong32000 = psy::weights(kThousandthsLong);
constexpr auto pSprdngBoundShort32000 = psy::spreadingBounds(pPsyPartitionTableShort32000);
constexpr auto pSprdngPackedShort32000 =
    psy::packedSpreading<psy::packedSize(pSprdngBoundShort32000)>(pPsyPartitionTableShort32000,
                                                                  pSprdngBoundShort32000);
constexpr auto pBMLDRatioShort32000 = psy::bmldRatios(pPsyPartitionTableShort32000);
constexpr auto pQuietThresholdShort32000 = psy::quietThresholds(pPsyPartitionTableShort32000);
constexpr auto pPartToSfbWeightShort32000 = psy::weights(kThousandthsShort);
constexpr auto kBlocksLong = psy::spreadingBlocks(pSprdngBoundLong32000);
constexpr auto kRowsLong = psy::blockSpreading<psy::blockRows(pSprdngBoundLong32000)>(
    pSprdngBoundLong32000, pSprdngPackedLong32000);
constexpr auto kBlocksShort = psy::spreadingBlocks(pSprdngBoundShort32000);
constexpr auto kRowsShort = psy::blockSpreading<psy::blockRows(pSprdngBoundShort32000)>(
    pSprdngBoundShort32000, pSprdngPackedShort32000);
constexpr auto pSMRShort32000 = psy::shortRatios<std::size(kLinesShort)>();

}  // namespace

constexpr PsyTables kPsyTables32000 = {
    .pPsyPartitionTableLong = pPsyPartitionTableLong32000.first,
    .pPsyPartitionTableShort = pPsyPartitionTableShort32000.first,
    .numLong = std::size(kLinesLong),
    .numShort = std::size(kLinesShort),
    .pSprdngBoundLong = pSprdngBoundLong32000.data(),
    .pSprdngPackedLong = pSprdngPackedLong32000.data(),
    .pSprdngBoundShort = pSprdngBoundShort32000.data(),
    .pSprdngPackedShort = pSprdngPackedShort32000.data(),
    .pBMLDRatioLong = pBMLDRatioLong32000.data(),
    .pBMLDRatioShort = pBMLDRatioShort32000.data(),
    .pQuietThresholdLong = pQuietThresholdLong32000.data(),
    .pQuietThresholdShort = pQuietThresholdShort32000.data(),
    .pPartToSfbBuoLong = pPartToSfbBuoLong32000,
    .pPartToSfbWeightLong = pPartToSfbWeightLong32000.data(),
    .pPartToSfbBuoShort = pPartToSfbBuoShort32000,
    .pPartToSfbWeightShort = pPartToSfbWeightShort32000.data(),
    .pSMRShort = pSMRShort32000.data(),
    .blocksLong = kBlocksLong.data(),
    .rowsLong = kRowsLong.weights,
    .blocksShort = kBlocksShort.data(),
    .rowsShort = kRowsShort.weights,
};

}  // namespace zetac::tables
