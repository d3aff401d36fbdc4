// The packers against the unpackers: whatever is written comes back, and the bits around it stay.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <random>
#include <vector>

#include "support/bit_writer.h"
#include "support/mp3_bands.h"
#include "support/mp3_huffman_model.h"

namespace zetac::test {
namespace {

using Header = ZetMP3Header;
using Info = ZetMP3GranuleSideInfo;

Header header(int ID, int mode, int modeExtension = 0) {
    Header result{};
    result.ID = ID;
    result.layer = 1;
    result.protection_bit = 1;
    result.mode = mode;
    result.mode_extension = modeExtension;
    return result;
}

// A dirty buffer with a position in it, to be written and then read.
struct Stream {
    std::vector<Zet8u> bytes = std::vector<Zet8u>(4096, 0xa5);
    Zet8u* byte = bytes.data();
    int start = 0, offset = 0;

    explicit Stream(int startBit = 0) : start(startBit), offset(startBit) {
        if (startBit != 0)
            bytes[0] = static_cast<Zet8u>(0xff00 >> startBit);  // as writers leave it
    }
    size_t position() const {
        return static_cast<size_t>(8 * (byte - bytes.data()) + offset - start);
    }
    // The bits before the position are kept, those behind it in its byte are 0, and no further byte
    // has been touched.
    void expectClean() const {
        EXPECT_EQ(bytes[0] >> (8 - start), (1 << start) - 1);
        const size_t used = static_cast<size_t>(byte - bytes.data()) + (offset != 0);
        EXPECT_EQ(offset != 0 ? *byte & (0xff >> offset) : 0, 0);
        for (size_t i = std::max<size_t>(used, start != 0); i < bytes.size(); ++i)
            ASSERT_EQ(bytes[i], 0xa5) << i;
    }
    Stream& rewind() {
        byte = bytes.data();
        offset = start;
        return *this;
    }
};

class Mp3Pack : public testing::Test {
  protected:
    Zet32s below(int limit) { return static_cast<Zet32s>(random() % static_cast<uint32_t>(limit)); }
    Zet32s field(int bits) { return below(1 << bits); }
    std::mt19937 random{1};
};

TEST_F(Mp3Pack, HeadersComeBack) {
    constexpr int kBits[13] = {1, 2, 1, 4, 2, 1, 1, 2, 2, 1, 1, 2, 16};
    for (int round = 0; round < 500; ++round) {
        std::array<Zet32s, 13> fields, excess, back{};
        for (int i = 0; i < 13; ++i) {
            fields[i] = field(kBits[i]);
            excess[i] = fields[i] + (static_cast<Zet32s>(random()) >> 16) * (1 << kBits[i]);
        }
        const bool hasCrc = fields[2] == 0;
        if (!hasCrc) fields[12] = 0;
        Stream stream;
        Header record;
        std::memcpy(&record, &excess, sizeof record);
        ASSERT_EQ(zetsPackFrameHeader_MP3(&record, &stream.byte), zetStsOk);
        ASSERT_EQ(stream.position(), hasCrc ? 48U : 32U);
        stream.expectClean();
        EXPECT_EQ(stream.bytes[0], 0xff);
        EXPECT_EQ(stream.bytes[1] & 0xf0, 0xf0);
        std::memset(&record, 0, sizeof record);
        ASSERT_EQ(zetsUnpackFrameHeader_MP3(&stream.rewind().byte, &record), zetStsOk);
        std::memcpy(&back, &record, sizeof back);
        EXPECT_EQ(back, fields);
    }
}

struct SideInfo {
    int mainDataBegin = 0, privateBits = 0;
    std::array<int, 8> scfsi{};
    std::array<Info, 4> records{};
};

TEST_F(Mp3Pack, SideInformationComesBack) {
    for (int round = 0; round < 800; ++round) {
        const Header h = header(round & 1, round >> 1 & 3);
        const int channels = h.mode == 3 ? 1 : 2;
        const size_t records = static_cast<size_t>(channels) * (h.ID == 1 ? 2 : 1);
        SideInfo info;
        info.mainDataBegin = field(h.ID == 1 ? 9 : 8);
        info.privateBits = field(h.ID == 1 ? (channels == 1 ? 5 : 3) : channels);
        if (h.ID == 1) std::generate_n(info.scfsi.begin(), 4 * channels, [&] { return field(1); });
        for (size_t i = 0; i < records; ++i) {
            Info& r = info.records[i];
            r.part2_3_length = field(12);
            r.big_values = field(9);
            r.global_gain = field(8);
            r.scalefac_compress = field(h.ID == 1 ? 4 : 9);
            r.window_switching_flag = field(1);
            for (Zet32s& table : r.table_select) table = field(5);
            if (r.window_switching_flag) {
                r.block_type = 1 + below(3);
                r.mixed_block_flag = field(1);
                r.table_select[2] = 0;
                for (Zet32s& gain : r.subblock_gain) gain = field(3);
                r.region0_count = r.block_type == 2 && !r.mixed_block_flag ? 8 : 7;
                r.region1_count = 20 - r.region0_count;
            } else {
                r.region0_count = field(4);
                r.region1_count = field(3);
            }
            if (h.ID == 1) r.preflag = field(1);
            r.scalefac_scale = field(1);
            r.count1table_select = field(1);
        }
        Stream stream;
        ASSERT_EQ(zetsPackSideInfo_MP3(info.records.data(), &stream.byte, info.mainDataBegin,
                                       info.privateBits, info.scfsi.data(), &h),
                  zetStsOk);
        const size_t bytes[2][2] = {{17, 9}, {32, 17}};
        ASSERT_EQ(stream.position(), 8 * bytes[h.ID][h.mode == 3]);
        stream.expectClean();
        SideInfo back;
        Header given = h;
        ASSERT_EQ(
            zetsUnpackSideInfo_MP3(&stream.rewind().byte, back.records.data(), &back.mainDataBegin,
                                   &back.privateBits, back.scfsi.data(), &given),
            zetStsOk);
        EXPECT_EQ(std::memcmp(&back, &info, sizeof info), 0) << round;
    }
}

TEST_F(Mp3Pack, NormalBlockUnderWindowSwitchingEndsTheSideInformation) {
    std::array<Info, 4> records{};
    records[0].part2_3_length = 77;
    records[1].window_switching_flag = 1;
    Stream stream;
    const Header h = header(1, 0);
    const int scfsi[8] = {};
    EXPECT_EQ(zetsPackSideInfo_MP3(records.data(), &stream.byte, 3, 0, scfsi, &h),
              zetStsBadSideInfo);
    // 20 bits, a record of 59, and 34 up to and with the flag.
    const auto expected =
        BitWriter{{3, 9}, {0, 11}, {77, 12}, {0, 32}, {0, 15}, {0, 32}, {0, 1}, {1, 1}}.bytes(0);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), stream.bytes.begin()));
}

