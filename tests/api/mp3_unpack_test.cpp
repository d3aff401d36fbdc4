// Headers, side information and scale factors built field by field.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "support/guarded_stream.h"

using namespace zetac::test;

namespace {

constexpr int kUntouched = -12345;

// A record whose fields all hold the same number.
template <class T>
T filled(Zet32s value) {
    T record;
    std::fill_n(reinterpret_cast<Zet32s*>(&record), sizeof record / sizeof value, value);
    return record;
}

template <class T>
bool equal(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

ZetMP3Header header(int ID, int mode, int modeExtension = 0) {
    ZetMP3Header result = filled<ZetMP3Header>(0);
    result.ID = ID;
    result.layer = 1;
    result.mode = mode;
    result.mode_extension = modeExtension;
    return result;
}

TEST(Mp3FrameHeader, FieldsOfAnyHeader) {
    constexpr int kBits[12] = {1, 2, 1, 4, 2, 1, 1, 2, 2, 1, 1, 2};
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        // The first bits are passed over, whether a syncword or not.
        BitWriter data;
        data.append(round % 2 ? 0xfff : random() >> 20, 12);
        std::array<Zet32s, 13> expected;
        for (int i = 0; i < 12; ++i)
            data.append(
                {{expected[i] = static_cast<Zet32s>(random() >> (32 - kBits[i])), kBits[i]}});
        const bool hasCrc = expected[2] == 0;
        expected[12] = hasCrc ? static_cast<Zet32s>(random() >> 16) : kUntouched;
        if (hasCrc) data.append({{expected[12], 16}});
        StreamPosition position(data);
        auto unpacked = filled<std::array<Zet32s, 13>>(kUntouched);
        auto* record = reinterpret_cast<ZetMP3Header*>(unpacked.data());
        static_assert(sizeof *record == sizeof unpacked);
        ASSERT_EQ(zetsUnpackFrameHeader_MP3(position.ppByte(), record), zetStsOk);
        ASSERT_EQ(unpacked, expected);
        ASSERT_EQ(position.consumed(), hasCrc ? 48U : 32U);
    }
}

struct SideInfo {
    int mainDataBegin = kUntouched, privateBits = kUntouched;
    int scfsi[8];
    ZetMP3GranuleSideInfo records[4];
    SideInfo() {
        std::fill_n(scfsi, 8, kUntouched);
        std::fill_n(records, 4, filled<ZetMP3GranuleSideInfo>(kUntouched));
    }
    ZetStatus unpack(StreamPosition& position, ZetMP3Header h) {
        return zetsUnpackSideInfo_MP3(position.ppByte(), records, &mainDataBegin, &privateBits,
                                      scfsi, &h);
    }
};

// Side information of random fields, and what has to come of it.
class SideInfoMaker {
  public:
    SideInfoMaker(unsigned seed, const ZetMP3Header& h) : random_(seed), isMpeg1_(h.ID == 1) {
        const int channels = h.mode == 3 ? 1 : 2;
        expected.mainDataBegin = field(isMpeg1_ ? 9 : 8);
        expected.privateBits = field(isMpeg1_ ? (channels == 1 ? 5 : 3) : channels);
        if (isMpeg1_) std::generate_n(expected.scfsi, 4 * channels, [this] { return field(1); });
        for (int i = 0; i < (isMpeg1_ ? 2 : 1) * channels; ++i) addRecord(expected.records[i]);
    }
    BitWriter data;
    SideInfo expected;

  private:
    Zet32s field(int bits, int least = 0) {
        const auto value = std::max(static_cast<Zet32s>(random_() >> (32 - bits)), least);
        data.append({{value, bits}});
        return value;
    }
    void addRecord(ZetMP3GranuleSideInfo& r) {
        r.part2_3_length = field(12);
        r.big_values = field(9);
        r.global_gain = field(8);
        r.scalefac_compress = field(isMpeg1_ ? 4 : 9);
        r.window_switching_flag = field(1);
        if (r.window_switching_flag) {
            r.block_type = field(2, 1);
            r.mixed_block_flag = field(1);
            for (int i = 0; i < 2; ++i) r.table_select[i] = field(5);
            for (Zet32s& gain : r.subblock_gain) gain = field(3);
            r.region0_count = r.block_type == 2 && r.mixed_block_flag == 0 ? 8 : 7;
            r.region1_count = r.region0_count == 8 ? 12 : 13;
        } else {
            for (Zet32s& table : r.table_select) table = field(5);
            r.region0_count = field(4);
            r.region1_count = field(3);
            r.block_type = r.mixed_block_flag = 0;
        }
        if (isMpeg1_) r.preflag = field(1);
        r.scalefac_scale = field(1);
        r.count1table_select = field(1);
    }

