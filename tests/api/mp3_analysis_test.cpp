// The analysis filter bank and the forward MDCT of Layer III against models in double precision
// that follow the formulas of ISO/IEC 11172-3 term by term, and against the synthesis.
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "support/differences.h"
#include "support/guarded.h"
#include "support/mp3_analysis_model.h"
#include "support/mp3_bands.h"

namespace zetac::test {
namespace {

constexpr double kUnit = 0x1p-26;
constexpr int kHistory = 480;

struct Block {
    int type;
    int mixed;
};

// The sequence of a transient, the same with mixed blocks, and both once more.
constexpr Block kBlocks[] = {{0, 0}, {1, 0}, {2, 0}, {2, 0}, {3, 0}, {0, 0},
                             {1, 1}, {2, 1}, {2, 1}, {3, 1}, {0, 1}};

std::vector<Zet16s> noise(std::mt19937& random, double deviation, size_t count) {
    std::normal_distribution<double> normal(0, deviation);
    std::vector<Zet16s> pcm(count);
    for (Zet16s& x : pcm)
        x = static_cast<Zet16s>(std::clamp(std::nearbyint(normal(random)), -32768.0, 32767.0));
    return pcm;
}

// Samples whose signs are those of the response of subband k, so that nothing makes its output
// larger.
std::vector<Zet16s> loudest(int k, bool isNegative) {
    std::vector<Zet16s> pcm(kHistory + 576);
    for (size_t n = 0; n < pcm.size(); ++n) {
        const int i = static_cast<int>(511 - n % 512);
        const double response =
            synthesisWindowD(i) * std::cos((2 * k + 1) * (i % 64 - 16) * std::numbers::pi / 64);
        pcm[n] = (response < 0) != isNegative ? -32768 : 32767;
    }
    return pcm;
}

void compareAnalysis(const std::vector<Zet16s>& pcm, Differences& differences) {
    AnalysisModel model;
    for (int t = 0; t < kHistory / 32; ++t) model.analyze(&pcm[static_cast<size_t>(32 * t)]);
    for (const int stride : {1, 2}) {
        std::vector<Zet16s> source(pcm.size() * static_cast<size_t>(stride), 0x5555);
        for (size_t i = 0; i < pcm.size(); ++i) source[i * static_cast<size_t>(stride)] = pcm[i];
        Guarded<Zet32s> samples(576, 4);
        ASSERT_EQ(zetsAnalysisPQMF_MP3_16s32s(source.data(), samples.data(), stride), zetStsOk);
        ASSERT_TRUE(samples.intact());
        AnalysisModel slots = model;
        for (size_t t = 0; t < 18; ++t) {
            const auto expected = slots.analyze(&pcm[kHistory + 32 * t]);
            for (size_t k = 0; k < 32; ++k)
                differences.add(samples[32 * t + k] - expected[k] / kUnit);
        }
    }
}

// In units of 2^-26. Measured: RMS 0.49, largest 3.3 and 3.4; the last rounding alone makes 0.29.
TEST(Mp3Analysis, followsTheStandard) {
    std::mt19937 random(1);
    Differences differences;
    for (const double deviation : {1.0, 100.0, 5000.0, 1e6})
        for (int round = 0; round < 20; ++round)
            compareAnalysis(noise(random, deviation, kHistory + 576), differences);
    EXPECT_LT(differences.rms(), 0.55);
    EXPECT_LT(differences.largest, 4);
    EXPECT_LT(std::abs(differences.mean()), 0.1);
}

TEST(Mp3Analysis, holdsTheLoudestSamples) {
    Differences differences;
    for (int k = 0; k < 32; ++k)
        for (const bool isNegative : {false, true})
            compareAnalysis(loudest(k, isNegative), differences);
    EXPECT_LT(differences.rms(), 0.55);
    EXPECT_LT(differences.largest, 4);
}

// One channel of an encoder, up to the lines of short blocks in subband order.
struct Transform {
    std::array<Zet32s, 576> overlap{};
    ZetMP3Header header{};

