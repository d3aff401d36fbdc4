// Finding frames among foreign bytes and damage, and putting channels into their places.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/streams/clips.h"

namespace zetac::test {
namespace {

using codec::AacFault;
using codec::ChannelLayout;
using codec::Fault;
using codec::StreamFault;

constexpr size_t kFrameValues = ZETAC_AAC_FRAME_LEN;  // of a mono clip

void expectSameSound(const Decoded& decoded, const Bytes& original) {
    ASSERT_TRUE(decoded.isAac);
    EXPECT_EQ(decoded.damages(), 0u);
    EXPECT_EQ(decoded.pcm, decodeAll(original).pcm);
}

TEST(Containers, TagsAreNoDamage) {
    const Bytes original = clip("mono_8k_short_tns");
    const std::vector<Bytes> frames = framesOf(original);
    const Decoded decoded = decodeAll(id3v2(100) + id3v2(5) + joined(frames, 0, 9) + id3v1() +
                                      id3v2(20, true) + joined(frames, 9) + apeTag(50) + id3v1());
    expectSameSound(decoded, original);
    EXPECT_EQ(decoded.skippedBytes, 0u);
    EXPECT_EQ(decoded.positions[0], 110u + 15u + 7u);
    expectSameSound(decodeAll(id3v2(60) + clip("stereo_adif") + apeTag(0)), clip("stereo_adif"));
}

TEST(Containers, ForeignBytesArePassedOver) {
    const Bytes original = clip("mono_8k_short_tns");
    // A header of another stream whose successor is missing, and bytes that look like a sync.
    const Bytes junk = {0xFF, 0xF1, 0x50, 0x80, 0x02, 0x1F, 0xFC, 0xFF, 0xFF, 0xF9, 0, 0xFF, 0xF1};
    const std::vector<Bytes> frames = framesOf(original);
    const Decoded decoded =
        decodeAll(junk + joined({frames.begin(), frames.end() - 1}, junk) + frames.back());
    expectSameSound(decoded, original);
    EXPECT_EQ(decoded.skippedBytes, junk.size() * frames.size());
}

void setLength(Bytes& frame, size_t length) {
    frame[3] = static_cast<Zet8u>((frame[3] & 0xFC) | length >> 11);
    frame[4] = static_cast<Zet8u>(length >> 3);
    frame[5] = static_cast<Zet8u>((frame[5] & 0x1F) | length << 5);
}

/** A wrong frame length must not take the next frame along. */
TEST(Containers, WrongLengthCostsOneFrame) {
    const Bytes original = clip("mono_8k_short_tns");
    const Pcm clean = decodeAll(original).pcm;
    for (const int change : {-40, -1, 1, 300}) {
        SCOPED_TRACE(change);
        std::vector<Bytes> frames = framesOf(original);
        setLength(frames[10], frames[10].size() + static_cast<size_t>(change));
        const Decoded decoded = decodeAll(joined(frames));
        ASSERT_EQ(decoded.pcm.size(), clean.size());
        EXPECT_EQ(decoded.damages(), change < 0 ? 1u : 0u);
        const auto after = static_cast<ptrdiff_t>(12 * kFrameValues);
        EXPECT_TRUE(std::equal(clean.begin() + after, clean.end(), decoded.pcm.begin() + after));
    }
}

TEST(Containers, FramesOfAnotherFormatAreConcealed) {
    const std::vector<Bytes> mono = framesOf(clip("mono_8k_short_tns"));
    const std::vector<Bytes> other = framesOf(clip("mono_sbr_core"));
    const Decoded decoded = decodeAll(joined(mono, 0, 6) + joined(other, 0, 3) + joined(mono, 6));
    EXPECT_EQ(decoded.damages(), 3u);
    EXPECT_EQ(std::ranges::count(decoded.faults, StreamFault::kFormatChanged), 3);
    EXPECT_EQ(decoded.sampleRate, 8000);
    // The first concealed frame fades out, the next ones are silent.
    const auto silent = decoded.pcm.begin() + 7 * kFrameValues;
    EXPECT_EQ(std::count(silent, silent + 2 * kFrameValues, 0), 2 * kFrameValues);
    const Pcm clean = decodeAll(clip("mono_8k_short_tns")).pcm;
    EXPECT_TRUE(std::equal(clean.begin() + 7 * kFrameValues, clean.end(),
                           decoded.pcm.begin() + 10 * kFrameValues));
}

/** Headers without anything behind them give a second of silence at most, and cost good frames
 *  nothing. */
TEST(Containers, DamageAloneMakesNoMoreThanASecond) {
    const std::vector<Bytes> tiny(2000, {0xFF, 0xF1, 0x4D, 0xC0, 1, 0x1F, 0xFC, 0});  // 8 bytes
    const Decoded silence = decodeAll(joined(tiny));
    EXPECT_EQ(silence.damages(), tiny.size());
    EXPECT_EQ(silence.pcm.size(), 8u * 1024 * (48000 / 1024));
}

/** An ADIF file has no syncs: its first damaged block is its last one. */
TEST(Containers, DamagedAdifEnds) {
    const Bytes clean = clip("stereo_adif");
    const Decoded whole = decodeAll(clean);
    Bytes bytes = clean;
    bytes[whole.positions[5]] = 0xFF;  // the end at once
    const Decoded decoded = decodeAll(bytes);
    EXPECT_EQ(decoded.faults.size(), 6u);
    EXPECT_EQ(decoded.faults[5], AacFault::kElementMissing);
    EXPECT_EQ(decoded.skippedBytes, clean.size() - whole.positions[5] - 1);
}

TEST(Containers, NothingElseIsTakenForAac) {
    for (const Bytes& bytes : {Bytes{}, ascii("ADIF"), ascii("A text without any sync in it."),
                               id3v2(100), Bytes(5000, 0xFF)})
        EXPECT_FALSE(decodeAll(bytes).isAac);
    Bytes layer3;  // the sync of an MPEG audio frame differs in its layer only
    for (int i = 0; i < 10; ++i) {
        append(layer3, {0xFF, 0xFB, 0x90, 0x64});
        layer3.resize(layer3.size() + 413);
    }
    EXPECT_FALSE(decodeAll(layer3).isAac);
}

// --- The error check, computed bit by bit --------------------------------------------------------

class BitwiseCrc {
  public:
    void add(const Bytes& bytes, size_t firstBit, size_t count) {
        for (size_t i = firstBit; i < firstBit + count; ++i) {
            const unsigned bit = bytes[i / 8] >> (7 - i % 8) & 1u;
            const unsigned top = crc_ >> 15 & 1u;
            crc_ = (crc_ << 1 & 0xFFFF) ^ (top ^ bit ? 0x8005u : 0u);
        }
    }
    void appendTo(Bytes& bytes) const {
        append(bytes, {static_cast<Zet8u>(crc_ >> 8), static_cast<Zet8u>(crc_)});
    }

