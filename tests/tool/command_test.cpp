// The command-line tool as its users meet it: text, files, pipes and exit statuses.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#ifdef ZETAC_TOOL

#include "tool/command.h"

namespace zetac::test {
namespace {

Pcm soundOf(const Bytes& aac) {
    return decodeAll(aac, {codec::ChannelOrder::kWav, true}).pcm;
}

TEST_F(Command, TeachesItself) {
    EXPECT_EQ(shell("$zetac --version").text.find("zetac on libzetacr5.so.5.2, version 5.2"), 0u);
    for (const char* line :
         {"$zetac --help", "$zetac info --help", "$zetac decode --help", "$zetac encode --help"}) {
        const ShellRun run = shell(line);
        EXPECT_EQ(run.status, 0) << line;
        EXPECT_NE(run.text.find("Examples:"), std::string::npos) << line;
    }
    for (const char* line :
         {"$zetac", "$zetac decode", "$zetac play x.aac", "$zetac info --yaml"}) {
        EXPECT_EQ(shell(line).status, 2) << line;
    }
}

TEST_F(Command, InfoInWords) {
    put("a.aac", clip("surround_51"));
    const ShellRun run = shell("$zetac info a.aac");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.text,
              "a.aac\n"
              "  container     ADTS, MPEG-4\n"
              "  profile       AAC LC\n"
              "  sampling rate 48000 Hz\n"
              "  channels      5.1 (front centre, front left, front right, back left, back right, "
              "low frequency)\n"
              "  duration      0.256 s, 12 frames of 1024 samples\n"
              "  bit rate      244.7 kbit/s\n"
              "  tools         short blocks, M/S stereo, intensity stereo, TNS\n");
    put("b.aac", clip("mono_sbr_core"));
    const ShellRun sbr = shell("$zetac info a.aac b.aac nothing.aac");
    EXPECT_EQ(sbr.status, 2);
    EXPECT_NE(sbr.text.find("AAC LC with SBR (HE-AAC)"), std::string::npos);
    EXPECT_NE(sbr.text.find("nothing.aac: cannot be opened"), std::string::npos);
}

TEST_F(Command, InfoAsJson) {
    put("a \"b\".aac", clip("stereo_adif"));
    put("c.aac", Bytes(100, 'x'));
    const ShellRun run = shell("$zetac info --json 'a \"b\".aac' c.aac 2>/dev/null");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(
        run.text,
        "[{\"file\": \"a \\\"b\\\".aac\", \"container\": \"ADIF\", \"mpeg_version\": 4, "
        "\"profile\": \"AAC LC\", \"sample_rate\": 48000, \"channels\": 2, \"layout\": "
        "\"stereo\", \"frames\": 12, \"duration\": 0.256000, \"bit_rate\": 147343.750000, "
        "\"tools\": [\"short blocks\", \"M/S stereo\", \"intensity stereo\", \"TNS\"], "
        "\"crc\": false, \"damaged_frames\": 0, \"foreign_bytes\": 0},\n"
        " {\"file\": \"c.aac\", \"error\": \"is neither AAC nor MP3: there is no ADTS, ADIF or "
        "MPEG audio header\"}]\n");
}

TEST_F(Command, DecodesToFilesAndPipes) {
    const Bytes aac = clip("surround_51");
    put("a.aac", aac);
    const ShellRun run = shell(
        "$zetac decode a.aac && $zetac decode a.aac -o - >b.wav && "
        "cat a.aac | $zetac decode - >c.wav && cat a.aac | $zetac decode - -o d.wav && "
        "cmp a.wav b.wav && cmp a.wav c.wav && cmp a.wav d.wav");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.text, "");  // silence where there is no terminal
    const Bytes wav = get("a.wav");
    EXPECT_EQ(pcmOf(wav), soundOf(aac));
    EXPECT_EQ(field32(wav, 4) + 8, wav.size());
    EXPECT_EQ(field32(wav, 24), 48000u);
    EXPECT_EQ(field32(wav, 40), 0x3Fu);  // channel mask of front, centre, low frequency and back
    EXPECT_EQ(fileCount(), 5);
}

TEST_F(Command, DecodesManyFilesIntoAFolder) {
    const char* names[] = {"mono_8k_short_tns", "stereo_tns", "stereo_noise", "surround_71_pce"};
    std::string files;
    for (const char* name : names) {
        put(std::string(name) + ".aac", clip(name));
        files += std::string(" ") + name + ".aac";
    }
    EXPECT_EQ(shell("$zetac decode -j 3 -o sub/wavs" + files).status, 0);
    for (const char* name : names) {
        EXPECT_EQ(pcmOf(get(std::string("sub/wavs/") + name + ".wav")), soundOf(clip(name)))
            << name;
    }
    // One bad file spoils the status, but not the others.
    put("bad.aac", Bytes(500, 'x'));
    EXPECT_EQ(shell("$zetac decode -o more bad.aac" + files).status, 2);
    EXPECT_TRUE(has("more/stereo_noise.wav"));
    EXPECT_FALSE(has("more/bad.wav"));
    // Two inputs, one output.
    EXPECT_EQ(shell("mkdir x && cp stereo_tns.aac x && $zetac decode -o same stereo_tns.aac "
                    "x/stereo_tns.aac")
                  .status,
              2);
}