    std::mt19937 random_;
    bool isMpeg1_;
};

TEST(Mp3SideInfo, FieldsGoWhereTheyBelongAndOthersStay) {
    for (unsigned round = 0; round < 400; ++round) {
        const ZetMP3Header h = header(round & 1, round >> 1 & 3);
        const SideInfoMaker maker(round, h);
        StreamPosition position(maker.data);
        SideInfo unpacked;
        ASSERT_EQ(unpacked.unpack(position, h), zetStsOk);
        const size_t bytes[2][2] = {{17, 9}, {32, 17}};
        ASSERT_EQ(position.consumed(), 8 * bytes[h.ID][h.mode == 3]);
        ASSERT_TRUE(equal(unpacked, maker.expected)) << round;
    }
}

TEST(Mp3SideInfo, NormalBlockUnderWindowSwitchingEndsTheCall) {
    // main_data_begin to scfsi, a whole record, then one up to block_type 0, which ends in bit 3 of
    // byte 18.
    StreamPosition position({{0, 9 + 3 + 8},
                             {77, 12},
                             {0, 32},
                             {0, 59 - 12 - 32},
                             {88, 12},
                             {5, 9},
                             {0, 8 + 4},
                             {1, 1},
                             {0, 2},
                             {~0, 32},
                             {~0, 32}});
    SideInfo info;
    EXPECT_EQ(info.unpack(position, header(1, 0)), zetStsBadSideInfo);
    EXPECT_EQ(info.records[0].part2_3_length, 77);
    EXPECT_EQ(info.records[0].count1table_select, 0);
    EXPECT_EQ(info.records[1].part2_3_length, 88);
    EXPECT_EQ(info.records[1].mixed_block_flag, kUntouched);
    EXPECT_EQ(info.records[2].part2_3_length, kUntouched);
    EXPECT_EQ(position.consumed() / 8, (20U + 59 + 36) / 8);
}

// A call of the scale-factor reader: the groups of the stream as {count, bits}, random values.
struct Group {
    int count, slen;
};

struct ScaleFactors {
    ZetMP3Header header = ::header(1, 0);
    ZetMP3GranuleSideInfo info = filled<ZetMP3GranuleSideInfo>(0);
    int scfsi[4] = {};
    int granule = 0, channel = 0;
    std::mt19937 random{7};
    static constexpr int kShared = -1;  // stands for the bits of a group that is not sent

