// The escape-block functions with the standards' own books, against the decoders of the codecs.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/channel_stream.h"
#include "tables/aac/spectral_books.h"
#include "tables/mp3/huffman_books.h"

using namespace zetac::test;
using zetac::tables::HuffmanCode;

namespace {

using Codes = std::vector<ZetVLCCode>;
using Values = std::vector<Zet16s>;

// The pairs of magnitudes of a book.
template <size_t count>
Codes magnitudesOf(const HuffmanCode (&book)[count]) {
    const int radix = zetac::tables::pairRadix(book);
    Codes codes;
    for (int i = 0; i < static_cast<int>(count); ++i)
        codes.push_back({{static_cast<Zet16s>(i / radix), static_cast<Zet16s>(i % radix)},
                         book[i].length,
                         static_cast<Zet32s>(book[i].codeword)});
    return codes;
}

// The same with all signs, whose bits become part of the codeword.
Codes withSigns(const Codes& magnitudes) {
    Codes codes;
    for (const ZetVLCCode& code : magnitudes) {
        const auto [x, y] = code.value;
        for (int signX = 0; signX <= (x != 0); ++signX) {
            for (int signY = 0; signY <= (y != 0); ++signY) {
                ZetVLCCode pair = {
                    {static_cast<Zet16s>(signX ? -x : x), static_cast<Zet16s>(signY ? -y : y)},
                    code.length + (x != 0) + (y != 0),
                    code.code};
                if (x != 0) pair.code = pair.code * 2 + signX;
                if (y != 0) pair.code = pair.code * 2 + signY;
                codes.push_back(pair);
            }
        }
    }
    return codes;
}

// Every pair of the book, in random order, and pairs with escapes of all sizes, to `len` values.
Values makeValues(const Codes& pairs, int escape, int largest, size_t len) {
    std::mt19937 random(static_cast<unsigned>(largest));
    Values values;
    for (const ZetVLCCode& code : pairs) values.insert(values.end(), code.value, code.value + 2);
    const auto magnitude = [&] {
        const int bits = static_cast<int>(random() % 14);
        return std::min(largest, random() % 2 ? escape + (1 << bits) - 1
                                              : static_cast<int>(random() % 16384) >> bits);
    };
    while (values.size() < len + len % 2)
        values.push_back(static_cast<Zet16s>(random() % 2 ? magnitude() : -magnitude()));
    for (size_t i = values.size() / 2; --i > 0;)
        std::swap_ranges(&values[2 * i], &values[2 * i] + 2, &values[2 * (random() % i)]);
    return values;
}

struct Specs {
    ZetsVLCDecodeSpec_1u16s* pairs = nullptr;
    ZetsVLCDecodeSpec_1u16s* magnitudes = nullptr;
    ZetsVLCEncodeSpec_16s1u* encoder = nullptr;

    Specs(const Codes& book, ZetVLCEscStyle style) {
        const Codes withSign = withSigns(book);
        const int count = static_cast<int>(withSign.size());
        EXPECT_EQ(zetsVLCDecodeInitAlloc_1u16s(&pairs, withSign.data(), count, zetVLCPairs),
                  zetStsOk);
        EXPECT_EQ(zetsVLCDecodeInitAlloc_1u16s(&magnitudes, book.data(),
                                               static_cast<int>(book.size()), zetVLCUTuples),
                  zetStsOk);
        EXPECT_EQ(zetsVLCEncodeInitAlloc_16s1u(&encoder, withSign.data(), count, style), zetStsOk);
    }
    Specs(const Specs&) = delete;
    Specs& operator=(const Specs&) = delete;
    ~Specs() {
        zetsVLCDecodeFree_1u16s(pairs);
        zetsVLCDecodeFree_1u16s(magnitudes);
        zetsVLCEncodeFree_16s1u(encoder);
    }
};

struct Position {
    std::vector<Zet8u> bytes;
    Zet8u* p = bytes.data();
    int offset;

