// HE-AAC against the sound of an independent decoder in floating point.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "support/streams/reference.h"

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

Bytes heClip(const std::string& name) {
    return readFile(ZETAC_TEST_DATA "/he_aac/" + name + ".aac");
}

TEST(HeConformance, BundledClips) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(ZETAC_TEST_DATA "/he_aac")) {
        auto path = entry.path();
        const std::string stream = path.string();
        const auto reference = path.replace_extension(".pcm.gz");
        if (!stream.ends_with(".aac") || !exists(reference)) continue;
        ++count;
        expectHeConformance(stream, reference.string());
    }
    EXPECT_GE(count, 9);
}

TEST(HeConformance, SharedStreams) {
    int count = 0;
    for (const char* folder : {"aac/", "ps/"}) {
        for (const SharedStream& stream : sharedStreams(folder)) {
            if (!stream.profile.starts_with("HE-AAC")) continue;
            ++count;
            expectHeConformance(stream.path, stream.reference);
        }
    }
    if (count == 0) GTEST_SKIP() << "no streams in " ZETAC_SHARED_STREAMS;
}

/** One channel of a frame in stereo. */
Pcm side(const Pcm& pcm, size_t frame, size_t channel) {
    Pcm samples(codec::kSbrFrameLength);
    for (size_t i = 0; i < samples.size(); ++i) {
        samples[i] = pcm[2 * (frame * samples.size() + i) + channel];
    }
    return samples;
}

// Two streams of the same core, the second one with parametric stereo. From one to the other the
// output becomes stereo, but both sides are mono in the first frame, so that nothing jumps. Four
// frames later the decorrelated signal is what it is when it was there from the start.
TEST(ParametricStereo, MayBeginLate) {
    constexpr size_t kFirst = 6;  // a frame with a header
    const auto mono = framesOf(heClip("mono_speech"));
    const auto stereo = framesOf(heClip("stereo_ps_mode_changes_speech"));
    for (const bool isFloat : {false, true}) {
        const auto played = options(SbrOutput::kDouble, isFloat);
        const Pcm core = decodeAll(joined(mono, 0), played).pcm;
        const Pcm whole = decodeAll(joined(stereo, 0), played).pcm;
        const Decoded late = decodeAll(joined(mono, 0, kFirst) + joined(stereo, kFirst), played);
        ASSERT_EQ(late.channels, 2);
        const auto frame = codec::kSbrFrameLength;
        const auto begin = core.begin() + kFirst * frame;
        ASSERT_EQ(Pcm(late.pcm.begin(), late.pcm.begin() + kFirst * frame),
                  Pcm(core.begin(), begin));
        const Pcm rest(late.pcm.begin() + kFirst * frame, late.pcm.end());
        EXPECT_EQ(side(rest, 0, 0), side(rest, 0, 1));
        EXPECT_LE(compare(side(rest, 0, 0), {begin, begin + frame}).max, 1);
        const size_t last = stereo.size() - 1;
        for (const size_t channel : {0, 1}) {
            const auto d = compare(side(rest, last - kFirst, channel), side(whole, last, channel));
            EXPECT_LE(d.max, 1);
        }
    }
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
