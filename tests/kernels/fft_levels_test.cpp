// Every level of the FFT and DCT kernels gives the bits of level 0, and the roots of unity that
// their factors are made of are exact to far more than single precision.
#include <gtest/gtest.h>

#include "support/levels.h"
#include "support/reference_fft.h"
#include "tables/unit_circle.h"
#include "transform/dct_kernels.h"
#include "transform/fft_kernels.h"
#include "transform/fft_real.h"

namespace zetac::transform {
namespace {

using test::contents;
using test::expectEqualLevels;
using test::Guarded;

constexpr int kMaxOrder = 14;

TEST(FftLevels, giveTheBitsOfLevelZero) {
    for (int order = 0; order <= kMaxOrder; ++order) {
        const size_t count = size_t{2} << order;
        const auto src = test::randomSingles(count, 1);
        std::vector<Zet32f> twiddles(fftTwiddleCount(order));
        const FftPlan plan = makeFftPlan(order, twiddles.data());
        const auto pairs = [&](auto kernel) {
            Guarded<Zet32f> dst(count, 4);
            Guarded<Zet32f> work(fftWorkCount(order));
            kernel(plan, reinterpret_cast<const Zet32fc*>(src.data()),
                   reinterpret_cast<Zet32fc*>(dst.data()), 0.3f, work.data());
            EXPECT_TRUE(work.intact());
            return contents(dst);
        };
        expectEqualLevels("forward",
                          [&](size_t level) { return pairs(kFftKernels[level].forward); });
        expectEqualLevels("inverse",
                          [&](size_t level) { return pairs(kFftKernels[level].inverse); });
        expectEqualLevels("split", [&](size_t level) {
            Guarded<Zet32f> dst(count, 4);
            Guarded<Zet32f> work(2 * fftWorkCount(order));
            kFftKernels[level].forwardSplit(plan, src.data(), src.data() + count / 2, dst.data(),
                                            dst.data() + count / 2, 0.3f, work.data());
            EXPECT_TRUE(work.intact());
            return contents(dst);
        });
    }
}

// Zeros, infinities and NaN go the same way at every width too.
TEST(FftLevels, agreeOnSpecialValues) {
    for (int order = 0; order <= 10; ++order) {
        const size_t count = size_t{2} << order;
        std::vector<Zet32f> twiddles(fftTwiddleCount(order));
        const FftPlan plan = makeFftPlan(order, twiddles.data());
        for (const Zet32f special : {-0.0f, 1e-40f, 3e38f}) {
            std::vector<Zet32f> src(count, -0.0f);
            for (size_t i = 0; i < count; i += 3) src[i] = special;
            expectEqualLevels("forward", [&](size_t level) {
                std::vector<Zet32f> dst(count);
                Guarded<Zet32f> work(fftWorkCount(order));
                kFftKernels[level].forward(plan, reinterpret_cast<const Zet32fc*>(src.data()),
                                           reinterpret_cast<Zet32fc*>(dst.data()), 1, work.data());
                for (Zet32f& value : dst)
                    if (value != value) value = 99;  // which NaN it is may depend on the operands
                return dst;
            });
        }
    }
}

TEST(FftLevels, pairTheSameBits) {
    for (int order = 0; order <= kMaxOrder; ++order) {
        const size_t count = size_t{1} << order;
        const auto src = test::randomSingles(count + 2, 2);
        std::vector<Zet32f> twiddles(realTwiddleCount(order));
        fillRealTwiddles(order, twiddles.data());
        const auto run = [&](auto kernel) {
            Guarded<Zet32f> dst(count, 12);
            std::memcpy(dst.bytes(), src.data(), dst.size());
            auto* points = reinterpret_cast<Zet32fc*>(dst.data());
            kernel(points, points, twiddles.data(), order);
            return contents(dst);
        };
        expectEqualLevels("pairs",
                          [&](size_t level) { return run(kFftKernels[level].pairForward); });
        expectEqualLevels("pairs back",
                          [&](size_t level) { return run(kFftKernels[level].pairInverse); });
    }
}

TEST(DctLevels, giveTheBitsOfLevelZero) {
    for (int order = 2; order <= kMaxOrder; ++order) {
        const size_t count = size_t{1} << order;
        const auto src = test::randomSingles(count, 3);
        const auto rows = test::randomSingles(kDctRows * count / 4, 4);
        const auto reordering = [&](auto kernel) {
            Guarded<Zet32f> dst(count, 4);
            kernel(src.data(), dst.data(), order);
            return contents(dst);
        };
        const auto rotating = [&](auto kernel) {
            Guarded<Zet32f> dst(count, 4);
            std::memset(dst.bytes(), 0, dst.size());
            kernel(src.data(), dst.data(), rows.data(), order);
            return contents(dst);
        };
        expectEqualLevels("reorder",
                          [&](size_t level) { return reordering(kDctKernels[level].reorder); });
        expectEqualLevels("restore",
                          [&](size_t level) { return reordering(kDctKernels[level].restore); });
        expectEqualLevels("cosines",
                          [&](size_t level) { return rotating(kDctKernels[level].toCosines); });
        expectEqualLevels("points",
                          [&](size_t level) { return rotating(kDctKernels[level].toPoints); });
    }
}

TEST(UnitCircle, isExactToFiftyBits) {
    for (const int order : {0, 1, 2, 3, 5, 10, 17, 29, 31}) {
        const uint64_t count = uint64_t{1} << order;
        for (uint64_t i = 0; i < 2000; ++i) {
            const uint64_t index = i < 1000 ? i : i * 0x9e3779b97f4a7c15;
            const tables::Root root = tables::unitRoot(index, order);
            const auto turns = static_cast<long double>(index % count) / count;
            const test::Complex exact = test::unitAngle(-turns);
            ASSERT_LT(std::abs(test::Complex(root.re, root.im) - exact), 0x1p-50L) << order;
        }
        if (order < 2) continue;
        const tables::Root quarter = tables::unitRoot(count / 4, order);
        EXPECT_EQ(0, quarter.re);
        EXPECT_EQ(-1, quarter.im);
    }
}

}  // namespace
}  // namespace zetac::transform