  private:
    unsigned crc_ = 0xFFFF;
};

/** One protected frame of several blocks of a mono stream, out of frames of one block. Under the
 *  check of a block are the first 192 bits of its single channel element, behind the element's id.
 */
Bytes protectedFrame(const std::vector<Bytes>& frames) {
    constexpr size_t kHeader = 7;
    const size_t words = frames.size();  // positions of all blocks but the first, and the CRC
    size_t length = kHeader + 2 * words;
    for (const Bytes& frame : frames) length += frame.size() - kHeader + 2;

    Bytes result(frames[0].begin(), frames[0].begin() + kHeader);
    result[1] &= 0xFE;  // protection_absent
    setLength(result, length);
    result[6] = static_cast<Zet8u>((result[6] & 0xFC) | (frames.size() - 1));
    size_t position = 0;
    for (size_t i = 0; i + 1 < frames.size(); ++i) {
        position += frames[i].size() - kHeader + 2;
        append(result, {static_cast<Zet8u>(position >> 8), static_cast<Zet8u>(position)});
    }
    BitwiseCrc headerCrc;
    headerCrc.add(result, 0, result.size() * 8);
    headerCrc.appendTo(result);
    for (const Bytes& frame : frames) {
        const Bytes block(frame.begin() + kHeader, frame.end());
        BitwiseCrc crc;
        crc.add(block, 3, 192);
        append(result, block);
        crc.appendTo(result);
    }
    return result;
}

TEST(Containers, ProtectedFramesOfSeveralBlocks) {
    std::vector<Bytes> single = framesOf(clip("mono_8k_short_tns"));
    single.erase(single.begin());  // it starts with a fill element, the others with the channel
    single.pop_back();
    std::vector<Bytes> frames;
    for (size_t i = 0; i < single.size(); i += 2) {
        frames.push_back(protectedFrame({single[i], single[i + 1]}));
    }
    expectSameSound(decodeAll(joined(frames)), joined(single));

    // A wrong global_gain costs its block, a wrong position its frame.
    std::vector<Bytes> damaged = frames;
    damaged[3][7 + 4 + 1] ^= 0x02;
    Decoded decoded = decodeAll(joined(damaged));
    EXPECT_EQ(decoded.damages(), 1u);
    EXPECT_EQ(decoded.faults[6], StreamFault::kCrcMismatch);
    damaged = frames;
    damaged[3][8] ^= 1;
    decoded = decodeAll(joined(damaged));
    EXPECT_EQ(decoded.damages(), 2u);
    EXPECT_EQ(decoded.faults[6], StreamFault::kCrcMismatch);
    EXPECT_EQ(decoded.faults[7], StreamFault::kCrcMismatch);
}

/** Without positions of blocks a damaged block takes along those behind it in the same frame. */
TEST(Containers, DamageInFramesOfSeveralBlocks) {
    std::vector<Bytes> frames = framesOf(clip("stereo_four_blocks"));
    frames[1][7] = 0x7F;  // an LFE element
    const Decoded decoded = decodeAll(joined(frames));
    const std::vector<Fault> faults(decoded.faults.begin() + 4, decoded.faults.begin() + 8);
    EXPECT_EQ(faults,
              (std::vector<Fault>{AacFault::kElementUnexpected, StreamFault::kPrecedingBlock,
                                  StreamFault::kPrecedingBlock, StreamFault::kPrecedingBlock}));
    EXPECT_EQ(decoded.damages(), 4u);
    EXPECT_EQ(decoded.pcm.size(), decodeAll(clip("stereo_four_blocks")).pcm.size());
}

TEST(Containers, FlippedBitsUnderTheCheckAreFound) {
    const Bytes original = clip("stereo_crc_ms_intensity_tns");
    const std::vector<Bytes> frames = framesOf(original);
    for (size_t bit = 3; bit < 3 + 192; bit += 7) {
        std::vector<Bytes> damaged = frames;
        damaged[5][9 + bit / 8] ^= static_cast<Zet8u>(0x80 >> bit % 8);
        const Decoded decoded = decodeAll(joined(damaged));
        EXPECT_EQ(decoded.damages(), 1u) << "bit " << bit;
        EXPECT_NE(decoded.faults[5], Fault::kNone) << "bit " << bit;
    }
}

// --- Elements and channels -----------------------------------------------------------------------

/** Bits of a string of 0 and 1, spaces aside, followed by bytes, all as one block. */
Bytes blockOf(const std::string& bits, const Bytes& rest) {
    std::string all = bits;
    std::erase(all, ' ');
    for (const Zet8u byte : rest) {
        for (int bit = 7; bit >= 0; --bit) all += byte >> bit & 1 ? '1' : '0';
    }
    Bytes block((all.size() + 7) / 8);
    for (size_t i = 0; i < all.size(); ++i) {
        if (all[i] == '1') block[i / 8] |= static_cast<Zet8u>(0x80 >> i % 8);
    }
    return block;
}

/** The frame with elements put before those that it has. */
Bytes withElements(const Bytes& frame, const std::string& bits) {
    Bytes result(frame.begin(), frame.begin() + 7);
    append(result, blockOf(bits, {frame.begin() + 7, frame.end()}));
    setLength(result, result.size());
    return result;
}

// individual_channel_stream() without bands: global_gain, ics_info, no pulses, TNS or gain control.
#define EMPTY_CHANNEL " 10000000 0 00 0 000000 0 0 0 0"

TEST(Elements, CouplingChannelsArePassedOver) {
    const std::string couplings[] = {
        // One target, one gain list, which is not transmitted.
        "010 0001 0 000 0 0000 0000" EMPTY_CHANNEL,
        // One channel of a pair: still one list.
        "010 0100 0 000 1 0000 10 0000" EMPTY_CHANNEL,
        // A pair with lists for both channels: a common gain of the shortest code.
        "010 0010 0 000 1 0000 11 0000" EMPTY_CHANNEL " 1 0",
        // Independently switched, two pairs: three common gains without a flag, the last of
        // 19 bits.
        "010 0011 1 001 1 0000 11 1 0001 11 0000" EMPTY_CHANNEL " 100 1010 1111111111111111111",
        // No common gain: one gain for each band, of which there are none.
        "010 0011 0 000 1 0000 11 0000" EMPTY_CHANNEL " 0"};
    const std::vector<Bytes> frames = framesOf(clip("mono_8k_short_tns"));
    for (const std::string& coupling : couplings) {
        SCOPED_TRACE(coupling);
        std::vector<Bytes> coupled = frames;
        for (Bytes& frame : coupled) frame = withElements(frame, coupling);
        expectSameSound(decodeAll(joined(coupled)), joined(frames));
    }
}

TEST(Elements, WrongSequencesAreFaults) {
    const std::vector<Bytes> frames = framesOf(clip("mono_8k_short_tns"));
    const auto faultOf = [&](const std::string& bits) {
        std::vector<Bytes> changed = frames;
        changed[4] = withElements(frames[4], bits);
        const Decoded decoded = decodeAll(joined(changed));
        EXPECT_EQ(decoded.damages(), 1u);
        return decoded.faults[4];
    };
    EXPECT_EQ(faultOf("000 0000" EMPTY_CHANNEL), AacFault::kElementUnexpected);
    EXPECT_EQ(faultOf("001 0000 0" EMPTY_CHANNEL EMPTY_CHANNEL), AacFault::kElementUnexpected);
    EXPECT_EQ(faultOf("111"), AacFault::kElementMissing);
}

/** A stereo stream at 44.1 kHz of this block twice, or of it and another one. */
Bytes stereoStream(const std::string& bits, const std::string& next = "") {
    const Bytes header = {0xFF, 0xF1, 0x50, 0x80, 0, 0x1F, 0xFC};
    return joined({withElements(header, bits), withElements(header, next.empty() ? bits : next)});
}

// A pair with a common window of one long band, its M/S mask to follow.
#define PAIR_OF_ONE_BAND "001 0000 1 0 00 0 000001 0 "
// A channel that is noise with an energy of 72 steps, or intensity at position 0, or the lines
// 1, 0, 0, 0 with scalefactor 160.
#define NOISE " 11001000 1101 00001 011011010 0 0 0"
#define INTENSITY " 11001000 1111 00001 0 0 0 0"
#define LINES " 10100000 0001 00001 0 0 0 0 10000"

/** M/S has no meaning for a band that is noise in one channel (ISO/IEC 14496-3, 4.6.13). */
TEST(Elements, NoiseOnOneSideIsNoSumOrDifference) {
    for (const char* channels : {NOISE LINES "111", LINES NOISE "111"}) {
        SCOPED_TRACE(channels);
        const Decoded plain =
            decodeAll(stereoStream(std::string(PAIR_OF_ONE_BAND "00") + channels));
        const Decoded mask =
            decodeAll(stereoStream(std::string(PAIR_OF_ONE_BAND "01 1") + channels));
        const Decoded all = decodeAll(stereoStream(std::string(PAIR_OF_ONE_BAND "10") + channels));
        ASSERT_EQ(plain.damages(), 0u);
        EXPECT_GT(std::ranges::max(plain.pcm), 20);
        EXPECT_EQ(plain.pcm, mask.pcm);
        EXPECT_EQ(plain.pcm, all.pcm);
    }
}

/** Intensity on the right copies the noise on the left, inverted by a flag of the mask alone. */
TEST(Elements, IntensityOfNoise) {
    const std::pair<const char*, int> cases[] = {{"00", 1}, {"01 0", 1}, {"01 1", -1}, {"10", 1}};
    for (const auto& [mask, sign] : cases) {
        SCOPED_TRACE(mask);
        const Decoded decoded =
            decodeAll(stereoStream(std::string(PAIR_OF_ONE_BAND) + mask + NOISE INTENSITY "111"));
        ASSERT_EQ(decoded.damages(), 0u);
        EXPECT_GT(std::ranges::max(decoded.pcm), 20);
        for (size_t i = 0; i < decoded.pcm.size(); i += 2) {
            // Rounding is not symmetric.
            ASSERT_NEAR(decoded.pcm[i + 1], sign * decoded.pcm[i], 1);
        }
    }
}

/** Noise is the same in both channels where the mask says so, and has the energy of the stream:
 * 2^18 of norm in an orthogonal transform, of which a line in PCM has 1/2048. Rounding 2048 samples
 *  changes it by 1 in 10^4 (one standard deviation). */
TEST(Elements, NoiseOfBothChannels) {
    const std::string silence = "001 0000 1 0 00 0 000000 0 00 11001000 0 0 0 11001000 0 0 0 111";
    const std::pair<const char*, bool> cases[] = {
        {"00", false}, {"01 0", false}, {"01 1", true}, {"10", true}};
    for (const auto& [mask, isShared] : cases) {
        SCOPED_TRACE(mask);
        const Decoded decoded = decodeAll(
            stereoStream(std::string(PAIR_OF_ONE_BAND) + mask + NOISE NOISE "111", silence));
        ASSERT_EQ(decoded.damages(), 0u);
        double energy[2] = {};
        bool isSame = true;
        for (size_t i = 0; i < decoded.pcm.size(); ++i) {
            energy[i % 2] += decoded.pcm[i] * decoded.pcm[i];
            isSame &= decoded.pcm[i] == decoded.pcm[i ^ 1];
        }
        EXPECT_EQ(isSame, isShared);
        for (const double e : energy) EXPECT_NEAR(e * 0x1p-25, 1, 1e-3);
    }
}

Decoded decodeAsProfile(const std::string& name, int profile) {
    std::vector<Bytes> frames = framesOf(clip(name));
    for (Bytes& frame : frames) frame[2] = static_cast<Zet8u>((frame[2] & 0x3F) | profile << 6);
    return decodeAll(joined(frames));
}

TEST(Elements, ScalableSamplingRateIsRefused) {
    const Decoded decoded = decodeAsProfile("stereo_tns", 2);
    EXPECT_TRUE(decoded.isAac);
    EXPECT_EQ(decoded.faults[0], AacFault::kUnsupportedProfile);
    EXPECT_TRUE(decoded.pcm.empty());
}

// A stream without prediction is the same in all three profiles. What is computed more precisely in
// Main and LTP moves a sample by one step at most.
TEST(Elements, ProfilesAgreeWithoutPrediction) {
    for (const char* name : {"stereo_tns", "stereo_intensity_ms", "stereo_short_grouping"}) {
        const Pcm expected = decodeAll(clip(name)).pcm;
        for (const int profile : {0, 3}) {
            SCOPED_TRACE(name + std::to_string(profile));
            const Decoded decoded = decodeAsProfile(name, profile);
            EXPECT_EQ(decoded.damages(), 0u);
            ASSERT_EQ(decoded.pcm.size(), expected.size());
            for (size_t i = 0; i < expected.size(); ++i)
                ASSERT_NEAR(decoded.pcm[i], expected[i], 1) << i;
        }
    }
}

TEST(Layout, ChannelConfigurationsInWavOrder) {
    // Places in the WAV file of the channels in stream order (ISO/IEC 14496-3, table 1.19).
    const std::vector<int> places[] = {{},
                                       {0},
                                       {0, 1},
                                       {2, 0, 1},
                                       {2, 0, 1, 3},
                                       {2, 0, 1, 3, 4},
                                       {2, 0, 1, 4, 5, 3},
                                       {2, 6, 7, 0, 1, 4, 5, 3}};
    for (int configuration = 1; configuration <= 7; ++configuration) {
        const auto layout = ChannelLayout::fromConfiguration(configuration);
        ASSERT_TRUE(layout);
        std::vector<int> found;
        for (int c = 0; c < layout->channels(); ++c) found.push_back(layout->wavPosition(c));
        EXPECT_EQ(found, places[configuration]) << configuration;
        EXPECT_TRUE(layout->hasSpeakers());
    }
    EXPECT_FALSE(ChannelLayout::fromConfiguration(0));
    EXPECT_FALSE(ChannelLayout::fromConfiguration(8));
}

TEST(Layout, ProgramConfigElements) {
    ZetAACPrgCfgElt program{};
    EXPECT_FALSE(ChannelLayout::fromProgramConfig(program));  // no channel at all
    program.num_front_channel_elements = 2;                   // a centre and a pair
    program.front_element_is_cpe[1] = 1;
    program.num_back_channel_elements = 2;  // two pairs: at the side and at the back
    program.back_element_is_cpe[0] = program.back_element_is_cpe[1] = 1;
    program.back_element_tag_select[0] = 1;
    program.back_element_tag_select[1] = 2;
    program.num_lfe_channel_elements = 1;
    const auto layout = ChannelLayout::fromProgramConfig(program);
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->describe(),
              "7.1 (front centre, front left, front right, side left, side right, back left, back "
              "right, low frequency)");
    EXPECT_EQ(layout->find(codec::ElementId::kPair, 2, 0), 3);  // by tag, not by order
    EXPECT_EQ(layout->find(codec::ElementId::kPair, 3, 1), -1);

