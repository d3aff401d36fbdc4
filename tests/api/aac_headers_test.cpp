// Transport headers and small syntactic elements: records and positions of streams built field by
// field. Every reader starts in the middle of a byte where it may.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "support/guarded_stream.h"

using namespace zetac::test;

namespace {

constexpr int kStart = 3;  // bits before a stream

// A record of which every byte that nobody wrote is 0xa5.
template <class Record>
std::unique_ptr<Record> untouched() {
    auto record = std::make_unique<Record>();
    std::memset(record.get(), 0xa5, sizeof(Record));
    return record;
}
constexpr Zet32s kUntouched = static_cast<Zet32s>(0xa5a5a5a5);

template <class Record>
bool equal(const Record& a, const Record& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(AacHeaders, AdtsHasSevenOrNineBytes) {
    for (const int protectionAbsent : {0, 1}) {
        StreamPosition position({{0xabc, 12},
                                 {1, 1},
                                 {2, 2},
                                 {protectionAbsent, 1},
                                 {3, 2},
                                 {11, 4},
                                 {1, 1},
                                 {6, 3},
                                 {0, 1},
                                 {1, 1},
                                 {1, 1},
                                 {0, 1},
                                 {0x1555, 13},
                                 {0x6aa, 11},
                                 {2, 2},
                                 {0xcafe, 16}});
        auto header = untouched<ZetAACADTSHeader>();
        ASSERT_EQ(zetsUnpackADTSFrameHeader_AAC(position.ppByte(), header.get()), zetStsOk);
        EXPECT_EQ(position.consumed(), protectionAbsent ? 56U : 72U);
        const Zet32s crc = protectionAbsent ? kUntouched : 0xcafe;
        EXPECT_TRUE(equal(*header, {1, 2, protectionAbsent, 3, 11, 1, 6, 0, 1, kUntouched, 1, 0,
                                    0x1555, 0x6aa, 2, crc}));
    }
}

TEST(AacHeaders, ProgramConfigElementFillsEveryArray) {
    BitWriter stream{{9, 4},  {1, 2}, {4, 4},  {15, 4}, {15, 4}, {15, 4}, {3, 2}, {7, 3},
                     {15, 4}, {1, 1}, {10, 4}, {1, 1},  {11, 4}, {1, 1},  {2, 2}, {1, 1}};
    for (int kind = 0; kind < 3; ++kind)
        for (int i = 0; i < 15; ++i) stream.append({{i & 1, 1}, {(i + kind) & 15, 4}});
    for (int i = 0; i < 3 + 7; ++i) stream.append(15 - i, 4);
    for (int i = 0; i < 15; ++i) stream.append({{~i & 1, 1}, {i, 4}});
    stream.append({{0, static_cast<int>(-(stream.size() + kStart) & 7)}, {255, 8}});
    for (int i = 0; i < 255; ++i) stream.append(i ^ 0x5a, 8);

    StreamPosition position(stream, kStart);
    auto pce = untouched<ZetAACPrgCfgElt>();
    ASSERT_EQ(zetsDecodePrgCfgElt_AAC(position.ppByte(), position.pOffset(), pce.get()), zetStsOk);
    EXPECT_EQ(position.consumed(), stream.size());
    EXPECT_EQ(pce->element_instance_tag, 9);
    EXPECT_EQ(pce->sampling_frequency_index, 4);
    EXPECT_EQ(pce->mono_mixdown_element_number, 10);
    EXPECT_EQ(pce->stereo_mixdown_element_number, 11);
    EXPECT_EQ(pce->matrix_mixdown_idx, 2);
    EXPECT_EQ(pce->pseudo_surround_enable, 1);
    for (int i = 0; i < 15; ++i) {
        EXPECT_EQ(pce->front_element_is_cpe[i], i & 1);
        EXPECT_EQ(pce->side_element_tag_select[i], (i + 1) & 15);
        EXPECT_EQ(pce->back_element_tag_select[i], (i + 2) & 15);
        EXPECT_EQ(pce->cc_element_is_ind_sw[i], ~i & 1);
        EXPECT_EQ(pce->valid_cc_element_tag_select[i], i);
    }
    EXPECT_EQ(pce->front_element_tag_select[15], kUntouched);
    EXPECT_EQ(pce->lfe_element_tag_select[2], 13);
    EXPECT_EQ(pce->assoc_data_element_tag_select[6], 6);
    EXPECT_EQ(pce->comment_field_data[254], 254 ^ 0x5a);
    EXPECT_EQ(pce->comment_field_data[255], 0xa5);
}

// adif_header() with two empty elements; the size of the second shows whether the first has read
// its own fullness and aligned.
BitWriter adif(bool hasCopyright, bool isConstantRate) {
    BitWriter stream{{0x80000001, 32}, {hasCopyright, 1}};
    for (int i = 0; hasCopyright && i < 9; ++i) stream.append(0x90 + i, 8);
    stream.append({{1, 1}, {0, 1}, {!isConstantRate, 1}, {0x7fffff, 23}, {1, 4}});
    for (int i = 0; i < 2; ++i) {
        if (isConstantRate) stream.append(0xfff00 + i, 20);
        stream.append({{7 + i, 4}, {0, 2 + 4 + 21 + 3}}).align().append({{1, 8}, {'x' + i, 8}});
    }
    return stream;
}

TEST(AacHeaders, AdifReadsElementsWithTheirFullness) {
    for (const int form : {0, 1, 2, 3}) {
        const bool hasCopyright = form & 1, isConstantRate = form & 2;
        const BitWriter stream = adif(hasCopyright, isConstantRate);
        StreamPosition position(stream);
        auto header = untouched<ZetAACADIFHeader>();
        auto pce = untouched<std::array<ZetAACPrgCfgElt, 2>>();
        ASSERT_EQ(zetsUnpackADIFHeader_AAC(position.ppByte(), header.get(), pce->data(), 2),
                  zetStsOk);
        EXPECT_EQ(position.consumed(), stream.size());
        EXPECT_EQ(header->adif_id, static_cast<Zet32s>(0x80000001));
        EXPECT_EQ(header->bitrate, 0x7fffff);
        EXPECT_EQ(header->copyright_id[8], hasCopyright ? 0x98 : 0xa5);
        EXPECT_EQ(header->adif_buffer_fullness[1], isConstantRate ? 0xfff01 : kUntouched);
        EXPECT_EQ((*pce)[1].element_instance_tag, 8);
        EXPECT_EQ((*pce)[1].comment_field_data[0], 'y');
        // Mixdowns that are not there are cleared.
        EXPECT_EQ((*pce)[1].mono_mixdown_element_number, 0);
        EXPECT_EQ((*pce)[1].stereo_mixdown_element_number, 0);
        EXPECT_EQ((*pce)[1].matrix_mixdown_idx, 0);
        EXPECT_EQ((*pce)[1].pseudo_surround_enable, 0);
    }
}

TEST(AacHeaders, AdifStopsBeforeElementsThatHaveNoRoom) {
    StreamPosition position(adif(false, true));
    auto header = untouched<ZetAACADIFHeader>();
    auto pce = untouched<ZetAACPrgCfgElt>();
    EXPECT_EQ(zetsUnpackADIFHeader_AAC(position.ppByte(), header.get(), pce.get(), 1),
              zetStsAacPrgNumErr);
    EXPECT_EQ(header->num_program_config_elements, 2);
    EXPECT_EQ(header->adif_buffer_fullness[0], kUntouched);
    EXPECT_EQ(pce->element_instance_tag, kUntouched);
}

// Expects an element of count bytes behind its first fields, read by decode(ppByte, pOffset,
// pCount, pData).
template <class Decode>
void expectBytes(BitWriter stream, int count, Decode decode) {
    for (int i = 0; i < count; ++i) stream.append(255 - i % 251, 8);
    StreamPosition position(stream, kStart);
    int read = -1;
    std::vector<Zet8u> data(ZETAC_AAC_DATA_BYTES_MAX);
    ASSERT_EQ(decode(position.ppByte(), position.pOffset(), &read, data.data()), zetStsOk);
    EXPECT_EQ(position.consumed(), stream.size());
    ASSERT_EQ(read, count);
    for (int i = 0; i < count; ++i) ASSERT_EQ(data[i], 255 - i % 251);
}

TEST(AacHeaders, DataStreamElementCountsAndAligns) {
    for (const bool isAligned : {false, true}) {
        for (const int count : {0, 1, 254, 255, 510}) {
            BitWriter stream{{12, 4}, {isAligned, 1}, {std::min(count, 255), 8}};
            if (count >= 255) stream.append(count - 255, 8);
            if (isAligned) stream.append(0, -(static_cast<int>(stream.size()) + kStart) & 7);
            int tag = -1;
            expectBytes(stream, count, [&](Zet8u** ppByte, int* pOffset, int* pCount, Zet8u* data) {
                return zetsDecodeDatStrElt_AAC(ppByte, pOffset, &tag, pCount, data);
            });
            EXPECT_EQ(tag, 12);
        }
    }
}

TEST(AacHeaders, FillElementEscapeCountsFromFourteen) {
    for (const int count : {0, 14}) expectBytes({{count, 4}}, count, zetsDecodeFillElt_AAC);
    for (const int count : {14, 15, 269})
        expectBytes({{15, 4}, {count - 14, 8}}, count, zetsDecodeFillElt_AAC);
}

// What both forms of the channel pair reader make of the same stream.
struct Pair {
    ZetAACIcsInfo ics;
    ZetAACChanPairElt elt;
    ZetAACLtpInfo ltp[2];
};
constexpr int kMpeg2 = -1;  // stands for the form without an audio object type

// Expects that the reader takes the whole stream.
std::unique_ptr<Pair> readPair(const BitWriter& stream, int audioObjectType, int predSfbMax = 41,
                               ZetStatus expected = zetStsOk) {
    auto pair = untouched<Pair>();
    StreamPosition position(stream, kStart);
    const ZetStatus status =
        audioObjectType == kMpeg2
            ? zetsDecodeChanPairElt_AAC(position.ppByte(), position.pOffset(), &pair->ics,
                                        &pair->elt, predSfbMax)
            : zetsDecodeChanPairElt_MP4_AAC(position.ppByte(), position.pOffset(), &pair->ics,
                                            &pair->elt, pair->ltp, predSfbMax, audioObjectType);
    EXPECT_EQ(status, expected);
    EXPECT_EQ(position.consumed(), stream.size());
    return pair;
}

// common_window, and ics_info() of a long window up to predictor_data_present.
BitWriter longPair(int maxSfb) {
    return {{1, 1}, {0, 1}, {3, 2}, {1, 1}, {maxSfb, 6}};
}

TEST(AacChannelPair, WithoutCommonWindowReadsOneBit) {
    for (const int type : {kMpeg2, 1, 4}) {
        const auto pair = readPair({{0, 1}}, type);
        EXPECT_EQ(pair->elt.common_window, 0);
        EXPECT_EQ(pair->elt.ms_mask_present, kUntouched);
        EXPECT_EQ(pair->ics.window_sequence, kUntouched);
        EXPECT_EQ(pair->ltp[1].ltp_data_present, type == kMpeg2 ? kUntouched : 0);
    }
}

TEST(AacChannelPair, GroupingStartsAGroupAtEveryZero) {
    const struct {
        int grouping;
        std::vector<int> lengths;
    } cases[] = {{0x00, {1, 1, 1, 1, 1, 1, 1, 1}},
                 {0x7f, {8}},
                 {0x5b, {2, 3, 3}},
                 {0x20, {1, 2, 1, 1, 1, 1, 1}},
                 {0x01, {1, 1, 1, 1, 1, 1, 2}}};
    for (const auto& [grouping, lengths] : cases) {
        BitWriter stream{{1, 1}, {1, 1}, {2, 2}, {0, 1}, {15, 4}, {grouping, 7}, {1, 2}};
        const int numGroups = static_cast<int>(lengths.size());
        for (int g = 0; g < numGroups; ++g) stream.append(0x4a5b + g, 15);
        const auto pair = readPair(stream, 2);
        EXPECT_EQ(pair->ics.ics_reserved_bit, 1);
        EXPECT_EQ(pair->ics.predictor_data_present, 0);
        ASSERT_EQ(pair->ics.num_window_groups, numGroups);
        for (int g = 0; g < numGroups; ++g) {
            EXPECT_EQ(pair->ics.window_group_length[g], lengths[g]);
            for (int sfb = 0; sfb < 15; ++sfb)
                EXPECT_EQ(pair->elt.ms_used[g][sfb], (0x4a5b + g) >> (14 - sfb) & 1);
            EXPECT_EQ(pair->elt.ms_used[g][15], 0xa5);
        }
    }
}

TEST(AacChannelPair, PredictionFlagsEndAtTheLowerLimit) {
    const struct {
        int maxSfb, predSfbMax, hasReset;
    } cases[] = {{49, 40, 0}, {20, 40, 1}, {0, 40, 0}, {51, 0, 1}, {51, 51, 1}};
    for (const auto& [maxSfb, predSfbMax, hasReset] : cases) {
        const int coded = std::min(maxSfb, predSfbMax);
        BitWriter stream = longPair(maxSfb).append({{1, 1}, {hasReset, 1}});
        if (hasReset) stream.append(29, 5);
        stream.repeat(coded, 1, 1).append(2, 2);
        for (const int type : {kMpeg2, 1}) {
            if (type == kMpeg2 && predSfbMax > 41) continue;
            const auto pair = readPair(stream, type, predSfbMax);
            EXPECT_EQ(pair->elt.ms_mask_present, 2);
            EXPECT_EQ(pair->elt.ms_used[0][0], 0xa5);
            EXPECT_EQ(pair->ics.window_group_length[0], 1);
            EXPECT_EQ(pair->ics.num_window_groups, 1);
            EXPECT_EQ(pair->ics.predictor_reset, hasReset);
            EXPECT_EQ(pair->ics.predictor_reset_group_number, hasReset ? 29 : kUntouched);
            for (int sfb = 0; sfb < 44; ++sfb) {
                const int expected = sfb < coded ? 1 : sfb < predSfbMax ? 0 : 0xa5;
                EXPECT_EQ(pair->ics.prediction_used[sfb], expected);
            }
        }
    }
}

TEST(AacChannelPair, MaxSfbAboveTheLimitStopsAtOnce) {
    for (const int type : {kMpeg2, 1, 2}) {
        const auto pair = readPair(longPair(52), type, 41, zetStsAacMaxSfbErr);
        EXPECT_EQ(pair->elt.common_window, 1);
        EXPECT_EQ(pair->ics.max_sfb, 52);
        EXPECT_EQ(pair->elt.ms_mask_present, kUntouched);
    }
}

TEST(AacChannelPair, LongTermPredictionOfBothChannels) {
    BitWriter stream = longPair(45).append({{1, 1}, {1, 1}, {2047, 11}, {7, 3}}).repeat(40, 1, 1);
    stream.append({{1, 1}, {5, 11}, {0, 3}}).repeat(20, 2, 2).append(0, 2);
    const auto pair = readPair(stream, 4);
    EXPECT_EQ(pair->ltp[0].ltp_lag, 2047);
    EXPECT_EQ(pair->ltp[0].ltp_coef, 22438);  // 1.369533 * 2^14
    EXPECT_EQ(pair->ltp[0].ltp_long_used[39], 1);
    EXPECT_EQ(pair->ltp[1].ltp_lag, 5);
    EXPECT_EQ(pair->ltp[1].ltp_coef, 9352);  // 0.570829 * 2^14
    for (int sfb = 0; sfb < 40; ++sfb) EXPECT_EQ(pair->ltp[1].ltp_long_used[sfb], ~sfb & 1);

    // Bands beyond max_sfb are cleared.
    stream = longPair(3).append({{1, 1}, {0, 1}, {1, 1}, {100, 11}, {3, 3}, {7, 3}, {0, 2}});
    const auto few = readPair(stream, 2);
    EXPECT_EQ(few->ltp[0].ltp_data_present, 0);
    EXPECT_EQ(few->ltp[0].ltp_lag, kUntouched);
    EXPECT_EQ(few->ltp[1].ltp_data_present, 1);
    for (int sfb = 0; sfb < 40; ++sfb) EXPECT_EQ(few->ltp[1].ltp_long_used[sfb], sfb < 3);
}

std::unique_ptr<ZetAACMainHeader> readMain(const BitWriter& stream, int channels, int layerFlag) {
    auto header = untouched<ZetAACMainHeader>();
    StreamPosition position(stream, kStart);
    EXPECT_EQ(zetsDecodeMainHeader_AAC(position.ppByte(), position.pOffset(), header.get(),
                                       channels, layerFlag),
              layerFlag ? zetStsAacLayerNotDone : zetStsOk);
    EXPECT_EQ(position.consumed(), stream.size());
    return header;
}

// Eight short windows, two channels with TNS and LTP.
BitWriter shortMainHeader() {
    BitWriter stream{{2, 2}, {1, 1}, {3, 4}, {0x3f, 7}, {1, 2}, {0x2a, 6}};
    // TNS of the first channel: windows 1 and 7.
    stream.append({{1, 1}, {0, 1}});
    stream.append({{1, 1}, {1, 1}, {9, 4}, {2, 3}, {1, 1}, {0, 1}, {8, 4}, {7, 4}, {0, 5}});
    stream.append({{1, 1}, {0, 1}, {15, 4}, {3, 3}, {0, 1}, {1, 1}, {2, 2}, {1, 2}, {3, 2}});
    // LTP of the first channel: window 1 takes the lag of the frame, 2 one less by 15, 4 that of 2,
    // 5 one more by 16.
    stream.append({{1, 1}, {200, 11}, {4, 3}, {0, 1}, {1, 1}, {1, 1}, {1, 1}, {31, 5}});
    stream.append({{0, 1}, {1, 1}, {0, 1}, {1, 1}, {1, 1}, {0, 5}, {0, 2}});
    return stream.append({{0, 1}, {0, 1}});  // second channel: neither
}

TEST(AacScalableHeader, MainHeaderOfShortWindows) {
    const auto header = readMain(shortMainHeader(), 2, 0);
    EXPECT_EQ(header->num_window_groups, 2);
    EXPECT_EQ(header->window_group_length[0], 1);
    EXPECT_EQ(header->window_group_length[1], 7);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(header->ms_used[i / 3][i % 3], ~i & 1);
    EXPECT_TRUE(
        equal(header->tns[0],
              {{0, 1, 0, 0, 0, 0, 0, 1}, {0, 4, 0, 0, 0, 0, 0, 3}, {9, 15}, {2, 3}, {1, 0}, {}}));
    const Zet8s coefs[] = {-8, 7, -2, 1, -1};
    EXPECT_TRUE(std::equal(coefs, coefs + 5, header->tns_coef[0]));
    EXPECT_TRUE(equal(header->ltp[0], {1,
                                       200,
                                       16137,
                                       {},
                                       {0, 1, 1, 0, 1, 1, 0, 0},
                                       {0, 0, 1, 0, 0, 1, 0, 0},
                                       {0, 200, 185, 0, 185, 201, 0, 0}}));
    EXPECT_TRUE(equal(header->tns[1], {}));
    EXPECT_TRUE(equal(header->ltp[1], {}));
    EXPECT_TRUE(equal(*header, *readMain(shortMainHeader(), 2, 1))) << "but for the status";
}

TEST(AacScalableHeader, MaskOfALongWindowReachesBand62) {
    for (const int mask : {0, 1, 2, 3}) {
        BitWriter stream{{0, 2}, {0, 1}, {63, 6}, {mask, 2}};
        if (mask == 1) stream.repeat(63, 1, 1);
        const auto header = readMain(stream.append(0, 4), 2, 0);
        const Zet32s lengths[8] = {1};
        EXPECT_TRUE(std::equal(lengths, lengths + 8, header->window_group_length));
        const Zet8u* used = &header->ms_used[0][0];
        const bool isSet = mask == 1 || mask == 2;
        EXPECT_EQ(std::count(used, used + 63, 1), isSet ? 63 : 0);
        EXPECT_EQ(std::count(used, used + 480, 0xa5), isSet ? 480 - 63 : 480);
    }
}

TEST(AacScalableHeader, TnsOrderBeyondTheLimitIsNotReported) {
    const auto header = readMain(
        {{0, 2}, {0, 1}, {10, 6}, {1, 1}, {1, 2}, {0, 1}, {20, 6}, {13, 5}, {0, 1}},  // no LTP
        1, 0);
    EXPECT_EQ(header->tns[0].order[0], 13);
    EXPECT_EQ(header->ltp[0].ltp_data_present, 0);
    EXPECT_EQ(header->ms_mask_present, kUntouched);
}

struct Extension {
    int tns, stereo, diff, prevMaxSfb, prevMaxSfbSecond, windowSequence;
};
std::unique_ptr<ZetAACExtHeader> readExtension(const BitWriter& stream, const Extension& e,
                                               ZetStatus expected = zetStsOk) {
    auto header = untouched<ZetAACExtHeader>();
    StreamPosition position(stream, kStart);
    EXPECT_EQ(zetsDecodeExtensionHeader_AAC(position.ppByte(), position.pOffset(), header.get(),
                                            e.tns, e.stereo, e.diff, e.prevMaxSfb,
                                            e.prevMaxSfbSecond, e.windowSequence),
              expected);
    EXPECT_EQ(position.consumed(), stream.size());
    return header;
}

TEST(AacScalableHeader, ExtensionOfALongWindow) {
    BitWriter stream = BitWriter{{60, 6}, {1, 2}}.repeat(29, 2, 2);  // bands 2..59
    stream.append({{0, 1}, {1, 1}, {1, 2}, {0, 1}, {3, 6}, {1, 5}, {1, 1}, {1, 1}, {2, 2}});  // TNS
    stream.append({{5, 3}, {2, 3}});  // diff-control of bands 3, 5 and 7, without M/S
    const auto header = readExtension(stream, {1, 1, 1, 2, 8, 0});
    EXPECT_EQ(header->ms_used[0][0], 0xa5);
    for (int sfb = 2; sfb < 60; ++sfb) EXPECT_EQ(header->ms_used[0][sfb], ~sfb & 1);
    EXPECT_EQ(header->ms_used[1][0], 0xa5);
    EXPECT_EQ(header->tns_data_present[0], 0);
    EXPECT_EQ(header->tns_coef[1][0], -2);
    const Zet8u control[2][9] = {{0xa5, 0xa5, 0, 1, 0, 0, 0, 1, 0xa5},
                                 {0xa5, 0xa5, 0, 0, 0, 1, 0, 0, 0xa5}};
    for (int ch = 0; ch < 2; ++ch)
        EXPECT_TRUE(std::equal(control[ch], control[ch] + 9, header->diff_control[ch]));
}

TEST(AacScalableHeader, ExtensionOfShortWindowsHasFourGroups) {
    const auto header =
        readExtension({{2, 4}, {1, 2}, {0xe4, 8}, {0xa53c, 16}}, {0, 1, 1, 0, 8, 2});
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(header->ms_used[i / 2][i % 2], 0xe4 >> (7 - i) & 1);
        EXPECT_EQ(header->diff_control[0][i], 0xa5 >> (7 - i) & 1);
        EXPECT_EQ(header->diff_control[1][i], 0x3c >> (7 - i) & 1);
    }
    EXPECT_EQ(header->ms_used[0][2], 0xa5);
    EXPECT_EQ(header->ms_used[4][0], 0xa5);
}

TEST(AacScalableHeader, ExtensionFlagsAndLimits) {
    readExtension({{60, 6}}, {0, 0, 1, 0, 51, 3});
    readExtension({{7, 6}, {2, 2}}, {0, 1, 1, 0, 51, 1});  // M/S everywhere
    // Diff-control from prevMaxSfb to the lower of prevMaxSfbSecond and max_sfb; short windows have
    // it in the first stereo layer only.
    const struct {
        int maxSfb, prevMaxSfb, prevMaxSfbSecond, flags;
    } cases[] = {{20, 0, 15, 30}, {20, 10, 15, 10}, {20, 0, 40, 40}, {20, 10, 8, 0}};
    for (const auto& [maxSfb, first, second, flags] : cases)
        readExtension(BitWriter{{maxSfb, 6}, {0, 2}}.repeat(flags, 1, 1),
                      {0, 1, 1, first, second, 0});
    readExtension({{10, 4}, {0, 2}}, {0, 1, 1, 3, 5, 2});
    const auto header = readExtension({{61, 6}}, {1, 1, 1, 0, 0, 0}, zetStsAacMaxSfbErr);
    EXPECT_EQ(header->max_sfb, 61);
    EXPECT_EQ(header->ms_mask_present, kUntouched);
}

}  // namespace
