// The MDCTs against their definition in long double, and the 16-bit one against a model of its
// steps.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "support/reference_fft.h"

namespace zetac::test {
namespace {

using Singles = std::vector<Zet32f>;
using Exact = std::vector<long double>;

const std::vector<int> kLengths = {12, 36, 32, 64, 128, 256, 512, 1024, 2048, 4096};

// The functions of a family behind one set of names.
struct Forward {
    using Spec = ZetsMDCTFwdSpec_32f;
    static constexpr auto initAlloc = zetsMDCTFwdInitAlloc_32f;
    static constexpr auto free = zetsMDCTFwdFree_32f;
    static constexpr auto run = zetsMDCTFwd_32f;
    static constexpr auto runInPlace = zetsMDCTFwd_32f_I;
    static int outputs(int len) { return len / 2; }
};
struct Inverse {
    using Spec = ZetsMDCTInvSpec_32f;
    static constexpr auto initAlloc = zetsMDCTInvInitAlloc_32f;
    static constexpr auto free = zetsMDCTInvFree_32f;
    static constexpr auto run = zetsMDCTInv_32f;
    static constexpr auto runInPlace = zetsMDCTInv_32f_I;
    static int outputs(int len) { return len; }
};
struct Forward16 {
    using Spec = ZetsMDCTFwdSpec_16s;
    static constexpr auto initAlloc = zetsMDCTFwdInitAlloc_16s;
    static constexpr auto free = zetsMDCTFwdFree_16s;
};

template <class Family>
class Owned {
  public:
    explicit Owned(int len) { EXPECT_EQ(Family::initAlloc(&spec_, len), zetStsOk) << len; }
    ~Owned() { EXPECT_EQ(Family::free(spec_), zetStsOk); }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    operator typename Family::Spec *() const { return spec_; }

  private:
    typename Family::Spec* spec_ = nullptr;
};

template <class Family>
Singles transform(int len, const Singles& input) {
    const Owned<Family> spec(len);
    Singles output(Family::outputs(len));
    const Singles before = input;
    EXPECT_EQ(Family::run(input.data(), output.data(), spec, nullptr), zetStsOk);
    EXPECT_EQ(input, before);
    Singles inPlace = input;
    inPlace.resize(len);
    EXPECT_EQ(Family::runInPlace(inPlace.data(), spec, nullptr), zetStsOk);
    EXPECT_TRUE(std::equal(output.begin(), output.end(), inPlace.begin()));
    return output;
}

// The cosine of the definition: 2 pi/N (n + N/4 + 1/2)(k + 1/2) is (4 n + N + 2)(2 k + 1) of 4 N
// steps to the turn.
class Cosines {
  public:
    explicit Cosines(int len) : table_(4 * len) {
        for (size_t i = 0; i < table_.size(); ++i)
            table_[i] = std::cos(2 * std::acos(-1.0L) * i / table_.size());
    }
    long double operator()(int n, int k) const {
        const size_t len = table_.size() / 4;
        return table_[(2 * n + len / 2 + 1) * (2 * k + 1) % table_.size()];
    }

