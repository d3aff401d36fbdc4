// Every level of the MDCT and FIR kernels gives the bits of level 0.
#include <gtest/gtest.h>

#include "support/levels.h"
#include "transform/fir_block_kernels.h"
#include "transform/mdct_kernels.h"
#include "transform/mdct_spec.h"

namespace zetac::transform {
namespace {

using test::Guarded;

std::vector<Zet32f> noise(size_t count, uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<Zet32f> values(count);
    for (Zet32f& value : values) value = static_cast<Zet32f>(random()) * 0x1p-31f - 1;
    return values;
}

TEST(MdctLevels, giveTheSameBits) {
    for (int order = 3; order <= 15; ++order) {
        SCOPED_TRACE(order);
        const size_t len = size_t{4} << order;
        std::vector<Zet32f> twiddles(fftTwiddleCount(order)), table(len / 2);
        const FftPlan plan = makeFftPlan(order, twiddles.data());
        fillMdctForward(static_cast<int>(len), table.data());
        const auto input = noise(len, static_cast<uint32_t>(order));
        const auto run = [&](auto kernel, size_t outputs) {
            Guarded<Zet32f> output(outputs, 4), work(len);
            kernel(plan, {table.data(), table.data() + len / 4}, input.data(), output.data(),
                   work.data());
            EXPECT_TRUE(work.intact());
            return test::contents(output);
        };
        test::expectEqualLevels(
            "forward", [&](size_t level) { return run(kMdctKernels[level].forward, len / 2); });
        test::expectEqualLevels(
            "inverse", [&](size_t level) { return run(kMdctKernels[level].inverse, len); });
    }
}

TEST(FirBlockLevels, giveTheSameBits) {
    for (const int numTaps : {1, 5, 64, 256}) {
        for (int count = 1; count <= 256; count += 1 + count / 4) {
            const int padded = core::roundUp(count, kFirBlockGroup);
            const auto window = noise(numTaps - 1 + padded, 1), taps = noise(numTaps, 2);
            test::expectEqualLevels("FIR", [&](size_t level) {
                Guarded<Zet32f> sums(padded, 4);
                std::ranges::copy(noise(padded, 3), sums.data());
                kFirBlockKernels[level].accumulate(window.data(), taps.data(), numTaps, sums.data(),
                                                   count);
                auto result = test::contents(sums);
                result.resize(count);  // what lies beyond is of no interest
                return result;
            });
        }
    }
}

}  // namespace
}  // namespace zetac::transform