// Scale factors as the unpacker lays them out for this record, after it has read random bits.
TEST_F(Mp3Pack, ScaleFactorsComeBack) {
    for (int round = 0; round < 30000; ++round) {
        Header h = header(round & 1, 1, field(2));
        Info info{};
        info.scalefac_compress = field(h.ID == 1 ? 4 : 9);
        info.block_type = below(4);
        info.mixed_block_flag = info.block_type == 2 ? field(1) : 0;
        const int granule = field(1), channel = field(1);
        int scfsi[4];
        for (int& flag : scfsi) flag = field(1);

        Stream source(below(8));
        for (Zet8u& byte : source.bytes) byte = static_cast<Zet8u>(random());
        const Stream original = source;
        std::array<Zet8s, ZETAC_MP3_SCF_MAX> given{};
        Info unpacked = info;
        ASSERT_EQ(zetsUnpackScaleFactors_MP3_1u8s(&source.byte, &source.offset, given.data(),
                                                  &unpacked, scfsi, &h, granule, channel),
                  zetStsOk);

        Stream stream(source.start);
        info.preflag = unpacked.preflag ^ (h.ID == 0);
        ASSERT_EQ(zetsPackScaleFactors_MP3_8s1u(given.data(), &stream.byte, &stream.offset, &h,
                                                &info, scfsi, granule, channel),
                  zetStsOk);
        ASSERT_EQ(stream.position(), source.position());
        EXPECT_EQ(info.preflag, unpacked.preflag);
        stream.expectClean();
        for (size_t i = static_cast<size_t>(stream.start); i < stream.position() + stream.start;
             ++i)
            ASSERT_EQ(stream.bytes[i / 8] >> (7 - i % 8) & 1,
                      original.bytes[i / 8] >> (7 - i % 8) & 1)
                << round << " bit " << i;
    }
}

