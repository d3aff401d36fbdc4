// MP3 files in the command-line tool.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#ifdef ZETAC_TOOL

#include <cmath>

#include "support/streams/mp3_clips.h"
#include "tool/command.h"

namespace zetac::test {
namespace {

class Mp3Command : public Command {
  protected:
    /** What the tool writes to a.wav for this file. */
    Pcm decoded(const std::string& options = "") const {
        EXPECT_LT(shell("$zetac decode -fq a.mp3 " + options).status, 2);
        return pcmOf(get("a.wav"));
    }
};

/** A clip behind an information tag and between other tags. */
Bytes taggedClip(const std::string& name, int delay, int padding) {
    const Bytes original = mp3Clip(name);  // the tag is behind the side information of stereo
    return id3v2(40) + infoFrame(original, 36, xing("Info", 0, "LAME3.100", delay, padding)) +
           original + apeTag(3) + id3v1();
}

TEST_F(Mp3Command, InfoInWords) {
    put("a.mp3", taggedClip("stereo_ms_44k", 576, 1000));
    put("b.mp3", mp3Clip("stereo_independent_blocks_crc_44k"));
    const ShellRun run = shell("$zetac info a.mp3 b.mp3");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.text,
              "a.mp3\n"
              "  format        MPEG-1 Layer III\n"
              "  sampling rate 44100 Hz\n"
              "  channels      joint stereo\n"
              "  duration      0.591 s, 24 frames of 1152 samples\n"
              "  bit rate      128.0 kbit/s, constant\n"
              "  tags          ID3v2, APE, ID3v1, Info\n"
              "  encoder       LAME3.100\n"
              "  encoder added 576 samples in front, 1000 behind\n"
              "  tools         short blocks, M/S stereo, shared scale factors, bit reservoir\n"
              "b.mp3\n"
              "  format        MPEG-1 Layer III, with CRC\n"
              "  sampling rate 44100 Hz\n"
              "  channels      stereo\n"
              "  duration      0.418 s, 16 frames of 1152 samples\n"
              "  bit rate      224.0 kbit/s, constant\n"
              "  tools         short blocks, shared scale factors, bit reservoir\n");
}

TEST_F(Mp3Command, InfoAsJson) {
    put("a.mp3", mp3Clip("mono_lsf_mixed_22k"));
    EXPECT_EQ(shell("$zetac info --json a.mp3").text,
              "[{\"file\": \"a.mp3\", \"container\": \"MPEG audio\", \"profile\": \"MPEG-2 Layer "
              "III\", \"sample_rate\": 22050, \"modes\": [\"mono\"], \"frames\": 40, \"duration\": "
              "1.044898, \"bit_rate\": 55997.812500, \"bit_rate_mode\": \"constant\", \"tags\": "
              "[], \"tools\": [\"short blocks\", \"mixed blocks\", \"bit reservoir\"], \"crc\": "
              "false, \"damaged_frames\": 0, \"foreign_bytes\": 0}]\n");
}

/** The content counts, not the name; files of both codecs go together. */
TEST_F(Mp3Command, DecodesBesideAac) {
    put("a.aac", mp3Clip("stereo_vbr_32k"));
    put("b.mp3", clip("stereo_tns"));
    put("c.mp3", mp3Clip("mono_lsf_16k_speech"));
    EXPECT_EQ(shell("$zetac decode -j 2 -o wavs a.aac b.mp3 c.mp3").status, 0);
    EXPECT_EQ(pcmOf(get("wavs/a.wav")), decodeMp3(mp3Clip("stereo_vbr_32k")).pcm);
    EXPECT_EQ(pcmOf(get("wavs/b.wav")), decodeAll(clip("stereo_tns")).pcm);
    EXPECT_EQ(pcmOf(get("wavs/c.wav")), decodeMp3(mp3Clip("mono_lsf_16k_speech")).pcm);
    EXPECT_EQ(field32(get("wavs/c.wav"), 24), 16000u);
    const ShellRun run = shell("cat c.mp3 | $zetac decode - >d.wav && cmp d.wav wavs/c.wav");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.text, "");
}

/** The encoder's 576 samples, and 529 of the decoder, go in front; of those behind the decoder's
 *  delay has used up 529. */
