// Individual channel streams built field by field. The few codewords that occur are literal:
// scalefactor differences here, spectral tuples where they are used.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <random>

#include "support/channel_stream.h"

using namespace zetac::test;

namespace {

constexpr Form kForms[] = {Form::kLowComplexity, Form::kShared, Form::kSeparate};

constexpr BitWriter::Field kDiff0 = {0x0, 1};
constexpr BitWriter::Field kDiffPlus1 = {0xa, 4};
constexpr BitWriter::Field kDiffMinus1 = {0x4, 3};
constexpr BitWriter::Field kDiffPlus60 = {0x7fff3, 19};
constexpr BitWriter::Field kDiffMinus60 = {0x3ffe8, 18};

// Decodes a stream that is taken to its end, or up to the fault at its end.
void expectStatus(Channel& channel, Form form, const BitWriter& stream,
                  ZetStatus expected = zetStsOk) {
    EXPECT_EQ(channel.decode(form, stream), expected);
    EXPECT_EQ(channel.consumed, stream.size());
}

TEST(AacNoiseless, NoBandsGiveZeros) {
    for (const Form form : kForms) {
        for (const bool isShort : {false, true}) {
            BitWriter stream = isShort ? shortWindows(77, 0, 0x55) : longWindow(77, 0);
            Channel channel;
            expectStatus(channel, form, stream.append(noTools()));
            EXPECT_EQ(channel.spectrum, std::vector<Zet32s>(1024));
            EXPECT_EQ(channel.info.global_gain, 77);
            EXPECT_EQ(channel.info.window_length, isShort ? 128 : 1024);
            EXPECT_EQ(channel.info.num_windows, isShort ? 8 : 1);
            EXPECT_EQ(channel.info.num_swb, isShort ? 14 : 49);
            EXPECT_EQ(channel.info.num_sec[0], 0);
            EXPECT_EQ(channel.info.tns.n_filt[0], 0);
            EXPECT_EQ(channel.info.gain_control_data_present, 0);
        }
    }
}

TEST(AacNoiseless, SectionLengthsAddUpTheirEscapes) {
    BitWriter stream = longWindow(100, 49);
    stream.append(section(15, 31)).append(section(0, 0)).append(section(1, 1));
    stream.append(section(0, 17)).repeat(32, 0, 1).append(noTools());
    Channel channel;
    expectStatus(channel, Form::kLowComplexity, stream.repeat(8, 0, 1));  // band 31 has 32 lines
    EXPECT_EQ(channel.info.num_sec[0], 4);
    const Zet8u ends[] = {31, 31, 32, 49};
    const Zet8u books[] = {15, 0, 1, 0};
    EXPECT_TRUE(std::equal(ends, ends + 4, channel.info.sect_end));
    EXPECT_TRUE(std::equal(books, books + 4, channel.info.sect_cb));
    for (int sfb = 0; sfb < 49; ++sfb) {
        EXPECT_EQ(channel.sfbCb[sfb], sfb < 31 ? 15 : sfb == 31 ? 1 : 0);
        EXPECT_EQ(channel.scaleFactor[sfb], sfb == 31 ? 100 : 0);
    }
    EXPECT_EQ(channel.sfbCb[49], 0x5a);

    // A length that is all escape goes on, also where it reaches max_sfb.
    Channel escaped;
    expectStatus(escaped, Form::kSeparate,
                 longWindow(100, 31).append(section(0, 31)).append(noTools()));

    // Three groups of short windows, each with a section of 7 and one of 2.
    BitWriter shorts = shortWindows(100, 9, 0x5b);
    for (int g = 0; g < 3; ++g) shorts.append(section(14, 7, true)).append(section(0, 2, true));
    Channel grouped;
    expectStatus(grouped, Form::kSeparate, shorts.repeat(21, 0, 1).append(noTools()));
    EXPECT_EQ(grouped.info.sect_end[4], 7);
    EXPECT_EQ(grouped.info.num_sec[2], 2);
    EXPECT_EQ(grouped.sfbCb[2 * 9 + 6], 14);
    EXPECT_EQ(grouped.sfbCb[2 * 9 + 7], 0);
    EXPECT_EQ(grouped.sfbCb[3 * 9], 0x5a);
}

TEST(AacNoiseless, RunningValuesFollowTheStandard) {
    BitWriter stream = longWindow(100, 7);
    stream.append(section(1, 1)).append(section(15, 2)).append(section(1, 1)).append(section(0, 1));
    stream.append(section(14, 1)).append(section(1, 1));
    stream.append({kDiffPlus1, kDiffMinus60, kDiffMinus60, kDiffMinus1, kDiffPlus1, kDiffPlus60});
    stream.append(noTools()).repeat(3, 0, 1);
    for (const Form form : kForms) {
        Channel channel;
        expectStatus(channel, form, stream);
        EXPECT_TRUE(
            channel.startsWith(channel.scaleFactor, {101, -60, -120, 100, 0, -119, 160, 0x5a5a}));
    }
}

TEST(AacNoiseless, NoiseEnergiesShareOrHaveTheirOwnRunningValue) {
    BitWriter stream = longWindow(150, 4);
    stream.append(section(1, 1)).append(section(13, 2)).append(section(1, 1));
    stream.append({kDiffMinus1, {256 + 40, 9}, kDiffPlus1, kDiffPlus1});  // 150 - 90 + 40
    stream.append(noTools()).repeat(2, 0, 1);
    for (const Form form : {Form::kShared, Form::kSeparate}) {
        Channel channel;
        expectStatus(channel, form, stream);
        EXPECT_TRUE(channel.startsWith(channel.scaleFactor,
                                       {149, 100, 101, form == Form::kShared ? 102 : 150}));
        EXPECT_EQ(channel.spectrum, std::vector<Zet32s>(1024));
    }
    Channel lowComplexity;
    EXPECT_EQ(lowComplexity.decode(Form::kLowComplexity, stream), zetStsAacCodeBookErr);
    EXPECT_EQ(lowComplexity.scaleFactor[0], 149);
}

TEST(AacNoiseless, OnlySeparateNoiseEnergiesHaveNoRange) {
    for (const auto& [raw, diff] :
         {std::pair{0, kDiff0}, std::pair{511, kDiff0}, std::pair{346, kDiffMinus1}}) {
        BitWriter stream = longWindow(0, 2).append(section(13, 2));
        stream.append({{raw, 9}, diff}).append(noTools());
        Channel shared, separate;
        EXPECT_EQ(shared.decode(Form::kShared, stream), raw == 511 ? zetStsOk : zetStsAacSfValErr);
        expectStatus(separate, Form::kSeparate, stream);
        EXPECT_TRUE(
            separate.startsWith(separate.scaleFactor, {raw - 346, raw - 346 - (raw == 346)}));
    }
}

// Windows 0..2, 3 and 4..7; two bands of 4 lines each; book 1 codes count the tuples.
TEST(AacNoiseless, GroupedWindowsLieBandByBand) {
    BitWriter stream = shortWindows(100, 2, 0x67);
    for (int g = 0; g < 3; ++g) stream.append(section(1, 2, true));
    stream.repeat(6, 0, 1).append(noTools());
    std::vector<Zet32s> expected(1024);
    for (const int window : {0, 1, 2, 3, 4, 5, 6, 7}) {
        stream.append({{0x10, 5}, {0, 1}});  // (1, 0, 0, 0), zeros
        const int firstWindow = window < 3 ? 0 : window == 3 ? 3 : 4;
        expected[firstWindow * 128 + (window - firstWindow) * 8] = 1;
    }
    Channel channel;
    expectStatus(channel, Form::kLowComplexity, stream);
    EXPECT_EQ(channel.spectrum, expected);
}

TEST(AacNoiseless, EscapesHaveUpToEightLeadingOnes) {
    const auto escaped = [](const BitWriter& spectrum) {
        BitWriter stream = longWindow(100, 1).append(section(11, 1)).append({kDiff0});
        return stream.append(noTools()).append(spectrum);
    };
    // (16, 16), both negative: 16 + 15 and 4096 + 4095; then (0, 16), positive: 32.
    const BitWriter stream = escaped({{0x04, 5},
                                      {3, 2},
                                      {0xf, 5},
                                      {0x1fe, 9},
                                      {0xfff, 12},
                                      {0x38e, 10},
                                      {0, 1},
                                      {2, 2},
                                      {0, 5}});
    Channel channel;
    expectStatus(channel, Form::kLowComplexity, stream);
    EXPECT_TRUE(channel.startsWith(channel.spectrum, {-31, -8191, 0, 32, 0, 0, 0, 0}));
    expectStatus(channel, Form::kLowComplexity, escaped({{0x04, 5}, {3, 2}, {0xf, 5}, {0x1ff, 9}}),
                 zetStsAacCoefValErr);
}

// Book 1 in band 0 gives 1 0 0 -1 0 0 0 0 ... ; pulses at lines 0, 3, 3 and 4.
TEST(AacNoiseless, PulsesGrowMagnitudesAndMakeZerosNegative) {
    BitWriter stream = longWindow(100, 2).append(section(1, 2)).repeat(2, 0, 1);
    stream.append({{1, 1}, {3, 2}, {0, 6}});
    stream.append({{0, 5}, {15, 4}, {3, 5}, {2, 4}, {0, 5}, {1, 4}, {1, 5}, {4, 4}});
    stream.append({{0, 2}, {0x075, 7}, {0, 1}});  // (1, 0, 0, -1), zeros
    Channel channel;
    expectStatus(channel, Form::kLowComplexity, stream);
    EXPECT_TRUE(channel.startsWith(channel.spectrum, {16, 0, 0, -4, -4, 0, 0, 0}));
}

TEST(AacNoiseless, PulsesOutOfRange) {
    const auto onePulse = [](int startSfb) {
        return longWindow(100, 0).append({{1, 1}, {0, 2}, {startSfb, 6}});
    };
    const struct {
        BitWriter stream;
        ZetStatus status;
    } cases[] = {
        {onePulse(52), zetStsAacPulseStartSfbErr},                           // at once
        {onePulse(49).append({{0, 5}, {1, 4}}), zetStsAacPulseStartSfbErr},  // 49 bands at 44.1 kHz
        {onePulse(48).append({{31, 5}, {1, 4}, {0, 2}}), zetStsOk},          // line 928 + 31
        {shortWindows(1, 0, 0).append(1, 1), zetStsAacPulseStartSfbErr},
    };
    for (const auto& [stream, status] : cases) {
        Channel channel;
        expectStatus(channel, Form::kLowComplexity, stream, status);
        EXPECT_EQ(channel.info.pulse_data_present, 1);
    }
    // Four pulses at 24 kHz from line 960 on: the last reaches line 1024, the third still counts.
    BitWriter stream = longWindow(100, 0).append({{1, 1}, {3, 2}, {46, 6}});
    for (const int offset : {31, 31, 1, 1}) stream.append({{offset, 5}, {3, 4}});
    Channel channel(6);
    expectStatus(channel, Form::kLowComplexity, stream.append(0, 2), zetStsAacPulseStartSfbErr);
    EXPECT_EQ(channel.spectrum[1023], -3);
}

TEST(AacNoiseless, TnsCoefficientsAreSignExtended) {
    BitWriter stream = longWindow(100, 0).append({{0, 1}, {1, 1}, {3, 2}, {1, 1}});
    stream.append({{20, 6}, {12, 5}, {1, 1}, {0, 1}});  // 4 bits
    for (int i = 0; i < 12; ++i) stream.append(i + 2, 4);
    stream.append({{11, 6}, {0, 5}});  // order 0 has no further fields
    stream.append({{9, 6}, {2, 5}, {0, 1}, {1, 1}, {4, 3}, {3, 3}, {0, 1}});  // 3 bits
    for (const Form form : kForms) {
        Channel channel;
        expectStatus(channel, form, stream);
        const ZetAACTnsInfo& tns = channel.info.tns;
        EXPECT_EQ(channel.info.tns_data_present, 1);
        EXPECT_EQ(tns.n_filt[0], 3);
        EXPECT_EQ(tns.coef_res[0], 4);
        const Zet32s fields[4][3] = {{20, 11, 9}, {12, 0, 2}, {1, 0, 0}, {0, 0, 0}};
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(tns.length[i], fields[0][i]);
            EXPECT_EQ(tns.order[i], fields[1][i]);
            EXPECT_EQ(tns.direction[i], fields[2][i]);
            EXPECT_EQ(tns.coef_compress[i], fields[3][i]);
        }
        EXPECT_TRUE(channel.startsWith(channel.tnsCoef,
                                       {2, 3, 4, 5, 6, 7, -8, -7, -6, -5, -4, -3, -4, 3, 0x5a}));
    }
}