TEST_F(Mp3Pack, JoinsBitsToTheByteThatWasBegun) {
    const Header h = header(1, 0);
    Info info{};
    info.scalefac_compress = 5;  // 1 bit in each of the lower bands
    info.block_type = 2;
    const Zet8s scaleFactors[ZETAC_MP3_SCF_MAX] = {1, -1, 2, 3};
    const int scfsi[4] = {};
    Stream stream(5);
    stream.bytes[0] = 0xf9;
    ASSERT_EQ(zetsPackScaleFactors_MP3_8s1u(scaleFactors, &stream.byte, &stream.offset, &h, &info,
                                            scfsi, 0, 0),
              zetStsOk);
    EXPECT_EQ(stream.bytes[0], 0xff);  // 11111|110 and the 1 that stood there
    EXPECT_EQ(stream.bytes[1], 0x80);

    info.scalefac_compress = 0;  // nothing to write
    stream = Stream(5);
    stream.bytes[0] = 0xf9;
    ASSERT_EQ(zetsPackScaleFactors_MP3_8s1u(scaleFactors, &stream.byte, &stream.offset, &h, &info,
                                            scfsi, 0, 0),
              zetStsOk);
    EXPECT_EQ(stream.bytes[0], 0xf9);
    EXPECT_EQ(stream.position(), 0U);
}

// A granule of lines and the record that codes them.
struct Granule {
    Header header = test::header(1, 0);
    Info info{};
    std::array<Zet32s, 576> lines{};
    int count1Len = 0;

    ZetStatus pack(Stream& stream, int hufSize) const {
        return zetsHuffmanEncode_MP3_32s1u(lines.data(), &stream.byte, &stream.offset, &header,
                                           &info, count1Len, hufSize);
    }
    // Unpacks what has been packed at any bit offset, with stuffing that the decoder passes over
    // when it is shorter than a quadruple.
    void expectBack(int start, int stuffing) {
        Stream stream(start);
        ASSERT_EQ(pack(stream, 0), zetStsOk);
        const auto size = static_cast<int>(stream.position());
        stream = Stream(start);
        ASSERT_EQ(pack(stream, size + stuffing), zetStsOk);
        ASSERT_EQ(stream.position(), static_cast<size_t>(size + stuffing));
        stream.expectClean();
        std::array<Zet32s, 576> back;
        int bound = 0;
        info.part2_3_length = size;
        ASSERT_EQ(zetsHuffmanDecode_MP3_1u32s(&stream.rewind().byte, &stream.offset, back.data(),
                                              &bound, &info, &header, size),
                  zetStsOk);
        EXPECT_EQ(back, lines);
        for (int i = 0; i < stuffing; ++i) {
            const auto bit = static_cast<size_t>(start + size + i);
            ASSERT_EQ(stream.bytes[bit / 8] >> (7 - bit % 8) & 1, 1) << i;
        }
    }
};

int largestOf(int table) {
    constexpr int kLargest[16] = {0, 1, 2, 2, 0, 3, 3, 5, 5, 5, 7, 7, 7, 15, 0, 15};
    return table < 16 ? kLargest[table] : 15 + (1 << linbitsOf(table)) - 1;
}

