// The Huffman decoder against a model that goes bit by bit through the exported tables, and these
// tables against the books of the standard.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <climits>
#include <random>

#include "support/guarded.h"
#include "support/guarded_stream.h"
#include "support/mp3_huffman_model.h"

using namespace zetac::test;

namespace {

constexpr int kUntouched = -12345;
constexpr int kAllPairs = 288;

// ---- the exported tables

struct PairBookCase {
    int table, lastTable;  // that shares the book
    uint64_t checksum;
};

// FNV-1a over length and codeword, codeword by codeword. The expected sums were computed from
// separate transcriptions of the standard's tables. A book that is not empty covers all bit
// patterns without a gap, so it is prefix-free and complete as well.
template <class Book>
uint64_t checksum(const Book& book) {
    uint64_t sum = 0xcbf29ce484222325U;
    for (const auto& [tuple, code] : book)
        for (const uint64_t value : {uint64_t(code.length), uint64_t{code.codeword}})
            sum = (sum ^ value) * 0x100000001b3U;
    return sum;
}

TEST(Mp3HuffmanTables, HoldTheBooksOfTheStandard) {
    constexpr PairBookCase kCases[] = {
        {1, 1, 0x7d692a3471227f41},   {2, 2, 0xd43b426066d4910a},   {3, 3, 0x3572c8c4b132b465},
        {5, 5, 0x16e989fe018b3bd2},   {6, 6, 0x8feaaa8eaba570ef},   {7, 7, 0xaf9b1eddf83ff853},
        {8, 8, 0x5fda182fb48b3cb2},   {9, 9, 0x4911af0a6bb212c0},   {10, 10, 0xe50aea7ea25610bc},
        {11, 11, 0x1769a37a656789d},  {12, 12, 0xb3e768cf193e0bec}, {13, 13, 0x685bfed5a8e39daa},
        {15, 15, 0x48f2ab3472bb927a}, {16, 23, 0x4c0804374254b632}, {24, 31, 0x47213c009f5c3872}};
    for (const auto& [first, last, sum] : kCases)
        for (int table = first; table <= last; ++table)
            EXPECT_EQ(checksum(pairBook(table)), sum) << table;
    EXPECT_EQ(checksum(quadBook(0)), 0x16cbc73c658bbe60U);
    EXPECT_EQ(checksum(quadBook(1)), 0xa107beeb955c905U);
}

TEST(Mp3HuffmanTables, NullLinbitsAndMasks) {
    for (const int table : {0, 4}) EXPECT_EQ(_pHuffmanSmallTables[table], nullptr);
    EXPECT_EQ(_pHuffmanBigTables[14 - 13], nullptr);
    const Zet32s linbits[19] = {0, 0, 0, 1, 2, 3, 4, 6, 8, 10, 13, 4, 5, 6, 7, 8, 9, 11, 13};
    EXPECT_TRUE(std::ranges::equal(_pHfLinbits, linbits));
    for (int n = 0; n < 32; ++n) EXPECT_EQ(_pBitsMasks[n], (int64_t{1} << n) - 1) << n;
}

// ---- the decoder

// Band boundaries that differ from those of any standard: long row r starts its bands every
// 10 + 2 r lines, short row r every 6 + 2 r.
struct BandTables {
    Zet16s longBands[6 * 23], shortBands[6 * 14], partition[6 * 2];
    BandTables() {
        for (int row = 0; row < 6; ++row) {
            for (int i = 0; i < 23; ++i)
                longBands[row * 23 + i] = static_cast<Zet16s>(std::min(i * (10 + 2 * row), 576));
            for (int i = 0; i < 14; ++i)
                shortBands[row * 14 + i] = static_cast<Zet16s>(i * (6 + 2 * row));
            partition[row * 2] = static_cast<Zet16s>(2 + row);
            partition[row * 2 + 1] = static_cast<Zet16s>(row);
        }
    }
};

enum class Form { kPlain, kSfb, kMbp };

struct Decoder {
    ZetMP3Header header{};
    ZetMP3GranuleSideInfo info{};
    BandTables bands;
    Guarded<Zet32s> lines{576};
    int bound = kUntouched;