    explicit Transform(int row = 3) {
        header.ID = row / 3;
        header.sampling_frequency = row % 3;
    }
    std::array<Zet32s, 576> lines(const Zet32s* samples, Block block) {
        ZetMP3GranuleSideInfo info{};
        info.block_type = block.type;
        info.mixed_block_flag = block.mixed;
        std::array<Zet32s, 576> coded;
        EXPECT_EQ(zetsMDCTFwd_MP3_32s(samples, coded.data(), overlap.data(), &header, &info),
                  zetStsOk);
        if (block.type != 2) return coded;
        std::array<Zet32s, 576> result = coded;
        const auto& bands = kShortBandStarts[header.ID * 3 + header.sampling_frequency];
        int line = block.mixed ? 36 : 0;
        for (int band = block.mixed ? 3 : 0; band < 13; ++band)
            for (int w = 0; w < 3; ++w)
                for (int j = bands[band]; j < bands[band + 1]; ++j)
                    result[static_cast<size_t>(j / 6 * 18 + 6 * w + j % 6)] =
                        coded[static_cast<size_t>(line++)];
        return result;
    }
};

// In units of 2^-26. Measured: RMS 0.88 and largest 3.2, most of it from the truncated butterflies,
// whose mean is -0.43; 0.52 and 2.7 in short blocks. Beyond the loudest samples there are, lines
// have 20 fractional bits, and 1/sqrt(12) of their unit is 18.5: measured RMS 16.2, largest 80.
TEST(Mp3MdctFwd, followsTheStandard) {
    for (const double deviation : {1e-5, 0.02, 0.5, 8.0}) {
        const bool isLoud = deviation > 4;
        for (const Block block : kBlocks) {
            std::mt19937 random(2);
            std::normal_distribution<double> normal(0, deviation);
            Differences differences;
            for (int row = 0; row < 6; ++row) {
                Transform transform(row);
                MdctModel model;
                for (int g = 0; g < 4; ++g) {
                    double exact[18][32];
                    Zet32s samples[18][32];
                    for (int i = 0; i < 576; ++i) {
                        samples[i / 32][i % 32] =
                            static_cast<Zet32s>(std::clamp(normal(random), -31.9, 31.9) / kUnit);
                        exact[i / 32][i % 32] = samples[i / 32][i % 32] * kUnit;
                    }
                    const auto expected = model.lines(exact, block.type, block.mixed);
                    const auto lines = transform.lines(samples[0], block);
                    for (size_t i = 0; i < 576; ++i)
                        differences.add(lines[i] - std::clamp(expected[i], -32.0, 32.0) / kUnit);
                }
            }
            SCOPED_TRACE(testing::Message() << deviation << " in block type " << block.type);
            EXPECT_LT(differences.rms(), isLoud ? 18.5 : 1);
            EXPECT_LT(differences.largest, isLoud ? 100 : 4);
            EXPECT_LT(std::abs(differences.mean()), isLoud ? 1 : 0.5);
        }
    }
}

// -2^31 in an odd slot of an odd subband inverts to 2^31 - 1, as -2^31 + 1 does.
TEST(Mp3MdctFwd, saturatesTheInversion) {
    std::mt19937 random(4);
    for (const Block block : kBlocks) {
        Transform transform, other;
        for (int g = 0; g < 2; ++g) {
            Zet32s samples[576], clipped[576];
            for (int i = 0; i < 576; ++i) {
                samples[i] = clipped[i] = random() % 2 != 0 ? INT32_MIN : INT32_MAX;
                if (i / 32 % 2 != 0 && i % 2 != 0) clipped[i] = std::max(samples[i], -INT32_MAX);
            }
            EXPECT_EQ(transform.lines(samples, block), other.lines(clipped, block));
        }
    }
}

// One channel of a decoder.
struct Decoder {
    std::array<Zet32s, 576> overlap{};
    int count = 0;
    std::array<Zet32s, ZETAC_MP3_V_BUFFER_LEN> v{};
    int offset = 0;

    void decode(std::array<Zet32s, 576> lines, Block block, std::vector<Zet16s>& pcm) {
        Zet32s slots[576];
        ASSERT_EQ(zetsMDCTInv_MP3_32s(lines.data(), slots, overlap.data(), 576, &count, block.type,
                                      block.mixed),
                  zetStsOk);
        for (int t = 0; t < 18; ++t) {
            pcm.resize(pcm.size() + 32);
            ASSERT_EQ(
                zetsSynthPQMF_MP3_32s16s(slots + 32 * t, &*pcm.end() - 32, v.data(), &offset, 1),
                zetStsOk);
        }
    }
};

// 481 samples pass through the polyphase banks, a granule through the MDCT. Measured: no difference
// at the lowest level, RMS 0.08 and largest 1 at the second, and 0.67 and 3 at the last, where the
// ripple of the banks (-84 dB) is 0.63 steps.
TEST(Mp3MdctFwd, comesBackThroughTheSynthesis) {
    constexpr size_t kDelay = 481 + 576;
    std::mt19937 random(3);
    for (const auto& [deviation, rms, largest] :
         {std::array{30.0, 0.0, 0.0}, {3000.0, 0.1, 1.0}, {10000.0, 0.75, 4.0}}) {
        std::vector<Zet16s> pcm(kHistory);
        const auto signal = noise(random, deviation, 576 * 66);
        pcm.insert(pcm.end(), signal.begin(), signal.end());
        Transform transform;
        Decoder decoder;
        std::vector<Zet16s> decoded;
        for (size_t g = 0; g < 66; ++g) {
            const Block block = kBlocks[g % std::size(kBlocks)];
            Zet32s samples[576];
            ASSERT_EQ(zetsAnalysisPQMF_MP3_16s32s(&pcm[576 * g], samples, 1), zetStsOk);
            decoder.decode(transform.lines(samples, block), block, decoded);
        }
        Differences differences;
        for (size_t i = kDelay; i < decoded.size(); ++i)
            if (std::abs(signal[i - kDelay]) < 32000)
                differences.add(decoded[i] - signal[i - kDelay]);
        EXPECT_LE(differences.rms(), rms);
        EXPECT_LE(differences.largest, largest);
    }
}

}  // namespace
}  // namespace zetac::test
