// zetac encode as its users meet it: formats, files, pipes, refusals and exit statuses.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#ifdef ZETAC_TOOL

#include <sndfile.h>

#include <array>
#include <cmath>
#include <memory>

#include "support/streams/encode_material.h"
#include "support/streams/mp3_clips.h"
#include "tool/command.h"

namespace zetac::test {
namespace {

struct SoundFile {
    int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    int sampleRate = 44100;
    int channels = 2;
};

class EncodeCommand : public Command {
  protected:
    /** Floating point reaches beyond full scale where gain exceeds 1. */
    void write(const std::string& name, const SoundFile& file, const Pcm& pcm,
               float gain = 1) const {
        SF_INFO info{};
        info.format = file.format;
        info.samplerate = file.sampleRate;
        info.channels = file.channels;
        const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> out(
            sf_open((folder_ / name).c_str(), SFM_WRITE, &info), sf_close);
        ASSERT_NE(out, nullptr) << name << ": " << sf_strerror(nullptr);
        if ((file.format & SF_FORMAT_SUBMASK) != SF_FORMAT_FLOAT) {  // its integers stay exact
            sf_write_short(out.get(), pcm.data(), static_cast<sf_count_t>(pcm.size()));
            return;
        }
        std::vector<float> samples(pcm.begin(), pcm.end());
        for (float& sample : samples) sample *= gain / 32768;
        sf_write_float(out.get(), samples.data(), static_cast<sf_count_t>(samples.size()));
    }
    Pcm decoded(const std::string& name, int channels) const {
        return decodeTrimmed(get(name), channels);
    }
    const Pcm music_ = soundOf(Material::kMusic, 44100, 2, 30000);
};

TEST_F(EncodeCommand, TakesSoundFilesOfManyFormats) {
    write("16.wav", {}, music_);
    ASSERT_EQ(shell("$zetac encode 16.wav").status, 0);
    const Bytes expected = encodeMp3({}, music_);
    EXPECT_EQ(get("16.mp3"), expected);
    // Formats that hold 16 bits exactly give the same stream, 8 bits nearly the same sound.
    const std::pair<const char*, int> formats[] = {{"24.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24},
                                                   {"32.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_32},
                                                   {"float.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT},
                                                   {"a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
                                                   {"b.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24},
                                                   {"a.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16}};
    for (const auto& [name, format] : formats) {
        write(name, {.format = format}, music_);
        const ShellRun run = shell(std::string("$zetac encode -o out.mp3 -f ") + name);
        EXPECT_EQ(run.status, 0) << name;
        EXPECT_EQ(run.text, "") << name;
        EXPECT_EQ(get("out.mp3"), expected) << name;
    }
    write("8.wav", {.format = SF_FORMAT_WAV | SF_FORMAT_PCM_U8}, music_);
    ASSERT_EQ(shell("$zetac encode 8.wav").status, 0);
    EXPECT_GT(signalToNoise(music_, decoded("8.mp3", 2)), 15);  // measured: 19.8 dB
}

TEST_F(EncodeCommand, OptionsReachTheEncoder) {
    write("a.wav", {.sampleRate = 48000}, music_);
    using Settings = EncoderSettings;
    const std::pair<const char*, Settings> cases[] = {
        {"-b 192", {.bitRate = 192}},
        {"--bit-rate 64 -m stereo", {.isJoint = false, .bitRate = 64}},
        {"-V 3", {.quality = 3}},
        {"--quality 9 --crc -m joint", {.quality = 9, .hasCrc = true}}};
    for (auto [options, settings] : cases) {
        settings.sampleRate = 48000;
        EXPECT_EQ(shell(std::string("$zetac encode -f a.wav ") + options).status, 0) << options;
        EXPECT_EQ(get("a.mp3"), encodeMp3(settings, music_)) << options;
    }
    Pcm mix(music_.size() / 2);
    for (size_t i = 0; i < mix.size(); ++i)
        mix[i] = static_cast<Zet16s>(std::lrint((music_[2 * i] + music_[2 * i + 1]) / 2.0f));
    EXPECT_EQ(shell("$zetac encode -f a.wav -m mono").status, 0);
    EXPECT_EQ(get("a.mp3"), encodeMp3({.sampleRate = 48000, .channels = 1, .bitRate = 64}, mix));
    for (const char* options : {"-b 100", "-b 0", "-V 10", "-V -1", "-b 128 -V 2", "-m quad"})
        EXPECT_EQ(shell(std::string("$zetac encode -f a.wav ") + options).status, 2) << options;
}

/** Other rates become the best of the three, and the sound lasts as long. */
TEST_F(EncodeCommand, ResamplesWhatMpeg1HasNoRateFor) {
    const std::array<int, 2> rates[] = {{22050, 44100}, {24000, 48000}, {16000, 32000},
                                        {11025, 44100}, {96000, 48000}, {88200, 44100},
                                        {37800, 44100}, {50000, 48000}};
    for (const auto& [from, to] : rates) {
        const Pcm pcm = soundOf(Material::kMusic, from, 1, static_cast<size_t>(from) / 2);
        write("a.wav", {.sampleRate = from, .channels = 1}, pcm);
        const ShellRun run = shell("$zetac encode -f -b 128 a.wav");
        if (run.text.find("cannot change it") != std::string::npos) GTEST_SKIP() << run.text;
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.text, "zetac: a.wav: resampled from " + std::to_string(from) + " to " +
                                std::to_string(to) + " Hz\n");
        const Pcm result = decoded("a.mp3", 1);
        EXPECT_NEAR(static_cast<double>(result.size()), to / 2.0, 2) << from;
        const Pcm direct = soundOf(Material::kMusic, to, 1, static_cast<size_t>(to) / 2);
        EXPECT_GT(signalToNoise(direct, result), 15) << from;
        EXPECT_EQ(shell("$zetac encode -fq a.wav").text, "");
    }
}

TEST_F(EncodeCommand, PipesFilesAndFolders) {
    write("a.wav", {}, music_);
    write("b.flac", {.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16}, music_);
    const ShellRun run = shell(
        "$zetac encode a.wav && $zetac encode a.wav -o - >c.mp3 && "
        "cat a.wav | $zetac encode - >d.mp3 && cat b.flac | $zetac encode - -o e.mp3 && "
        "$zetac encode -j 2 -o sub/mp3s a.wav b.flac && cmp a.mp3 c.mp3 && cmp a.mp3 d.mp3 && "
        "cmp a.mp3 e.mp3 && cmp a.mp3 sub/mp3s/a.mp3 && cmp a.mp3 sub/mp3s/b.mp3");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.text, "");
    EXPECT_EQ(fileCount(), 7);
    // What it writes, the tool itself decodes to as many samples.
    EXPECT_EQ(shell("$zetac decode --strict a.mp3 -o back.wav").status, 0);
    EXPECT_EQ(pcmOf(get("back.wav")).size(), music_.size());
}

TEST_F(EncodeCommand, WhatItCannotEncodeGetsOneLine) {
    write("six.wav", {.format = SF_FORMAT_WAVEX | SF_FORMAT_PCM_16, .channels = 6}, Pcm(6000, 100));
    write("empty.wav", {}, {});
    put("text.wav", Bytes(3000, 'x'));
    write("a.wav", {}, music_);
    put("a.mp3", Bytes(10, 'x'));
    const std::pair<const char*, const char*> cases[] = {
        {"six.wav", "has 6 channels; MP3 holds one or two"},
        {"empty.wav", "holds no sound"},
        {"text.wav", "cannot be read as sound"},
        {"none.wav", "cannot be opened"},
        {".", "is a folder"}};
    for (const auto& [file, message] : cases) {
        const ShellRun run = shell(std::string("$zetac encode -o out.mp3 ") + file);
        EXPECT_EQ(run.status, 2) << file;
        EXPECT_EQ(run.text.find(std::string("zetac: ") + file + ": " + message), 0U) << run.text;
        EXPECT_EQ(std::ranges::count(run.text, '\n'), 1) << run.text;
        EXPECT_FALSE(has("out.mp3"));
    }
    EXPECT_NE(shell("$zetac encode a.wav").text.find("a.mp3 exists already"), std::string::npos);
    EXPECT_EQ(shell("$zetac encode -f a.wav -o a.wav").status, 2);
    EXPECT_EQ(get("a.mp3"), Bytes(10, 'x'));
    EXPECT_EQ(shell("touch file && $zetac encode a.wav -o file/a.mp3").status, 2);
    EXPECT_EQ(fileCount(), 6);  // nothing half-written
}

TEST_F(EncodeCommand, SaysThatSamplesWereLimited) {
    write("a.wav", {.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT}, music_, 4);
    const ShellRun run = shell("$zetac encode a.wav");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.text.find("samples beyond full scale were limited"), std::string::npos);
}

/** A file cut off is encoded as far as it goes. */
TEST_F(EncodeCommand, CutFiles) {
    write("a.wav", {}, music_);
    Bytes wav = get("a.wav");
    wav.resize(44 + 4 * 10000);
    put("a.wav", wav);
    EXPECT_EQ(shell("$zetac encode a.wav").status, 0);
    EXPECT_EQ(decoded("a.mp3", 2).size(), 20000U);
}

TEST_F(EncodeCommand, InterruptedWorkLeavesNothingBehind) {
    write("a.wav", {}, Pcm(size_t{2} * 44100 * 600));
    EXPECT_EQ(shell("timeout --foreground --preserve-status -s INT 0.1 $zetac encode a.wav").status,
              130);
    EXPECT_EQ(fileCount(), 1);
}

}  // namespace
}  // namespace zetac::test

#endif  // ZETAC_TOOL
