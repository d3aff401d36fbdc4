// Finding Layer III frames among foreign bytes and damage, and what becomes of the sound there.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/streams/mp3_clips.h"

namespace zetac::test {
namespace {

using codec::Fault;
using codec::Mp3Fault;
using codec::Mp3Frame;
using codec::Mp3Stream;
using codec::StreamFault;

void expectSameSound(const Mp3Decoded& decoded, const Bytes& original) {
    ASSERT_TRUE(decoded.isMp3);
    EXPECT_EQ(decoded.damages(), 0u);
    EXPECT_EQ(decoded.pcm, decodeMp3(original).pcm);
}

/** From a frame of one stream to the end the sound is that of the other from its frame on. */
void expectSameFrom(const Mp3Decoded& decoded, size_t frame, const Mp3Decoded& clean,
                    size_t cleanFrame) {
    ASSERT_LT(frame, decoded.starts.size());
    const Pcm tail(decoded.pcm.begin() + static_cast<ptrdiff_t>(decoded.starts[frame]),
                   decoded.pcm.end());
    const Pcm cleanTail(clean.pcm.begin() + static_cast<ptrdiff_t>(clean.starts[cleanFrame]),
                        clean.pcm.end());
    EXPECT_EQ(tail, cleanTail);
}

/** The first frame from `first` on that is good. */
size_t firstGood(const Mp3Decoded& decoded, size_t first) {
    while (first < decoded.faults.size() && failed(decoded.faults[first])) ++first;
    return first;
}

/** Good frames behind damage that still sound of it: overlap and synthesis window reach over two
 *  granules, which are one frame of MPEG-1 and two of LSF. */
constexpr size_t kMpeg1Memory = 1;
constexpr size_t kLsfMemory = 2;

// --- Tags, foreign bytes, other streams ----------------------------------------------------------

TEST(Mp3Streams, TagsAreNoDamage) {
    const Bytes original = mp3Clip("stereo_ms_44k");
    const std::vector<Bytes> frames = mp3FramesOf(original);
    const Mp3Decoded decoded = decodeMp3(id3v2(100) + id3v2(5) + joined(frames, 0, 9) + id3v1() +
                                         id3v2(20) + joined(frames, 9) + apeTag(50) + id3v1());
    expectSameSound(decoded, original);
    EXPECT_EQ(decoded.foreignBytes, 0u);
    EXPECT_EQ(decoded.positions[0], 110u + 15u);
}

/** Foreign bytes in front cost nothing; in between they may stand for lost frames, so the frames
 *  that reach back over them are silent, and no more than these. */
TEST(Mp3Streams, ForeignBytesArePassedOver) {
    // Headers whose successor is missing or of another kind, and bytes that look like a sync.
    const Bytes junk = {0xFF, 0xFB, 0x90, 0x64, 0xFF, 0xFF, 0xFF, 0xFD, 0x10, 0x00, 0xFF, 0xE3};
    const Bytes original = mp3Clip("stereo_ms_44k");
    const Mp3Decoded clean = decodeMp3(original);
    Mp3Decoded decoded = decodeMp3(junk + original);
    expectSameSound(decoded, original);
    EXPECT_EQ(decoded.foreignBytes, junk.size());

    const std::vector<Bytes> frames = mp3FramesOf(original);
    decoded = decodeMp3(joined(frames, 0, 10) + junk + joined(frames, 10) + ascii("the end"));
    EXPECT_EQ(decoded.foreignBytes, junk.size() + 7);
    ASSERT_EQ(decoded.pcm.size(), clean.pcm.size());
    EXPECT_EQ(decoded.damages(), decoded.count(Mp3Fault::kMissingMainData));
    EXPECT_GT(decoded.damages(), 0u);
    const size_t good = firstGood(decoded, 10);
    EXPECT_LE(good, 13u);
    expectSameFrom(decoded, good + kMpeg1Memory, clean, good + kMpeg1Memory);
}

/** Every bit rate and sampling rate of every layer and version, with and without padding. */
TEST(Mp3Streams, FrameLengths) {
    constexpr int kKilobits[][14] = {
        {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
        {32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
        {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
        {32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
        {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
        {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}};
    constexpr double kRates[] = {44100, 48000, 32000};
    constexpr int kVersions[] = {25, -1, 2, 1};  // by their code
    for (const int code : {0, 2, 3}) {
        for (int layer = 1; layer <= 3; ++layer) {
            for (int index = 1; index < 15; ++index) {
                for (int setting = 0; setting < 6; ++setting) {
                    const int frequency = setting / 2;
                    const int padding = setting % 2;
                    const double rate = kRates[frequency] / (code == 3 ? 1 : code == 2 ? 2 : 4);
                    const double bits =
                        1000. * kKilobits[layer - 1 + (code == 3 ? 0 : 3)][index - 1];
                    const double slots = layer == 1 ? 12 : layer == 3 && code != 3 ? 72 : 144;
                    const double length =
                        (std::floor(slots * bits / rate) + padding) * (layer == 1 ? 4 : 1);
                    Bytes frame = {0xFF, static_cast<Zet8u>(0xE1 | code << 3 | (4 - layer) << 1),
                                   static_cast<Zet8u>(index << 4 | frequency << 2 | padding << 1),
                                   0xC0};
                    frame.resize(static_cast<size_t>(length));
                    const Bytes bytes = joined({frame, frame, frame});
                    const auto stream = Mp3Stream::open(bytes);
                    ASSERT_TRUE(stream);
                    Mp3Frame found;
                    for (size_t i = 0; i < 3; ++i) {
                        ASSERT_TRUE(stream->next(found));
                        ASSERT_EQ(found.position, i * frame.size());
                        ASSERT_EQ(found.data.size(), frame.size());
                        ASSERT_EQ(found.fault, Fault::kNone);
                    }
                    EXPECT_FALSE(stream->next(found));
                    EXPECT_EQ(found.bitRate, static_cast<int>(bits));
                    EXPECT_EQ(found.format.version, kVersions[code]);
                    EXPECT_EQ(found.format.sampleRate(), static_cast<int>(rate));
                }
            }
        }
    }
}

TEST(Mp3Streams, FramesOfAnotherFormatAreConcealed) {
    const std::vector<Bytes> frames = mp3FramesOf(mp3Clip("mono_abr_44k"));
    const std::vector<Bytes> other = mp3FramesOf(mp3Clip("mono_32k_speech"));
    const Mp3Decoded decoded =
        decodeMp3(joined(frames, 0, 6) + joined(other, 0, 3) + joined(frames, 6));
    EXPECT_EQ(decoded.count(StreamFault::kFormatChanged), 3u);
    // The first concealed frame fades out, the next ones are silent.
    const auto silent = decoded.pcm.begin() + 7 * 1152;
    EXPECT_EQ(std::count(silent, silent + 2 * 1152, 0), 2 * 1152);
    const size_t good = firstGood(decoded, 6);
    expectSameFrom(decoded, good + kMpeg1Memory, decodeMp3(joined(frames)),
                   good + kMpeg1Memory - 3);
}

TEST(Mp3Streams, NothingElseIsTakenForMp3) {
    for (const Bytes& bytes :
         {Bytes{}, ascii("A text without any sync in it."), id3v2(100), Bytes(5000, 0xFF),
          Bytes{0xFF, 0xFE, 'T', 0, 'e', 0, 'x', 0, 't', 0}, clip("stereo_tns")})
        EXPECT_FALSE(decodeMp3(bytes).isMp3);
}

// --- Free format --------------------------------------------------------------------------------

/** A stream of constant bit rate turned into free format: only the index in the headers differs. */
std::vector<Bytes> inFreeFormat(const Bytes& stream) {
    std::vector<Bytes> frames = mp3FramesOf(stream);
    for (Bytes& frame : frames) frame[2] &= 0x0F;
    return frames;
}

TEST(Mp3Streams, FreeFormat) {
    for (const char* name : {"stereo_ms_44k", "mono_lsf_16k_speech", "stereo_lsf_ms_22k"}) {
        SCOPED_TRACE(name);
        const Bytes original = mp3Clip(name);
        const std::vector<Bytes> frames = inFreeFormat(original);
        expectSameSound(decodeMp3(joined(frames)), original);
        const Bytes nowhere = {0xFF, 0xFB, 0x00, 0xC4, 0x00};  // where this header leads
        expectSameSound(decodeMp3(nowhere + joined(frames) + id3v1()), original);
    }
}

// --- Damage -------------------------------------------------------------------------------------

/** A stream that starts anywhere: nothing but silence until the reservoir is filled. */
TEST(Mp3Damage, StreamsThatStartInTheMiddle) {
    for (const char* name : {"stereo_ms_44k", "mono_lsf_mixed_22k", "stereo_crc_48k"}) {
        SCOPED_TRACE(name);
        const Bytes original = mp3Clip(name);
        const Mp3Decoded clean = decodeMp3(original);
        const std::vector<Bytes> frames = mp3FramesOf(original);
        for (size_t first = 1; first < 8; ++first) {
            const size_t torn = 30 * (first % 3);  // bytes of the frame before
            const Bytes& before = frames[first - 1];
            const Mp3Decoded decoded =
                decodeMp3(Bytes(before.end() - static_cast<ptrdiff_t>(torn), before.end()) +
                          joined(frames, first));
            EXPECT_EQ(decoded.foreignBytes, torn);
            const size_t good = firstGood(decoded, 0);
            EXPECT_EQ(decoded.count(Mp3Fault::kMissingMainData), good);
            EXPECT_EQ(decoded.damages(), good);
            const auto goodStart =
                decoded.pcm.begin() + static_cast<ptrdiff_t>(decoded.starts[good]);
            EXPECT_EQ(std::count(decoded.pcm.begin(), goodStart, 0),
                      goodStart - decoded.pcm.begin());
            expectSameFrom(decoded, good + kLsfMemory, clean, first + good + kLsfMemory);
        }
    }
}

/** Bytes that are missing in a frame must not take the next one along. */
TEST(Mp3Damage, FrameCutShort) {
    const Bytes original = mp3Clip("stereo_ms_44k");
    const Mp3Decoded clean = decodeMp3(original);
    for (const ptrdiff_t missing : {1, 100, 300, 400}) {
        SCOPED_TRACE(missing);
        std::vector<Bytes> frames = mp3FramesOf(original);
        frames[8].resize(frames[8].size() - static_cast<size_t>(missing));
        const Mp3Decoded decoded = decodeMp3(joined(frames));
        EXPECT_EQ(decoded.foreignBytes, 0u);
        ASSERT_EQ(decoded.pcm.size(), clean.pcm.size());
        EXPECT_EQ(decoded.faults[8], StreamFault::kCutShort);
        EXPECT_EQ(decoded.damages(), 1 + decoded.count(Mp3Fault::kMissingMainData));
        const size_t good = firstGood(decoded, 8);
        EXPECT_LE(good, 11u);
        expectSameFrom(decoded, good + kMpeg1Memory, clean, good + kMpeg1Memory);
    }
}

/** A broken header costs its frame and those that need it. */
TEST(Mp3Damage, LostFrame) {
    const Bytes original = mp3Clip("stereo_ms_44k");
    std::vector<Bytes> frames = mp3FramesOf(original);
    const size_t lost = frames[8].size();
    frames[8][0] = 0;
    const Mp3Decoded decoded = decodeMp3(joined(frames));
    EXPECT_EQ(decoded.foreignBytes, lost);
    EXPECT_EQ(decoded.damages(), decoded.count(Mp3Fault::kMissingMainData));
    const size_t good = firstGood(decoded, 8);
    expectSameFrom(decoded, good + kMpeg1Memory, decodeMp3(original), good + 1 + kMpeg1Memory);
}

TEST(Mp3Damage, FlippedBitsUnderTheCheckAreFound) {
    const std::vector<Bytes> frames = mp3FramesOf(mp3Clip("stereo_crc_48k"));
    const Mp3Decoded clean = decodeMp3(joined(frames));
    // The private bit, mode_extension to emphasis, the CRC itself and the side information.
    for (size_t bit = 23; bit < 8 * (4 + 2 + 32); bit += bit == 23 ? 3 : 7) {
        SCOPED_TRACE(bit);
        std::vector<Bytes> damaged = frames;
        damaged[5][bit / 8] ^= static_cast<Zet8u>(0x80 >> bit % 8);
        const Mp3Decoded decoded = decodeMp3(joined(damaged));
        EXPECT_EQ(decoded.damages(), 1u);
        EXPECT_EQ(decoded.faults[5], StreamFault::kCrcMismatch);
        expectSameFrom(decoded, 7, clean, 7);  // the reservoir does not suffer
    }
}

/** Granules are concealed from the faulty one on, and the sound returns with the next frame. */
TEST(Mp3Damage, ConcealedGranules) {
    const std::vector<Bytes> frames = mp3FramesOf(mp3Clip("stereo_ms_44k"));
    const Mp3Decoded clean = decodeMp3(joined(frames));
    constexpr size_t kRecordBits = 59;
    constexpr size_t kFirstRecord = kSideInfoBits + 9 + 3 + 8;  // stereo: scfsi of two channels
    const auto decodeWith = [&](size_t record, size_t field, size_t bits, uint32_t value) {
        std::vector<Bytes> damaged = frames;
        putBits(damaged[6], kFirstRecord + record * kRecordBits + field, bits, value);
        return decodeMp3(joined(damaged));
    };
    const auto expectConcealed = [&](const Mp3Decoded& decoded, Fault fault, size_t granule) {
        EXPECT_EQ(decoded.damages(), 1u);
        EXPECT_EQ(decoded.faults[6], fault);
        const auto start = static_cast<ptrdiff_t>(clean.starts[6] + granule * 1152);
        EXPECT_TRUE(std::equal(clean.pcm.begin(), clean.pcm.begin() + start, decoded.pcm.begin()));
        expectSameFrom(decoded, 8, clean, 8);
        // The overlap fades out within one granule, the synthesis window reaches into the next.
        const auto end = decoded.pcm.begin() + static_cast<ptrdiff_t>(clean.starts[7]);
        if (granule == 0) {
            EXPECT_EQ(std::count(end - 64, end, 0), 64);
        }
    };
    expectConcealed(decodeWith(2, 0, 12, 4095), Mp3Fault::kMainDataOverrun, 1);
    expectConcealed(decodeWith(0, 0, 12, 3), Mp3Fault::kScaleFactorsOverrun, 0);
    // big_values beyond 288, and window switching to block type 0: the library's checks.
    expectConcealed(decodeWith(3, 12, 9, 300), codec::faultOf(zetStsBadSideInfo), 1);
    expectConcealed(decodeWith(0, 33, 3, 4), codec::faultOf(zetStsBadSideInfo), 0);
}

/** mode_extension means nothing outside of joint stereo, and the reserved emphasis nothing at all.
 */
TEST(Mp3Damage, StrayHeaderBits) {
    for (const char* name : {"stereo_lsf_short_16k", "dual_vbr_all_rates_32k", "mono_mixed_44k"}) {
        const Bytes original = mp3Clip(name);
        std::vector<Bytes> frames = mp3FramesOf(original);
        for (Bytes& frame : frames) frame[3] |= 0x30;
        expectSameSound(decodeMp3(joined(frames)), original);
        frames[3][3] = static_cast<Zet8u>((frames[3][3] & 0xFC) | 2);
        expectSameSound(decodeMp3(joined(frames)), original);
    }
}

// --- Information tags
// -----------------------------------------------------------------------------

TEST(Mp3InfoTags, AreReadAndNotDecoded) {
    struct Case {
        const char* clip;
        size_t at;  // behind the side information
        Bytes tag;
        const char* name;
        const char* encoder;
        int delay, padding;
    };
    const Case cases[] = {
        {"stereo_ms_44k", 36, xing("Info", 15, "LAME3.100", 576, 1234), "Info", "LAME3.100", 576,
         1234},
        {"stereo_vbr_32k", 36, xing("Xing", 1, "Lavc59.37", 1105, 4095), "Xing", "Lavc59.37", 1105,
         4095},
        {"mono_32k_speech", 21, xing("Xing", 14, "LAME3.90 ", 4095, 0), "Xing", "LAME3.90", 4095,
         0},
        {"stereo_lsf_ms_22k", 21, xing("Info", 0, "Lavf58.45", 0, 0), "Info", "Lavf58.45", 0, 0},
        {"mono_lsf_16k_speech", 13, xing("Info", 3, "LAME3.100", 576, 700), "Info", "LAME3.100",
         576, 700},
        {"stereo_crc_48k", 36, xing("Info", 15, "LAME3.100", 1, 2), "Info", "LAME3.100", 1, 2},
        {"stereo_crc_48k", 38, xing("Info", 15, "LAME3.100", 1, 2), "Info", "LAME3.100", 1, 2},
        {"mono_abr_44k", 36, ascii("VBRI______________________"), "VBRI", "", 0, 0}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.clip);
        const Bytes original = mp3Clip(c.clip);
        const Mp3Decoded decoded =
            decodeMp3(id3v2(30) + infoFrame(original, c.at, c.tag) + original);
        expectSameSound(decoded, original);
        ASSERT_TRUE(decoded.infoTag);
        EXPECT_EQ(decoded.infoTag->name, c.name);
        EXPECT_EQ(decoded.infoTag->encoder, c.encoder);
        EXPECT_EQ(decoded.infoTag->delay, c.delay);
        EXPECT_EQ(decoded.infoTag->padding, c.padding);
        EXPECT_EQ(decoded.infoTag->hasGaps, c.delay + c.padding > 0);
    }
}

}  // namespace
}  // namespace zetac::test