    Decoder() {
        header.ID = 1;
        header.layer = 1;
        info.part2_3_length = 1 << 20;
    }
    ZetStatus call(Form form, StreamPosition& position, int hufSize) {
        const auto run = [&](auto decoder, auto... tables) {
            return decoder(position.ppByte(), position.pOffset(), lines.data(), &bound, &info,
                           &header, hufSize, tables...);
        };
        switch (form) {
            case Form::kPlain:
                return run(zetsHuffmanDecode_MP3_1u32s);
            case Form::kSfb:
                return run(zetsHuffmanDecodeSfb_MP3_1u32s, bands.longBands);
            default:
                return run(zetsHuffmanDecodeSfbMbp_MP3_1u32s, bands.longBands, bands.shortBands,
                           bands.partition);
        }
    }
    // Whatever the bits are, with these ends of the regions: the same status, lines and bound as
    // bit by bit, all bits further on, and nothing read behind the byte with the last of them.
    // Returns whether they hold a whole granule.
    bool agrees(Form form, const BitWriter& data, std::array<int, 3> ends, int start = 0) {
        const Granule expected =
            decodeGranule(BitSource(data.bytes(0)), ends, info.table_select,
                          info.count1table_select, static_cast<int>(data.size()));
        StreamPosition position(data, start, 0);
        bound = kUntouched;
        const bool fits = expected.status == zetStsOk;
        EXPECT_EQ(call(form, position, static_cast<int>(data.size())), expected.status);
        EXPECT_EQ(position.consumed(), data.size());
        EXPECT_TRUE(lines.intact());
        EXPECT_EQ(bound, fits ? expected.bound : kUntouched);
        EXPECT_TRUE(!fits || std::ranges::equal(lines.data(), lines.data() + 576,
                                                expected.lines.begin(), expected.lines.end()));
        return fits;
    }
};

class Mp3Huffman : public testing::Test {
  protected:
    int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

    // Zeros and ones alone in places, since they lead to the longest and shortest codewords.
    uint32_t someBits() { return below(4) ? static_cast<uint32_t>(random_()) : below(2) ? 0 : ~0U; }
    BitWriter randomBits(int count) {
        BitWriter bits;
        for (int i = 0; i < count; i += 8) bits.append(someBits() & 0xff, 8);
        return bits.first(static_cast<size_t>(count));
    }
    // A codeword with any linbits and signs.
    template <class Read>
    BitWriter withTail(Code code, Read read) {
        const BitWriter tuple{{code.codeword, code.length}, {someBits(), 32}};
        BitSource in(tuple.bytes());
        read(in);
        return tuple.first(in.position());
    }

