// The sound that goes through the command-line tool is that of the codecs, sample by sample. What
// the tool says and does beyond that stands in transcripts/.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "support/streams/encode_material.h"
#include "support/streams/mp3_clips.h"

namespace zetac::test {
namespace {

using codec::SbrOutput;
using Settings = EncoderSettings;
using SoundFile = std::unique_ptr<SNDFILE, int (*)(SNDFILE*)>;

class Sound : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_ = (std::filesystem::temp_directory_path() / "zetac-test-XXXXXX").string();
        ASSERT_NE(mkdtemp(folder_.data()), nullptr);
        folder_ += "/";
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    /** Runs the tool on a file "in". */
    void run(const std::string& arguments) const {
        const std::string line =
            "cd " + folder_ + " && '" ZETAC_TOOL "' " + arguments + " -q -f in -o out";
        EXPECT_EQ(std::system(line.c_str()), 0) << line;
    }
    Pcm decode(const Bytes& stream, const std::string& options = "") const {
        writeFile(folder_ + "in", stream);
        run("decode " + options);
        SF_INFO info{};
        const SoundFile file(sf_open((folder_ + "out").c_str(), SFM_READ, &info), sf_close);
        Pcm pcm(static_cast<size_t>(info.frames * info.channels));
        sf_read_short(file.get(), pcm.data(), static_cast<sf_count_t>(pcm.size()));
        return pcm;
    }
    Bytes encode(const Pcm& pcm, SF_INFO info, const std::string& options = "") const {
        SNDFILE* file = sf_open((folder_ + "in").c_str(), SFM_WRITE, &info);
        sf_command(file, SFC_SET_SCALE_INT_FLOAT_WRITE, nullptr, SF_TRUE);
        sf_write_short(file, pcm.data(), static_cast<sf_count_t>(pcm.size()));
        sf_close(file);
        run("encode " + options);
        return readFile(folder_ + "out");
    }
    static SF_INFO info(int format, int sampleRate = 44100, int channels = 2) {
        return {.frames = 0,
                .samplerate = sampleRate,
                .channels = channels,
                .format = format,
                .sections = 0,
                .seekable = 0};
    }

