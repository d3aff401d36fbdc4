// Rotations of the AAC filter bank, Q31. cosine and sine stand in arrays of their own, so that a
// vector of neighbouring rotations is one load.
#pragma once

#include <cstdint>

namespace zetac::tables {

template <int kLength>
struct Rotations {
    alignas(64) int32_t cosine[kLength];
    alignas(64) int32_t sine[kLength];
};

// DCT-IV of M = 2 * kLength values: rotation n is by pi * (n + 1/8) / M.
extern const Rotations<512> kDctRotations1024;
extern const Rotations<64> kDctRotations128;

// Between the passes of a radix-8 FFT of 8 * kColumns points: row k - 1, column n is
// the rotation by 2 pi * k * n / (8 * kColumns), k = 1..7.
extern const Rotations<7 * 64> kFftRotations512;
extern const Rotations<7 * 8> kFftRotations64;

// The same rotations for the second pass over 512 points, where eight neighbours share one.
extern const Rotations<7 * 64> kFftRotations512Second;

}  // namespace zetac::tables
