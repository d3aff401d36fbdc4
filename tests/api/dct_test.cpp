// The orthonormal DCTs: values against the definition in long double, however they are called.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <cstring>
#include <memory>

#include "support/guarded.h"
#include "support/reference_fft.h"

namespace zetac::test {
namespace {

struct Specs {
    ZetsDCTFwdSpec_32f* forward = nullptr;
    ZetsDCTInvSpec_32f* inverse = nullptr;
    explicit Specs(int len) {
        EXPECT_EQ(zetsDCTFwdInitAlloc_32f(&forward, len, zetAlgHintAccurate), zetStsOk) << len;
        EXPECT_EQ(zetsDCTInvInitAlloc_32f(&inverse, len, zetAlgHintFast), zetStsOk) << len;
    }
    Specs(const Specs&) = delete;
    Specs& operator=(const Specs&) = delete;
    ~Specs() { zetsDCTFwdFree_32f(forward), zetsDCTInvFree_32f(inverse); }
};

// Every length up to 100, powers of two and their neighbours, and block lengths in use.
std::vector<int> lengths() {
    std::vector<int> result;
    for (int len = 1; len <= 100; ++len) result.push_back(len);
    for (int len = 128; len <= 2048; len *= 2) result.insert(result.end(), {len - 1, len, len + 1});
    result.insert(result.end(), {480, 576, 960, 1152, 1920, 3000});
    return result;
}

// Measured over these lengths: at most 1.5e-7 for powers of two and 2.5e-7 for others, where two
// FFTs take part. Twice that is allowed.
double errorLimit(int len) {
    return (len & (len - 1)) == 0 ? 3e-7 : 5e-7;
}

TEST(Dct, agreesWithTheDefinition) {
    for (const int len : lengths()) {
        std::vector<long double> cosines(4 * len);
        for (int i = 0; i < 4 * len; ++i)
            cosines[i] = unitAngle(static_cast<long double>(i) / (4 * len)).real();
        const auto basis = [&](int n, int k) {  // a(k) cos(pi (2n + 1) k / 2N)
            return std::sqrt((k == 0 ? 1.0L : 2.0L) / len) * cosines[(2 * n + 1) * k % (4 * len)];
        };
        const auto src = randomSingles(len, 1);
        Values forward(len), inverse(len);
        for (int i = 0; i < len; ++i)
            for (int j = 0; j < len; ++j) {
                forward[i] += src[j] * basis(j, i);
                inverse[i] += src[j] * basis(i, j);
            }
        const Specs specs(len);
        std::vector<float> dst(src.size());
        ASSERT_EQ(zetsDCTFwd_32f(src.data(), dst.data(), specs.forward, nullptr), zetStsOk);
        EXPECT_LT(relativeError(dst, forward), errorLimit(len)) << len;
        ASSERT_EQ(zetsDCTInv_32f(src.data(), dst.data(), specs.inverse, nullptr), zetStsOk);
        EXPECT_LT(relativeError(dst, inverse), errorLimit(len)) << len;
    }
}

// In place, at any alignment, and back.
TEST(Dct, givesTheSameBitsHoweverItIsCalled) {
    for (const int len : {1, 2, 3, 4, 8, 12, 32, 36, 64, 500, 512, 1024, 4096, 8192}) {
        SCOPED_TRACE(len);
        const auto src = randomSingles(len, 2);
        const Specs specs(len);
        for (const size_t alignment : {0, 4, 20, 36}) {
            Guarded<float> in(len, alignment), out(len, 60 - alignment), back(len, alignment);
            std::ranges::copy(src, in.data());
            ASSERT_EQ(zetsDCTFwd_32f(in.data(), out.data(), specs.forward, nullptr), zetStsOk);
            ASSERT_EQ(zetsDCTInv_32f(out.data(), back.data(), specs.inverse, nullptr), zetStsOk);
            const std::vector<float> result(back.data(), back.data() + len);
            EXPECT_LT(relativeError(result, Values(src.begin(), src.end())), 2 * errorLimit(len));
            EXPECT_EQ(std::memcmp(in.data(), src.data(), in.size()), 0);
            zetsDCTFwd_32f_I(in.data(), specs.forward, nullptr);
            EXPECT_EQ(std::memcmp(in.data(), out.data(), in.size()), 0);
            zetsDCTInv_32f_I(in.data(), specs.inverse, nullptr);
            EXPECT_EQ(std::memcmp(in.data(), back.data(), in.size()), 0);
            EXPECT_TRUE(in.intact() && out.intact() && back.intact());
        }
    }
}

}  // namespace
}  // namespace zetac::test
