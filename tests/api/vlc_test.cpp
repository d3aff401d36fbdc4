// The escape-block VLC functions on small codes whose bits are written by hand.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "support/guarded.h"
#include "support/guarded_stream.h"

using namespace zetac::test;

namespace {

using Codes = std::vector<ZetVLCCode>;
using Values = std::vector<Zet16s>;

// A codeword written as its bits.
ZetVLCCode code(int x, int y, const std::string& bits) {
    return {{static_cast<Zet16s>(x), static_cast<Zet16s>(y)},
            static_cast<Zet32s>(bits.size()),
            static_cast<Zet32s>(std::stoul(bits, nullptr, 2))};
}

// Bytes of a string of bits; blanks are for the reader.
std::vector<Zet8u> bytesOf(std::string bits) {
    std::erase(bits, ' ');
    std::vector<Zet8u> bytes((bits.size() + 7) / 8);
    for (size_t i = 0; i < bits.size(); ++i)
        bytes[i / 8] |= static_cast<Zet8u>((bits[i] - '0') << (7 - i % 8));
    return bytes;
}
int sizeOf(const std::string& bits) {
    return static_cast<int>(bits.size() - static_cast<size_t>(std::ranges::count(bits, ' ')));
}

const Codes kMp3Pairs = {code(0, 0, "0"),         code(1, 0, "100"),       code(-1, 0, "101"),
                         code(15, 0, "1100"),     code(-15, 0, "1101"),    code(0, 15, "11100"),
                         code(0, -15, "11101"),   code(15, 15, "111100"),  code(15, -15, "111101"),
                         code(-15, 15, "111110"), code(-15, -15, "111111")};
const Codes kMp3Magnitudes = {code(0, 0, "0"), code(1, 0, "10"), code(15, 0, "110"),
                              code(0, 15, "1110"), code(15, 15, "1111")};
const Codes kAacPairs = {code(0, 0, "0"),         code(16, 0, "100"),     code(-16, 0, "101"),
                         code(16, 16, "11000"),   code(16, -16, "11001"), code(-16, 16, "11010"),
                         code(-16, -16, "11011"), code(1, 16, "11100"),   code(1, -16, "11101"),
                         code(-1, 16, "11110"),   code(-1, -16, "11111")};
const Codes kAacMagnitudes = {code(0, 0, "0"), code(16, 0, "10"), code(16, 16, "110"),
                              code(1, 16, "111")};

struct DecodeSpec {
    ZetsVLCDecodeSpec_1u16s* pointer = nullptr;
    DecodeSpec(const Codes& codes, ZetVLCForm form) {
        const int count = static_cast<int>(codes.size());
        EXPECT_EQ(zetsVLCDecodeInitAlloc_1u16s(&pointer, codes.data(), count, form), zetStsOk);
    }
    DecodeSpec(const DecodeSpec&) = delete;
    DecodeSpec& operator=(const DecodeSpec&) = delete;
    ~DecodeSpec() { zetsVLCDecodeFree_1u16s(pointer); }
};

struct EncodeSpec {
    ZetsVLCEncodeSpec_16s1u* pointer = nullptr;
    EncodeSpec(const Codes& codes, ZetVLCEscStyle style) {
        const int count = static_cast<int>(codes.size());
        EXPECT_EQ(zetsVLCEncodeInitAlloc_16s1u(&pointer, codes.data(), count, style), zetStsOk);
    }
    EncodeSpec(const EncodeSpec&) = delete;
    EncodeSpec& operator=(const EncodeSpec&) = delete;
    ~EncodeSpec() { zetsVLCEncodeFree_16s1u(pointer); }
};

enum class Style { kMp3, kAac };
constexpr Zet16s kUntouched = 0x5a5a;

struct Decoded {
    ZetStatus status;
    Values values;
    int bits;
};

// Decodes a stream behind which three bytes are readable and no more.
Decoded decode(Style style, bool isUnsigned, const void* spec, const std::string& bits, int len,
               int escLen = 0, int offset = 0) {
    auto bytes = bytesOf(std::string(offset, '1') + bits);
    bytes.resize(bytes.size() + ZETAC_BIT_STREAM_SLACK, 0xff);
    GuardedStream stream(bytes);
    Zet8u* p = stream.data();
    int position = offset;
    Decoded result = {zetStsOk, Values(static_cast<size_t>(len), kUntouched), 0};
    Zet16s* out = result.values.data();
    if (style == Style::kMp3)
        result.status =
            (isUnsigned ? zetsVLCDecodeUTupleEscBlock_MP3_1u16s : zetsVLCDecodeEscBlock_MP3_1u16s)(
                &p, &position, escLen, out, len, spec);
    else
        result.status =
            (isUnsigned ? zetsVLCDecodeUTupleEscBlock_AAC_1u16s : zetsVLCDecodeEscBlock_AAC_1u16s)(
                &p, &position, out, len, spec);
    result.bits = static_cast<int>(p - stream.data()) * 8 + position - offset;
    return result;
}

void expectDecoded(const Decoded& decoded, const Values& values, const std::string& bits) {
    EXPECT_EQ(decoded.status, zetStsOk);
    EXPECT_EQ(decoded.values, values);
    EXPECT_EQ(decoded.bits, sizeOf(bits));
}

// Encodes at every offset into bytes that are all ones, and counts.
void expectEncoded(Style style, const void* spec, const Values& values, int escLen,
                   const std::string& bits) {
    const int len = static_cast<int>(values.size());
    int count = -1;
    if (style == Style::kMp3)
        EXPECT_EQ(zetsVLCCountEscBits_MP3_16s32s(values.data(), len, escLen, &count, spec),
                  zetStsOk);
    else
        EXPECT_EQ(zetsVLCCountEscBits_AAC_16s32s(values.data(), len, &count, spec), zetStsOk);
    EXPECT_EQ(count, sizeOf(bits));
    for (int offset = 0; offset < 8; ++offset) {
        const auto expected = bytesOf(std::string(offset, '1') + bits);
        Guarded<Zet8u> stream(expected.size());
        std::memset(stream.bytes(), 0xff, stream.size());
        Zet8u* p = stream.data();
        int position = offset;
        if (style == Style::kMp3)
            ASSERT_EQ(
                zetsVLCEncodeEscBlock_MP3_16s1u(values.data(), len, escLen, &p, &position, spec),
                zetStsOk);
        else
            ASSERT_EQ(zetsVLCEncodeEscBlock_AAC_16s1u(values.data(), len, &p, &position, spec),
                      zetStsOk);
        EXPECT_EQ((p - stream.data()) * 8 + position, offset + sizeOf(bits));
        EXPECT_TRUE(std::ranges::equal(
            expected, std::vector<Zet8u>(stream.data(), stream.data() + expected.size())))
            << offset;
        EXPECT_TRUE(stream.intact());
    }
}

struct Case {
    Values values;
    int escLen;
    std::string bits;
};

// Extensions stand before the signs in MP3, escape sequences behind them in AAC.
const Case kMp3Cases[] = {
    {{20, -21}, 3, "1111 101 0 110 1"},
    {{-15, 0}, 0, "110 1"},
    {{-15, 15}, 0, "1111 1 0"},
    {{0, -17, -1, 0, 0, 0}, 2, "1110 10 1 10 1 0"},
    {{0, 0, 16, 0, 0, 22, -22, 15},
     13,
     "0 110 0000000000001 0 1110 0000000000111 0 1111 0000000000111 1 0000000000000 0"},
    {{32767, -32767}, 15, "1111 111111111110000 0 111111111110000 1"},
};
const Case kAacCases[] = {
    {{0, 0, 16, 0}, 0, "0 10 0 00000"},
    {{-31, 0}, 0, "10 1 01111"},
    {{-32, 17}, 0, "110 10 10 00000 00001"},
    {{-1, -16}, 0, "111 11 00000"},
    {{8191, -8191}, 0, "110 01 111111110 111111111111 111111110 111111111111"},
};

void expectCases(Style style, std::span<const Case> cases, const Codes& withSigns,
                 const Codes& magnitudes, const void* encoder) {
    const DecodeSpec pairs(withSigns, zetVLCPairs), tuples(magnitudes, zetVLCUTuples);
    for (const auto& [values, escLen, bits] : cases) {
        SCOPED_TRACE(bits);
        const int len = static_cast<int>(values.size());
        for (int offset = 0; offset < 8; ++offset) {
            expectDecoded(decode(style, false, pairs.pointer, bits, len, escLen, offset), values,
                          bits);
            expectDecoded(decode(style, true, tuples.pointer, bits, len, escLen, offset), values,
                          bits);
        }
        expectEncoded(style, encoder, values, escLen, bits);
    }
}

TEST(Vlc, CodesPairsAndEscapes) {
    const EncodeSpec mp3(kMp3Pairs, zetVLCEscMP3), aac(kAacPairs, zetVLCEscAAC);
    expectCases(Style::kMp3, kMp3Cases, kMp3Pairs, kMp3Magnitudes, mp3.pointer);
    expectCases(Style::kAac, kAacCases, kAacPairs, kAacMagnitudes, aac.pointer);
    // What the extension cannot hold is limited, in the stream and in 16 bits.
    expectEncoded(Style::kMp3, mp3.pointer, {23, 0, 22, 0}, 3, "110 111 0 110 111 0");
    const DecodeSpec pairs(kMp3Pairs, zetVLCPairs);
    expectDecoded(decode(Style::kMp3, false, pairs.pointer, "110 111111111111111 1", 2, 99),
                  {-32767, 0}, "110 111111111111111 1");
    expectEncoded(Style::kAac, aac.pointer, {-32768, 0}, 0, "10 1 111111111110 000000000000000");
}

TEST(Vlc, TooLongAnEscapeStopsBehindItsNinthOne) {
    const DecodeSpec pairs(kAacPairs, zetVLCPairs), magnitudes(kAacMagnitudes, zetVLCUTuples);
    for (const bool isUnsigned : {false, true}) {
        const void* spec = isUnsigned ? magnitudes.pointer : pairs.pointer;
        const Decoded decoded = decode(Style::kAac, isUnsigned, spec,
                                       "10 1 00001 110 00 00001 1111111110 0000000000000", 6);
        EXPECT_EQ(decoded.status, zetStsBadEscapeCode);
        EXPECT_EQ(decoded.values, (Values{-17, 0, kUntouched, kUntouched, kUntouched, kUntouched}));
        EXPECT_EQ(decoded.bits, 8 + 5 + 5 + 9);
    }
}

TEST(Vlc, SingleValuesHaveTheirEscapeBehindTheirOwnCodeword) {
    const Codes signedCodes = {code(0, 0, "0"), code(15, 0, "1000"), code(-15, 0, "1001"),
                               code(16, 0, "101"), code(-16, 0, "11")};
    const Codes magnitudes = {code(0, 0, "0"), code(15, 0, "10"), code(16, 0, "11")};
    const DecodeSpec withSign(signedCodes, zetVLCSingles), without(magnitudes, zetVLCUSingles);
    const std::string mp3 = "100 101 1 0 101 100 000 0";
    expectDecoded(decode(Style::kMp3, false, withSign.pointer, mp3, 4, 3), {-20, 0, 16, 15}, mp3);
    const std::string aac = "11 00001 0 101 10 00000 0";
    expectDecoded(decode(Style::kAac, false, withSign.pointer, aac, 4), {-17, 0, 32, 0}, aac);
    const std::string unsignedMp3 = "10 101 1 0 11 0 10 000 0";
    expectDecoded(decode(Style::kMp3, true, without.pointer, unsignedMp3, 4, 3), {-20, 0, 16, 15},
                  unsignedMp3);
    const std::string unsignedAac = "11 1 00001 0 10 1 11 0 10 00000";
    expectDecoded(decode(Style::kAac, true, without.pointer, unsignedAac, 4), {-17, 0, -15, 32},
                  unsignedAac);
}

TEST(Vlc, AnOddLastValueIsLeftOut) {
    const DecodeSpec pairs(kMp3Pairs, zetVLCPairs);
    const EncodeSpec encoder(kMp3Pairs, zetVLCEscMP3);
    expectDecoded(decode(Style::kMp3, false, pairs.pointer, "101 0", 3), {-1, 0, kUntouched},
                  "101");
    expectEncoded(Style::kMp3, encoder.pointer, {-1, 0, 1}, 0, "101");
    for (const int len : {1, 0, -1, INT_MIN}) {
        Zet8u byte = 0xff;
        Zet8u* p = &byte;
        int offset = 3, count = -1;
        const Zet16s value = 1;
        EXPECT_EQ(zetsVLCCountEscBits_MP3_16s32s(&value, len, 0, &count, encoder.pointer),
                  zetStsOk);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(zetsVLCEncodeEscBlock_MP3_16s1u(&value, len, 0, &p, &offset, encoder.pointer),
                  zetStsOk);
        Zet16s out = kUntouched;
        EXPECT_EQ(zetsVLCDecodeEscBlock_MP3_1u16s(&p, &offset, 0, &out, len, pairs.pointer),
                  zetStsOk);
        EXPECT_TRUE(p == &byte && offset == 3 && byte == 0xff && out == kUntouched);
    }
}

TEST(Vlc, PairsWithoutCodewordAreNeitherWrittenNorCounted) {
    const EncodeSpec encoder(kMp3Pairs, zetVLCEscMP3);
    expectEncoded(Style::kMp3, encoder.pointer, {1, 0, 15, 7, 9, 9, 0, 0}, 2, "100 0");
    // A spec of the other style has no room for 16, and is safe to ask.
    expectEncoded(Style::kAac, encoder.pointer, {16, 16, -16, -16}, 0, "");
}

// A unary code has a level for each of its 32 bits, and its last codeword ends with the second
// load.
TEST(Vlc, CodewordsHaveUpTo32Bits) {
    Codes codes;
    for (int i = 0; i < 32; ++i)
        codes.push_back(code(31 - i % 10, 20 + i, std::string(static_cast<size_t>(i), '1') + "0"));
    const DecodeSpec spec(codes, zetVLCPairs);
    std::string bits;
    Values values;
    for (int i = 31; i >= 0; --i) {
        bits += std::string(i, '1') + "0";
        const auto& value = codes[i].value;
        values.insert(values.end(), value, value + 2);
    }
    for (int offset = 0; offset < 8; ++offset)
        expectDecoded(decode(Style::kMp3, false, spec.pointer, bits, 64, 0, offset), values, bits);
    // 32 ones begin no codeword.
    const Decoded none = decode(Style::kMp3, false, spec.pointer, std::string(33, '1'), 2);
    EXPECT_EQ(none.values, (Values{0, 0}));
    EXPECT_GT(none.bits, 0);
}

struct ListCase {
    Codes codes;
    ZetStatus pairs, tuples, singles, encoding;
};

TEST(Vlc, ListsThatAreNoPrefixCodeOrDoNotFitAreRefused) {
    const auto kOk = zetStsOk, kBad = zetStsBadArg, kRange = zetStsOutOfRange;
    const ListCase cases[] = {
        {{code(0, 0, "0"), code(1, 0, "01")}, kBad, kBad, kBad, kBad},
        {{code(1, 0, "010"), code(0, 0, "01")}, kBad, kBad, kBad, kBad},
        {{code(0, 0, "01"), code(1, 0, "01")}, kBad, kBad, kBad, kBad},
        {{{{0, 0}, 0, 0}}, kBad, kBad, kBad, kBad},
        {{{{0, 0}, 33, 0}}, kBad, kBad, kBad, kBad},
        {{{{0, 0}, 2, 4}}, kBad, kBad, kBad, kBad},
        {{{{0, 0}, 31, -1}}, kBad, kBad, kBad, kBad},
        {{{{0, 0}, 32, -1}}, kOk, kOk, kOk, kOk},
        {{code(0, 0, "0"), code(0, 0, "1")}, kOk, kOk, kOk, kBad},
        {{code(16, 0, "00")}, kOk, kOk, kOk, kRange},
        {{code(0, -16, "00")}, kOk, kRange, kOk, kRange},
        {{code(15, 1, "00")}, kOk, kOk, kOk, kBad},
        {{code(15, 1, "000")}, kOk, kOk, kOk, kOk},
        {{code(-1, 0, "0")}, kOk, kRange, kOk, kOk},
        {{code(63, 127, "0")}, kOk, kOk, kOk, kRange},
        {{code(64, 127, "0")}, kRange, kOk, kOk, kRange},
        {{code(-64, -128, "0")}, kOk, kRange, kOk, kRange},
        {{code(0, 128, "0")}, kRange, kRange, kOk, kRange},
        {{code(128, 0, "0")}, kRange, kRange, kOk, kRange},
        {{code(16384, 0, "0")}, kRange, kRange, kRange, kRange},
    };
    for (const ListCase& c : cases) {
        SCOPED_TRACE(&c - cases);
        const int count = static_cast<int>(c.codes.size());
        const std::pair<int, ZetStatus> forms[] = {
            {zetVLCPairs, c.pairs}, {zetVLCUTuples, c.tuples}, {zetVLCSingles, c.singles}};
        for (const auto& [form, status] : forms) {
            int size = -1;
            EXPECT_EQ(zetsVLCDecodeGetSize_1u16s(c.codes.data(), count, form, &size), status);
            EXPECT_EQ(size == -1, status != zetStsOk);
            ZetsVLCDecodeSpec_1u16s* spec = nullptr;
            EXPECT_EQ(zetsVLCDecodeInitAlloc_1u16s(&spec, c.codes.data(), count, form), status);
            EXPECT_EQ(spec == nullptr, status != zetStsOk);
            zetsVLCDecodeFree_1u16s(spec);
        }
        ZetsVLCEncodeSpec_16s1u* encoder = nullptr;
        EXPECT_EQ(zetsVLCEncodeInitAlloc_16s1u(&encoder, c.codes.data(), count, zetVLCEscMP3),
                  c.encoding);
        zetsVLCEncodeFree_16s1u(encoder);
    }
}

// Each codeword has a sub-table of 257 entries to itself, behind a first level of 256 and the two
// entries for bits that begin no codeword: 126 of them fit 32768 entries.
TEST(Vlc, TablesEndAtTheirLargestIndex) {
    Codes codes;
    for (int i = 0; i < 127; ++i) codes.push_back({{0, 0}, 16, i << 8});
    int size = 0;
    EXPECT_EQ(zetsVLCDecodeGetSize_1u16s(codes.data(), 126, zetVLCSingles, &size), zetStsOk);
    EXPECT_EQ(zetsVLCDecodeGetSize_1u16s(codes.data(), 127, zetVLCSingles, &size), zetStsBadSize);
}

// The structures as docs/design.md lays them out, made here without the library.
struct alignas(32) DecodeLayout {
    Zet32s id, owned, firstBits;
    const uint16_t* table;
    Zet32s valueForm, lengthBits;
};
struct alignas(32) EncodeLayout {
    const Zet32s* lengths;
    Zet32s zeroOffset;
    Zet8u log2Size;
    Zet32s owned, id;
};

uint16_t pairLeaf(int x, int y, int length) {  // lengthBits 2
    return static_cast<uint16_t>(x * 2048 + (y + 128) * 8 + length * 2 + 1);
}

TEST(Vlc, TablesOfTheDocumentedLayoutAreUnderstood) {
    // 0: (0, 0), 10: (-15, 127), 110: (15, -128), 111 leads on: 1110 and 1111 by a level of 1 bit.
    const uint16_t entries[] = {pairLeaf(0, 0, 1),
                                pairLeaf(0, 0, 1),
                                pairLeaf(-15, 127, 2),
                                4 << 1,
                                1,  // sub-table at 4
                                pairLeaf(15, -128, 1),
                                7 << 1,
                                0,  // sub-table at 7
                                pairLeaf(-1, -1, 0)};
    const DecodeLayout spec = {0x434D4160, 0, 2, entries, 8, 2};
    expectDecoded(decode(Style::kAac, false, &spec, "10 0 11 0 11 1 0", 10),
                  {-15, 127, 0, 0, 15, -128, -1, -1, 0, 0}, "10 0 11 0 11 1 0");

    std::vector<Zet32s> lengthsAndCodes(2 << 11);
    const auto place = [&](int index, int length, int codeword) {
        lengthsAndCodes[index] = length;
        lengthsAndCodes[index + (1 << 11)] = codeword;
    };
    const EncodeLayout aac = {lengthsAndCodes.data(), 1300, 11, 0, 0x434D415F};
    place(-16 * 64 + 3 + 1300 + 16, 5, 0x15);
    expectEncoded(Style::kAac, &aac, {-16, 3}, 0, "10101 00000");
    const EncodeLayout mp3 = {lengthsAndCodes.data(), 700, 11, 0, 0x434D415F};
    place(2 * 32 - 15 + 700 + 15, 6, 0x2d);
    expectEncoded(Style::kMp3, &mp3, {2, -17}, 4, "10110 0010 1");
}

}  // namespace
