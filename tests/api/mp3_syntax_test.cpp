// Headers, side information and scale factors, read and written: bit strings made field by field
// are what the packers write and what the unpackers read.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <random>

#include "support/guarded_stream.h"
#include "support/written.h"

namespace zetac::test {
namespace {

using Header = ZetMP3Header;
using Info = ZetMP3GranuleSideInfo;

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

Header headerOf(int ID, int mode, int modeExtension = 0) {
    auto header = filled<Header>(0);
    header.ID = ID;
    header.layer = 1;
    header.mode = mode;
    header.mode_extension = modeExtension;
    return header;
}

class Mp3Syntax : public testing::Test {
  protected:
    Zet32s field(int bits) { return static_cast<Zet32s>(random() >> 1 & ((1U << bits) - 1)); }
    // The same with further bits above, which packers do not write.
    Zet32s withExcess(Zet32s value, int bits) { return value + (field(8) << bits); }
    std::mt19937 random{1};
};

TEST_F(Mp3Syntax, FrameHeader) {
    constexpr int kBits[13] = {1, 2, 1, 4, 2, 1, 1, 2, 2, 1, 1, 2, 16};
    for (int round = 0; round < 500; ++round) {
        BitWriter bits{{0xfff, 12}};
        std::array<Zet32s, 13> expected = filled<std::array<Zet32s, 13>>(kUntouched), given{};
        for (int i = 0; i < (expected[2] == 0 ? 13 : 12); ++i) {
            bits.append({{expected[i] = field(kBits[i]), kBits[i]}});
            given[i] = withExcess(expected[i], kBits[i]);
        }
        Header record;
        std::memcpy(&record, &given, sizeof record);
        Written written;
        ASSERT_EQ(zetsPackFrameHeader_MP3(&record, &written.byte), zetStsOk);
        written.expect(bits);

        if (round % 2) bits.flip(static_cast<size_t>(round) % 12);  // the syncword is passed over
        StreamPosition position(bits);
        record = filled<Header>(kUntouched);
        ASSERT_EQ(zetsUnpackFrameHeader_MP3(position.ppByte(), &record), zetStsOk);
        EXPECT_TRUE(std::memcmp(&record, &expected, sizeof record) == 0) << round;
        EXPECT_EQ(position.consumed(), bits.size());
    }
}

struct SideInfo {
    int mainDataBegin = kUntouched, privateBits = kUntouched;
    std::array<int, 8> scfsi = filled<std::array<int, 8>>(kUntouched);
    std::array<Info, 4> records = filled<std::array<Info, 4>>(kUntouched);

