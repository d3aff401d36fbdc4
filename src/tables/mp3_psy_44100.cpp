// Psychoacoustic model two at 44.1 kHz: the calculation partitions of ISO/IEC 11172-3, C.1.5.3 and
// the tables that follow from them.
#include <iterator>

#include "tables/mp3_psy.h"
#include "tables/mp3_psy_formulas.h"

namespace zetac::tables {
namespace {

// clang-format off
// Lines in each partition.
constexpr int kLinesLong[] = {
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 3,
    3, 3, 3, 3, 3, 3, 4, 4, 4, 5, 5, 5, 6, 6, 7, 7, 7, 9, 9, 9, 10, 10, 11, 14, 14, 15, 20,
    20, 21, 27, 27, 36, 73, 18,
};
constexpr int kLinesShort[] = {
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3,
    3, 4, 4, 5, 5, 5, 7, 7, 7, 19,
};
// The partition in which each scale-factor band begins, the last one's end behind, and how many
// thousandths of that partition belong to the band.
constexpr std::uint8_t pPartToSfbBuoLong44100[kPsySfbLong + 1] = {
    0, 4, 7, 11, 14, 17, 18, 21, 24, 27, 30, 33, 36, 40, 43, 46, 49, 52, 55, 57, 59, 61,
};
constexpr int kThousandthsLong[kPsySfbLong + 1] = {
    1000, 944, 389, 833, 278, 861, 83, 417, 750, 194, 426, 463, 180, 900, 532, 376, 550,
    448, 597, 357, 278, 40,
};
constexpr std::uint8_t pPartToSfbBuoShort44100[kPsySfbShort + 1] = {
    0, 3, 5, 8, 11, 15, 20, 23, 27, 30, 33, 36, 38,
};
constexpr int kThousandthsShort[kPsySfbShort + 1] = {
    1000, 833, 167, 500, 833, 833, 750, 417, 944, 625, 700, 833, 0,
};
// clang-format on

constexpr auto pPsyPartitionTableLong44100 = psy::makePartitions(44100, 1024, kLinesLong);
constexpr auto pPsyPartitionTableShort44100 = psy::makePartitions(44100, 256, kLinesShort);
constexpr auto pSprdngBoundLong44100 = psy::spreadingBounds(pPsyPartitionTableLong44100);
constexpr auto pSprdngPackedLong44100 =
    psy::packedSpreading<psy::packedSize(pSprdngBoundLong44100)>(pPsyPartitionTableLong44100,
                                                                 pSprdngBoundLong44100);
constexpr auto pBMLDRatioLong44100 = psy::bmldRatios(pPsyPartitionTableLong44100);
constexpr auto pQuietThresholdLong44100 = psy::quietThresholds(pPsyPartitionTableLong44100);
constexpr auto pPartToSfbWeightLong44100 = psy::weights(kThousandthsLong);
constexpr auto pSprdngBoundShort44100 = psy::spreadingBounds(pPsyPartitionTableShort44100);
constexpr auto pSprdngPackedShort44100 =
    psy::packedSpreading<psy::packedSize(pSprdngBoundShort44100)>(pPsyPartitionTableShort44100,
                                                                  pSprdngBoundShort44100);
constexpr auto pBMLDRatioShort44100 = psy::bmldRatios(pPsyPartitionTableShort44100);
constexpr auto pQuietThresholdShort44100 = psy::quietThresholds(pPsyPartitionTableShort44100);
constexpr auto pPartToSfbWeightShort44100 = psy::weights(kThousandthsShort);
constexpr auto kBlocksLong = psy::spreadingBlocks(pSprdngBoundLong44100);
constexpr auto kRowsLong = psy::blockSpreading<psy::blockRows(pSprdngBoundLong44100)>(
    pSprdngBoundLong44100, pSprdngPackedLong44100);
constexpr auto kBlocksShort = psy::spreadingBlocks(pSprdngBoundShort44100);
constexpr auto kRowsShort = psy::blockSpreading<psy::blockRows(pSprdngBoundShort44100)>(
    pSprdngBoundShort44100, pSprdngPackedShort44100);
constexpr auto pSMRShort44100 = psy::shortRatios<std::size(kLinesShort)>();

}  // namespace

constexpr PsyTables kPsyTables44100 = {
    .pPsyPartitionTableLong = pPsyPartitionTableLong44100.first,
    .pPsyPartitionTableShort = pPsyPartitionTableShort44100.first,
    .numLong = std::size(kLinesLong),
    .numShort = std::size(kLinesShort),
    .pSprdngBoundLong = pSprdngBoundLong44100.data(),
    .pSprdngPackedLong = pSprdngPackedLong44100.data(),
    .pSprdngBoundShort = pSprdngBoundShort44100.data(),
    .pSprdngPackedShort = pSprdngPackedShort44100.data(),
    .pBMLDRatioLong = pBMLDRatioLong44100.data(),
    .pBMLDRatioShort = pBMLDRatioShort44100.data(),
    .pQuietThresholdLong = pQuietThresholdLong44100.data(),
    .pQuietThresholdShort = pQuietThresholdShort44100.data(),
    .pPartToSfbBuoLong = pPartToSfbBuoLong44100,
    .pPartToSfbWeightLong = pPartToSfbWeightLong44100.data(),
    .pPartToSfbBuoShort = pPartToSfbBuoShort44100,
    .pPartToSfbWeightShort = pPartToSfbWeightShort44100.data(),
    .pSMRShort = pSMRShort44100.data(),
    .blocksLong = kBlocksLong.data(),
    .rowsLong = kRowsLong.weights,
    .blocksShort = kBlocksShort.data(),
    .rowsShort = kRowsShort.weights,
};

}  // namespace zetac::tables
