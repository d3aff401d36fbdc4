// The encoder of the C interface: the packets do not depend on how the sound was divided or typed,
// they say what they are, and nothing but the creation takes memory.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>

#include "container/info_tag_writer.h"
#include "support/streams/allocations.h"
#include "support/streams/encode_material.h"
#include "support/streams/mp3_clips.h"

namespace zetac::test {
namespace {

/** PCM of one type, as the caller holds it. */
struct TypedPcm {
    int sampleFormat;
    Bytes bytes;  // interleaved
};

template <typename Sample, typename Convert>
TypedPcm typed(int sampleFormat, const Pcm& pcm, Convert convert) {
    TypedPcm result{sampleFormat, Bytes(pcm.size() * sizeof(Sample))};
    for (size_t i = 0; i < pcm.size(); ++i) {
        const Sample sample = convert(pcm[i]);
        std::memcpy(&result.bytes[i * sizeof sample], &sample, sizeof sample);
    }
    return result;
}

std::vector<TypedPcm> everyType(const Pcm& pcm) {
    return {typed<int16_t>(ZETAC_S16, pcm, [](Zet16s x) { return x; }),
            typed<int32_t>(ZETAC_S32, pcm, [](Zet16s x) { return 65536 * x; }),
            typed<float>(ZETAC_F32, pcm, [](Zet16s x) { return static_cast<float>(x) / 32768; })};
}

Bytes planeOf(const TypedPcm& pcm, size_t channel, size_t channels) {
    const size_t width = pcm.sampleFormat == ZETAC_S16 ? 2 : 4;
    Bytes plane;
    for (size_t at = channel * width; at < pcm.bytes.size(); at += channels * width)
        plane.insert(plane.end(), &pcm.bytes[at], pcm.bytes.data() + at + width);
    return plane;
}

/** Feeds in pieces of up to so many samples; not always are packets taken in between. */
Bytes encodeInPieces(ZetacEncoderOptions options, const TypedPcm& pcm, size_t piece,
                     Random& random) {
    options.sampleFormat = pcm.sampleFormat;
    const auto channels = static_cast<size_t>(options.channels);
    const size_t width = pcm.sampleFormat == ZETAC_S16 ? 2 : 4;
    std::vector<Bytes> planes;
    if (options.isPlanar) {
        for (size_t c = 0; c < channels; ++c) planes.push_back(planeOf(pcm, c, channels));
    } else {
        planes.push_back(pcm.bytes);
    }
    const size_t stride = width * (options.isPlanar ? 1 : channels);
    const size_t samples = pcm.bytes.size() / (width * channels);
    const EncoderHandle encoder = makeEncoder(options);
    Bytes stream;
    for (size_t at = 0, taken = 0; at < samples; at += taken) {
        const size_t part =
            std::min(samples - at, random.below(static_cast<uint32_t>(piece) + 1) + size_t{0});
        const void* pointers[2] = {};
        for (size_t i = 0; i < planes.size(); ++i) pointers[i] = &planes[i][at * stride];
        EXPECT_EQ(zetacEncoderFeed(encoder.get(), pointers, part, &taken), ZETAC_OK);
        EXPECT_LE(taken, part);
        if (taken < part || random.below(4) == 0) takePackets(encoder.get(), stream);
    }
    EXPECT_EQ(zetacEncoderFinish(encoder.get()), ZETAC_OK);
    takePackets(encoder.get(), stream);
    EXPECT_EQ(zetacEncoderGetInfoFrame(encoder.get(), stream.data(), stream.size()), ZETAC_OK);
    return stream;
}

TEST(EncodeInterface, NeitherDivisionNorTypeChangesThePackets) {
    Random random(1);
    for (const EncoderSettings& settings :
         {EncoderSettings{.bitRate = 128}, {.channels = 1, .bitRate = 32}, {.quality = 4.5f}}) {
        const Pcm pcm = soundOf(Material::kCastanets, 44100, settings.channels, 20000);
        const Bytes expected = encodeMp3(settings, pcm);
        for (const TypedPcm& input : everyType(pcm)) {
            for (const bool isPlanar : {false, true}) {
                for (const size_t piece : {1, 100, 5000}) {
                    ZetacEncoderOptions options = settings.options();
                    options.isPlanar = isPlanar;
                    EXPECT_EQ(encodeInPieces(options, input, piece, random), expected)
                        << input.sampleFormat << isPlanar << piece;
                }
            }
        }
    }
}

/** Ties go to the even value; what is beyond full scale is limited, what is no number is silent. */
TEST(EncodeInterface, WideSamplesAreRounded) {
    struct Case {
        int32_t wide;
        float real;
        Zet16s sample;
    };
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr Case kCases[] = {{0x7FFFFFFF, 1.5f, 32767},
                               {INT32_MIN, -kInfinity, -32768},
                               {0x7FFF7FFF, kInfinity, 32767},
                               {0x12348000, 0x1234.8p-15f, 0x1234},
                               {0x12358000, 0x1235.8p-15f, 0x1236},
                               {0x12348001, 0x1234.81p-15f, 0x1235},
                               {-0x18000, -1.5f / 32768, -2},
                               {-0x8000, -0.5f / 32768, 0},
                               {0x7FFF, std::numeric_limits<float>::quiet_NaN(), 0}};
    const auto repeated = [&](auto field) {
        std::vector<std::remove_cvref_t<decltype(kCases[0].*field)>> samples;
        for (size_t i = 0; i < 4000; ++i) samples.push_back(kCases[i % std::size(kCases)].*field);
        return samples;
    };
    const auto encode = [](const auto& samples, int sampleFormat) {
        ZetacEncoderOptions options = EncoderSettings{.channels = 1, .bitRate = 320}.options();
        TypedPcm pcm{sampleFormat, Bytes(samples.size() * sizeof samples[0])};
        std::memcpy(pcm.bytes.data(), samples.data(), pcm.bytes.size());
        Random random(1);
        return encodeInPieces(options, pcm, 1000, random);
    };
    const Bytes expected = encode(repeated(&Case::sample), ZETAC_S16);
    EXPECT_EQ(encode(repeated(&Case::wide), ZETAC_S32), expected);
    EXPECT_EQ(encode(repeated(&Case::real), ZETAC_F32), expected);
}

TEST(EncodeInterface, PacketsAndInfoTellTheTruth) {
    for (const bool lacksInfo : {false, true}) {
        ZetacEncoderOptions options = EncoderSettings{.sampleRate = 48000, .quality = 3}.options();
        options.lacksInfo = lacksInfo;
        const EncoderHandle encoder = makeEncoder(options);
        const Pcm pcm = soundOf(Material::kMusic, 48000, 2, 30000);
        Bytes stream;
        uint64_t packets = 0, sounding = 0;
        const auto take = [&] {
            ZetacPacket packet = ZETAC_PACKET_INIT;
            while (zetacEncoderTake(encoder.get(), &packet) == ZETAC_OK) {
                const Bytes bytes(packet.data, packet.data + packet.bytes);
                EXPECT_EQ(mp3FrameBytes(packet.data), packet.bytes);
                EXPECT_EQ(packet.isInfo != 0, packets == 0 && !lacksInfo);
                EXPECT_EQ(packet.samples, packet.isInfo ? 0 : 1152);
                EXPECT_EQ(packet.position, 1152 * sounding);
                sounding += packet.isInfo ? 0 : 1;
                ++packets;
                append(stream, bytes);
            }
        };
        take();
        EXPECT_EQ(packets, lacksInfo ? 0U : 1U);  // the first one at once
        for (size_t at = 0, taken = 0; at < 30000; at += taken) {
            const void* plane = &pcm[2 * at];
            ASSERT_EQ(zetacEncoderFeed(encoder.get(), &plane, 30000 - at, &taken), ZETAC_OK);
            take();
        }
        ASSERT_EQ(zetacEncoderFinish(encoder.get()), ZETAC_OK);
        take();
        ZetacEncoderInfo info = ZETAC_ENCODER_INFO_INIT;
        ASSERT_EQ(zetacEncoderGetInfo(encoder.get(), &info), ZETAC_OK);
        EXPECT_EQ(info.packets, sounding);
        EXPECT_EQ(info.bytes + info.infoFrameBytes, stream.size());
        EXPECT_EQ(info.infoFrameBytes == 0, lacksInfo);
        EXPECT_EQ(info.samples, 30000U);
        EXPECT_EQ(info.delay + info.samples + info.padding, 1152 * sounding);
        EXPECT_EQ(static_cast<uint64_t>(info.bitRate), 8 * info.bytes * 48000 / (1152 * sounding));
        Bytes frame(info.infoFrameBytes + 1);
        EXPECT_EQ(zetacEncoderGetInfoFrame(encoder.get(), frame.data(), info.infoFrameBytes),
                  lacksInfo ? ZETAC_ERROR_STATE : ZETAC_OK);
        if (lacksInfo) continue;
        std::copy_n(frame.begin(), info.infoFrameBytes, stream.begin());
        const Pcm decoded = decodeMp3(stream).pcm;
        EXPECT_EQ(Pcm(decoded.begin() + 2 * info.delay, decoded.end() - 2 * info.padding),
                  decodeTrimmed(stream, 2));
    }
}

TEST(EncodeInterface, RefusesWhatItCannotDo) {
    const std::pair<std::function<void(ZetacEncoderOptions&)>, ZetacStatus> cases[] = {
        {[](auto& o) { o.size = sizeof o.size - 1; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.codec = ZETAC_CODEC_AAC; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.channels = 3; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.channels = -1; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.sampleFormat = 3; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.isPlanar = 2; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.rateMode = 3; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.quality = 9.1f; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.quality = std::nanf(""); }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.stereoMode = 2; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.lowpass = -1; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.sampleRate = -1; }, ZETAC_ERROR_ARGUMENT},
        {[](auto& o) { o.sampleRate = 22051; }, ZETAC_ERROR_UNSUPPORTED},
        {[](auto& o) { o.bitRate = 100000; }, ZETAC_ERROR_UNSUPPORTED},
        {[](auto& o) { o.bitRate = 384000; }, ZETAC_ERROR_UNSUPPORTED},
        {[](auto& o) { o.bitRate = 128; }, ZETAC_ERROR_UNSUPPORTED}};
    for (const auto& [change, status] : cases) {
        ZetacEncoderOptions options = ZETAC_ENCODER_OPTIONS_INIT;
        change(options);
        auto* encoder = reinterpret_cast<ZetacEncoder*>(&options);
        EXPECT_EQ(zetacEncoderCreate(&encoder, &options), status) << &change - &cases[0].first;
        EXPECT_EQ(encoder, nullptr);
    }
    const EncoderHandle encoder = makeEncoder(ZETAC_ENCODER_OPTIONS_INIT);
    ZetacEncoder* e = encoder.get();
    const Zet16s silence[20] = {};
    const void* plane = silence;
    const void* const noPlane = nullptr;
    size_t taken = 0;
    ZetacPacket packet{};
    ZetacEncoderInfo info{};
    EXPECT_EQ(zetacEncoderCreate(nullptr, nullptr), ZETAC_ERROR_ARGUMENT);
    EXPECT_EQ(zetacEncoderFeed(nullptr, &plane, 10, &taken), ZETAC_ERROR_ARGUMENT);
    EXPECT_EQ(zetacEncoderFeed(e, nullptr, 10, &taken), ZETAC_ERROR_ARGUMENT);
    EXPECT_EQ(zetacEncoderFeed(e, &noPlane, 10, &taken), ZETAC_ERROR_ARGUMENT);
    EXPECT_EQ(zetacEncoderFeed(e, &plane, 10, nullptr), ZETAC_ERROR_ARGUMENT);
    EXPECT_EQ(zetacEncoderFeed(e, nullptr, 0, &taken), ZETAC_OK);
    EXPECT_EQ(zetacEncoderTake(e, &packet), ZETAC_ERROR_ARGUMENT);  // without its size
    EXPECT_EQ(zetacEncoderGetInfo(e, &info), ZETAC_ERROR_ARGUMENT);
    EXPECT_EQ(zetacEncoderGetInfoFrame(e, &packet, sizeof packet), ZETAC_ERROR_ARGUMENT);
    EXPECT_EQ(zetacEncoderFinish(nullptr), ZETAC_ERROR_ARGUMENT);
    EXPECT_EQ(zetacEncoderFinish(e), ZETAC_OK);
    EXPECT_EQ(zetacEncoderFeed(e, &plane, 10, &taken), ZETAC_ERROR_STATE);
    zetacEncoderFree(nullptr);
}

/** A caller built with an older header knows fewer fields, and nothing is written behind them. */
TEST(EncodeInterface, StructuresMayBeShorter) {
    ZetacEncoderOptions options = EncoderSettings{.channels = 1, .hasCrc = true}.options();
    options.size = offsetof(ZetacEncoderOptions, hasCrc);
    const EncoderHandle encoder = makeEncoder(options);
    ZetacPacket packet{};
    packet.size = offsetof(ZetacPacket, isInfo);
    packet.isInfo = 7;
    EXPECT_EQ(zetacEncoderTake(encoder.get(), &packet), ZETAC_OK);
    EXPECT_EQ(packet.size, offsetof(ZetacPacket, isInfo));
    EXPECT_EQ(packet.isInfo, 7);
    EXPECT_EQ(zetacEncoderFinish(encoder.get()), ZETAC_OK);
    EXPECT_EQ(zetacEncoderTake(encoder.get(), &packet), ZETAC_OK);
    EXPECT_EQ(packet.data[1], 0xFB);  // no CRC
}

TEST(EncodeInterface, OnlyTheCreationTakesMemory) {
    ZetacEncoder* encoder = nullptr;
    {
        const FailingAllocations none(0);
        EXPECT_EQ(zetacEncoderCreate(&encoder, nullptr), ZETAC_ERROR_MEMORY);
        EXPECT_EQ(encoder, nullptr);
    }
    const Pcm pcm = soundOf(Material::kCastanets, 44100, 2, 1152 * 20);
    Bytes stream;
    stream.reserve(100000);
    const size_t before = allocationCount();
    ASSERT_EQ(zetacEncoderCreate(&encoder, nullptr), ZETAC_OK);
    EXPECT_EQ(allocationCount(), before + 1);
    feed(encoder, pcm, 2, stream);
    zetacEncoderFinish(encoder);
    takePackets(encoder, stream);
    EXPECT_EQ(allocationCount(), before + 1);
    zetacEncoderFree(encoder);
    EXPECT_GT(stream.size(), 20 * 417U);
}

/** However many frames there are, a start is off by no more than the frames around it differ. */
TEST(EncodeInterface, SeekTableOfLongStreams) {
    Random random(1);
    std::vector<uint64_t> starts;
    uint64_t end = 0;
    auto table = std::make_unique<codec::Mp3SeekTable>();
    for (size_t frame = 0; frame < 40000; ++frame) {
        starts.push_back(end);
        table->add(end);
        end += frame / 1000 % 2 ? 100 : 1000;
        if (frame != 4095 && frame != 4096 && frame != 39999) continue;
        size_t step = 1;
        while (step * 4096 < starts.size()) step *= 2;
        for (size_t i = 0; i < starts.size(); ++i) {
            const auto error =
                static_cast<double>(table->startOf(i, end)) - static_cast<double>(starts[i]);
            ASSERT_LE(std::abs(error), step == 1 ? 0 : 450.0 * static_cast<double>(step)) << i;
        }
    }
}

}  // namespace
}  // namespace zetac::test
