// Psychoacoustic model two as an encoder sees it: delay, block types, stereo decisions. Its numbers
// are held against a model by the internal tests.
#include <gtest/gtest.h>
#include <zetac.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace zetac::test {
namespace {

constexpr Zet32s kNoEnergy = 0x7FFFFFFF;

// One granule as delivered: records and side information of its channels.
struct Delivered {
    ZetMP3PsyOutput output[2];
    ZetMP3GranuleSideInfo side[2];
    Zet32s bounds[3];
    int modeExtension;
};

ZetMP3Header headerOf(int id, int mode, int bitrateIndex = 9) {
    ZetMP3Header header{};
    header.ID = id;
    header.mode = mode;
    header.bitrate_index = bitrateIndex;
    return header;
}

// An encoder's run over steps of the signal; what lies behind the signal is silent.
std::vector<Delivered> run(std::vector<Zet16s> pcm, ZetMP3Header header, int granules,
                           ZetMP3PsyState state = {}) {
    const int channels = header.mode == 3 ? 1 : 2;
    const int perFrame = header.ID == 1 ? 2 : 1;
    pcm.resize(static_cast<size_t>((576 * granules + 448) * channels));
    std::vector<Zet32s> buffer(ZETAC_MP3_PSY_BUFFER_LEN / sizeof(Zet32s));
    std::vector<Delivered> result;
    for (int g = 0; g < granules; g += perFrame) {
        ZetMP3PsyOutput output[4];
        ZetMP3GranuleSideInfo side[4];
        Zet32s bounds[6] = {-1, -1, -1, -1, -1, -1};
        std::memset(side, 0x5a, sizeof side);
        EXPECT_EQ(zetsPsychoacousticModelTwo_MP3_16s(&pcm[576 * g * channels], output, bounds, side,
                                                     &header, &state, nullptr,
                                                     reinterpret_cast<Zet8u*>(buffer.data())),
                  zetStsOk);
        for (int slot = 0; slot < perFrame; ++slot) {
            Delivered granule{};
            std::copy_n(output + slot * channels, channels, granule.output);
            std::copy_n(side + slot * channels, channels, granule.side);
            std::copy_n(bounds + 3 * slot, 3, granule.bounds);
            granule.modeExtension = header.mode_extension;
            EXPECT_EQ(granule.side[0].mixed_block_flag, 0);
            EXPECT_EQ(granule.side[0].window_switching_flag, granule.side[0].block_type != 0);
            EXPECT_EQ(granule.side[0].global_gain, 0x5a5a5a5a);  // not the model's
            result.push_back(granule);
        }
    }
    return result;
}

std::string typesOf(const std::vector<Delivered>& granules, int channel = 0) {
    std::string types;
    for (const auto& granule : granules) {
        types += static_cast<char>('0' + granule.side[channel].block_type);
    }
    return types;
}

// Noise of a deviation that depends on the time step.
template <class Level>
std::vector<Zet16s> noiseOf(int granules, int channels, Level level) {
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    std::vector<Zet16s> pcm;
    for (int i = 0; i < 576 * granules + 448; ++i)
        for (int c = 0; c < channels; ++c)
            pcm.push_back(static_cast<Zet16s>(std::lround(normal(random) * level(i, c))));
    return pcm;
}

TEST(Mp3Psycho, findsNothingInSilence) {
    for (const int mode : {0, 1, 3}) {
        const auto granules = run({}, headerOf(1, mode), 6);
        EXPECT_EQ(typesOf(granules), "000000");
        for (size_t g = 0; g < granules.size(); ++g) {
            EXPECT_EQ(granules[g].modeExtension, mode == 1 ? 2 : 0);  // equal entropies: M/S
            EXPECT_EQ(granules[g].output[0].pe, 0);
            for (int s = 0; s < 21; ++s) {  // a fresh state is delivered first
                EXPECT_EQ(granules[g].output[0].ratio[s], g == 0 ? 0 : kNoEnergy);
            }
        }
    }
}

TEST(Mp3Psycho, deliversTheStateFirst) {
    ZetMP3PsyState state{};
    for (int c = 0; c < 2; ++c) {
        state.channel[c].block_type = 2 - c;
        state.channel[c].pe = 100 + c;
        for (int i = 0; i < 36; ++i) {
            state.channel[c].ratioLong[i] = i + 1000 * c;
            state.channel[c].ratioShort[i] = -i;
        }
    }
    const auto first = run({}, headerOf(1, 1), 2, state).front();
    EXPECT_EQ(first.modeExtension, 0);  // block types differ
    for (int c = 0; c < 2; ++c) {
        EXPECT_EQ(first.side[c].block_type, 2 - c);
        EXPECT_EQ(first.output[c].pe, 100 + c);
        EXPECT_EQ(first.output[c].ratio[20], c == 0 ? -20 : 1020);
    }
}

// Both frame formats analyse the same granules, one granule late. (In joint stereo they decide on
// M/S for one or two granules at a time.)
TEST(Mp3Psycho, delaysByOneGranuleInBothFormats) {
    const auto pcm = noiseOf(12, 2, [](int i, int) { return i > 3500 && i < 3800 ? 9000 : 400; });
    for (const int mode : {0, 3}) {
        const auto two = run(pcm, headerOf(1, mode), 12);
        const auto one = run(pcm, headerOf(0, mode), 12);
        ASSERT_EQ(two.size(), one.size());
        EXPECT_NE(typesOf(two).find("123"), std::string::npos);
        for (size_t g = 0; g < two.size(); ++g) {
            EXPECT_EQ(std::memcmp(&two[g], &one[g], sizeof two[g]), 0) << "granule " << g;
        }
    }
    // A click that granules 3 and 4 hear tells in slots 4 and 5.
    std::vector<Zet16s> click(576 * 3 + 900);
    click.push_back(20000);
    const auto granules = run(click, headerOf(0, 3), 8);
    for (size_t g = 0; g < granules.size(); ++g) {
        EXPECT_EQ(granules[g].output[0].pe > 0, g == 4 || g == 5) << g;
    }
}

// Granule g's short blocks begin at 576 g + 256, + 384 and + 512.
TEST(Mp3Psycho, switchesBlocksAtAttacks) {
    const auto attackAt = [](int step, double before, double after) {
        return [=](int i, int) { return i < step ? before : after; };
    };
    // In the second short block of granule 6, which is delivered in slot 7.
    const int step = 576 * 6 + 384 + 64;
    const auto steady = run(noiseOf(12, 1, attackAt(1 << 30, 300, 0)), headerOf(1, 3), 12);
    EXPECT_EQ(typesOf(steady).substr(3), "000000000");
    EXPECT_EQ(typesOf(run(noiseOf(12, 1, attackAt(step, 300, 9000)), headerOf(1, 3), 12)).substr(3),
              "000123000");
    // Two attacks with one granule between: the stop becomes short.
    const auto twice = [](int i, int) {
        return (i > 3920 && i < 4300) || i > 3920 + 1152 ? 9000 : 300;
    };
    EXPECT_EQ(typesOf(run(noiseOf(12, 1, twice), headerOf(1, 3), 12)).substr(3), "000122230");
    // An attack in one channel switches both.
    const auto right = [=](int i, int c) { return c == 1 && i >= step ? 9000 : 300; };
    for (const int mode : {0, 1}) {
        const auto granules = run(noiseOf(12, 2, right), headerOf(1, mode), 12);
        EXPECT_EQ(typesOf(granules, 0).substr(3), "000123000");
        EXPECT_EQ(typesOf(granules, 1).substr(3), "000123000");
    }
}

TEST(Mp3Psycho, choosesTheStereoMode) {
    auto same = noiseOf(8, 2, [](int, int c) { return c == 0 ? 2000 : 0; });
    auto apart = noiseOf(8, 2, [](int, int) { return 2000; });
    for (size_t i = 0; i < same.size(); i += 2) same[i + 1] = same[i];
    for (size_t i = 0; i < same.size(); i += 2)
        apart[i + 1] = static_cast<Zet16s>(apart[i + 1] / 60);
    for (const int mode : {0, 1, 2}) {
        EXPECT_EQ(run(same, headerOf(1, mode), 8).back().modeExtension, mode == 1 ? 2 : 0);
        EXPECT_EQ(run(apart, headerOf(1, mode), 8).back().modeExtension, 0);
    }
    // The side channel of equal channels is empty.
    const auto last = run(same, headerOf(1, 1), 8).back();
    EXPECT_EQ(last.output[1].ratio[5], kNoEnergy);
    EXPECT_EQ(last.output[1].pe, 0);
    EXPECT_LT(last.output[0].ratio[5], kNoEnergy);
}

TEST(Mp3Psycho, boundsIntensityStereo) {
    constexpr Zet32s kLong[3][3] = {{13, 12, 13}, {15, 15, 16}, {18, 18, 18}};
    constexpr Zet32s kShort[3][3] = {{6, 6, 7}, {8, 8, 8}, {10, 10, 10}};
    ZetMP3PsyState shortPending{};
    shortPending.channel[0].block_type = shortPending.channel[1].block_type = 2;
    for (int rate = 0; rate < 3; ++rate) {
        for (int index = 0; index < 16; ++index) {
            for (const int mode : {0, 1, 2, 3}) {
                ZetMP3Header header = headerOf(1, mode, index);
                header.sampling_frequency = rate;
                const auto granules = run({}, header, 2, shortPending);
                const bool intensity = mode != 3 && index >= 6 && index <= 8;
                EXPECT_EQ(granules[0].modeExtension, (mode == 1 ? 2 : 0) + intensity);
                for (int w = 0; w < 3; ++w) {
                    EXPECT_EQ(granules[0].bounds[w], intensity ? kShort[index - 6][rate] : -1);
                    EXPECT_EQ(granules[1].bounds[w],
                              intensity && w == 0 ? kLong[index - 6][rate] : -1);
                }
            }
        }
    }
}

// The hardest signals leave every value in its range; the sanitizers look on. Square waves of full
// scale, and calls that have nothing to do with one another.
TEST(Mp3Psycho, survivesExtremes) {
    const auto expectInRange = [](const std::vector<Delivered>& granules) {
        for (const auto& granule : granules) {
            for (const auto& output : granule.output) {
                EXPECT_GE(output.pe, 0);
                for (const Zet32s ratio : output.ratio) EXPECT_GE(ratio, 0);
            }
        }
    };
    for (const int halfPeriod : {1, 2, 3, 16, 128, 300, 512, 576, 1024, 1 << 20}) {
        for (const int shift : {0, 1}) {  // of the right channel
            std::vector<Zet16s> pcm;
            for (int i = 0; i < 576 * 8 + 448; ++i) {
                pcm.push_back(i / halfPeriod % 2 ? 32767 : -32768);
                pcm.push_back((i / halfPeriod + shift) % 2 ? 32767 : -32768);
            }
            ZetMP3Header header = headerOf(1, 1);
            header.sampling_frequency = halfPeriod % 4;  // 3 is reserved: as 0
            expectInRange(run(pcm, header, 8));
        }
    }
    ZetMP3Header header = headerOf(0, 3);
    ZetMP3PsyState state{};
    std::vector<Zet32s> buffer(ZETAC_MP3_PSY_BUFFER_LEN / sizeof(Zet32s));
    for (const int value : {1, 32767, -32768, 1, -32768, 32767, 0, 32767, 32767, -32768}) {
        const std::vector<Zet16s> pcm(1024, static_cast<Zet16s>(value));
        Delivered granule{};
        ASSERT_EQ(zetsPsychoacousticModelTwo_MP3_16s(pcm.data(), granule.output, granule.bounds,
                                                     granule.side, &header, &state, nullptr,
                                                     reinterpret_cast<Zet8u*>(buffer.data())),
                  zetStsOk);
        expectInRange({granule});
    }
}

}  // namespace
}  // namespace zetac::test