TEST_F(Mp3Command, EncoderGapsAreTrimmed) {
    const Pcm whole = decodeMp3(mp3Clip("stereo_ms_44k")).pcm;
    for (const int padding : {0, 529, 530, 2000, 4095}) {
        put("a.mp3", taggedClip("stereo_ms_44k", 576, padding));
        const int back = std::max(0, padding - 529);
        const Pcm expected(whole.begin() + 2 * (576 + 529), whole.end() - 2 * back);
        EXPECT_EQ(decoded(), expected) << padding;
    }
    EXPECT_EQ(decoded("--no-trim"), whole);
    put("a.mp3", taggedClip("stereo_ms_44k", 0, 0));  // the encoder does not know
    EXPECT_EQ(decoded(), whole);
}

TEST_F(Mp3Command, MonoAmongStereo) {
    const Bytes stereo = mp3Clip("stereo_intensity_44k");
    const Bytes mono = mp3Clip("mono_mixed_44k");
    put("a.mp3", stereo + mono);
    const Pcm pcm = decodeMp3(stereo + mono).pcm;
    const auto start = static_cast<ptrdiff_t>(decodeMp3(stereo).pcm.size());
    Pcm expected(pcm.begin(), pcm.begin() + start);
    for (auto x = pcm.begin() + start; x != pcm.end(); ++x) expected.insert(expected.end(), 2, *x);
    const ShellRun run = shell("$zetac decode a.mp3");
    EXPECT_EQ(run.text,
              "zetac: a.mp3: changes between mono and stereo; the output is stereo "
              "throughout\n");
    EXPECT_EQ(pcmOf(get("a.wav")), expected);

    put("a.mp3", mono + stereo);
    const Pcm values = decodeMp3(mono + stereo).pcm;
    const auto monoLength = static_cast<ptrdiff_t>(decodeMp3(mono).pcm.size());
    expected.assign(values.begin(), values.begin() + monoLength);
    for (auto i = static_cast<size_t>(monoLength); i < values.size(); i += 2) {
        const double mean = (values[i] + values[i + 1]) / 2.;
        expected.push_back(static_cast<Zet16s>(std::floor(mean)));
    }
    EXPECT_EQ(decoded(), expected);
    EXPECT_EQ(field32(get("a.wav"), 20) >> 16, 1u);  // channels
}

TEST_F(Mp3Command, DamageIsReportedOnce) {
    const std::vector<Bytes> frames = mp3FramesOf(mp3Clip("stereo_crc_48k"));
    Bytes stream = joined(frames, 6);
    put("a.mp3", stream);
    const ShellRun run = shell("$zetac decode a.mp3");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.text, "zetac: a.mp3: at byte 0: the frame needs data from before what is here\n");
    EXPECT_EQ(pcmOf(get("a.wav")).size(), 2u * 1152 * (frames.size() - 6));
    const ShellRun strict = shell("$zetac decode --strict a.mp3 -o b.wav");
    EXPECT_EQ(strict.status, 2);
    EXPECT_FALSE(has("b.wav"));
    EXPECT_EQ(shell("$zetac info a.mp3").status, 1);

    stream = joined(frames);
    const size_t place = frames[0].size() + frames[1].size();
    stream[place + 10] ^= 1;
    put("a.mp3", stream);
    EXPECT_EQ(shell("$zetac decode -f a.mp3").text,
              "zetac: a.mp3: at byte " + std::to_string(place) +
                  ": the CRC of the frame does not match its data\n");
}

TEST_F(Mp3Command, OtherLayersAreNamed) {
    const std::pair<Bytes, const char*> cases[] = {
        {{0xFF, 0xFF, 0x94, 0xC0}, "MPEG audio Layer I"},
        {{0xFF, 0xFD, 0x94, 0xC0}, "MPEG audio Layer II"}};
    // 48 kHz: 12 * 288 / 48 slots of 4 bytes; 144 * 160 / 48 bytes.
    constexpr size_t kLengths[] = {288, 480};
    for (size_t i = 0; i < 2; ++i) {
        Bytes frame = cases[i].first;
        frame.resize(kLengths[i]);
        put("a.mp3", joined({frame, frame, frame}));
        const ShellRun run = shell("$zetac decode a.mp3");
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.text.find(std::string("zetac: a.mp3: is ") + cases[i].second + ", which"), 0u)
            << run.text;
        EXPECT_FALSE(has("a.wav"));
        EXPECT_NE(shell("$zetac info a.mp3").text.find("Layer"), std::string::npos);
    }
}

}  // namespace
}  // namespace zetac::test

#endif  // ZETAC_TOOL