  private:
    Exact table_;
};

template <class Sample>
Exact exactForward(int len, const std::vector<Sample>& x) {
    const Cosines cosine(len);
    Exact result(len / 2);
    for (int k = 0; k < len / 2; ++k)
        for (int n = 0; n < len; ++n) result[k] += 2 * x[n] * cosine(n, k);
    return result;
}
Exact exactInverse(int len, const Singles& x) {
    const Cosines cosine(len);
    Exact result(len);
    for (int n = 0; n < len; ++n)
        for (int k = 0; k < len / 2; ++k) result[n] += x[k] * cosine(n, k) * 2 / len;
    return result;
}

double rms(const Exact& values) {
    long double sum = 0;
    for (const long double value : values) sum += value * value;
    return static_cast<double>(std::sqrt(sum / values.size()));
}
template <class Value>
double relativeError(const std::vector<Value>& values, const Exact& exact) {
    Exact difference = exact;
    for (size_t i = 0; i < exact.size(); ++i) difference[i] -= values[i];
    return rms(difference) / rms(exact);
}

// Relative RMS errors were measured from 0.5e-7 (12, 36) to 1.6e-7 (131072), growing with the root
// of the number of passes, as roundings of 2^-25.5 RMS each do.
constexpr double kTolerance = 2e-7;

TEST(Mdct, followsTheDefinition) {
    for (const int len : kLengths) {
        SCOPED_TRACE(len);
        const Singles samples = randomSingles(len, 1);
        EXPECT_LT(relativeError(transform<Forward>(len, samples), exactForward(len, samples)),
                  kTolerance);
        const Singles coefficients = randomSingles(len / 2, 2);
        EXPECT_LT(
            relativeError(transform<Inverse>(len, coefficients), exactInverse(len, coefficients)),
            kTolerance);
    }
}

// One sample or coefficient at a time, so that a small error in one path does not hide in a sum.
TEST(Mdct, followsTheDefinitionForImpulses) {
    for (const int len : {12, 36, 32, 64}) {
        for (int at = 0; at < len; ++at) {
            SCOPED_TRACE(testing::Message() << len << " at " << at);
            Singles x(len);
            x[at] = 1;
            EXPECT_LT(relativeError(transform<Forward>(len, x), exactForward(len, x)), kTolerance);
            if (at >= len / 2) continue;
            x.resize(len / 2);
            EXPECT_LT(relativeError(transform<Inverse>(len, x), exactInverse(len, x)), kTolerance);
        }
    }
}

// Large transforms against the parts of the definition that are cheap: single coefficients.
TEST(Mdct, followsTheDefinitionForLargeLengths) {
    for (int len = 8192; len <= 1 << 17; len *= 4) {
        SCOPED_TRACE(len);
        const Cosines cosine(len);
        const Singles samples = randomSingles(len, 3);
        const Singles coefficients = transform<Forward>(len, samples);
        const Singles aliased = transform<Inverse>(len, coefficients);
        Exact exact;
        Singles got;
        for (int k = 5; k < len / 2; k += len / 512) {
            long double sum = 0;
            for (int n = 0; n < len; ++n) sum += 2 * samples[n] * cosine(n, k);
            exact.push_back(sum);
            got.push_back(coefficients[k]);
        }
        EXPECT_LT(relativeError(got, exact), kTolerance);
        // Back to x folded on itself; 1.2e-6 is six standard deviations.
        for (int n = 0; n < len / 2; ++n) {
            const int mirror = len / 2 - 1 - n;
            EXPECT_NEAR(aliased[n], samples[n] - samples[mirror], 1.2e-6f);
            EXPECT_NEAR(aliased[len / 2 + n], samples[len / 2 + n] + samples[len - 1 - n], 1.2e-6f);
        }
    }
}

// ---- 16 bits

using Shorts = std::vector<Zet16s>;

Shorts loudNoise(int len, int peak, uint32_t seed) {
    std::mt19937 random(seed);
    Shorts x(len);
    for (Zet16s& value : x)
        value = static_cast<Zet16s>(static_cast<int>(random() % (2 * peak + 1)) - peak);
    x[len / 3] = static_cast<Zet16s>(-peak);  // -32768 fits, 32768 does not
    return x;
}

Shorts transform16(const Shorts& x, int scaleFactor) {
    const int len = static_cast<int>(x.size());
    const Owned<Forward16> spec(len);
    Shorts output(len / 2);
    EXPECT_EQ(zetsMDCTFwd_16s_Sfs(x.data(), output.data(), spec, scaleFactor, nullptr), zetStsOk);
    return output;
}

long double roundTiesToEven(long double x) {
    return std::nearbyint(x);
}
int64_t floorShift(int64_t x, int shift) {
    return static_cast<int64_t>(std::floor(std::ldexp(static_cast<long double>(x), -shift)));
}

// The steps of the 16-bit transform, with a DFT by definition for the FFT.
class Model {
  public:
    explicit Model(const Shorts& x) : x_(x), len_(static_cast<int>(x.size())) {
        for (int k = 0; k < len_ / 4; ++k) {
            const long double angle = 2 * std::acos(-1.0L) * (k + 0.125L) / len_;
            sines_.push_back(std::floor(16384 * std::sin(angle) + 0.5L));
            cosines_.push_back(std::floor(16384 * std::cos(angle) + 0.5L));
        }
        order_ = static_cast<int>(std::log2(len_ / 4));
        findShift();
        fold();
        dft();
    }

