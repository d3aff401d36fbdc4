// Every level of the filter bank kernels gives the bits of level 0, and level 0 the arithmetic that
// the interface promises.
#include <gtest/gtest.h>

#include <algorithm>

#include "aac/filter_bank_kernels.h"
#include "support/levels.h"
#include "tables/aac_windows.h"

namespace zetac::aac {
namespace {

using test::Guarded;

// Runs a kernel call on two buffers of 2048 random values.
template <class Call>
void expectEqualLevels(const char* what, int bits, Call call) {
    test::expectEqualLevels(what, [&](size_t level) {
        Guarded<Zet32s> a(2048, 4), b(2048, 20);
        test::fillRandom(a, bits, bits);
        test::fillRandom(b, bits, 100 + bits);
        call(kFilterBankKernels[level], a.data(), b.data());
        return test::contents(a, b);
    });
}

TEST(AacFilterBankLevels, GiveTheSameBits) {
    using Kernels = const FilterBankKernels&;
    const Zet32s* rising = tables::pWinKBDLong;
    const Zet32s* falling = tables::pWinSINLong;
    for (int bits = 4; bits <= 32; bits += 4) {
        expectEqualLevels("inverse long", bits,
                          [](Kernels k, Zet32s* x, Zet32s*) { k.inverseTransformLong(x); });
        expectEqualLevels("inverse short", bits,
                          [](Kernels k, Zet32s* x, Zet32s*) { k.inverseTransformShort(x); });
        expectEqualLevels("forward long", bits, [](Kernels k, Zet32s* x, Zet32s* y) {
            y[1024] = k.forwardTransformLong(x, y);
        });
        expectEqualLevels("forward short", bits, [](Kernels k, Zet32s* x, Zet32s* y) {
            y[128] = k.forwardTransformShort(x, y);
        });
        expectEqualLevels("overlap", bits, [&](Kernels k, Zet32s* x, Zet32s* y) {
            k.overlapAddLong(x, y, rising, falling);
        });
        expectEqualLevels("unfold", bits,
                          [](Kernels k, Zet32s* x, Zet32s* y) { k.unfoldLong(x, y, y + 1024); });
        expectEqualLevels("multiply", bits, [&](Kernels k, Zet32s* x, Zet32s* y) {
            k.multiplyRising(x, rising, 1024);
            k.multiplyFalling(y, falling, 1024);
        });
        expectEqualLevels("short window", bits, [](Kernels k, Zet32s* x, Zet32s* y) {
            k.windowShort(x, tables::pWinKBDShort, tables::pWinSINShort, y);
        });
        expectEqualLevels("rounding", bits,
                          [](Kernels k, Zet32s* x, Zet32s* y) { k.roundToPcm(x, y, y, 1024); });
        expectEqualLevels("pcm", bits, [](Kernels k, Zet32s* x, Zet32s* y) {
            k.storePcm(x, reinterpret_cast<Zet16s*>(y), 1);
            k.storePcm(x, reinterpret_cast<Zet16s*>(y + 1024), 2);
        });
    }
}

// The promised arithmetic, term by term at 64 bits, over values of full range.
TEST(AacFilterBankLevels, OverlapAddFollowsTheFormula) {
    const Zet32s* rising = tables::pWinSINLong;
    const Zet32s* falling = tables::pWinKBDLong;
    Guarded<Zet32s> y(1024), overlap(1024), out(1024), kept(1024);
    test::fillRandom(y, 32, 7);
    test::fillRandom(overlap, 32, 8);
    for (int n = 0; n < 1024; ++n) {
        out.data()[n] = y.data()[n] = std::max(y[n], -2147483647);  // what a transform can give
        kept.data()[n] = overlap[n];
    }
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