TEST_F(Command, NeverDestroysAFileUnasked) {
    put("a.aac", clip("mono_8k_short_tns"));
    put("a.wav", Bytes(10, 'x'));
    ShellRun run = shell("$zetac decode a.aac");
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.text.find("a.wav exists already"), std::string::npos);
    EXPECT_EQ(get("a.wav"), Bytes(10, 'x'));
    EXPECT_EQ(shell("$zetac decode --force a.aac").status, 0);
    EXPECT_GT(get("a.wav").size(), 10u);
    run = shell("$zetac decode --force a.aac -o ./a.aac; $zetac decode -f a.aac -o $PWD/a.aac");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(get("a.aac"), clip("mono_8k_short_tns"));
}

TEST_F(Command, WhatIsNoAacGetsOneLine) {
    put("empty.aac", {});
    put("text.aac", Bytes(3000, 'x'));
    Bytes ssr = clip("stereo_tns");
    for (size_t at = 0; at < ssr.size();) {  // profile: scalable sampling rate
        ssr[at + 2] = static_cast<Zet8u>((ssr[at + 2] & 0x3F) | 0x80);
        at += (ssr[at + 3] & 3u) << 11 | ssr[at + 4] << 3 | ssr[at + 5] >> 5;
    }
    put("ssr.aac", ssr);
    const std::pair<const char*, const char*> cases[] = {
        {"empty.aac", "is empty"},
        {"text.aac", "is neither AAC nor MP3: there is no ADTS, ADIF or MPEG audio header"},
        {"ssr.aac", "the profile is not supported; AAC Main, LC and LTP are"},
        {".", "is a folder"}};
    for (const auto& [file, message] : cases) {
        const ShellRun run = shell(std::string("$zetac decode -o out.wav ") + file);
        EXPECT_EQ(run.status, 2) << file;
        EXPECT_EQ(run.text, std::string("zetac: ") + file + ": " + message + "\n");
    }
    EXPECT_EQ(shell("$zetac decode ssr.aac -o none/such/out.wav").status, 2);
    EXPECT_FALSE(has("none"));
    EXPECT_EQ(shell("$zetac decode text.aac -o - 2>/dev/null").text, "");
    EXPECT_FALSE(has("out.wav"));
}

TEST_F(Command, DamageIsReportedAndConcealed) {
    const Bytes whole = clip("stereo_crc_ms_intensity_tns");
    Bytes aac = whole;
    const std::vector<Bytes> frames = framesOf(aac);
    const size_t third = frames[0].size() + frames[1].size();
    aac[third + 20] ^= 0x01;
    put("a.aac", aac);
    const std::string place = "a.aac: at byte " + std::to_string(third + 9) + ": ";
    const ShellRun run = shell("$zetac decode a.aac");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.text.find("zetac: " + place), 0u) << run.text;
    EXPECT_EQ(pcmOf(get("a.wav")).size(), soundOf(whole).size());
    EXPECT_EQ(shell("$zetac decode -fq a.aac").text, "");
    EXPECT_EQ(shell("$zetac info a.aac").status, 1);

    const ShellRun strict = shell("$zetac decode --strict a.aac -o b.wav");
    EXPECT_EQ(strict.status, 2);
    EXPECT_EQ(strict.text.find("zetac: " + place), 0u) << strict.text;
    EXPECT_EQ(fileCount(), 2);  // nothing is left of b.wav
}

/** What comes before the program config element is silence. */
TEST_F(Command, LateLayout) {
    const std::vector<Bytes> frames = framesOf(clip("surround_71_pce"));
    put("a.aac", joined(frames, 1, 3) + clip("surround_71_pce"));
    const ShellRun run = shell("$zetac decode a.aac");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.text.find("zetac: a.aac: at byte 7: audio before any program config element"),
              0u);
    Pcm expected(2 * size_t{codec::kChannelsMax} * ZETAC_AAC_FRAME_LEN);
    const Pcm sound = soundOf(clip("surround_71_pce"));
    expected.insert(expected.end(), sound.begin(), sound.end());
    EXPECT_EQ(pcmOf(get("a.wav")), expected);
}

/** Wherever a file is cut off, what is there is decoded, and nothing but the WAV remains. */
TEST_F(Command, CutFiles) {
    const Bytes aac = clip("stereo_two_blocks_24k");
    const Pcm whole = soundOf(aac);
    for (size_t length = 1; length < aac.size(); length += 1201) {
        put("a.aac", {aac.begin(), aac.begin() + static_cast<ptrdiff_t>(length)});
        const ShellRun run = shell("rm -f a.wav; $zetac decode a.aac");
        const bool isDecoded = run.status < 2;
        EXPECT_EQ(has("a.wav"), isDecoded) << length;
        EXPECT_EQ(fileCount(), isDecoded ? 2 : 1) << length;
        EXPECT_EQ(run.status, length > 2000 ? 1 : run.status) << length;
    }
}

TEST_F(Command, InterruptedWorkLeavesNothingBehind) {
    const Bytes aac = clip("surround_51");
    Bytes big;
    for (int i = 0; i < 2000; ++i) append(big, aac);
    put("a.aac", big);
    // Without --foreground, timeout would signal twice, and the second signal ends the program at
    // once.
    EXPECT_EQ(shell("timeout --foreground --preserve-status -s INT 0.1 $zetac decode a.aac").status,
              130);
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(Command, UnwritablePlaces) {
    put("a.aac", clip("mono_8k_short_tns"));
    EXPECT_EQ(shell("touch file && $zetac decode a.aac -o file/a.wav").status, 2);
    if (fs::exists("/dev/full")) {
        const ShellRun run = shell("$zetac decode a.aac -o - >/dev/full");
        EXPECT_EQ(run.status, 2);
        EXPECT_NE(run.text.find("standard output cannot be written"), std::string::npos);
    }
    EXPECT_EQ(fileCount(), 2);
}

}  // namespace
}  // namespace zetac::test

#endif  // ZETAC_TOOL
