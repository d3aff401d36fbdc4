// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/pow43.h"

#include <bit>

#include "aac/inverse_quantization.h"
#include "core/checks.h"
#include "core/constexpr_math.h"
#include "core/levels.h"

namespace zetac::aac {
namespace {

// c^(4/3) for c = 4096..8191 is a polynomial of degree 4 around the centre of each of 64 segments:
// the Taylor series in u = c - centre, -32..31, whose next term is below 2^-41 of the value. The
// coefficients are in Q46, and u is so short that every product is exact in 64 bits.
constexpr int kSegments = 64;
constexpr int kSegmentWidth = 64;
constexpr int kFractionBits = 46;

struct Segment {
    uint64_t value;
    int64_t slope[4];  // of u, u^2, u^3, u^4
};

// binomial(4/3, k), k = 1..4
constexpr long double kBinomial[4] = {4.0L / 3, 2.0L / 9, -4.0L / 81, 5.0L / 243};

// Makes every result a little too large, by more than the error of the evaluation, so that a result
// that should be whole, as for a cube, is not truncated to the number below.
constexpr long double kBias = 1 + 0x1p-40L;

constexpr Segment makeSegment(int index) {
    const long double centre = 4096 + kSegmentWidth * (index + 0.5L);
    long double term = centre * core::cubeRoot(centre) * kBias;
    Segment segment = {core::toFixedPoint<uint64_t>(term, kFractionBits), {}};
    for (int k = 0; k < 4; ++k) {
        term /= centre;
        segment.slope[k] = core::toFixedPoint<int64_t>(term * kBinomial[k], kFractionBits);
    }
    return segment;
}

constexpr tables::Table<Segment, kSegments> makeSegments() {
    tables::Table<Segment, kSegments> table{};
    for (int i = 0; i < kSegments; ++i) table.values[i] = makeSegment(i);
    return table;
}
constexpr tables::Table<Segment, kSegments> kSegment = makeSegments();

// 2^(-quarters/4 - thirds/3) at [quarters][thirds], Q63.
struct FactorTable {
    uint64_t values[4][3];
};
constexpr FactorTable makeFactors() {
    FactorTable table{};
    for (int quarters = 0; quarters < 4; ++quarters) {
        for (int thirds = 0; thirds < 3; ++thirds) {
            const int twelfths = 3 * quarters + 4 * thirds;
            table.values[quarters][thirds] =
                core::toFixedPoint<uint64_t>(core::powerOfTwo(-twelfths / 12.0L), 63);
        }
    }
    return table;
}
constexpr FactorTable kFactor = makeFactors();

// High word of the 128-bit product, less 2 at most.
uint64_t mulHigh64(uint64_t a, uint64_t b) {
    const uint64_t aHigh = a >> 32, aLow = a & 0xffffffff;
    const uint64_t bHigh = b >> 32, bLow = b & 0xffffffff;
    return aHigh * bHigh + (aHigh * bLow >> 32) + (aLow * bHigh >> 32);
}

// c^(4/3) in Q46, c = 4096..8191.
uint64_t normalisedPow43(uint32_t c) {
    const Segment& segment = kSegment.values[(c - 4096) / kSegmentWidth];
    const int64_t u = static_cast<int64_t>(c % kSegmentWidth) - kSegmentWidth / 2;
    int64_t sum = 0;
    for (int k = 3; k >= 0; --k) sum = (sum + segment.slope[k]) * u;
    return segment.value + static_cast<uint64_t>(sum);
}

bool pow43Scale(const Zet16s* src, Zet32s* dst, int scaleFactor, int len) {
    std::copy_n(src, len, dst);
    return core::select(kQuantInvLines)(dst, len, scaleFactor);
}

}  // namespace

// magnitude = c * 2^-k, so that magnitude^(4/3) = c^(4/3) * 2^-(k + k/3).
Zet32s pow43Large(uint32_t magnitude, const Pow43Scale& scale) {
    const int k = std::countl_zero(magnitude) - std::countl_zero(kMaxQuantised);
    const uint64_t value =
        mulHigh64(normalisedPow43(magnitude << k), kFactor.values[scale.quarters][k % 3]);  // Q45
    const int shift = 45 - 3 + k + k / 3 - scale.exponent;
    if (shift > 63) return 0;
    return shift > 0 ? static_cast<Zet32s>(value >> shift) : core::kMax32s;
}

}  // namespace zetac::aac

ZetStatus zetsPow43Scale_16s32s_Sf(const Zet16s* pSrc, Zet32s* pDst, int scaleFactor, int len) {
    using namespace zetac;
    ZETAC_REQUIRE(core::allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    return aac::pow43Scale(pSrc, pDst, scaleFactor, len) ? zetStsOk : zetStsAacCoefValErr;
}
