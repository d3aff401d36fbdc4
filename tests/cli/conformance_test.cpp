// Real and synthetic streams against the PCM of an independent decoder in double precision.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <numeric>

#include "clips.h"
#include "reference.h"

namespace zetac::test {
namespace {

/** Noise bands are empty in the references, so they stay empty here. */
void expectConformance(const std::string& path, const std::string& reference) {
    SCOPED_TRACE(path);
    const Decoded decoded = decodeAll(readFile(path), {codec::ChannelOrder::kStream, false});
    const Pcm expected = readReference(reference);
    ASSERT_TRUE(decoded.isAac);
    EXPECT_EQ(decoded.damages(), 0u);
    EXPECT_EQ(decoded.skippedBytes, 0u);
    ASSERT_EQ(decoded.pcm.size(), expected.size());
    expectFullAccuracy(path, compare(decoded.pcm, expected));
}

TEST(Conformance, BundledClips) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(ZETAC_TEST_DATA "/aac")) {
        auto path = entry.path();
        if (path.extension() != ".aac") continue;
        ++count;
        const std::string stream = path.string();
        expectConformance(stream, path.replace_extension(".pcm.gz").string());
    }
    EXPECT_GE(count, 21);
}

TEST(Conformance, SharedStreams) {
    const std::vector<SharedStream> streams = sharedStreams("aac/");
    if (streams.empty()) GTEST_SKIP() << "no streams in " ZETAC_SHARED_STREAMS;
    int count = 0;
    for (const SharedStream& stream : streams) {
        if (stream.profile.starts_with("HE-AAC")) continue;
        ++count;
        expectConformance(stream.path, stream.reference);
    }
    EXPECT_GT(count, 0);
}

TEST(Conformance, StateOfStereoDecoderIsSmall) {
    const Decoded decoded = decodeAll(clip("stereo_noise"));
    EXPECT_GE(decoded.stateBytes, 2u * 1024 * sizeof(Zet32s));  // it counts the overlaps at least
    EXPECT_LT(decoded.stateBytes, 64u * 1024);
}

// --- Perceptual noise: random, so its energies are tested ---------------------------------------

// Offsets of the scalefactor bands at 44.1 kHz, long and short windows (ISO/IEC 14496-3, 4.5.4).
constexpr int kLongBands[] = {0,   4,   8,   12,  16,  20,  24,  28,  32,  36,  40,  48,  56,
                              64,  72,  80,  88,  96,  108, 120, 132, 144, 160, 176, 196, 216,
                              240, 264, 292, 320, 352, 384, 416, 448, 480, 512, 544, 576, 608,
                              640, 672, 704, 736, 768, 800, 832, 864, 896, 928, 1024};
constexpr int kShortBands[] = {0, 4, 8, 12, 16, 20, 28, 36, 44, 56, 68, 80, 96, 112, 128};

/** The noise alone: what the decoder gives with noise less what it gives without, Q3. */
std::vector<Zet32s> noiseOf(const Bytes& bytes, int channels, int channel) {
    const Pcm with = decodeAll(bytes, {codec::ChannelOrder::kStream, true}).pcm;
    const Pcm without = decodeAll(bytes, {codec::ChannelOrder::kStream, false}).pcm;
    std::vector<Zet32s> noise;
    for (size_t i = static_cast<size_t>(channel); i < with.size();
         i += static_cast<size_t>(channels)) {
        noise.push_back((with[i] - without[i]) * 8);
    }
    return noise;
}

/** The spectrum of one frame of a time signal. The filter bank is orthogonal, so analysis with the
 *  windows of the synthesis returns the very lines that were synthesised. */
std::vector<Zet32s> analyse(const Zet32s* time, const ZetAACIcsInfo& ics, int previousShape) {
    std::vector<Zet32s> lines(ZETAC_AAC_FRAME_LEN);
    std::vector<Zet32s> work(2 * ZETAC_AAC_FRAME_LEN);
    Zet32s reserved = 0;
    if (ics.window_sequence != zetAacEightShort) {
        zetsMDCTFwd_AAC_32s(time, lines.data(), &reserved, ics.window_sequence, ics.window_shape,
                            previousShape, work.data());
        return lines;
    }
    for (int w = 0; w < 8; ++w) {
        zetsMDCTFwd_AAC_32s(time + 448 + 128 * w, lines.data() + 128 * w, &reserved,
                            ics.window_sequence, ics.window_shape,
                            w == 0 ? previousShape : ics.window_shape, work.data());
    }
    return lines;
}

struct NoiseBand {
    int frame, window, sfb;
    bool isShared;
    double expected;  // energy of the band, Q6
    std::vector<double> lines;

    double energy() const {
        return std::inner_product(lines.begin(), lines.end(), lines.begin(), 0.);
    }
};

/** Whether the standard wants the same noise in both channels of a pair for a band. */
bool isShared(codec::BlockParser& parser, int group, int sfb) {
    const auto& pair = parser.elements()[0].pair;
    const int index = group * parser.channel(0).ics().max_sfb + sfb;
    return pair.common_window && parser.channel(0).codebook[index] == zetAacNoiseCb &&
           parser.channel(1).codebook[index] == zetAacNoiseCb &&
           (pair.ms_mask_present == 2 || (pair.ms_mask_present == 1 && pair.ms_used[group][sfb]));
}

