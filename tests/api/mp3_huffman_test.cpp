// The Huffman data of Layer III: the decoder against a model that goes bit by bit through the
// exported tables, these tables against the books of the standard, and the coder against both.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <map>
#include <random>
#include <vector>

#include "support/guarded.h"
#include "support/guarded_stream.h"
#include "support/mp3_bands.h"
#include "support/written.h"

namespace zetac::test {
namespace {

constexpr int kUntouched = -12345;

// ---- the model: decoding bit by bit as the layout of the exported tables reads, and the books
// that these tables turn out to hold. The library decodes from other tables.

// Bits with zeros behind them.
class BitSource {
  public:
    explicit BitSource(std::vector<uint8_t> bytes, size_t position = 0)
        : bytes_(std::move(bytes)), position_(position) {}

    int bit() {
        const size_t i = position_++;
        return i / 8 < bytes_.size() ? bytes_[i / 8] >> (7 - i % 8) & 1 : 0;
    }
    int bits(int count) {
        int value = 0;
        while (count-- > 0) value = value << 1 | bit();
        return value;
    }
    void giveBack(int count) { position_ -= static_cast<size_t>(count); }
    size_t position() const { return position_; }

  private:
    std::vector<uint8_t> bytes_;
    size_t position_;
};

using Pair = std::array<int, 2>;
using Quad = std::array<int, 4>;

bool codesNothing(int table) {
    return table == 0 || table == 4 || table == 14;
}
int linbitsOf(int table) {
    return table < 13 ? 0 : _pHfLinbits[table - 13];
}

struct Code {
    uint32_t codeword;
    int length;
};
template <size_t size>
using Book = std::map<std::array<int, size>, Code>;

int signedField(int entry, int position, int width) {
    const int raw = entry >> position & ((1 << width) - 1);
    return raw >> (width - 1) ? raw - (1 << width) : raw;
}

int magnitudeField(int entry, int position, int width) {
    return entry >> position & ((1 << width) - 1);
}

int withSign(BitSource& in, int magnitude) {
    return in.bit() ? -magnitude : magnitude;
}

// What follows a codeword that ends in the tree, or in the first level with two signs.
Pair readRest(BitSource& in, Pair pair, int linbits) {
    for (int& value : pair) {
        if (value == 15) value += in.bits(linbits);
        if (value) value = withSign(in, value);
    }
    return pair;
}

// Where the entries of small and big tables have x and y, in the first level and in leaves.
struct Layout {
    int firstX, firstY, firstWidth, leafX, leafY, leafWidth;
    int soleX;  // the value of x that is followed by its sign
};
constexpr Layout kSmall = {6, 4, 2, 5, 2, 3, 2};
constexpr Layout kBig = {8, 4, 4, 6, 2, 4, 1};

template <class Entry>
Pair readTablePair(BitSource& in, const Entry* table, const Layout& layout, int linbits) {
    const int entry = table[in.bits(4)];
    if (entry & 1) {
        const int x = signedField(entry, layout.firstX, layout.firstWidth);
        const int y = signedField(entry, layout.firstY, layout.firstWidth);
        const int kind = entry >> 1 & 7;
        if (kind <= 3) in.giveBack(kind);
        switch (kind) {
            case 0:
            case 1:
                return {x, y};
            case 2:
            case 3:
                return {0, 0};
            case 4:
                return {withSign(in, layout.soleX), 0};
            case 5:
                return {0, withSign(in, 1)};
            case 6:
                return {x, withSign(in, 1)};
        }
        return readRest(in,
                        {magnitudeField(entry, layout.firstX, layout.firstWidth),
                         magnitudeField(entry, layout.firstY, layout.firstWidth)},
                        linbits);
    }
    const Entry* tree = table + 16;
    const Entry* node = tree + entry / 2;
    while (!(*node & 1)) node = in.bit() ? tree + *node / 2 : node + 1;
    return readRest(in,
                    {magnitudeField(*node, layout.leafX, layout.leafWidth),
                     magnitudeField(*node, layout.leafY, layout.leafWidth)},
                    linbits);
}

Quad signedFields(int entry) {
    return {signedField(entry, 6, 2), signedField(entry, 4, 2), signedField(entry, 2, 2),
            signedField(entry, 0, 2)};
}

Quad readSigns(BitSource& in, Quad quad) {
    for (int& value : quad)
        if (value) value = withSign(in, value);
    return quad;
}

Quad readQuadA(BitSource& in) {
    const int index = in.bits(6);
    const int entry = _pHfQTable0[index];
    if (index >= 32) {
        in.giveBack(5);
        return {};
    }
    if (index >= 16) {
        in.giveBack(1);
        return signedFields(entry);
    }
    if (index >= 6) return signedFields(_pHfQTable0[entry + in.bit()]);
    if ((entry & 7) == 2) return readSigns(in, {0, 1, 0, 1});
    if ((entry & 7) == 3)
        return readSigns(in, {entry >> 6 & 1, entry >> 5 & 1, entry >> 4 & 1, entry >> 3 & 1});
    return readSigns(in, {1, 1, 1, 1});
}

Pair readPair(BitSource& in, int table) {
    if (codesNothing(table)) return {};
    if (table < 13) return readTablePair(in, _pHuffmanSmallTables[table], kSmall, 0);
    return readTablePair(in, _pHuffmanBigTables[table - 13], kBig, linbitsOf(table));
}

Quad readQuad(BitSource& in, int table) {
    if (table == 0) return readQuadA(in);
    const int flags = 15 - in.bits(4);
    return readSigns(in, {flags >> 3, flags >> 2 & 1, flags >> 1 & 1, flags & 1});
}

// The books that a reader of tuples implies: each tuple that comes from a pattern stands for all
// patterns that begin with its codeword, and the next one begins behind them.
template <size_t size, class Read>
Book<size> bookOf(Read read, int linbits) {
    Book<size> book;
    constexpr uint64_t kAll = uint64_t{1} << 32;
    uint64_t pattern = 0;
    while (pattern < kAll) {
        BitSource in(BitWriter().append(static_cast<uint32_t>(pattern), 32).bytes(8));
        auto tuple = read(in);
        int length = static_cast<int>(in.position());
        for (int& value : tuple) {
            value = std::abs(value);
            length -= (value != 0) + (value >= 15 ? linbits : 0);
        }
        if (length < 1 || length > 32 || book.count(tuple)) return {};
        book[tuple] = {static_cast<uint32_t>(pattern >> (32 - length)), length};
        pattern += uint64_t{1} << (32 - length);
    }
    return pattern == kAll ? book : Book<size>{};
}

Book<2> pairBook(int table) {
    return bookOf<2>([table](BitSource& in) { return readPair(in, table); }, linbitsOf(table));
}

Book<4> quadBook(int table) {
    return bookOf<4>([table](BitSource& in) { return readQuad(in, table); }, 0);
}

struct Granule {
    ZetStatus status = zetStsOk;
    std::array<Zet32s, 576> lines{};
    int bound = 0;
};
// A granule whose regions of big values end at the given lines.
Granule decodeGranule(BitSource in, const std::array<int, 3>& ends, const int* tables,
                      int count1Table, int hufSize) {
    Granule granule;
    if (hufSize == 0) return granule;  // whatever the side information announces
    const size_t end = in.position() + static_cast<size_t>(hufSize);
    size_t line = 0;
    for (int region = 0; region < 3; ++region) {
        for (; line < static_cast<size_t>(ends[region]); line += 2)
            std::ranges::copy(readPair(in, tables[region]), &granule.lines[line]);
    }
    if (in.position() > end) {
        granule.status = zetStsOutOfRange;
        return granule;
    }
    for (; line < 574 && in.position() < end; line += 4) {
        const Quad quad = readQuad(in, count1Table);
        if (in.position() <= end) std::ranges::copy(quad, &granule.lines[line]);
    }
    for (int i = 0; i < 576; ++i)
        if (granule.lines[i]) granule.bound = i + 1;
    return granule;
}

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
// 10 + 2 r lines, short row r every 6 + 2 r. Row 3 has a long band and short ones of the standard.
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
        std::copy_n(kShortBandStarts[3], 14, shortBands + 3 * 14);
        longBands[3 * 23 + 8] = 36;
        partition[3 * 2] = 8;
        partition[3 * 2 + 1] = 7;
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

