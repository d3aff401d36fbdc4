// The bounds between the positions of intensity stereo (ISO/IEC 11172-3, 2.4.3.4.9.3), as ratios of
// the left channel's energy to the right one's.
#pragma once

#include <cstdint>

namespace zetac::tables {

// tan^2((2k - 1) pi / 24), k = 1..6, in Q15: position k begins there.
inline constexpr std::int32_t pIsRatioSqrTable[7] = {0, 568, 5622, 19293, 55653, 190986, 1890566};

}  // namespace zetac::tables
