// Linear prediction of one band for HF generation from fixed-point samples (ISO/IEC 14496-3,
// 4.6.18.6.2 and 4.6.18.8.5): the covariance method of order two.
//
// Covariances are sums of 64-bit products. The equations are nearly singular for tonal bands: the
// relaxed determinant may be 2^-20 of its terms. Double precision solves them with 2^-33 to spare,
// which a fixed-point quotient of 32-bit mantissas would not have, and needs no scaling.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <bit>

#include "core/checks.h"
#include "core/fixed_point.h"

namespace zetac::sbr {
namespace {

// As in the floating predictors: 1 / (1 + 10^-6) in single precision.
constexpr double kRelaxation = 0.99999905F;
constexpr double kLimit = 4.0;
constexpr int kAlphaFractionBits = 29;

// Real and complex numbers alike. Products are x * conj(y).
struct Real {
    using Sample = Zet32s;
    int64_t value = 0;

    static uint32_t magnitude(Sample x) { return static_cast<uint32_t>(x ^ (x >> 31)); }
    void addProduct(Sample x, Sample y) { value += int64_t{x} * y; }
    void subtractProduct(Sample x, Sample y) { value -= int64_t{x} * y; }
    double re() const { return static_cast<double>(value); }
    static constexpr double im() { return 0; }
};
struct Complex {
    using Sample = Zet32sc;
    int64_t sumRe = 0;
    int64_t sumIm = 0;

    static uint32_t magnitude(Sample x) { return Real::magnitude(x.re) | Real::magnitude(x.im); }
    void addProduct(Sample x, Sample y) {
        sumRe += int64_t{x.re} * y.re + int64_t{x.im} * y.im;
        sumIm += int64_t{x.im} * y.re - int64_t{x.re} * y.im;
    }
    void subtractProduct(Sample x, Sample y) {
        sumRe -= int64_t{x.re} * y.re + int64_t{x.im} * y.im;
        sumIm -= int64_t{x.im} * y.re - int64_t{x.re} * y.im;
    }
    double re() const { return static_cast<double>(sumRe); }
    double im() const { return static_cast<double>(sumIm); }
};

Zet32s roundShifted(Zet32s x, int shift) {
    return shift == 0 ? x : core::roundShift(x, shift);
}
Zet32sc roundShifted(Zet32sc x, int shift) {
    return {roundShifted(x.re, shift), roundShifted(x.im, shift)};
}

// phi(i, j) = sum over n = 2 .. numSlots + 1 of X[n - i] conj(X[n - j]).
template <class Sum>
struct Covariances {
    Sum phi01, phi02, phi11, phi12, phi22;
};

// The shift to the right with which no covariance exceeds 2^62: magnitudes of parts are at most
// 2^b then, a product of complex samples at most 2^(2b + 1), and there are numSlots + 1 of them.
template <class Sum, class Sample>
int safeShift(const Sample* const rows[], int band, int numSlots) {
    uint32_t bits = 0;
    for (int n = 0; n < numSlots + 2; ++n) bits |= Sum::magnitude(rows[n][band]);
    const auto width = [](uint32_t x) { return static_cast<int>(std::bit_width(x)); };
    const int room = (61 - width(static_cast<uint32_t>(numSlots) + 1)) / 2;
    return std::max(width(bits) - room, 0);
}

// phi(1, 2) and phi(2, 2) are phi(0, 1) and phi(1, 1) one slot earlier: the sums differ by their
// ends, and integers make that exact.
template <class Sum, class Sample>
Covariances<Sum> covariances(const Sample* const rows[], int band, int numSlots) {
    const int shift = safeShift<Sum>(rows, band, numSlots);
    const auto sample = [&](int n) { return roundShifted(rows[n][band], shift); };
    const Sample first = sample(0);
    const Sample second = sample(1);
    Covariances<Sum> c;
    Sample older = first;
    Sample old = second;
    for (int n = 2; n < numSlots + 2; ++n) {
        const Sample x = sample(n);
        c.phi01.addProduct(x, old);
        c.phi02.addProduct(x, older);
        c.phi11.addProduct(old, old);
        older = old;
        old = x;
    }
    c.phi12 = c.phi01;
    c.phi12.addProduct(second, first);
    c.phi12.subtractProduct(old, older);
    c.phi22 = c.phi11;
    c.phi22.addProduct(first, first);
    c.phi22.subtractProduct(older, older);
    return c;
}

struct Coefficient {
    double re = 0;
    double im = 0;

    double square() const { return re * re + im * im; }
};

template <class Sum>
void solve(const Covariances<Sum>& c, Coefficient& alpha0, Coefficient& alpha1) {
    const auto [r01, i01] = Coefficient{c.phi01.re(), c.phi01.im()};
    const auto [r02, i02] = Coefficient{c.phi02.re(), c.phi02.im()};
    const auto [r12, i12] = Coefficient{c.phi12.re(), c.phi12.im()};
    const double phi11 = c.phi11.re();
    const double d = c.phi22.re() * phi11 - kRelaxation * (r12 * r12 + i12 * i12);
    if (d != 0) {
        alpha1 = {(r01 * r12 - i01 * i12 - r02 * phi11) / d,
                  (r01 * i12 + i01 * r12 - i02 * phi11) / d};
    }
    if (phi11 > 0) {  // alpha1 * conj(phi12)
        alpha0 = {-(r01 + alpha1.re * r12 + alpha1.im * i12) / phi11,
                  -(i01 + alpha1.im * r12 - alpha1.re * i12) / phi11};
    }
    if (!(alpha0.square() < kLimit * kLimit && alpha1.square() < kLimit * kLimit))
        alpha0 = alpha1 = {};
}

Zet32s toQ29(double x) {
    const double scaled = std::min(x * (1 << kAlphaFractionBits), 2147483647.0);
    return static_cast<Zet32s>(scaled + (scaled < 0 ? -0.5 : 0.5));
}

template <class Sum, class Sample>
ZetStatus predict(const Sample* const rows[], Sample* alpha0, Sample* alpha1, int band,
                  int numSlots, Sample (*toSample)(Coefficient)) {
    ZETAC_REQUIRE(core::allSet(rows, alpha0, alpha1), zetStsNullPointer);
    ZETAC_REQUIRE(band >= 0, zetStsBadSize);
    if (numSlots < 1) return zetStsOk;

    Coefficient first;
    Coefficient second;
    solve(covariances<Sum>(rows, band, numSlots), first, second);
    *alpha0 = toSample(first);
    *alpha1 = toSample(second);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::sbr

using namespace zetac::sbr;

ZetStatus zetsPredictOneCoef_SBRHQ_32sc_D2L(const Zet32sc* const pSrc[], Zet32sc* pAlpha0,
                                            Zet32sc* pAlpha1, int band, int numSlots) {
    return predict<Complex, Zet32sc>(pSrc, pAlpha0, pAlpha1, band, numSlots, [](Coefficient x) {
        return Zet32sc{toQ29(x.re), toQ29(x.im)};
    });
}

ZetStatus zetsPredictOneCoef_SBRLP_32s_D2L(const Zet32s* const pSrc[], Zet32s* pAlpha0,
                                           Zet32s* pAlpha1, int band, int numSlots) {
    return predict<Real, Zet32s>(pSrc, pAlpha0, pAlpha1, band, numSlots,
                                 [](Coefficient x) { return toQ29(x.re); });
}
