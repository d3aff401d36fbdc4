// The window C of the polyphase analysis filter bank (ISO/IEC 11172-3, table C.1) in fixed point.
#pragma once

#include <cstdint>

namespace zetac::tables {

// C is D / 32, and D has up to 18 bits in units of 2^-16: D = 4 coarse + fine, so that 16-bit
// multipliers serve. In the order of time, oldest sample first: entry n is D[511 - n].
struct AnalysisWindowWords {
    alignas(64) std::int16_t coarse[512];
    alignas(64) std::int16_t fine[512];
};
extern const AnalysisWindowWords kAnalysisWindowWords;

// 1 / (2 cos(pi / (2 size) * (2 k + 1))), k < size / 2, for sizes 2, 4, 8, 16 and 32; the values of
// a size begin at size / 2 - 1. Q27.
inline constexpr int kDct3SecantFractionBits = 27;
struct Dct3Secants {
    std::int32_t values[31];
    constexpr const std::int32_t* ofSize(int size) const { return values + size / 2 - 1; }
};
extern const Dct3Secants kDct3Secants;

}  // namespace zetac::tables