    program.num_side_channel_elements = 1;
    EXPECT_FALSE(ChannelLayout::fromProgramConfig(program));  // nine channels
    program.num_lfe_channel_elements = 0;                     // a single channel at the side
    const auto unknown = ChannelLayout::fromProgramConfig(program);
    ASSERT_TRUE(unknown);
    EXPECT_FALSE(unknown->hasSpeakers());
    EXPECT_EQ(unknown->wavPosition(0), 0);
}

/** A later program config element may repeat the layout, but a damaged or another one costs no more
 *  than its frame. */
TEST(Layout, ProgramConfigElementsInMidStream) {
    // Tag 0, LC, 48 kHz; front channels as given, no others; mix-downs and comment absent.
    const auto program = [](const std::string& front, const std::string& elements) {
        std::string bits = "101 0000 01 0011 " + front + " 0000 0000 00 000 0000 0 0 0" + elements;
        std::erase(bits, ' ');
        bits.resize((bits.size() + 7) / 8 * 8, '0');
        return bits + "00000000";
    };
    const std::string mono = program("0001", " 0 0000");
    std::string nine = program("1111",
                               " 1 0000 1 0001 1 0010 1 0011 1 0100 0 0000 0 0000 0 0000"
                               " 0 0000 0 0000 0 0000 0 0000 0 0000 0 0000 0 0000");
    std::vector<Bytes> frames = framesOf(clip("mono_pulses_data_elements"));
    for (Bytes& frame : frames) frame[3] &= 0x3F;  // channel_configuration 0
    for (Bytes& frame : frames) frame[2] &= 0xFE;
    const std::vector<Bytes> plain(frames.begin() + 1, frames.end());
    frames[0] = withElements(frames[0], mono);
    frames[5] = withElements(frames[5], mono);
    frames[9] = withElements(frames[9], nine);
    frames[12] = withElements(frames[12], program("0001", " 1 0000"));
    const Decoded decoded = decodeAll(joined(frames));
    ASSERT_EQ(decoded.damages(), 2u);
    EXPECT_EQ(decoded.faults[9], AacFault::kLayoutChanged);
    EXPECT_EQ(decoded.faults[12], AacFault::kLayoutChanged);
    EXPECT_EQ(decoded.pcm.size(), frames.size() * ZETAC_AAC_FRAME_LEN);
    // Without any there is no sound, and nothing but a layout with too many channels is refused.
    EXPECT_EQ(decodeAll(joined(plain)).faults[0], AacFault::kNoLayout);
    frames[0] = withElements(plain[0], nine);
    EXPECT_EQ(decodeAll(joined(frames)).faults[3], AacFault::kUnsupportedLayout);
}

TEST(Layout, DecoderPutsChannelsInWavOrder) {
    const Bytes bytes = clip("surround_51");
    const Decoded stream = decodeAll(bytes);
    const Decoded wav = decodeAll(bytes, {codec::ChannelOrder::kWav, true});
    ASSERT_EQ(stream.channels, 6);
    ASSERT_EQ(stream.pcm.size(), wav.pcm.size());
    constexpr int kPlaces[] = {2, 0, 1, 4, 5, 3};
    for (size_t i = 0; i < stream.pcm.size(); ++i) {
        ASSERT_EQ(stream.pcm[i], wav.pcm[i - i % 6 + static_cast<size_t>(kPlaces[i % 6])]) << i;
    }
}

}  // namespace
}  // namespace zetac::test
