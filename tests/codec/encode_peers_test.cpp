// Other decoders make the same sound of the encoder's streams, and cut off what they should.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>

#include "support/streams/encode_material.h"
#include "support/streams/mp3_clips.h"

#ifdef ZETAC_HAS_MPG123
#include <mpg123.h>
#endif
#ifdef ZETAC_HAS_AVCODEC
extern "C" {
#include <libavcodec/avcodec.h>
}
#endif

namespace zetac::test {
namespace {

struct Stream {
    EncoderSettings settings;
    Material material;
};

constexpr Stream kStreams[] = {
    {{.sampleRate = 44100, .bitRate = 128}, Material::kMusic},
    {{.sampleRate = 44100, .bitRate = 320, .hasCrc = true}, Material::kMusic},
    {{.sampleRate = 48000, .bitRate = 64}, Material::kCastanets},
    {{.sampleRate = 32000, .channels = 1, .bitRate = 32}, Material::kSpeech},
    {{.sampleRate = 48000, .isJoint = false, .bitRate = 192}, Material::kNoise},
    {{.sampleRate = 32000, .bitRate = 96}, Material::kClicks},
    {{.sampleRate = 44100, .bitRate = 80, .hasCrc = true}, Material::kSilence},
    {{.sampleRate = 44100, .quality = 2}, Material::kMusic},
    {{.sampleRate = 48000, .channels = 1, .quality = 6}, Material::kCastanets},
    {{.sampleRate = 32000, .quality = 9, .hasCrc = true}, Material::kSpeech}};

/** Decoders round on their own; measured: 1 step, RMS below 0.2. */
[[maybe_unused]] void expectSameSound(const Pcm& expected, const Pcm& sound) {
    ASSERT_EQ(sound.size(), expected.size());
    for (size_t i = 0; i < sound.size(); ++i) ASSERT_LE(std::abs(sound[i] - expected[i]), 1) << i;
}

[[maybe_unused]] void forEachStream(const std::function<void(const Stream&, const Bytes&)>& run) {
    for (const Stream& stream : kStreams) {
        SCOPED_TRACE(&stream - kStreams);
        const auto& s = stream.settings;
        run(stream, encodeMp3(s, soundOf(stream.material, s.sampleRate, s.channels, 40000)));
    }
}

#ifdef ZETAC_HAS_MPG123

Pcm decodeWithMpg123(const Bytes& mp3, int channels) {
    mpg123_init();
    int error = 0;
    const std::unique_ptr<mpg123_handle, void (*)(mpg123_handle*)> handle(
        mpg123_new("generic", &error), mpg123_delete);
    mpg123_param(handle.get(), MPG123_ADD_FLAGS, MPG123_GAPLESS | MPG123_NO_FRANKENSTEIN, 0);
    mpg123_param(handle.get(), MPG123_RESYNC_LIMIT, 0, 0);
    mpg123_open_feed(handle.get());
    Pcm pcm;
    EXPECT_EQ(mpg123_feed(handle.get(), mp3.data(), mp3.size()), MPG123_OK);
    for (;;) {
        Zet16s block[8192];
        size_t bytes = 0;
        const int status = mpg123_read(handle.get(), reinterpret_cast<unsigned char*>(block),
                                       sizeof block, &bytes);
        pcm.insert(pcm.end(), block, block + bytes / sizeof *block);
        if (status == MPG123_NEW_FORMAT) {
            long rate = 0;
            int count = 0, encoding = 0;
            mpg123_getformat(handle.get(), &rate, &count, &encoding);
            EXPECT_EQ(count, channels);
            EXPECT_EQ(encoding, MPG123_ENC_SIGNED_16);
        } else if (status != MPG123_OK) {
            EXPECT_TRUE(status == MPG123_DONE || status == MPG123_NEED_MORE) << status;
            break;
        }
    }
    return pcm;
}

TEST(EncodePeers, Libmpg123HearsTheSame) {
    forEachStream([](const Stream& stream, const Bytes& mp3) {
        expectSameSound(decodeTrimmed(mp3, stream.settings.channels),
                        decodeWithMpg123(mp3, stream.settings.channels));
    });
}

#endif

#ifdef ZETAC_HAS_AVCODEC

/** Frame by frame; the first one is the one without sound. */
Pcm decodeWithAvcodec(const Bytes& mp3) {
    const std::unique_ptr<AVCodecContext, void (*)(AVCodecContext*)> context(
        avcodec_alloc_context3(avcodec_find_decoder_by_name("mp3float")),
        [](AVCodecContext* c) { avcodec_free_context(&c); });
    context->err_recognition = AV_EF_EXPLODE | AV_EF_CRCCHECK | AV_EF_BITSTREAM;
    EXPECT_EQ(avcodec_open2(context.get(), nullptr, nullptr), 0);
    const std::unique_ptr<AVPacket, void (*)(AVPacket*)> packet(
        av_packet_alloc(), [](AVPacket* p) { av_packet_free(&p); });
    const std::unique_ptr<AVFrame, void (*)(AVFrame*)> frame(av_frame_alloc(),
                                                             [](AVFrame* f) { av_frame_free(&f); });
    Pcm pcm;
    const std::vector<Bytes> frames = mp3FramesOf(mp3);
    for (size_t i = 1; i < frames.size(); ++i) {
        av_new_packet(packet.get(), static_cast<int>(frames[i].size()));
        std::ranges::copy(frames[i], packet->data);
        EXPECT_EQ(avcodec_send_packet(context.get(), packet.get()), 0) << i;
        av_packet_unref(packet.get());
        EXPECT_EQ(avcodec_receive_frame(context.get(), frame.get()), 0) << i;
        for (int sample = 0; sample < frame->nb_samples; ++sample)
            for (int c = 0; c < context->ch_layout.nb_channels; ++c) {
                const float x =
                    reinterpret_cast<const float*>(frame->extended_data[c])[sample] * 32768;
                pcm.push_back(static_cast<Zet16s>(std::lrint(std::clamp(x, -32768.0f, 32767.0f))));
            }
    }
    return pcm;
}

TEST(EncodePeers, LibavcodecHearsTheSame) {
    av_log_set_level(AV_LOG_QUIET);
    forEachStream([](const Stream&, const Bytes& mp3) {
        expectSameSound(decodeMp3(mp3).pcm, decodeWithAvcodec(mp3));
    });
}

#endif

struct Player {
    const char* name;
    const char* probe;   // succeeds where the player is installed
    const char* decode;  // file "$mp3" to 16-bit PCM on standard output
};

constexpr Player kPlayers[] = {
    {"libavformat", "ffmpeg -version", "ffmpeg -v error -i $mp3 -f s16le -"},
    {"GStreamer",
     "gst-inspect-1.0 --exists mpegaudioparse && gst-inspect-1.0 --exists mpg123audiodec",
     "gst-launch-1.0 -q filesrc location=$mp3 ! mpegaudioparse ! mpg123audiodec ! "
     "audioconvert dithering=none ! audio/x-raw,format=S16LE ! fdsink fd=1"}};

/** What a shell line prints, or nothing where it fails. */
std::optional<Bytes> outputOf(const std::string& line) {
    std::FILE* pipe = popen(line.c_str(), "r");
    Bytes output;
    Zet8u chunk[4096];
    while (const size_t count = pipe ? std::fread(chunk, 1, sizeof chunk, pipe) : 0)
        output.insert(output.end(), chunk, chunk + count);
    if (pipe == nullptr || pclose(pipe) != 0) return std::nullopt;
    return output;
}

/** The players find the delays in the first frame and believe them. */
TEST(EncodePeers, PlayersTrimTheStreams) {
    const std::string path = testing::TempDir() + "zetac-" + std::to_string(getpid()) + ".mp3";
    size_t missing = 0;
    for (const Player& player : kPlayers) {
        if (!outputOf(std::string("(") + player.probe + ") 2>&1")) {
            ++missing;
            continue;
        }
        forEachStream([&](const Stream& stream, const Bytes& mp3) {
            SCOPED_TRACE(player.name);
            writeFile(path, mp3);
            const auto output = outputOf("mp3='" + path + "'; " + player.decode);
            ASSERT_TRUE(output.has_value());
            Pcm pcm(output->size() / sizeof(Zet16s));
            std::memcpy(pcm.data(), output->data(), pcm.size() * sizeof(Zet16s));
            expectSameSound(decodeTrimmed(mp3, stream.settings.channels), pcm);
        });
    }
    std::remove(path.c_str());
    if (missing == std::size(kPlayers)) GTEST_SKIP() << "no player is installed";
}

}  // namespace
}  // namespace zetac::test
