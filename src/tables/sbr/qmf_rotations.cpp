// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/sbr/qmf_rotations.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

// gain e^(i pi (first + step n) / half).
template <int size>
constexpr Rotations32fc<size> makeRotations(long double gain, long double first, long double step,
                                            int half) {
    Rotations32fc<size> rotations{};
    for (int n = 0; n < size; ++n) {
        const long double angle = core::kPi * (first + step * n) / half;
        rotations.re[n] = static_cast<float>(gain * core::cosine(angle));
        rotations.im[n] = static_cast<float>(gain * core::sine(angle));
    }
    return rotations;
}

}  // namespace

constexpr Rotations32fc<32> kQmfTurns32 = makeRotations<32>(1, 0, -1, 64);
constexpr Rotations32fc<32> kQmfAnalysisPhases = makeRotations<32>(2, -1, -2, 256);
constexpr Rotations32fc<32> kQmfSynthesisTurns = makeRotations<32>(1.0L / 64, -1, -4, 256);
constexpr Rotations32fc<32> kQmfDownPhases = makeRotations<32>(1.0L / 64, -127.5L, -255, 128);
constexpr Rotations32fc<64> kQmfTurns64 = makeRotations<64>(1, 0, -1, 128);
constexpr Rotations32fc<32> kQmfEncoderEvenPhases = makeRotations<32>(1, 1, 4, 256);
constexpr Rotations32fc<32> kQmfEncoderOddPhases = makeRotations<32>(1, 3, 4, 256);

}  // namespace zetac::tables
