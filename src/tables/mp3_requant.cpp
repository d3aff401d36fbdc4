#include "tables/mp3_requant.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

constexpr Table<double, kMP3MaxQuantised + 1> makePow43() {
    Table<double, kMP3MaxQuantised + 1> table{};
    for (int q = 0; q <= kMP3MaxQuantised; ++q) {
        table.values[q] = static_cast<double>(q * core::cubeRoot(q));
    }
    return table;
}

constexpr Table<double, 4> makeQuarterPower() {
    Table<double, 4> table{};
    for (int f = 0; f < 4; ++f) {
        table.values[f] = static_cast<double>(core::powerOfTwo(-0.25L * f));
    }
    return table;
}

}  // namespace

constexpr Table<double, kMP3MaxQuantised + 1> kMP3Pow43 = makePow43();
constexpr Table<double, 4> kMP3QuarterPower = makeQuarterPower();

}  // namespace zetac::tables