    std::mt19937 random_{20};
};

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
        {"mbpMixed5", Form::kMbp, 1, 2, 1, 2, 1, 7, 13, 150, 220, 300},
        // Row 3: 8 long bands are 36 lines and then bands grow. 12 * 3 does not exceed 36, 16 * 3
        // does:
        // band 4 is the first, and the steps count the widths of bands 3, 3, 4, 4, 4, 5, 5.
        {"mbpMixed3", Form::kMbp, 1, 0, 1, 2, 1, 7, 13, 100, 36 + 4 + 4 + 6 + 6 + 6 + 8 + 8, 200}};
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

// ---- the coder

// A granule of lines and the record that codes them.
struct Coder {
    ZetMP3Header header{};
    ZetMP3GranuleSideInfo info{};
    std::array<Zet32s, 576> lines{};
    int count1Len = 0;

    Coder() { header.ID = header.layer = 1; }
    ZetStatus pack(Written& written, int hufSize) const {
        return zetsHuffmanEncode_MP3_32s1u(lines.data(), &written.byte, &written.offset, &header,
                                           &info, count1Len, hufSize);
    }
};

int largestOf(int table) {
    constexpr int kLargest[16] = {0, 1, 2, 2, 0, 3, 3, 5, 5, 5, 7, 7, 7, 15, 0, 15};
    return table < 16 ? kLargest[table] : 15 + (1 << linbitsOf(table)) - 1;
}