    Position(size_t size, int start) : bytes(size), offset(start) {}
    explicit Position(const std::vector<Zet8u>& stream, int start) : bytes(stream), offset(start) {}
    int bits() const { return static_cast<int>(p - bytes.data()) * 8 + offset; }
};

constexpr int kStart = 5;
constexpr size_t kBytesPerValue = 5;  // a codeword with signs and two escapes has 56 bits at most

// Encodes, and expects both decoders to give the values back; returns the stream.
template <class Encode, class Count, class DecodePairs, class DecodeMagnitudes>
BitWriter roundTrip(const Values& values, const Specs& specs, Encode encode, Count count,
                    DecodePairs decodePairs, DecodeMagnitudes decodeMagnitudes) {
    const int len = static_cast<int>(values.size());
    Position stream(values.size() * kBytesPerValue, kStart);
    EXPECT_EQ(encode(values.data(), len, &stream.p, &stream.offset, specs.encoder), zetStsOk);
    const int end = stream.bits();
    int bits = 0;
    EXPECT_EQ(count(values.data(), len, &bits, specs.encoder), zetStsOk);
    EXPECT_EQ(end, kStart + bits);
    const auto expectBack = [&](auto decode, const void* spec) {
        Position copy(stream.bytes, kStart);
        Values decoded(values.size());
        EXPECT_EQ(decode(&copy.p, &copy.offset, decoded.data(), len, spec), zetStsOk);
        EXPECT_EQ(copy.bits(), end);
        EXPECT_TRUE(decoded == values);
    };
    expectBack(decodePairs, specs.pairs);
    expectBack(decodeMagnitudes, specs.magnitudes);
    BitWriter result;
    for (int i = kStart; i < end; ++i)
        result.append(stream.bytes[static_cast<size_t>(i / 8)] >> (7 - i % 8) & 1U, 1);
    return result;
}

TEST(VlcBooks, AacBook11AgreesWithTheNoiselessDecoder) {
    const Codes book = magnitudesOf(zetac::tables::kSpectralBook11);
    const Specs specs(book, zetVLCEscAAC);
    const Values values = makeValues(withSigns(book), 16, 8191, 8 * ZETAC_AAC_FRAME_LEN);
    for (size_t i = 0; i < values.size(); i += ZETAC_AAC_FRAME_LEN) {
        const Values frame(values.begin() + static_cast<ptrdiff_t>(i),
                           values.begin() + static_cast<ptrdiff_t>(i + ZETAC_AAC_FRAME_LEN));
        const BitWriter coded =
            roundTrip(frame, specs, zetsVLCEncodeEscBlock_AAC_16s1u, zetsVLCCountEscBits_AAC_16s32s,
                      zetsVLCDecodeEscBlock_AAC_1u16s, zetsVLCDecodeUTupleEscBlock_AAC_1u16s);
        BitWriter stream = longWindow(100, 49).append(section(11, 49));
        stream.repeat(49, 0, 1).append(noTools()).append(coded);
        Channel channel;
        ASSERT_EQ(channel.decode(Form::kLowComplexity, stream), zetStsOk);
        EXPECT_EQ(channel.consumed, stream.size());
        EXPECT_TRUE(std::ranges::equal(channel.spectrum, frame));
    }
}

constexpr int kLinbits[16] = {1, 2, 3, 4, 6, 8, 10, 13, 4, 5, 6, 7, 8, 9, 11, 13};

TEST(VlcBooks, Mp3Books16And24AgreeWithTheHuffmanDecoder) {
    for (int table = 16; table < 32; ++table) {
        SCOPED_TRACE(table);
        const int escLen = kLinbits[table - 16];
        const Codes book = table < 24 ? magnitudesOf(zetac::tables::kPairBook16)
                                      : magnitudesOf(zetac::tables::kPairBook24);
        const Specs specs(book, zetVLCEscMP3);
        const auto encode = [=](const Zet16s* data, int len, Zet8u** p, int* offset,
                                const void* spec) {
            return zetsVLCEncodeEscBlock_MP3_16s1u(data, len, escLen, p, offset, spec);
        };
        const auto count = [=](const Zet16s* data, int len, int* bits, const void* spec) {
            return zetsVLCCountEscBits_MP3_16s32s(data, len, escLen, bits, spec);
        };
        const auto decodeWith = [=](auto decode) {
            return [=](Zet8u** p, int* offset, Zet16s* data, int len, const void* spec) {
                return decode(p, offset, escLen, data, len, spec);
            };
        };
        const Values values =
            makeValues(withSigns(book), 15, 15 + (1 << escLen) - 1, 8 * ZETAC_MP3_GRANULE_LEN);
        for (size_t i = 0; i < values.size(); i += ZETAC_MP3_GRANULE_LEN) {
            const Values granule(
                values.begin() + static_cast<ptrdiff_t>(i),
                values.begin() + static_cast<ptrdiff_t>(i + ZETAC_MP3_GRANULE_LEN));
            const BitWriter coded = roundTrip(granule, specs, encode, count,
                                              decodeWith(zetsVLCDecodeEscBlock_MP3_1u16s),
                                              decodeWith(zetsVLCDecodeUTupleEscBlock_MP3_1u16s));
            ZetMP3Header header = {};
            header.ID = header.layer = 1;
            ZetMP3GranuleSideInfo info = {};
            info.big_values = ZETAC_MP3_GRANULE_LEN / 2;
            info.part2_3_length = static_cast<Zet32s>(coded.size());
            std::fill_n(info.table_select, 3, table);
            Position stream(coded.bytes(), 0);
            std::vector<Zet32s> lines(ZETAC_MP3_GRANULE_LEN);
            int bound = 0;
            ASSERT_EQ(zetsHuffmanDecode_MP3_1u32s(&stream.p, &stream.offset, lines.data(), &bound,
                                                  &info, &header, info.part2_3_length),
                      zetStsOk);
            EXPECT_TRUE(std::ranges::equal(lines, granule));
        }
    }
}

}  // namespace