void addNoiseBands(int frame, codec::BlockParser& parser, int channel,
                   const std::vector<Zet32s>& lines, std::vector<NoiseBand>& bands) {
    const codec::ChannelData& data = parser.channel(channel);
    const ZetAACIcsInfo& ics = data.ics();
    const int* offsets = ics.window_sequence == zetAacEightShort ? kShortBands : kLongBands;
    int window = 0;
    for (int i = 0; i < data.bands(); ++i) {
        const int group = i / ics.max_sfb;
        const int sfb = i % ics.max_sfb;
        if (sfb == 0) window += group > 0 ? ics.window_group_length[group - 1] : 0;
        if (data.codebook[i] != zetAacNoiseCb) continue;
        for (int w = window; w < window + ics.window_group_length[group]; ++w) {
            const Zet32s* first = lines.data() + w * 128;
            bands.push_back({frame,
                             w,
                             sfb,
                             isShared(parser, group, sfb),
                             std::exp2(6 + data.scaleFactor[i] / 2.),
                             {first + offsets[sfb], first + offsets[sfb + 1]}});
        }
    }
}

/** All noise bands of a channel of a stereo stream without TNS, with the energies that the stream
 *  asks for and the lines that are in the sound. Of the last frame half of the sound is missing. */
std::vector<NoiseBand> noiseBandsOf(const Bytes& bytes, int channel) {
    const std::vector<Zet32s> time = noiseOf(bytes, 2, channel);
    const int frames = static_cast<int>(time.size()) / ZETAC_AAC_FRAME_LEN - 1;
    Bytes padded = bytes;
    padded.resize(bytes.size() + codec::kReadAhead);
    const auto stream = codec::openStream({padded.data(), bytes.size()});
    codec::BlockParser parser;
    codec::RawBlock block;
    std::vector<NoiseBand> bands;
    int previousShape = zetAacSine;
    for (int frame = 0; frame < frames && stream->next(block); ++frame) {
        if (frame == 0) parser.open(block);
        EXPECT_EQ(parser.parse(block), codec::Fault::kNone);
        stream->finish(parser.bytesUsed(), true);
        const ZetAACIcsInfo& ics = parser.channel(channel).ics();
        const Zet32s* start = time.data() + frame * ZETAC_AAC_FRAME_LEN;
        addNoiseBands(frame, parser, channel, analyse(start, ics, previousShape), bands);
        previousShape = ics.window_shape;
    }
    return bands;
}

// Each PCM sample is rounded once with and once without noise: 2/12 of variance. A line of the
// forward transform sums 2 w cos over the window, which multiplies that by 4 * 1024 / 2 (less for a
// short window), and Q3 by 64.
constexpr double kRoundingPerLine = 64 * 2048 / 6.;
constexpr double kAboveRounding = 30;

/** Whether rounding the sound to 16 bits can change the band's energy by 1/30 at most. */
bool isAudible(const NoiseBand& band) {
    return band.expected >
           kAboveRounding * kRoundingPerLine * static_cast<double>(band.lines.size());
}

void expectNoiseEnergies(const std::vector<NoiseBand>& bands) {
    const double tolerance = 10 * std::log10(1 + 1 / kAboveRounding);  // 0.14 dB
    double expected[ZETAC_AAC_SFB_MAX] = {};
    double found[ZETAC_AAC_SFB_MAX] = {};
    for (const NoiseBand& band : bands) {
        if (!isAudible(band)) continue;
        expected[band.sfb] += band.expected;
        found[band.sfb] += band.energy();
    }
    int count = 0;
    double worst = 0;
    for (int sfb = 0; sfb < ZETAC_AAC_SFB_MAX; ++sfb) {
        if (expected[sfb] == 0) continue;
        ++count;
        const double decibels = 10 * std::log10(found[sfb] / expected[sfb]);
        worst = std::max(worst, std::abs(decibels));
        EXPECT_NEAR(decibels, 0, tolerance) << "band " << sfb;
    }
    std::printf("%d bands of noise, the energies within %.4f dB\n", count, worst);
    EXPECT_GT(count, 20);
}

TEST(Noise, BandEnergiesAreThoseOfTheStream) {
    const Bytes bytes = clip("stereo_noise");
    for (int channel = 0; channel < 2; ++channel) {
        SCOPED_TRACE(channel);
        expectNoiseEnergies(noiseBandsOf(bytes, channel));
    }
}

TEST(Noise, IsTheSameInBothChannelsWhereTheStreamSaysSo) {
    const Bytes bytes = clip("stereo_noise");
    const std::vector<NoiseBand> left = noiseBandsOf(bytes, 0);
    const std::vector<NoiseBand> right = noiseBandsOf(bytes, 1);
    int shared = 0;
    int separate = 0;
    double sum = 0;
    for (const NoiseBand& l : left) {
        const auto r = std::ranges::find_if(right, [&](const NoiseBand& band) {
            return band.frame == l.frame && band.window == l.window && band.sfb == l.sfb &&
                   band.lines.size() == l.lines.size();
        });
        if (r == right.end() || !isAudible(l) || !isAudible(*r)) continue;
        const double product =
            std::inner_product(l.lines.begin(), l.lines.end(), r->lines.begin(), 0.);
        const double correlation = product / std::sqrt(l.energy() * r->energy());
        if (l.isShared) {
            ++shared;
            // The rounding noise of both channels, each at most 1/30 of the energy.
            EXPECT_GT(correlation, 1 - 1 / kAboveRounding);
        } else {
            ++separate;
            sum += correlation;
        }
    }
    std::printf("%d shared bands, %d separate ones of mean correlation %.4f\n", shared, separate,
                sum / separate);
    EXPECT_GT(shared, 20);
    // Bands have four lines and more: the mean of n independent correlations stays within four
    // standard deviations of 1/2 / sqrt(n) each.
    EXPECT_LT(std::abs(sum / separate), 4 * 0.5 / std::sqrt(separate));
}

}  // namespace
}  // namespace zetac::test