    ZetStatus pack(Written& written, const Header& header) const {
        return zetsPackSideInfo_MP3(records.data(), &written.byte, mainDataBegin, privateBits,
                                    scfsi.data(), &header);
    }
    ZetStatus unpack(StreamPosition& position, Header header) {
        return zetsUnpackSideInfo_MP3(position.ppByte(), records.data(), &mainDataBegin,
                                      &privateBits, scfsi.data(), &header);
    }
};

TEST_F(Mp3Syntax, SideInformation) {
    for (int round = 0; round < 800; ++round) {
        SCOPED_TRACE(round);
        const Header header = headerOf(round & 1, round >> 1 & 3);
        const int channels = header.mode == 3 ? 1 : 2;
        const bool mpeg1 = header.ID == 1;
        BitWriter bits;
        SideInfo info;
        const auto add = [&](Zet32s& target, int width, Zet32s least = 0) {
            bits.append({{target = std::max(field(width), least), width}});
        };
        add(info.mainDataBegin, mpeg1 ? 9 : 8);
        add(info.privateBits, !mpeg1 ? channels : channels == 1 ? 5 : 3);
        for (int i = 0; mpeg1 && i < 4 * channels; ++i) add(info.scfsi[i], 1);
        for (int i = 0; i < (mpeg1 ? 2 : 1) * channels; ++i) {
            Info& r = info.records[i];
            add(r.part2_3_length, 12);
            add(r.big_values, 9);
            add(r.global_gain, 8);
            add(r.scalefac_compress, mpeg1 ? 4 : 9);
            add(r.window_switching_flag, 1);
            if (r.window_switching_flag) {
                add(r.block_type, 2, 1);
                add(r.mixed_block_flag, 1);
                for (int region = 0; region < 2; ++region) add(r.table_select[region], 5);
                for (Zet32s& gain : r.subblock_gain) add(gain, 3);
                r.region0_count = r.block_type == 2 && r.mixed_block_flag == 0 ? 8 : 7;
                r.region1_count = r.region0_count == 8 ? 12 : 13;
            } else {
                for (Zet32s& table : r.table_select) add(table, 5);
                add(r.region0_count, 4);
                add(r.region1_count, 3);
                r.block_type = r.mixed_block_flag = 0;
            }
            if (mpeg1) add(r.preflag, 1);
            add(r.scalefac_scale, 1);
            add(r.count1table_select, 1);
        }
        const int bytes[2][2] = {{17, 9}, {32, 17}};
        ASSERT_EQ(bits.size(), 8U * bytes[header.ID][header.mode == 3]);
        StreamPosition position(bits);
        SideInfo unpacked;
        ASSERT_EQ(unpacked.unpack(position, header), zetStsOk);
        EXPECT_TRUE(equal(unpacked, info));
        EXPECT_EQ(position.consumed(), bits.size());
        for (Info& r : info.records) r.global_gain = withExcess(r.global_gain, 8);
        info.mainDataBegin = withExcess(info.mainDataBegin, mpeg1 ? 9 : 8);
        Written written;
        ASSERT_EQ(info.pack(written, header), zetStsOk);
        written.expect(bits);
    }
}

// The second record has window switching without a block type: what comes before it is there.
TEST_F(Mp3Syntax, NormalBlockUnderWindowSwitchingEndsTheSideInformation) {
    const Header header = headerOf(1, 0);
    const BitWriter before{{3, 9}, {0, 11}, {77, 12}, {0, 32}, {0, 15}, {88, 12}, {0, 21}, {1, 1}};
    SideInfo info;
    info.scfsi = {};
    info.records = {};
    info.mainDataBegin = 3;
    info.privateBits = 0;
    info.records[0].part2_3_length = 77;
    info.records[1].part2_3_length = 88;
    info.records[1].window_switching_flag = 1;
    Written written;
    EXPECT_EQ(info.pack(written, header), zetStsBadSideInfo);
    written.offset = static_cast<int>(before.size() % 8);
    written.expect(before);

    StreamPosition position(BitWriter(before).append(0, 2).append(~0U, 32).append(~0U, 32));
    SideInfo unpacked;
    EXPECT_EQ(unpacked.unpack(position, header), zetStsBadSideInfo);
    EXPECT_EQ(unpacked.records[0].count1table_select, 0);
    EXPECT_EQ(unpacked.records[1].part2_3_length, 88);
    EXPECT_EQ(unpacked.records[1].mixed_block_flag, kUntouched);
    EXPECT_EQ(unpacked.records[2].part2_3_length, kUntouched);
    EXPECT_EQ(position.consumed() / 8, (before.size() + 2) / 8);
}

// The scale factors of a granule and channel, in groups of {count, bits}.
struct Group {
    int count, slen;
};
constexpr int kShared = -1;  // stands for the bits of a group that is not sent

struct ScaleFactors {
    Header header = headerOf(1, 0);
    Info info = filled<Info>(0);
    int scfsi[4] = {};
    int granule = 0, channel = 0;
    std::mt19937 random{7};