    std::mt19937 random_{20};
};

TEST_F(Mp3Huffman, DecodesEveryPair) {
    for (int table = 0; table < 32; ++table) {
        if (codesNothing(table)) continue;
        SCOPED_TRACE(table);
        std::vector<Code> codes;
        for (const auto& entry : pairBook(table)) codes.insert(codes.end(), 16, entry.second);
        std::ranges::shuffle(codes, random_);
        for (size_t first = 0; first < codes.size(); first += kAllPairs) {
            Decoder decoder;
            std::ranges::fill(decoder.info.table_select, table);
            const size_t end = std::min(codes.size(), first + kAllPairs);
            decoder.info.big_values = static_cast<int>(end - first);
            BitWriter data;
            for (size_t i = first; i < end; ++i)
                data.append(withTail(codes[i], [&](BitSource& in) { readPair(in, table); }));
            const int lines = 2 * decoder.info.big_values;
            EXPECT_TRUE(decoder.agrees(Form::kPlain, data, {lines, lines, lines}, below(8)));
        }
    }
}

TEST_F(Mp3Huffman, DecodesEveryQuadrupleAndDropsOneThatOverruns) {
    for (const int table : {0, 1}) {
        for (int pattern = 0; pattern < 1 << 10; ++pattern) {  // 6 bits of codeword and 4 signs
            Decoder decoder;
            decoder.info.count1table_select = table;
            const BitWriter data{{pattern, 10}, {~pattern, 10}};
            for (size_t size = 0; size <= data.size(); size += 1 + size / 6)
                EXPECT_TRUE(decoder.agrees(Form::kPlain, data.first(size), {0, 0, 0}));
        }
    }
}

TEST_F(Mp3Huffman, DecodesRandomBits) {
    int fitting = 0;
    constexpr int kRounds = 6000;
    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE(round);
        Decoder decoder;
        const int hufSize = below(2 << below(12));
        auto& info = decoder.info;
        for (Zet32s& table : info.table_select) table = below(round % 4 ? 32 : 2);
        info.count1table_select = below(2);
        const int bigValues[] = {below(289), below(1 + hufSize / 32), 280 + below(9)};
        info.big_values = bigValues[below(5) / 2];
        info.region0_count = below(16);
        info.region1_count = below(std::min(8, 21 - info.region0_count));
        const int L = 2 * info.big_values;
        // Regions of pairs, even where a caller's table has odd boundaries.
        for (Zet16s& boundary : decoder.bands.longBands) boundary += round % 2;
        const Zet16s* bands = decoder.bands.longBands + 3 * 23 + info.region0_count + 1;
        const std::array<int, 3> ends = {std::min(bands[0] & ~1, L),
                                         std::min(bands[info.region1_count + 1] & ~1, L), L};
        fitting += decoder.agrees(Form::kSfb, randomBits(hufSize), ends, below(8));
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(fitting, kRounds / 4);
    EXPECT_LT(fitting, kRounds - kRounds / 4);
}

struct RegionCase {
    const char* name;
    Form form;
    Zet32s ID, sampling_frequency, window_switching_flag, block_type, mixed_block_flag;
    Zet32s region0_count, region1_count, big_values;
    int end0, end1;  // worked out by hand
};

TEST_F(Mp3Huffman, RegionsEndWhereTheRulesSay) {
    constexpr RegionCase kCases[] = {
        // Long row of 44100 Hz: 0, 4, 8, 12, 16, 20, 24, 30, ...; of 24000 Hz: 0, 6, 12, 18, ...
        {"counts", Form::kPlain, 1, 0, 0, 0, 0, 2, 3, 40, 12, 30},
        {"lsfCounts", Form::kPlain, 0, 1, 0, 0, 0, 0, 1, 40, 6, 18},
        {"allBands", Form::kPlain, 1, 2, 0, 0, 0, 13, 7, 288, 126, 576},
        {"fewInRegion1", Form::kPlain, 1, 0, 0, 0, 0, 2, 3, 10, 12, 20},
        {"fewInRegion0", Form::kPlain, 1, 0, 0, 0, 0, 2, 3, 4, 8, 8},
        // Rows of the caller: bands every 10 + 2 r lines.
        {"callersRow", Form::kSfb, 1, 2, 0, 0, 0, 1, 2, 100, 40, 100},
        {"callersFirstRow", Form::kMbp, 0, 0, 0, 0, 0, 1, 2, 100, 20, 50},
        // Window switching without short-band tables: 36 lines, LSF start and stop blocks 54.
        {"start", Form::kSfb, 1, 1, 1, 1, 0, 7, 13, 100, 36, 200},
        {"short", Form::kPlain, 1, 1, 1, 2, 0, 8, 12, 100, 36, 200},
        {"lsfStop", Form::kSfb, 0, 2, 1, 3, 0, 7, 13, 100, 54, 200},
        {"lsfShort", Form::kPlain, 0, 2, 1, 2, 0, 8, 12, 100, 36, 200},
        {"lsfMixed", Form::kPlain, 0, 2, 1, 2, 1, 7, 13, 100, 36, 200},
        {"shortInRegion0", Form::kPlain, 1, 1, 1, 2, 0, 8, 12, 15, 30, 30},
        // With them: 8 long bands of 10 + 2 r, or 9 short windows of 6 + 2 r.
        {"mbpStart", Form::kMbp, 1, 1, 1, 1, 1, 7, 13, 100, 144, 200},
        {"mbpShort", Form::kMbp, 0, 1, 1, 2, 0, 8, 12, 100, 72, 200},
        // Row 1: 3 long bands are 36 lines, then one window of 8 lines.
        {"mbpMixed1", Form::kMbp, 0, 1, 1, 2, 1, 7, 13, 100, 44, 200},
        // Row 5: 7 long bands are 140 lines, then five windows of 16.
        {"mbpMixed5", Form::kMbp, 1, 2, 1, 2, 1, 7, 13, 150, 220, 300}};
    for (const RegionCase& c : kCases) {
        SCOPED_TRACE(c.name);
        Decoder decoder;
        decoder.header.ID = c.ID;
        decoder.header.sampling_frequency = c.sampling_frequency;
        decoder.info.window_switching_flag = c.window_switching_flag;
        decoder.info.block_type = c.block_type;
        decoder.info.mixed_block_flag = c.mixed_block_flag;
        decoder.info.region0_count = c.region0_count;
        decoder.info.region1_count = c.region1_count;
        decoder.info.big_values = c.big_values;
        std::ranges::copy(std::array{1, 12, 24}, decoder.info.table_select);
        const std::array<int, 3> ends = {c.end0, c.end1, 2 * c.big_values};
        EXPECT_TRUE(decoder.agrees(c.form, randomBits(16000), ends));
    }
}

// The bands of this mixed block grow, so that it matters which one a step counts.
TEST_F(Mp3Huffman, MixedRegion0CountsTheBandBeforeTheSwitchTwice) {
    Decoder decoder;
    constexpr Zet16s kShort[14] = {0, 4, 8, 12, 16, 22, 30, 40, 52, 66, 84, 106, 136, 192};
    std::ranges::copy(kShort, decoder.bands.shortBands + 3 * 14);
    decoder.bands.longBands[3 * 23 + 8] = 36;
    decoder.bands.partition[3 * 2] = 8;
    decoder.bands.partition[3 * 2 + 1] = 7;
    decoder.info.window_switching_flag = 1;
    decoder.info.block_type = 2;
    decoder.info.mixed_block_flag = 1;
    decoder.info.big_values = 100;
    decoder.info.table_select[0] = 1;
    decoder.info.table_select[1] = 24;
    // 12 * 3 does not exceed 36, 16 * 3 does: band 4 is the first, and the steps count the widths
    // of bands 3, 3, 4, 4, 4, 5, 5.
    constexpr int kEnd0 = 36 + 4 + 4 + 6 + 6 + 6 + 8 + 8;
    EXPECT_TRUE(decoder.agrees(Form::kMbp, randomBits(16000), {kEnd0, 200, 200}));
}

TEST_F(Mp3Huffman, RegionCountsStayWithinTheBands) {
    constexpr int kCounts[][2] = {{20, 0}, {0, 20}, {13, 7}, {13, 8}, {20, 1}, {INT_MAX, INT_MAX}};
    for (const auto& [region0, region1] : kCounts) {
        for (const Form form : {Form::kPlain, Form::kSfb, Form::kMbp}) {
            Decoder decoder;
            decoder.info.region0_count = region0;
            decoder.info.region1_count = region1;
            StreamPosition position({{0, 64}});
            const bool isWithin = int64_t{region0} + region1 <= 20;
            EXPECT_EQ(decoder.call(form, position, 8), isWithin ? zetStsOk : zetStsBadSideInfo);
        }
    }
}

}  // namespace