    std::string folder_;
};

TEST_F(Sound, OfDecoders) {
    for (const char* name : {"surround_51", "stereo_noise", "mono_ltp", "surround_71_pce"})
        EXPECT_EQ(decode(clip(name)), decodeAll(clip(name), {codec::ChannelOrder::kWav}).pcm)
            << name;
    for (const char* name : {"stereo_vbr_32k", "mono_lsf_16k_speech"})
        EXPECT_EQ(decode(mp3Clip(name)), decodeMp3(mp3Clip(name)).pcm) << name;
    const Bytes he = readFile(std::string(ZETAC_TEST_DATA) + "/he_aac/stereo_music.aac");
    const std::tuple<const char*, SbrOutput, bool> modes[] = {
        {"", SbrOutput::kDouble, false},
        {"--sbr-float", SbrOutput::kDouble, true},
        {"--downsampled", SbrOutput::kCore, false},
        {"--no-sbr", SbrOutput::kNone, false}};
    for (const auto& [option, output, isFloat] : modes)
        EXPECT_EQ(decode(he, option),
                  decodeAll(he, {codec::ChannelOrder::kWav, true, output, isFloat}).pcm)
            << option;
}

/** The encoder's 576 samples, and 529 of the decoder, go in front; of those behind the decoder's
 *  delay has used up 529. */
TEST_F(Sound, OfDecodersIsTrimmed) {
    const Bytes bare = mp3Clip("stereo_ms_44k");
    const Pcm whole = decodeMp3(bare).pcm;
    const auto tagged = [&](int delay, int padding) {  // behind the side information of stereo
        return id3v2(40) + infoFrame(bare, 36, xing("Info", 0, "LAME3.100", delay, padding)) +
               bare + apeTag(3) + id3v1();
    };
    for (const int padding : {0, 529, 530, 2000, 4095}) {
        const Pcm expected(whole.begin() + 2 * (576 + 529),
                           whole.end() - 2 * std::max(0, padding - 529));
        EXPECT_EQ(decode(tagged(576, padding)), expected) << padding;
    }
    EXPECT_EQ(decode(tagged(576, 1000), "--no-trim"), whole);
    EXPECT_EQ(decode(tagged(0, 0)), whole);  // the encoder does not know
}

TEST_F(Sound, OfDecodersWithMonoAmongStereo) {
    const Bytes stereo = mp3Clip("stereo_intensity_44k"), mono = mp3Clip("mono_mixed_44k");
    const Pcm left = decodeMp3(stereo).pcm, right = decodeMp3(stereo + mono).pcm;
    Pcm expected = left;
    for (size_t i = left.size(); i < right.size(); ++i)
        expected.insert(expected.end(), 2, right[i]);
    EXPECT_EQ(decode(stereo + mono), expected);

    const Pcm values = decodeMp3(mono + stereo).pcm;
    expected = decodeMp3(mono).pcm;
    for (size_t i = expected.size(); i < values.size(); i += 2)
        expected.push_back(static_cast<Zet16s>(std::floor((values[i] + values[i + 1]) / 2.)));
    EXPECT_EQ(decode(mono + stereo), expected);
}

/** Formats that hold 16 bits exactly give the same stream. */
TEST_F(Sound, OfTheEncoder) {
    const Pcm music = soundOf(Material::kMusic, 44100, 2, 30000);
    for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_WAV | SF_FORMAT_PCM_24,
                             SF_FORMAT_WAV | SF_FORMAT_PCM_32, SF_FORMAT_WAV | SF_FORMAT_FLOAT,
                             SF_FORMAT_FLAC | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_24,
                             SF_FORMAT_AIFF | SF_FORMAT_PCM_16})
        EXPECT_EQ(encode(music, info(format)), encodeMp3({}, music)) << std::hex << format;

    constexpr int kWav = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    const std::pair<const char*, Settings> cases[] = {
        {"-b 192", {.bitRate = 192}},
        {"--bit-rate 64 -m stereo", {.isJoint = false, .bitRate = 64}},
        {"-V 3", {.quality = 3}},
        {"--quality 9 --crc -m joint", {.quality = 9, .hasCrc = true}}};
    for (auto [options, settings] : cases) {
        settings.sampleRate = 48000;
        EXPECT_EQ(encode(music, info(kWav, 48000), options), encodeMp3(settings, music)) << options;
    }
    Pcm mix(music.size() / 2);
    for (size_t i = 0; i < mix.size(); ++i)
        mix[i] = static_cast<Zet16s>(std::lrint((music[2 * i] + music[2 * i + 1]) / 2.0f));
    EXPECT_EQ(encode(music, info(kWav), "-m mono"), encodeMp3({.channels = 1, .bitRate = 64}, mix));
}

TEST_F(Sound, OfTheEncoderAtOtherRates) {
    for (const auto& [from, to] : {std::pair{22050, 44100},
                                   {16000, 32000},
                                   {96000, 48000},
                                   {37800, 44100},
                                   {50000, 48000}}) {
        const auto pcm = [](int rate) {
            return soundOf(Material::kMusic, rate, 1, static_cast<size_t>(rate) / 2);
        };
        const Bytes mp3 =
            encode(pcm(from), info(SF_FORMAT_WAV | SF_FORMAT_PCM_16, from, 1), "-b 128");
        EXPECT_NEAR(static_cast<double>(decodeTrimmed(mp3, 1).size()), to / 2.0, 2) << from;
        // Measured: 19 dB and more, which is what the encoder itself leaves.
        EXPECT_GT(signalToNoise(pcm(to), decodeTrimmed(mp3, 1)), 15) << from;
    }
}

}  // namespace
}  // namespace zetac::test
