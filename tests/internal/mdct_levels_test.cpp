// Every level of the MDCT and FIR kernels gives the bits of level 0.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "support/guarded.h"
#include "transform/fir_block_kernels.h"
#include "transform/mdct_kernels.h"
#include "transform/mdct_spec.h"

namespace zetac::transform {
namespace {

using test::Guarded;

void fillNoise(Guarded<Zet32f>& values, uint32_t seed) {
    std::mt19937 random(seed);
    for (size_t i = 0; i < values.size() / sizeof(Zet32f); ++i)
        values.data()[i] = static_cast<Zet32f>(random()) * 0x1p-31f - 1;
}

bool equal(const char* what, Guarded<Zet32f>& a, Guarded<Zet32f>& b) {
    EXPECT_TRUE(a.intact() && b.intact()) << what;
    return std::memcmp(a.data(), b.data(), a.size()) == 0;
}

class MdctCall {
  public:
    explicit MdctCall(int order)
        : len_(size_t{4} << order),
          fftTwiddles_(fftTwiddleCount(order)),
          plan_(makeFftPlan(order, fftTwiddles_.data())),
          table_(len_ / 2),
          input_(len_, 4) {
        fillMdctForward(static_cast<int>(len_), table_.data());
        fillNoise(input_, static_cast<uint32_t>(order));
    }

    void expectLevelEqual(int level) {
        Guarded<Zet32f> forward0(len_ / 2, 4), forward(len_ / 2, 4);
        run(&MdctKernels::forward, 0, forward0);
        run(&MdctKernels::forward, level, forward);
        EXPECT_TRUE(equal("forward", forward0, forward)) << len_ << " at level " << level;
        Guarded<Zet32f> inverse0(len_, 4), inverse(len_, 4);
        run(&MdctKernels::inverse, 0, inverse0);
        run(&MdctKernels::inverse, level, inverse);
        EXPECT_TRUE(equal("inverse", inverse0, inverse)) << len_ << " at level " << level;
    }

  private:
    template <class Kernel>
    void run(Kernel kernel, int level, Guarded<Zet32f>& output) {
        Guarded<Zet32f> work(len_);
        (kMdctKernels[level].*kernel)(plan_, {table_.data(), table_.data() + len_ / 4},
                                      input_.data(), output.data(), work.data());
        EXPECT_TRUE(work.intact());
    }

    size_t len_;
    std::vector<Zet32f> fftTwiddles_;
    FftPlan plan_;
    std::vector<Zet32f> table_;
    Guarded<Zet32f> input_;
};

TEST(MdctLevels, giveTheSameBits) {
    for (int order = 3; order <= 15; ++order) {
        MdctCall call(order);
        for (int level = 1; level <= static_cast<int>(core::currentLevel()); ++level)
            call.expectLevelEqual(level);
    }
}

TEST(FirBlockLevels, giveTheSameBits) {
    for (const int numTaps : {1, 5, 64, 256}) {
        for (int count = 1; count <= 256; count += 1 + count / 4) {
            const int padded = core::roundUp(count, kFirBlockGroup);
            Guarded<Zet32f> window(numTaps - 1 + padded, 4), taps(numTaps, 8), sums0(padded, 4);
            fillNoise(window, 1);
            fillNoise(taps, 2);
            fillNoise(sums0, 3);
            kFirBlockKernels[0].accumulate(window.data(), taps.data(), numTaps, sums0.data(),
                                           count);
            for (int level = 1; level <= static_cast<int>(core::currentLevel()); ++level) {
                Guarded<Zet32f> sums(padded, 4);
                fillNoise(sums, 3);
                kFirBlockKernels[level].accumulate(window.data(), taps.data(), numTaps, sums.data(),
                                                   count);
                // What lies beyond count is of no interest.
                EXPECT_EQ(std::memcmp(sums.data(), sums0.data(), count * sizeof(Zet32f)), 0)
                    << numTaps << " taps, " << count << " sums, level " << level;
                EXPECT_TRUE(sums.intact() && sums0.intact());
            }
        }
    }
}

}  // namespace
}  // namespace zetac::transform