TEST(AacNoiseless, EightShortFiltersFillTheCoefficients) {
    BitWriter stream = shortWindows(100, 0, 0).append({{0, 1}, {1, 1}});
    for (int w = 0; w < 8; ++w)
        stream.append({{1, 1}, {w & 1, 1}, {w, 4}, {7, 3}, {w & 1, 1}, {0, 1}})
            .repeat(7, 1, 3 + (w & 1));
    Channel channel;
    expectStatus(channel, Form::kLowComplexity, stream.append(0, 1));
    EXPECT_EQ(channel.info.tns.length[7], 7);
    EXPECT_EQ(channel.info.tns.coef_res[6], 3);
    EXPECT_EQ(std::count(channel.tnsCoef.begin(), channel.tnsCoef.end(), 1), 56);
}

TEST(AacNoiseless, FailuresStopWhereTheyAreFound) {
    const BitWriter sections40 = longWindow(100, 45).append(section(0, 45)).append(noTools());
    const auto diff = [](int gain, BitWriter::Field code) {
        return longWindow(gain, 1).append(section(1, 1)).append({code});
    };
    const struct {
        const char* what;
        Form form;
        BitWriter stream;
        ZetStatus status;
        int samplingFreqIndex = 4;
    } cases[] = {
        {"max_sfb 52", Form::kShared, {{1, 8}, {0, 4}, {52, 6}}, zetStsAacMaxSfbErr},
        {"max_sfb above 49 bands", Form::kLowComplexity, longWindow(1, 50), zetStsAacMaxSfbErr},
        {"15 bands of 14, short", Form::kLowComplexity, shortWindows(1, 15, 0), zetStsAacMaxSfbErr},
        {"section beyond 40 bands", Form::kShared, sections40, zetStsOutOfRange, 11},
        {"section too long", Form::kLowComplexity,
         longWindow(1, 10).append(section(0, 9)).append(section(1, 2)), zetStsAacSectDataErr},
        {"length passes max_sfb in escapes", Form::kSeparate,
         longWindow(1, 10).append({{0, 4}, {31, 5}}), zetStsAacSectDataErr},
        {"120 empty sections", Form::kSeparate, longWindow(1, 1).repeat(120, 0, 9),
         zetStsAacSectDataErr},
        {"codebook 12", Form::kSeparate, longWindow(1, 1).append(section(12, 1)),
         zetStsAacCodeBookErr},
        {"codebook 13", Form::kLowComplexity, longWindow(1, 1).append(section(13, 1)),
         zetStsAacCodeBookErr},
        {"codebook 12 without bands fails with the spectrum", Form::kShared,
         longWindow(1, 1).append(section(12, 0)).append(section(0, 1)).append(noTools()),
         zetStsAacCodeBookErr},
        {"scalefactor -1", Form::kShared, diff(0, kDiffMinus1), zetStsAacSfValErr},
        {"scalefactor 256", Form::kLowComplexity, diff(255, kDiffPlus1), zetStsAacSfValErr},
        {"TNS order 13", Form::kSeparate,
         longWindow(1, 0).append({{1, 2}, {1, 2}, {0, 1}, {1, 6}, {13, 5}}), zetStsAacTnsOrderErr},
        {"gain control", Form::kLowComplexity, longWindow(1, 0).append(1, 3),
         zetStsAacGainControlErr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Channel channel(c.samplingFreqIndex);
        expectStatus(channel, c.form, c.stream, c.status);
    }
}

TEST(AacNoiseless, PredictorDataFollowTheObjectType) {
    for (const int type : {1, 4}) {
        BitWriter stream{{9, 8}, {0, 4}, {5, 6}, {1, 1}};
        stream.append(type == 1 ? BitWriter{{0, 1}} : BitWriter{{1, 1}, {77, 11}, {2, 3}});
        stream.append(0x15, 5).append(section(0, 5)).append(noTools());
        Channel channel;
        channel.audioObjectType = type;
        channel.info.predSfbMax = 40;
        channel.header.ltp[0].ltp_data_present = 1;
        expectStatus(channel, Form::kSeparate, stream);
        EXPECT_EQ(channel.header.ltp[0].ltp_data_present, type == 4);
        for (int sfb = 0; sfb < 5; ++sfb) {
            EXPECT_EQ(channel.ics.prediction_used[sfb], type == 1 ? ~sfb & 1 : 0);
            EXPECT_EQ(channel.header.ltp[0].ltp_long_used[sfb], type == 4 ? ~sfb & 1 : 0);
        }
    }
}

TEST(AacNoiseless, CommonWindowIsTakenFromTheRecord) {
    const BitWriter stream = BitWriter{{9, 8}}.append(section(0, 3)).append(noTools());
    for (const Form form : kForms) {
        Channel channel;
        channel.commonWin = 1;
        channel.ics.max_sfb = 3;
        channel.ics.num_window_groups = 1;
        channel.ics.window_group_length[0] = 1;
        channel.header.ltp[0].ltp_data_present = 1;
        expectStatus(channel, form, stream);
        EXPECT_EQ(channel.header.ltp[0].ltp_data_present, 1);
        channel.ics.max_sfb = 63;  // left by a channel pair that failed
        EXPECT_EQ(channel.decode(form, stream), zetStsAacMaxSfbErr);
    }
}

void makeScalable(Channel& channel, int windowSequence, int maxSfb, std::vector<int> groups) {
    channel.scalableFlag = 1;
    channel.windowSequence = windowSequence;
    channel.maxSfb = maxSfb;
    channel.header.num_window_groups = static_cast<int>(groups.size());
    groups.resize(8);
    std::copy_n(groups.begin(), 8, channel.header.window_group_length);
}

TEST(AacNoiseless, ScalableLayersHaveNoToolFlags) {
    BitWriter stream{{100, 8}};
    for (int g = 0; g < 2; ++g) stream.append(section(1, 1, true));
    Channel channel;
    makeScalable(channel, zetAacEightShort, 1, {3, 5});
    expectStatus(channel, Form::kShared, stream.repeat(2, 0, 1).repeat(8, 0x10, 5));
    Channel fewer;  // windows that belong to no group are silent
    makeScalable(fewer, zetAacEightShort, 1, {3, 4});
    expectStatus(fewer, Form::kShared, stream.first(stream.size() - 5));
    EXPECT_EQ(std::accumulate(fewer.spectrum.begin(), fewer.spectrum.end(), 0), 7);
    EXPECT_EQ(channel.info.num_windows, 8);
    EXPECT_EQ(channel.spectrum[2 * 4], 1);
    EXPECT_EQ(channel.spectrum[3 * 128 + 4 * 4], 1);
    EXPECT_EQ(std::accumulate(channel.spectrum.begin(), channel.spectrum.end(), 0), 8);
}

TEST(AacNoiseless, ScalableGroupsThatDoNotFitAreRefused) {
    const struct {
        int windowSequence, maxSfb;
        std::vector<int> groups;
    } cases[] = {{0, 10, std::vector(8, 1)}, {0, 10, {2}},    {2, 10, std::vector(9, 1)},
                 {2, 16, std::vector(8, 1)}, {2, 10, {8, 1}}, {2, 10, {-1, -1}}};
    for (const auto& c : cases) {
        Channel channel;
        makeScalable(channel, c.windowSequence, c.maxSfb, c.groups);
        expectStatus(channel, Form::kShared, {{1, 8}}, zetStsAacSectDataErr);
    }
}

// A channel of random sections and random spectral bits: all books are complete, so that any bits
// are codewords. Ones are rare, so that short codewords, the least that can follow, are frequent,
// or zeros are, so that escapes have too many. In every other channel a bit of the rest is wrong.
BitWriter randomChannel(std::mt19937& random) {
    const int maxSfb = static_cast<int>(random() % 50);
    BitWriter stream = longWindow(static_cast<int>(random() % 256), maxSfb);
    int coded = 0;
    for (int sfb = 0; sfb < maxSfb;) {
        const int length = std::min<int>(1 + static_cast<int>(random() % 20), maxSfb - sfb);
        const int codebook = static_cast<int>(random() % 12);
        stream.append(section(codebook, length));
        coded += codebook ? length : 0;
        sfb += length;
    }
    stream.repeat(coded, 0, 1).append(noTools());
    if (random() % 2) stream.flip(random() % stream.size());
    const uint32_t density = random() % 8;
    for (int i = 0; i < ZETAC_AAC_CHANNEL_BYTES_MAX / 4; ++i) {
        uint32_t bits = static_cast<uint32_t>(random());
        for (uint32_t k = 0; k < density / 2; ++k) bits &= static_cast<uint32_t>(random());
        stream.append(density % 2 ? ~bits : bits, 32);
    }
    return stream;
}

// Whatever the status, the bytes that a call may look at end with the slack behind what it
// consumes, and there begins a page without access.
TEST(AacNoiseless, NeverLooksBeyondTheSlack) {
    std::mt19937 random(20070711);
    std::map<ZetStatus, int> seen;
    for (int i = 0; i < 6000; ++i) {
        const BitWriter stream = randomChannel(random);
        const Form form = kForms[i % 3];
        const int start = i % 8, rate = i % 5 ? 4 : 11;
        Channel whole(rate), tight(rate);
        StreamPosition open(stream, start);
        const ZetStatus status = whole.decode(form, open);
        StreamPosition closed(stream.first(whole.consumed), start);
        ASSERT_EQ(tight.decode(form, closed), status);
        ASSERT_EQ(tight.consumed, whole.consumed);
        ASSERT_EQ(tight.spectrum, whole.spectrum);
        ++seen[status];
    }
    for (const ZetStatus status :
         {zetStsOk, zetStsAacCoefValErr, zetStsAacMaxSfbErr, zetStsAacSectDataErr,
          zetStsAacCodeBookErr, zetStsAacSfValErr, zetStsAacPulseStartSfbErr, zetStsAacTnsOrderErr,
          zetStsAacGainControlErr, zetStsOutOfRange})
        EXPECT_GT(seen[status], 9) << status;
}

}  // namespace