    Shorts coefficients(int scaleFactor) const {
        Shorts result(len_ / 2);
        const auto rounded = [&](long double wide) {
            const long double value =
                roundTiesToEven(std::ldexp(wide, -(scaleFactor - order_ + shift_ + 10)));
            return static_cast<Zet16s>(std::clamp(value, -32768.0L, 32767.0L));
        };
        for (int k = 0; k < len_ / 4; ++k) {
            result[2 * k] = rounded(cosines_[k] * re_[k] + sines_[k] * im_[k]);
            result[len_ / 2 - 1 - 2 * k] = rounded(sines_[k] * re_[k] - cosines_[k] * im_[k]);
        }
        return result;
    }

  private:
    void findShift() {
        int peak = 0;
        for (const int value : x_) peak = std::max(peak, std::abs(value));
        shift_ = static_cast<int>(std::floor(std::log2(32768.0 / peak)));
        if (peak * std::exp2(shift_) <= 23168) ++shift_;
    }
    void fold() {
        const int n4 = len_ / 4;
        for (int k = 0; k < n4; ++k) {
            const bool first = k < len_ / 8;
            const int64_t a =
                (first ? -x_[3 * n4 + 2 * k] : x_[2 * k - n4]) - x_[3 * n4 - 1 - 2 * k];
            const int64_t b =
                (first ? x_[n4 - 1 - 2 * k] : -x_[5 * n4 - 1 - 2 * k]) - x_[n4 + 2 * k];
            const auto s = static_cast<int64_t>(sines_[k]);
            const auto c = static_cast<int64_t>(cosines_[k]);
            const int64_t half = 1 << (15 - shift_);
            re_.push_back(floorShift(c * a + s * b + half, 16 - shift_));
            im_.push_back(floorShift(c * b - s * a + half, 16 - shift_));
            EXPECT_TRUE(std::abs(re_[k]) <= 32767 && std::abs(im_[k]) <= 32767);
        }
    }
    void dft() {
        const int points = len_ / 4;
        Exact turns(points);
        for (int i = 0; i < points; ++i) turns[i] = 2 * std::acos(-1.0L) * i / points;
        Exact re(points), im(points);
        for (int k = 0; k < points; ++k) {
            for (int n = 0; n < points; ++n) {
                const long double angle = turns[static_cast<int64_t>(n) * k % points];
                re[k] += re_[n] * std::cos(angle) + im_[n] * std::sin(angle);
                im[k] += im_[n] * std::cos(angle) - re_[n] * std::sin(angle);
            }
            re[k] = snapped(std::ldexp(re[k], -order_ - 1));
            im[k] = snapped(std::ldexp(im[k], -order_ - 1));
        }
        re_ = re;
        im_ = im;
    }
    // Where the exact sum is a tie, the rounding errors of the sum above must not break it.
    static long double snapped(long double x) {
        return roundTiesToEven(std::ldexp(roundTiesToEven(std::ldexp(x, 30)), -30));
    }

    const Shorts& x_;
    int len_, order_ = 0, shift_ = 0;
    Exact sines_, cosines_, re_, im_;
};

TEST(Mdct16, followsItsStepsExactly) {
    for (const int len : {32, 64, 256, 1024, 2048}) {
        for (const int peak : {1, 2, 3, 100, 2896, 2897, 23168, 23169, 32767, 32768}) {
            const Shorts x = loudNoise(len, peak, static_cast<uint32_t>(peak));
            const Model model(x);
            for (const int scaleFactor : {-6, 0, 5, 9}) {
                SCOPED_TRACE(testing::Message() << len << ", peak " << peak << ", " << scaleFactor);
                EXPECT_EQ(transform16(x, scaleFactor), model.coefficients(scaleFactor));
            }
        }
    }
}

TEST(Mdct16, acceptsEveryScaleFactor) {
    const Shorts x = loudNoise(64, 20000, 11);
    const Shorts reference = transform16(x, 2);
    const Shorts loudest = transform16(x, INT_MIN);
    for (size_t k = 0; k < reference.size(); ++k)
        EXPECT_EQ(loudest[k], reference[k] < 0 ? -32768 : 32767) << k;
    EXPECT_EQ(transform16(x, INT_MAX), Shorts(32));
    for (const int scaleFactor : {INT_MIN, 0, INT_MAX})
        EXPECT_EQ(transform16(Shorts(64), scaleFactor), Shorts(32));
}

}  // namespace
}  // namespace zetac::test