    // Writes random values for the groups at every bit offset and expects them in order, with
    // `zeros` entries of 0 behind them.
    void expect(const std::vector<Group>& groups, int zeros, bool marksIllegal = false) {
        for (int start = 0; start < 8; ++start) {
            BitWriter data;
            const std::vector<Zet8s> before(ZETAC_MP3_SCF_MAX + 1, 99);
            std::vector<Zet8s> expected = before, unpacked = before;
            size_t next = 0;
            for (const auto [count, slen] : groups) {
                for (int i = 0; i < count; ++i, ++next) {
                    if (slen == kShared) continue;
                    const int largest = (1 << slen) - 1;
                    const int value = static_cast<int>(random()) & largest;
                    data.append({{value, slen}});
                    const bool isIllegal = marksIllegal && value == largest;
                    expected[next] = static_cast<Zet8s>(isIllegal ? -value : value);
                }
            }
            std::fill_n(&expected[next], zeros, Zet8s{0});
            StreamPosition position(data, start);
            ASSERT_EQ(zetsUnpackScaleFactors_MP3_1u8s(position.ppByte(), position.pOffset(),
                                                      unpacked.data(), &info, scfsi, &header,
                                                      granule, channel),
                      zetStsOk);
            EXPECT_EQ(unpacked, expected);
            EXPECT_EQ(position.consumed(), data.size());
        }
    }
};

constexpr int kSlen1[16] = {0, 0, 0, 0, 3, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4};
constexpr int kSlen2[16] = {0, 1, 2, 3, 0, 1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 3};

TEST(Mp3ScaleFactors, Mpeg1Layouts) {
    for (int compress = 0; compress < 16; ++compress) {
        const int slen1 = kSlen1[compress], slen2 = kSlen2[compress];
        ScaleFactors call;
        call.info.scalefac_compress = compress;
        for (const int blockType : {0, 1, 3}) {
            call.info.block_type = blockType;
            call.info.mixed_block_flag = blockType == 1;
            call.expect({{11, slen1}, {10, slen2}}, 1);
        }
        call.info.block_type = 2;
        call.info.mixed_block_flag = 0;
        call.scfsi[2] = 1;
        call.granule = 1;  // short blocks take no notice of scfsi
        call.expect({{18, slen1}, {18, slen2}}, 3);
        call.info.mixed_block_flag = 1;
        call.expect({{17, slen1}, {18, slen2}}, 3);
    }
}

TEST(Mp3ScaleFactors, SharedBandsStayInTheSecondGranule) {
    for (int flags = 0; flags < 32; ++flags) {
        ScaleFactors call;
        call.header.mode = 3;
        call.info.scalefac_compress = 15;
        call.granule = flags >> 4;
        std::vector<Group> groups = {{6, 4}, {5, 4}, {5, 3}, {5, 3}};
        for (int group = 0; group < 4; ++group) {
            call.scfsi[group] = flags >> group & 1;
            if (call.granule && call.scfsi[group]) groups[group].slen = ScaleFactors::kShared;
        }
        call.expect(groups, 1);
    }
}

// A row of the standard's lists for LSF: scalefac_compress counts up through the lengths of the
// four groups, each below its limit; the groups have these counts in long, short and mixed blocks.
struct LsfRow {
    int limits[4];
    int counts[3][4];
};
constexpr LsfRow kPlainRows[3] = {{{5, 5, 4, 4}, {{6, 5, 5, 5}, {9, 9, 9, 9}, {6, 9, 9, 9}}},
                                  {{5, 5, 4, 1}, {{6, 5, 7, 3}, {9, 9, 12, 6}, {6, 9, 12, 6}}},
                                  {{4, 3, 1, 1}, {{11, 10, 0, 0}, {18, 18, 0, 0}, {15, 18, 0, 0}}}};
constexpr LsfRow kIntensityRows[3] = {
    {{5, 6, 6, 1}, {{7, 7, 7, 0}, {12, 12, 12, 0}, {6, 15, 12, 0}}},
    {{4, 4, 4, 1}, {{6, 6, 6, 3}, {12, 9, 9, 6}, {6, 12, 9, 6}}},
    {{4, 3, 1, 1}, {{8, 8, 5, 0}, {15, 12, 9, 0}, {6, 18, 9, 0}}}};

void expectLsf(int compress, const int (&slen)[4], const LsfRow& row, bool isIntensity) {
    for (int kind = 0; kind < 3; ++kind) {
        ScaleFactors call;
        // Neither the mode nor the channel alone makes positions of scale factors.
        call.header = header(0, 1, isIntensity ? 3 : compress & 2);
        call.channel = isIntensity || compress % 3 == 0;
        if (!isIntensity && !call.channel) call.header.mode_extension |= compress & 1;
        call.info.scalefac_compress = compress;
        call.info.block_type = kind == 0 ? 3 : 2;
        call.info.mixed_block_flag = kind == 1 ? 2 : 3;
        call.info.preflag = kUntouched;
        std::vector<Group> groups;
        for (int i = 0; i < 4; ++i) groups.push_back({row.counts[kind][i], slen[i]});
        call.expect(groups, 3, isIntensity);
        EXPECT_EQ(call.info.preflag, &row == &kPlainRows[2]) << compress;
        EXPECT_EQ(call.info.mixed_block_flag, kind == 0 ? 3 : kind - 1);
    }
}

// All values of scalefac_compress, of which the lowest bit has another meaning in intensity.
TEST(Mp3ScaleFactors, LsfLengthsAndIllegalPositions) {
    for (const bool isIntensity : {false, true}) {
        int compress = 0;
        for (const LsfRow& row : isIntensity ? kIntensityRows : kPlainRows) {
            const auto& n = row.limits;
            for (int i = 0; i < n[0] * n[1] * n[2] * n[3]; ++i) {
                const int slen[4] = {i / n[3] / n[2] / n[1], i / n[3] / n[2] % n[1],
                                     i / n[3] % n[2], i % n[3]};
                for (int repeat = 0; repeat <= isIntensity; ++repeat)
                    expectLsf(compress++, slen, row, isIntensity);
            }
        }
        EXPECT_EQ(compress, 512);
    }
}

}  // namespace
