// Every codeword of every book through the public decoder, written with the literal books.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <random>

#include "support/channel_stream.h"
#include "tables/aac/scalefactor_book.h"
#include "tables/aac/spectral_books.h"
#include "tables/aac/swb_offset.h"

using namespace zetac::test;
using namespace zetac::tables;

namespace {

constexpr const HuffmanCode* kBooks[12] = {nullptr,        kSpectralBook1,  kSpectralBook2,
                                           kSpectralBook3, kSpectralBook4,  kSpectralBook5,
                                           kSpectralBook6, kSpectralBook7,  kSpectralBook8,
                                           kSpectralBook9, kSpectralBook10, kSpectralBook11};

void appendEscape(BitWriter& stream, int magnitude) {
    int bits = 4;
    while (magnitude >> (bits + 1)) ++bits;
    stream.append((1U << (bits - 4)) - 1, bits - 4).append(0, 1);
    stream.append(static_cast<uint32_t>(magnitude) - (1U << bits), bits);
}

// The values of one tuple as the stream has them; magnitudes above 15 take the escape.
void appendTuple(BitWriter& stream, int codebook, const int* values) {
    const SpectralTupleShape shape = kSpectralTupleShape[codebook];
    int index = 0;
    for (int i = 0; i < shape.dimension; ++i) {
        const int digit = shape.isUnsigned() ? std::abs(values[i]) : values[i] + shape.offset;
        index = index * shape.radix + std::min(digit, shape.radix - 1);
    }
    stream.append(kBooks[codebook][index].codeword, kBooks[codebook][index].length);
    if (!shape.isUnsigned()) return;
    for (int i = 0; i < shape.dimension; ++i)
        if (values[i] != 0) stream.append(values[i] < 0, 1);
    for (int i = 0; codebook == 11 && i < shape.dimension; ++i)
        if (std::abs(values[i]) >= 16) appendEscape(stream, std::abs(values[i]));
}

// Every tuple of a book with any signs, many times in any order, so that all kinds of codewords
// follow each other.
std::vector<int> allTuples(int codebook) {
    const SpectralTupleShape shape = kSpectralTupleShape[codebook];
    std::vector<int> order(shape.dimension == 4 ? 81 : shape.radix * shape.radix);
    std::iota(order.begin(), order.end(), 0);
    std::mt19937 random(static_cast<unsigned>(codebook));
    std::vector<int> values;
    for (int round = 0; round < 64; ++round) {
        std::shuffle(order.begin(), order.end(), random);
        for (const int index : order) {
            const SpectralTuple tuple = shape.tuple(index);
            for (int i = 0; i < shape.dimension; ++i) {
                const bool isNegative = shape.isUnsigned() && random() % 2 != 0;
                values.push_back(isNegative ? -tuple.values[i] : tuple.values[i]);
            }
        }
    }
    return values;
}

std::vector<int> allEscapes() {
    std::vector<int> values;
    for (int magnitude = 16; magnitude <= 8191; ++magnitude) {
        const int other = magnitude % 3 ? magnitude % 16 : 8191 + 16 - magnitude;
        for (int sign : {1, -1}) {
            values.insert(values.end(), {sign * magnitude, other});
            values.insert(values.end(), {-other, sign * magnitude});
        }
    }
    return values;
}

// Decodes the values in frames of maxSfb bands, one section each.
void expectDecoded(int codebook, std::vector<int> values, int maxSfb) {
    const auto lines = static_cast<size_t>(kSwbOffsetLong48000[maxSfb]);
    values.resize((values.size() + lines - 1) / lines * lines);
    const auto dimension = static_cast<size_t>(kSpectralTupleShape[codebook].dimension);
    for (size_t frame = 0; frame < values.size(); frame += lines) {
        BitWriter stream = longWindow(100, maxSfb).append(section(codebook, maxSfb));
        stream.repeat(maxSfb, 0, 1).append(noTools());
        for (size_t i = 0; i < lines; i += dimension)
            appendTuple(stream, codebook, &values[frame + i]);
        Channel channel;
        ASSERT_EQ(channel.decode(Form::kSeparate, stream), zetStsOk);
        ASSERT_EQ(channel.consumed, stream.size());
        for (size_t i = 0; i < lines; ++i) ASSERT_EQ(channel.spectrum[i], values[frame + i]);
        for (size_t i = lines; i < 1024; ++i) ASSERT_EQ(channel.spectrum[i], 0);
    }
}

// Full frames are decoded with a look ahead for the most part, frames of one band without.
TEST(AacCodebooks, DecodeEveryTupleInAnyOrder) {
    for (int codebook = 1; codebook < 12; ++codebook)
        for (const int maxSfb : {1, 49}) expectDecoded(codebook, allTuples(codebook), maxSfb);
}

TEST(AacCodebooks, DecodeEveryEscape) {
    for (const int maxSfb : {1, 49}) expectDecoded(11, allEscapes(), maxSfb);
}

TEST(AacCodebooks, DecodeEveryPairOfScalefactorDifferences) {
    for (int first = -60; first <= 60; ++first) {
        for (int second = -60; second <= 60; ++second) {
            BitWriter stream = longWindow(128, 2).append(section(1, 2));
            for (const int diff : {first, second})
                stream.append(kScalefactorBook[diff + 60].codeword,
                              kScalefactorBook[diff + 60].length);
            Channel channel;
            ASSERT_EQ(channel.decode(Form::kLowComplexity, stream.append(noTools()).append(0, 2)),
                      zetStsOk);
            ASSERT_EQ(channel.consumed, stream.size());
            ASSERT_TRUE(
                channel.startsWith(channel.scaleFactor, {128 + first, 128 + first + second}));
        }
    }
}

}  // namespace