// What the coder makes of random lines in all tables is what the model and the decoder read, and no
// bit too many; ones follow up to the size that was asked for.
TEST_F(Mp3Huffman, LinesComeBackThroughAllTables) {
    for (int round = 0; round < 6000; ++round) {
        SCOPED_TRACE(round);
        Coder coder;
        auto& info = coder.info;
        coder.header.sampling_frequency = below(3);
        info.window_switching_flag = round % 3 == 0;
        info.block_type = info.window_switching_flag ? 1 + below(3) : 0;
        info.big_values = below(289);
        info.region0_count = below(16);
        info.region1_count = below(std::min(8, 21 - info.region0_count));
        info.count1table_select = below(2);
        for (Zet32s& table : info.table_select) table = below(32);
        const auto& bands = kLongBandStarts[3 + coder.header.sampling_frequency];
        const int L = 2 * info.big_values;
        std::array<int, 3> ends = {bands[info.region0_count + 1],
                                   bands[info.region0_count + info.region1_count + 2], L};
        if (info.window_switching_flag) {
            ends = {36, 576, L};
            info.table_select[2] = -1;  // not in use
        }
        for (int& end : ends) end = std::min(end, L);
        for (int i = 0; i < L; ++i) {
            const int largest = largestOf(info.table_select[i < ends[0] ? 0 : i < ends[1] ? 1 : 2]);
            const Zet32s size = below(2) ? below(largest + 1) : std::min(below(18), largest);
            coder.lines[i] = below(2) ? -size : size;
        }
        // No quadruple is coded at line 574.
        const int last = std::min(L + 4 * below((577 - L) / 4 + 1), 576 - L % 4);
        coder.count1Len = below(4) ? last - L : (last - L + 3) / 4 * 4 + (last > 570) * 4;
        for (int i = L; i < last; ++i) coder.lines[i] = below(3) - 1;

        const int start = below(8), stuffing = below(70);
        Written sizing(start), written(start);
        ASSERT_EQ(coder.pack(sizing, 0), zetStsOk);
        const auto size =
            static_cast<int>(8 * (sizing.byte - sizing.bytes.data()) + sizing.offset - start);
        ASSERT_EQ(coder.pack(written, size + stuffing), zetStsOk);
        const auto bitAt = [&](int i) { return written.bytes[i / 8] >> (7 - i % 8) & 1U; };
        BitWriter bits;
        for (int i = 0; i < size; ++i) bits.append(bitAt(start + i), 1);
        written.expect(BitWriter(bits)
                           .append(~0U, std::min(stuffing, 32))
                           .append(~0U, std::clamp(stuffing - 32, 0, 32))
                           .append(~0U, std::max(stuffing - 64, 0)));
        info.part2_3_length = size;
        const Granule granule = decodeGranule(BitSource(bits.bytes(0)), ends, info.table_select,
                                              info.count1table_select, size);
        ASSERT_EQ(granule.lines, coder.lines);
        StreamPosition position(bits, start, 0);
        std::array<Zet32s, 576> back;
        int bound = 0;
        ASSERT_EQ(zetsHuffmanDecode_MP3_1u32s(position.ppByte(), position.pOffset(), back.data(),
                                              &bound, &info, &coder.header, size),
                  zetStsOk);
        ASSERT_EQ(back, coder.lines);
    }
}

