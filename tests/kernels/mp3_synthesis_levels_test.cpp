// Every level of the synthesis kernels gives the bits of level 0, and the output stage the rounding
// and the limits that the interface promises.
#include <gtest/gtest.h>

#include "mp3dec/hybrid_kernels.h"
#include "mp3dec/polyphase_kernels.h"
#include "support/levels.h"
#include "tables/mp3_synthesis_window.h"

namespace zetac::mp3 {
namespace {

using test::Guarded;

// Runs a call on buffers of 576 lines, 576 samples and a V buffer.
template <class Call>
void expectEqualLevels(const char* what, int bits, Call call) {
    test::expectEqualLevels(what + std::to_string(bits), [&](size_t level) {
        Guarded<Zet32s> a(576, 4), b(576, 8), c(ZETAC_MP3_V_BUFFER_LEN, 12);
        test::fillRandom(a, bits, 1);
        test::fillRandom(b, bits, 11);
        test::fillRandom(c, bits, 21);
        call(level, a.data(), b.data(), c.data());
        return test::contents(a, b, c);
    });
}

TEST(Mp3SynthesisLevels, giveTheSameBits) {
    for (int bits = 2; bits <= 32; ++bits) {
        for (const int count : {0, 1, 2, 3, 17, 32}) {
            expectEqualLevels("alias", bits, [&](size_t level, Zet32s* a, Zet32s*, Zet32s*) {
                kHybridKernels[level]._sAliasReduce_MP3_32s_I(a, count);
            });
        }
        for (int blockType = 0; blockType < 4; ++blockType) {
            for (const SubbandGroup group :
                 {SubbandGroup{8, 8, blockType, 0}, SubbandGroup{8, 8, blockType, 2},
                  SubbandGroup{3, 5, blockType, 0}, SubbandGroup{0, 8, blockType, 0}}) {
                expectEqualLevels("group", bits,
                                  [&](size_t level, Zet32s* a, Zet32s* b, Zet32s* c) {
                                      kHybridKernels[level].synthesizeGroup(a, b + 24, c, group);
                                  });
            }
            expectEqualLevels("subband", bits, [&](size_t level, Zet32s* a, Zet32s* b, Zet32s*) {
                kHybridKernels[level].transformSubband(a + 558, b + 540, blockType);
            });
        }
        for (int offset = 0; offset < kVSlots; ++offset) {
            for (const int stride : {1, 2}) {
                expectEqualLevels("slot", bits, [&](size_t level, Zet32s* a, Zet32s* b, Zet32s* c) {
                    kPolyphaseKernels[level]._sDCTFwd32_MP3_32s(a, c + vSlot(offset));
                    kPolyphaseKernels[level].windowSlots(c, offset, reinterpret_cast<Zet16s*>(b),
                                                         stride);
                });
            }
        }
    }
}

// Output 16 where the sum of products, in units of 1/128, is the given one. Nothing but T[0] of age
// 7 contributes, and it meets -D[240]; a step of it is a quarter of a unit, so that any sum is met.
int outputOf(size_t level, int sum) {
    const int64_t coefficient = -int64_t{tables::synthesisWindow(240)} * (1 << 14);
    const auto value = static_cast<Zet32s>((2 * int64_t{sum} + 1) * 0x80000000 / coefficient);
    EXPECT_EQ(coefficient * value >> 32, sum);
    std::vector<Zet32s> v(ZETAC_MP3_V_BUFFER_LEN);
    v[static_cast<size_t>(vSlot(7) + kVFirst)] = value;
    Zet16s pcm[32];
    kPolyphaseKernels[level].windowSlots(v.data(), 0, pcm, 1);
    return pcm[16];
}

TEST(Mp3SynthesisLevels, roundAndLimitTheOutput) {
    constexpr std::pair<int, int> kCases[] = {{0, 0},
                                              {63, 0},
                                              {64, 1},
                                              {-64, 0},
                                              {-65, -1},
                                              {32767 * 128 + 63, 32767},
                                              {32768 * 128, 32767},
                                              {100000 * 128, 32767},
                                              {-32767 * 128, -32767},
                                              {-32768 * 128, -32768},
                                              {-100000 * 128, -32768}};
    for (size_t level = 0; level <= static_cast<size_t>(core::currentLevel()); ++level) {
        for (const auto& [sum, output] : kCases) EXPECT_EQ(outputOf(level, sum), output) << sum;
    }
}

}  // namespace
}  // namespace zetac::mp3
