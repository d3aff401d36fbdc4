// HE-AAC against the sound of an independent decoder in floating point.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <filesystem>

#include "support/streams/reference.h"
#include "support/streams/sbr_stream.h"

namespace zetac::test {
namespace {

using codec::ChannelOrder;
using codec::SbrOutput;

codec::DecoderOptions options(SbrOutput output, bool isFloat = false) {
    return {ChannelOrder::kStream, true, output, isFloat};
}

// Fixed or floating, core, high band and all: full accuracy, which is far more than band energies
// within a decibel. Measured at worst: an RMS of 0.1 and a difference of 1.
void expectHeConformance(const std::string& path, const std::string& reference) {
    const Pcm expected = readReference(reference);
    for (const bool isFloat : {false, true}) {
        SCOPED_TRACE(testing::Message() << path << (isFloat ? " float" : " fixed"));
        const Decoded decoded = decodeAll(readFile(path), options(SbrOutput::kDouble, isFloat));
        EXPECT_EQ(decoded.damages(), 0u);
        EXPECT_EQ(std::ranges::count(decoded.sbrFaults, codec::Fault::kNone),
                  static_cast<ptrdiff_t>(decoded.sbrFaults.size()));
        ASSERT_EQ(decoded.pcm.size(), expected.size());
        expectFullAccuracy(path, compare(decoded.pcm, expected));
    }
}

TEST(HeConformance, BundledClips) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(ZETAC_TEST_DATA "/he_aac")) {
        auto path = entry.path();
        if (path.extension() != ".aac") continue;
        ++count;
        const std::string stream = path.string();
        expectHeConformance(stream, path.replace_extension(".pcm.gz").string());
    }
    EXPECT_GE(count, 3);
}

TEST(HeConformance, SharedStreams) {
    int count = 0;
    for (const SharedStream& stream : sharedStreams("aac/")) {
        if (!stream.profile.starts_with("HE-AAC v1")) continue;
        ++count;
        expectHeConformance(stream.path, stream.reference);
    }
    if (count == 0) GTEST_SKIP() << "no streams in " ZETAC_SHARED_STREAMS;
}

/** Powers of 64 bands of equal width, each over blocks of 2048 samples. */
std::vector<double> bandPowers(const std::vector<double>& sound) {
    constexpr size_t kBlock = 2048;
    constexpr size_t kLinesPerBand = 4;  // of 16: enough of a band for its power
    std::vector<double> powers;
    for (size_t at = 0; at + kBlock <= sound.size(); at += kBlock) {
        for (size_t band = 0; band < 64; ++band) {
            double power = 0;
            for (size_t line = 0; line < kLinesPerBand; ++line) {
                const double bin = static_cast<double>(band * 16 + line * 4);
                const double step = 2 * M_PI * bin / kBlock;
                std::complex<double> phasor = 1;
                std::complex<double> sum = 0;
                const std::complex<double> turn = std::polar(1., step);
                for (size_t i = 0; i < kBlock; ++i, phasor *= turn) {
                    const double window = 0.5 - 0.5 * std::cos(2 * M_PI * i / kBlock);
                    sum += window * sound[at + i] * phasor;
                }
                power += std::norm(sum);
            }
            powers.push_back(power);
        }
    }
    return powers;
}

// Parametric stereo turns a sound into two whose powers add up to twice its own, as far as what it
// makes them of, the sound and its decorrelated self, are alike. So over the whole of the stream
// the bands of our mono have the powers of the reference.
TEST(HeConformance, ParametricStereoPlaysAsMono) {
    for (const SharedStream& stream : sharedStreams("aac/")) {
        if (!stream.profile.starts_with("HE-AAC v2")) continue;
        const Decoded decoded = decodeAll(readFile(stream.path), options(SbrOutput::kDouble));
        const Pcm reference = readReference(stream.reference);
        ASSERT_EQ(decoded.channels, 1);
        ASSERT_EQ(reference.size(), 2 * decoded.pcm.size());
        std::vector<double> sides[2];
        for (size_t i = 0; i < reference.size(); ++i) sides[i % 2].push_back(reference[i]);
        const auto mono = bandPowers({decoded.pcm.begin(), decoded.pcm.end()});
        const auto left = bandPowers(sides[0]);
        const auto right = bandPowers(sides[1]);
        double worst = 0;
        for (size_t band = 0; band < 47; ++band) {  // the last one that SBR makes
            double ours = 0;
            double theirs = 0;
            for (size_t i = band; i < mono.size(); i += 64) {
                ours += 2 * mono[i];
                theirs += left[i] + right[i];
            }
            const double difference = 10 * std::log10(ours / theirs);
            worst = std::max(worst, std::abs(difference));
            EXPECT_LT(std::abs(difference), 1) << "band " << band;
        }
        std::printf("all bands within %.2f dB\n", worst);
        return;
    }
    GTEST_SKIP() << "no streams in " ZETAC_SHARED_STREAMS;
}

/** The best delay in samples of the output at which both sounds agree, and how well. */
double snrAt(const Pcm& core, const Pcm& sound, size_t delay, size_t factor) {
    double signal = 0;
    double noise = 0;
    for (size_t i = 0; factor * i + delay < sound.size() && i < core.size(); ++i) {
        signal += static_cast<double>(core[i]) * core[i];
        const double difference = core[i] - sound[factor * i + delay];
        noise += difference * difference;
    }
    return 10 * std::log10(signal / noise);
}

// The banks reconstruct to 59.5 dB, the prototype's own limit, with the delay that they state and
// the six slots that the high band tools wait. The clip's highest frequencies, near half the rate
// of the core, are in no band of the synthesis and cost a little.
TEST(HeAac, WithoutItsDataTheCoreIsResampled) {
    const Bytes stream = clip("mono_ltp");
    const Pcm core = decodeAll(stream).pcm;
    for (const bool isFloat : {false, true}) {
        const Decoded twice = decodeAll(stream, options(SbrOutput::kDouble, isFloat));
        const Decoded once = decodeAll(stream, options(SbrOutput::kCore, isFloat));
        EXPECT_EQ(twice.sampleRate, 44100);
        EXPECT_EQ(once.sampleRate, 22050);
        EXPECT_EQ(twice.pcm.size(), 2 * core.size());
        EXPECT_EQ(once.pcm.size(), core.size());
        std::printf("SNR %.2f %.2f dB\n", snrAt(core, twice.pcm, 578 + 6 * 64, 2),
                    snrAt(core, once.pcm, 289 + 6 * 32, 1));
        EXPECT_GT(snrAt(core, twice.pcm, 578 + 6 * 64, 2), 55);
        EXPECT_GT(snrAt(core, once.pcm, 289 + 6 * 32, 1), 55);
    }
}

}  // namespace
}  // namespace zetac::test