    // Random values for the groups at every bit offset are read in order, with `zeros` entries of 0
    // behind them, and written back.
    void expect(const std::vector<Group>& groups, int zeros, bool marksIllegal = false) {
        for (int start = 0; start < 8; ++start) {
            BitWriter bits;
            std::vector<Zet8s> unpacked(ZETAC_MP3_SCF_MAX + 1, 99), expected = unpacked;
            size_t next = 0;
            for (const auto [count, slen] : groups) {
                for (int i = 0; i < count; ++i, ++next) {
                    if (slen == kShared) continue;
                    const int largest = (1 << slen) - 1;
                    const int value = static_cast<int>(random()) & largest;
                    bits.append({{value, slen}});
                    const bool isIllegal = marksIllegal && value == largest;
                    expected[next] = static_cast<Zet8s>(isIllegal ? -value : value);
                }
            }
            std::fill_n(&expected[next], zeros, Zet8s{0});
            Info given = info;
            StreamPosition position(bits, start);
            ASSERT_EQ(zetsUnpackScaleFactors_MP3_1u8s(position.ppByte(), position.pOffset(),
                                                      unpacked.data(), &info, scfsi, &header,
                                                      granule, channel),
                      zetStsOk);
            EXPECT_EQ(unpacked, expected);
            EXPECT_EQ(position.consumed(), bits.size());
            Written written(start);
            ASSERT_EQ(zetsPackScaleFactors_MP3_8s1u(unpacked.data(), &written.byte, &written.offset,
                                                    &header, &given, scfsi, granule, channel),
                      zetStsOk);
            written.expect(bits);
            EXPECT_EQ(given.preflag, info.preflag);
        }
    }
};

TEST(Mp3ScaleFactors, Mpeg1Layouts) {
    constexpr int kSlen[2][16] = {{0, 0, 0, 0, 3, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4},
                                  {0, 1, 2, 3, 0, 1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 3}};
    for (int compress = 0; compress < 16; ++compress) {
        const int slen1 = kSlen[0][compress], slen2 = kSlen[1][compress];
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
            if (call.granule && call.scfsi[group]) groups[group].slen = kShared;
        }
        call.expect(groups, 1);
    }
}

// A row of the standard's lists for LSF: scalefac_compress counts up through the lengths of the
// four groups, each below its limit; the groups have these counts in long, short and mixed blocks.
// The first three rows are plain, the others those of intensity stereo's right channel.
struct LsfRow {
    int limits[4], counts[3][4];
};
constexpr LsfRow kLsfRows[6] = {{{5, 5, 4, 4}, {{6, 5, 5, 5}, {9, 9, 9, 9}, {6, 9, 9, 9}}},
                                {{5, 5, 4, 1}, {{6, 5, 7, 3}, {9, 9, 12, 6}, {6, 9, 12, 6}}},
                                {{4, 3, 1, 1}, {{11, 10, 0, 0}, {18, 18, 0, 0}, {15, 18, 0, 0}}},
                                {{5, 6, 6, 1}, {{7, 7, 7, 0}, {12, 12, 12, 0}, {6, 15, 12, 0}}},
                                {{4, 4, 4, 1}, {{6, 6, 6, 3}, {12, 9, 9, 6}, {6, 12, 9, 6}}},
                                {{4, 3, 1, 1}, {{8, 8, 5, 0}, {15, 12, 9, 0}, {6, 18, 9, 0}}}};

void expectLsf(int compress, const int (&slen)[4], int row) {
    const bool isIntensity = row >= 3;
    for (int kind = 0; kind < 3; ++kind) {
        ScaleFactors call;
        // Neither the mode nor the channel alone makes positions of scale factors.
        call.header = headerOf(0, 1, isIntensity ? 3 : compress & 2);
        call.channel = isIntensity || compress % 3 == 0;
        if (!isIntensity && !call.channel) call.header.mode_extension |= compress & 1;
        call.info.scalefac_compress = compress;
        call.info.block_type = kind == 0 ? 3 : 2;
        call.info.mixed_block_flag = kind == 1 ? 2 : 3;
        call.info.preflag = kUntouched;
        std::vector<Group> groups;
        for (int i = 0; i < 4; ++i) groups.push_back({kLsfRows[row].counts[kind][i], slen[i]});
        call.expect(groups, 3, isIntensity);
        EXPECT_EQ(call.info.preflag, row == 2) << compress;
        EXPECT_EQ(call.info.mixed_block_flag, kind == 0 ? 3 : kind - 1);
    }
}

// All values of scalefac_compress, of which the lowest bit has another meaning in intensity.
TEST(Mp3ScaleFactors, LsfLengthsAndIllegalPositions) {
    int compress = 0;
    for (int row = 0; row < 6; ++row) {
        const auto& n = kLsfRows[row].limits;
        for (int i = 0; i < n[0] * n[1] * n[2] * n[3]; ++i) {
            const int slen[4] = {i / n[3] / n[2] / n[1], i / n[3] / n[2] % n[1], i / n[3] % n[2],
                                 i % n[3]};
            for (int repeat = 0; repeat <= row / 3; ++repeat)
                expectLsf(compress++ % 512, slen, row);
        }
    }
    EXPECT_EQ(compress, 2 * 512);
}

// Where a call begins within a byte, what stands behind that place in it stays.
TEST(Mp3ScaleFactors, JoinTheByteThatWasBegun) {
    const Header header = headerOf(1, 0);
    const Zet8s scaleFactors[ZETAC_MP3_SCF_MAX] = {1, -1, 2, 3};
    const int scfsi[4] = {};
    for (const int compress : {5, 0}) {  // 1 bit in each of the lower bands, and nothing to write
        Info info{};
        info.scalefac_compress = compress;
        info.block_type = 2;
        Written written(5);
        written.bytes[0] = 0xf9;
        ASSERT_EQ(zetsPackScaleFactors_MP3_8s1u(scaleFactors, &written.byte, &written.offset,
                                                &header, &info, scfsi, 0, 0),
                  zetStsOk);
        EXPECT_EQ(written.bytes[0],
                  compress ? 0xff : 0xf9);  // 11111|110 and the 1 that stood there
        EXPECT_EQ(written.bytes[1], compress ? 0x80 : 0xa5);
    }
}

TEST(Mp3Reservoir, HoldsWhatADecoderHasRoomFor) {
    constexpr int kRates[3] = {44100, 48000, 32000};
    constexpr int kBitRates[15] = {0,   32,  40,  48,  56,  64,  80, 96,
                                   112, 128, 160, 192, 224, 256, 320};
    for (int i = 0; i < 45; ++i) {
        Header header = headerOf(1, 0);
        header.sampling_frequency = i / 15;
        header.bitrate_index = i % 15;
        ZetMP3BitReservoir reservoir = {5, 5};
        ASSERT_EQ(zetsBitReservoirInit_MP3(&reservoir, &header), zetStsOk);
        EXPECT_EQ(reservoir.held, 0);
        const int frame = 8 * (144000 * kBitRates[i % 15] / kRates[i / 15]);
        EXPECT_EQ(reservoir.capacity, std::clamp(7680 - frame, 0, 4088));
    }
}

}  // namespace
}  // namespace zetac::test
