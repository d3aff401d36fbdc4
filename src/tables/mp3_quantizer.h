// Powers that the quantiser of Layer III steps by (ISO/IEC 11172-3, C.1.5.4.4.2), in singles.
#pragma once

#include "tables/mp3_requant.h"
#include "tables/table.h"

namespace zetac::tables {

// q^(4/3), rounded to nearest.
extern const Table<float, kMP3MaxQuantised + 1> kMP3Pow43Single;

// 2^(i/16), rounded to nearest.
extern const Table<float, 16> kMP3SixteenthPower;

}  // namespace zetac::tables
