// Every level of the filter bank kernels gives the bits of level 0, and level 0 the arithmetic that
// the interface promises.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "aac/filter_bank_kernels.h"
#include "tables/aac_windows.h"

namespace zetac::aac {
namespace {

using Values = std::vector<Zet32s>;

Values randomValues(size_t count, int bits, uint32_t seed) {
    std::mt19937 random(seed);
    Values values(count);
    for (Zet32s& value : values) value = static_cast<Zet32s>(random()) >> (32 - bits);
    return values;
}

// A buffer at an odd address of Zet32s, with canaries on both sides.
class Guarded {
  public:
    explicit Guarded(const Values& values) : storage_(values.size() + 2 * kGuard, kCanary) {
        std::copy(values.begin(), values.end(), storage_.begin() + kGuard);
    }
    Zet32s* data() { return storage_.data() + kGuard; }
    bool operator==(const Guarded&) const = default;

  private:
    static constexpr int kGuard = 17;
    static constexpr Zet32s kCanary = 0x5ca1ab1e;
    Values storage_;
};

// Runs a kernel call at every level that the processor has and compares with level 0.
template <class Call>
void expectEqualLevels(const char* what, const Values& a, const Values& b, Call call) {
    Guarded referenceA(a);
    Guarded referenceB(b);
    call(kFilterBankKernels[0], referenceA.data(), referenceB.data());
    for (int level = 1; level <= static_cast<int>(core::currentLevel()); ++level) {
        Guarded otherA(a);
        Guarded otherB(b);
        call(kFilterBankKernels[level], otherA.data(), otherB.data());
        EXPECT_TRUE(referenceA == otherA && referenceB == otherB) << what << " at level " << level;
    }
}

TEST(AacFilterBankLevels, GiveTheSameBits) {
    using Kernels = const FilterBankKernels&;
    const Zet32s* rising = tables::pWinKBDLong;
    const Zet32s* falling = tables::pWinSINLong;
    for (int bits = 4; bits <= 32; bits += 4) {
        const Values a = randomValues(2048, bits, bits);
        const Values b = randomValues(2048, bits, 100 + bits);
        expectEqualLevels("inverse long", a, b,
                          [](Kernels k, Zet32s* x, Zet32s*) { k.inverseTransformLong(x); });
        expectEqualLevels("inverse short", a, b,
                          [](Kernels k, Zet32s* x, Zet32s*) { k.inverseTransformShort(x); });
        expectEqualLevels("forward long", a, b, [](Kernels k, Zet32s* x, Zet32s* y) {
            y[1024] = k.forwardTransformLong(x, y);
        });
        expectEqualLevels("forward short", a, b, [](Kernels k, Zet32s* x, Zet32s* y) {
            y[128] = k.forwardTransformShort(x, y);
        });
        expectEqualLevels("overlap", a, b, [&](Kernels k, Zet32s* x, Zet32s* y) {
            k.overlapAddLong(x, y, rising, falling);
        });
        expectEqualLevels("unfold", a, b,
                          [](Kernels k, Zet32s* x, Zet32s* y) { k.unfoldLong(x, y, y + 1024); });
        expectEqualLevels("multiply", a, b, [&](Kernels k, Zet32s* x, Zet32s* y) {
            k.multiplyRising(x, rising, 1024);
            k.multiplyFalling(y, falling, 1024);
        });
        expectEqualLevels("short window", a, b, [](Kernels k, Zet32s* x, Zet32s* y) {
            k.windowShort(x, tables::pWinKBDShort, tables::pWinSINShort, y);
        });
        expectEqualLevels("rounding", a, b,
                          [](Kernels k, Zet32s* x, Zet32s* y) { k.roundToPcm(x, y, y, 1024); });
        expectEqualLevels("pcm", a, b, [](Kernels k, Zet32s* x, Zet32s* y) {
            k.storePcm(x, reinterpret_cast<Zet16s*>(y), 1);
            k.storePcm(x, reinterpret_cast<Zet16s*>(y + 1024), 2);
        });
    }
}

// The promised arithmetic, term by term at 64 bits, over values of full range.
TEST(AacFilterBankLevels, OverlapAddFollowsTheFormula) {
    Values y = randomValues(1024, 32, 7);
    for (Zet32s& value : y) value = std::max(value, -2147483647);  // what a transform can give
    const Values overlap = randomValues(1024, 32, 8);
    const Zet32s* rising = tables::pWinSINLong;
    const Zet32s* falling = tables::pWinKBDLong;
    Values out = y;
    Values kept = overlap;
    kFilterBankKernels[0].overlapAddLong(out.data(), kept.data(), rising, falling);
    for (int n = 0; n < 1024; ++n) {
        const int64_t first = n < 512 ? y[n] : -int64_t{y[1023 - n]};
        const int64_t second = n < 512 ? y[512 + n] : y[1535 - n];
        ASSERT_EQ(((first * rising[n] >> 31) + overlap[n] + 4) >> 3, out[n]) << n;
        ASSERT_EQ(second * falling[1023 - n] >> 31, kept[n]) << n;
    }
}

}  // namespace
}  // namespace zetac::aac
