// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/sbr/qmf_fixed.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

// e^(i angle) in a format of 31 bits or less, with 1 as the largest value that Q31 holds.
constexpr Zet32sc unitCircle(long double angle, int fractionBits) {
    const auto toFixed = [=](long double x) {
        const std::int64_t scaled = core::roundToInteger(core::scaleByPowerOfTwo(x, fractionBits));
        return static_cast<Zet32s>(scaled > INT32_MAX ? INT32_MAX : scaled);
    };
    return {toFixed(core::cosine(angle)), toFixed(core::sine(angle))};
}

// Rotation i is by angle(i).
template <int kPoints, class Angle>
constexpr Rotations32sc<kPoints> makeRotations(int fractionBits, Angle angle) {
    Rotations32sc<kPoints> table{};
    for (int i = 0; i < kPoints; ++i) table.values[i] = unitCircle(angle(i), fractionBits);
    return table;
}

// k + 1/2 of point m.
constexpr long double bandOfPoint(int m, int bands) {
    return (m < bands / 2 ? 2 * m : 2 * bands - 1 - 2 * m) + 0.5L;
}

// Phase of a synthesis bank, conjugate for the odd bands.
template <int kBands>
constexpr Rotations32sc<kBands> makeSynthesisPhases(long double phase) {
    return makeRotations<kBands>(kQmfPreProcBits, [phase](int m) {
        const long double angle = core::kPi / (2 * kBands) * bandOfPoint(m, kBands) * phase;
        return m < kBands / 2 ? angle : -angle;
    });
}

template <int kPoints>
constexpr Rotations32sc<kPoints> makePostRotations() {
    return makeRotations<kPoints>(31, [](int n) { return -core::kPi * n / (2 * kPoints); });
}

template <int kPoints>
constexpr Rotations32sc<kPoints - 8> makeTwiddles(int fractionBits) {
    return makeRotations<kPoints - 8>(fractionBits, [](int i) {
        const int row = i / 8 + 1;
        const int column = i % 8;
        return 2 * core::kPi * row * column / kPoints;
    });
}

}  // namespace

constexpr Rotations32sc<32> pTabPreProc_CosSin_DCT4_64_32s =
    makeRotations<32>(kQmfPreProcBits, [](int n) { return core::kPi * n / 64; });
constexpr Rotations32sc<32> pTabPostProc_CosSin_DCT4_64_32s =
    makeRotations<32>(31, [](int m) { return -core::kPi / 128 * bandOfPoint(m, 32); });
constexpr Rotations32sc<32> pTabPreProc_QMFA_LPmode =
    makeRotations<32>(kQmfPreProcBits, [](int n) { return core::kPi * (n - 48) / 64; });
constexpr Rotations32sc<64> pTabPreProc_QMFS_HQ_FAST = makeSynthesisPhases<64>(-255);
constexpr Rotations32sc<32> pTabPreProc_QMFSD_HQmode = makeSynthesisPhases<32>(-127.5L);
constexpr Rotations32sc<64> pTabPostProc_QMFS = makePostRotations<64>();
constexpr Rotations32sc<32> pTabPostProc_QMFSD = makePostRotations<32>();
constexpr Rotations32sc<7 * 8> kQmfTwiddles64 = makeTwiddles<64>(28);
constexpr Rotations32sc<3 * 8> kQmfTwiddles32 = makeTwiddles<32>(29);

}  // namespace zetac::tables