TEST_F(Mp3Huffman, CodesWhatItCanInOrder) {
    const Code escaped = pairBook(24).at({15, 3}), one = pairBook(1).at({1, 0}),
               none = pairBook(1).at({0, 0});
    struct Case {
        const char* name;
        int bigValues, table0, table1, line0, line1, hufSize, start;
        ZetStatus status;
        BitWriter bits;
    };
    const Case kCases[] = {
        {"escape",
         1,
         24,
         0,
         20,
         -3,
         0,
         0,
         zetStsOk,
         {{escaped.codeword, escaped.length}, {5, 4}, {0, 1}, {1, 1}}},
        {"stuffing", 0, 0, 0, 0, 0, 13, 5, zetStsOk, {{0x1fff, 13}}},
        {"no table",
         100,
         1,
         -1,
         1,
         0,
         100,
         0,
         zetStsBadSideInfo,
         {{one.codeword, one.length}, {0, 1}, {none.codeword, none.length}}},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        Coder coder;
        coder.info.big_values = c.bigValues;
        coder.info.table_select[0] = c.table0;
        coder.info.table_select[1] = c.table1;
        coder.lines[0] = c.line0;
        coder.lines[1] = c.line1;
        Written written(c.start);
        EXPECT_EQ(coder.pack(written, c.hufSize), c.status);
        written.expect(c.bits);
    }
    // Whatever the lines are, codewords stay within their tables, and nothing behind line 575 is
    // read.
    for (int table = 0; table < 32; ++table) {
        Coder coder;
        coder.info.big_values = 200;
        std::ranges::fill(coder.info.table_select, table);
        coder.count1Len = INT_MAX;
        for (Zet32s& line : coder.lines)
            line = below(4) ? static_cast<Zet32s>(random_()) : below(2) ? INT_MIN : INT_MAX;
        Written written;
        EXPECT_EQ(coder.pack(written, 0), zetStsOk);
    }
}

TEST_F(Mp3Huffman, RegionCountsStayWithinTheBands) {
    constexpr int kCounts[][2] = {{20, 0}, {0, 20}, {13, 7}, {13, 8}, {20, 1}, {INT_MAX, INT_MAX}};
    for (const auto& [region0, region1] : kCounts) {
        const ZetStatus expected = int64_t{region0} + region1 <= 20 ? zetStsOk : zetStsBadSideInfo;
        Coder coder;
        Decoder decoder;
        for (auto* info : {&coder.info, &decoder.info}) {
            info->region0_count = region0;
            info->region1_count = region1;
        }
        Written written;
        EXPECT_EQ(coder.pack(written, 8), expected);
        for (const Form form : {Form::kPlain, Form::kSfb, Form::kMbp}) {
            StreamPosition position({{0, 64}});
            EXPECT_EQ(decoder.call(form, position, 8), expected);
        }
    }
}

}  // namespace
}  // namespace zetac::test
