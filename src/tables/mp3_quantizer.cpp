#include "tables/mp3_quantizer.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

constexpr Table<float, kMP3MaxQuantised + 1> makePow43() {
    Table<float, kMP3MaxQuantised + 1> table{};
    for (int q = 0; q <= kMP3MaxQuantised; ++q)
        table.values[q] = static_cast<float>(q * core::cubeRoot(q));
    return table;
}

constexpr Table<float, 16> makeSixteenthPower() {
    Table<float, 16> table{};
    for (int i = 0; i < 16; ++i) table.values[i] = static_cast<float>(core::powerOfTwo(i / 16.0L));
    return table;
}

}  // namespace

constexpr Table<float, kMP3MaxQuantised + 1> kMP3Pow43Single = makePow43();
constexpr Table<float, 16> kMP3SixteenthPower = makeSixteenthPower();

}  // namespace zetac::tables