TEST_F(Mp3Pack, LinesComeBackThroughAllTables) {
    for (int round = 0; round < 6000; ++round) {
        SCOPED_TRACE(round);
        Granule granule;
        Info& info = granule.info;
        granule.header.sampling_frequency = below(3);
        info.window_switching_flag = round % 3 == 0;
        info.block_type = info.window_switching_flag ? 1 + below(3) : below(2);
        info.big_values = below(289);
        info.region0_count = below(16);
        info.region1_count = below(std::min(8, 21 - info.region0_count));
        info.count1table_select = field(1);
        for (Zet32s& table : info.table_select) table = below(32);
        if (info.window_switching_flag) {
            info.region0_count = 7;
            info.region1_count = 13;
            info.table_select[2] = -1;  // not in use
        } else {
            info.block_type = 0;
        }
        const auto& bands = kLongBandStarts[3 + granule.header.sampling_frequency];
        const int end0 = info.window_switching_flag ? 36 : bands[info.region0_count + 1];
        const int end1 =
            info.window_switching_flag ? 576 : bands[info.region0_count + info.region1_count + 2];
        for (int i = 0; i < 2 * info.big_values; ++i) {
            const int largest = largestOf(info.table_select[i < end0 ? 0 : i < end1 ? 1 : 2]);
            const Zet32s size = below(2) ? below(largest + 1) : std::min(below(18), largest);
            granule.lines[static_cast<size_t>(i)] = below(2) ? -size : size;
        }
        const int quads = below((577 - 2 * info.big_values) / 4 + 1);
        granule.count1Len = 4 * quads;
        const int last = std::min(2 * info.big_values + 4 * quads, 576);
        for (int i = 2 * info.big_values; i < last; ++i)
            granule.lines[static_cast<size_t>(i)] = below(3) - 1;
        if (2 * info.big_values + 4 * quads > 576)  // a quadruple at line 574 is not coded
            granule.lines[574] = granule.lines[575] = 0;
        granule.expectBack(below(8), below(70));
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(Mp3Pack, WritesEscapesSignsAndStuffingInOrder) {
    Granule granule;
    granule.info.big_values = 1;
    granule.info.table_select[0] = 24;
    granule.lines[0] = 20;
    granule.lines[1] = -3;
    const Code code = pairBook(24).at({15, 3});
    const auto expected = BitWriter{{code.codeword, code.length}, {5, 4}, {0, 1}, {1, 1}};
    Stream stream;
    ASSERT_EQ(granule.pack(stream, 0), zetStsOk);
    ASSERT_EQ(stream.position(), expected.size());
    EXPECT_TRUE(std::ranges::equal(
        expected.bytes(0),
        std::vector(stream.bytes.begin(),
                    stream.bytes.begin() + static_cast<ptrdiff_t>((expected.size() + 7) / 8))));
    const Granule empty;
    Stream stuffed(5);
    ASSERT_EQ(empty.pack(stuffed, 13), zetStsOk);
    EXPECT_EQ(stuffed.bytes[0], 0xff);
    EXPECT_EQ(stuffed.bytes[1], 0xff);
    EXPECT_EQ(stuffed.bytes[2], 0xc0);
    EXPECT_EQ(stuffed.offset, 2);
}

// Whatever the lines are, codewords stay within their tables, and nothing behind line 575 is read.
TEST_F(Mp3Pack, LimitsLinesToTheirTables) {
    for (int table = 0; table < 32; ++table) {
        Granule granule;
        granule.info.big_values = 200;
        std::ranges::fill(granule.info.table_select, table);
        granule.count1Len = INT_MAX;
        for (Zet32s& line : granule.lines)
            line = below(4) ? static_cast<Zet32s>(random()) : below(2) ? INT_MIN : INT_MAX;
        Stream stream;
        ASSERT_EQ(granule.pack(stream, 0), zetStsOk);
        stream.expectClean();
    }
}

TEST_F(Mp3Pack, StopsAtATableThatIsNone) {
    Granule granule;
    granule.info.big_values = 100;
    granule.info.table_select[0] = 1;
    granule.info.table_select[1] = -1;
    granule.lines[0] = 1;
    Stream stream;
    EXPECT_EQ(granule.pack(stream, 100), zetStsBadSideInfo);
    const Code one = pairBook(1).at({1, 0}), none = pairBook(1).at({0, 0});
    EXPECT_EQ(stream.position(), static_cast<size_t>(one.length + 1 + none.length));
}

// A CRC word at the end of the header, its high byte first.
TEST_F(Mp3Pack, CrcWordFollowsTheHeader) {
    Header h = header(1, 0);
    h.protection_bit = 0;
    h.crc_check = 0x1234;
    Stream stream;
    ASSERT_EQ(zetsPackFrameHeader_MP3(&h, &stream.byte), zetStsOk);
    EXPECT_EQ(stream.position(), 48U);
    EXPECT_EQ(stream.bytes[4], 0x12);
    EXPECT_EQ(stream.bytes[5], 0x34);
}

TEST(Mp3Reservoir, HoldsWhatADecoderHasRoomFor) {
    constexpr int kRates[3] = {44100, 48000, 32000};
    constexpr int kBitRates[15] = {0,   32,  40,  48,  56,  64,  80, 96,
                                   112, 128, 160, 192, 224, 256, 320};
    for (int rate = 0; rate < 3; ++rate) {
        for (int i = 0; i < 15; ++i) {
            Header h = header(1, 0);
            h.sampling_frequency = rate;
            h.bitrate_index = i;
            ZetMP3BitReservoir reservoir = {5, 5};
            ASSERT_EQ(zetsBitReservoirInit_MP3(&reservoir, &h), zetStsOk);
            EXPECT_EQ(reservoir.held, 0);
            const int frame = 8 * (144000 * kBitRates[i] / kRates[rate]);
            EXPECT_EQ(reservoir.capacity, std::clamp(7680 - frame, 0, 4088));
        }
    }
}

}  // namespace
}  // namespace zetac::test
