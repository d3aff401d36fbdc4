// Every level of the analysis kernels gives the bits of level 0.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "mp3enc/analysis_kernels.h"
#include "mp3enc/hybrid_analysis_kernels.h"
#include "support/guarded.h"

namespace zetac::mp3enc {
namespace {

using test::Guarded;

// Runs a call on a buffer of 576 lines at level 0 and at every other level that the processor has.
template <class Call>
void expectEqualLevels(const std::vector<Zet32s>& before, Call call) {
    std::vector<Zet32s> reference;
    for (size_t level = 0; level <= static_cast<size_t>(core::currentLevel()); ++level) {
        Guarded<Zet32s> lines(576, 4);
        std::copy(before.begin(), before.end(), lines.data());
        call(level, lines.data());
        ASSERT_TRUE(lines.intact());
        const std::vector<Zet32s> values(lines.data(), lines.data() + 576);
        if (level == 0) reference = values;
        ASSERT_EQ(values, reference) << "level " << level;
    }
}

std::vector<Zet32s> randomValues(int bits, size_t count) {
    std::mt19937 random(static_cast<uint32_t>(bits));
    std::vector<Zet32s> values(count);
    for (Zet32s& x : values) x = static_cast<Zet32s>(random()) >> (32 - bits);
    return values;
}

TEST(Mp3AnalysisLevels, giveTheSameBits) {
    for (int bits = 1; bits <= 16; ++bits) {
        const auto values = randomValues(bits, kAnalysisSamples);
        const std::vector<Zet16s> samples(values.begin(), values.end());
        expectEqualLevels(std::vector<Zet32s>(576), [&](size_t level, Zet32s* dst) {
            kAnalysisKernels[level].analyze(samples.data(), dst);
        });
    }
    for (int bits = 2; bits <= 32; ++bits) {
        const auto samples = randomValues(bits, 2 * 576);
        for (int blockType = 0; blockType < 4; ++blockType) {
            for (const int normal : {0, 2}) {
                expectEqualLevels(std::vector<Zet32s>(576), [&](size_t level, Zet32s* lines) {
                    for (int first = 0; first < kSubbands; first += kSubbandsAtOnce)
                        kHybridAnalysisKernels[level].transformGroup(
                            &samples[static_cast<size_t>(first)],
                            &samples[static_cast<size_t>(576 + first)],
                            lines + first * kLinesPerSubband, blockType, normal);
                });
            }
        }
        for (const int count : {0, 2, 32}) {
            expectEqualLevels(randomValues(bits, 576), [&](size_t level, Zet32s* lines) {
                kHybridAnalysisKernels[level].spreadAliases(lines, count);
            });
        }
    }
}

}  // namespace
}  // namespace zetac::mp3enc
