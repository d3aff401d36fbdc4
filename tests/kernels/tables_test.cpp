// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "tables/aac/codebooks.h"
#include "tables/aac/dequant.h"
#include "tables/aac/huffman_trees.h"
#include "tables/aac/scalefactor_book.h"
#include "tables/aac/spectral_books.h"
#include "tables/aac/swb_offset.h"
#include "tables/aac/tns.h"
#include "tables/aac/windows.h"
#include "tables/mp3/bands.h"

namespace zetac::tables {
namespace {

// A rounded entry is half a unit off at most. The formulas here and there carry 64 significant
// bits; their errors, below 2^-52 relative, move a 31-bit entry by less than a millionth of a unit.
constexpr long double kHalfUnit = 0.5L + 1e-6L;

// FNV-1a over whole numbers. The expected sums were computed from separate transcriptions of the
// standard's tables, not from the headers.
class Checksum {
  public:
    Checksum& add(std::int64_t value) {
        sum_ = (sum_ ^ static_cast<std::uint64_t>(value)) * 0x100000001b3U;
        return *this;
    }
    template <typename T>
    Checksum& addAll(const T& values) {
        for (const auto value : values) add(value);
        return *this;
    }
    std::uint64_t sum() const { return sum_; }

  private:
    std::uint64_t sum_ = 0xcbf29ce484222325U;
};

// Codewords as intervals of the 32-bit numbers that begin with them: each starts where the one
// before ends, from 0 to 2^32. So no codeword begins another and no bit pattern is undecodable.
void expectPrefixFreeAndComplete(std::span<const HuffmanCode> book) {
    std::vector<HuffmanCode> sorted(book.begin(), book.end());
    std::sort(sorted.begin(), sorted.end(), [](const HuffmanCode& a, const HuffmanCode& b) {
        return a.codeword << (32 - a.length) < b.codeword << (32 - b.length);
    });
    std::uint64_t covered = 0;
    for (const auto& [length, codeword] : sorted) {
        ASSERT_EQ(std::uint64_t{codeword} << (32 - length), covered);
        covered += std::uint64_t{1} << (32 - length);
    }
    EXPECT_EQ(covered, std::uint64_t{1} << 32);
}

struct Leaf {
    int node;
    int bits;
};

// Walks from a node with the bits of a 32-bit window of the stream, the first `bits` already used.
template <typename Node>
Leaf walk(const Node* tree, std::uint32_t stream, int node = 0, int bits = 0) {
    for (; !(tree[node] & 1); ++bits) node += stream << bits >> 31 ? tree[node] / 2 : 1;
    return {node, bits};
}

// Two's-complement fields of a leaf, for four values 3 bits wide, for two 6.
std::vector<int> leafValues(int leaf, int dimension) {
    const int width = 12 / dimension;
    std::vector<int> values;
    for (int shift = 2; shift < 14; shift += width) {
        const int raw = leaf >> shift & ((1 << width) - 1);
        values.push_back(raw < 1 << (width - 1) ? raw : raw - (1 << width));
    }
    return values;
}

struct SpectralCase {
    int codebook;
    std::span<const HuffmanCode> book;
    std::uint64_t checksum;  // of length, codeword and values, codeword by codeword
};
constexpr SpectralCase kSpectralCases[] = {
    {1, kSpectralBook1, 0x6b288cb7435476fc},   {2, kSpectralBook2, 0x2c930ce768063cf0},
    {3, kSpectralBook3, 0xd88a7116abfc7bda},   {4, kSpectralBook4, 0xfa1da5bdedec40de},
    {5, kSpectralBook5, 0x32b7d510e5a57e7c},   {6, kSpectralBook6, 0xb164d5a5fb12a312},
    {7, kSpectralBook7, 0x9e0edce6c4553687},   {8, kSpectralBook8, 0xd44ba3ffd0cff943},
    {9, kSpectralBook9, 0xbc939f5902b1f653},   {10, kSpectralBook10, 0x14252579050b2e7b},
    {11, kSpectralBook11, 0x6e21e00561157603},
};

TEST(SpectralBooks, TreeDecodesEveryCodewordToItsTuple) {
    for (const auto& [codebook, book, checksum] : kSpectralCases) {
        SCOPED_TRACE(codebook);
        expectPrefixFreeAndComplete(book);
        const CodebookParam& param = _pCbParam_AAC[codebook];
        ASSERT_EQ(param.codebook, codebook);
        Checksum sum;
        int largest = 0;
        int smallest = 0;
        for (const auto& [length, codeword] : book) {
            const Leaf leaf = walk(param.tree, codeword << (32 - length));
            ASSERT_EQ(leaf.bits, length);
            ASSERT_LT(static_cast<std::size_t>(leaf.node), 2 * book.size() - 1);
            const auto values = leafValues(param.tree[leaf.node], param.dimension);
            sum.add(length).add(codeword).addAll(values);
            largest = std::max(largest, *std::max_element(values.begin(), values.end()));
            smallest = std::min(smallest, *std::min_element(values.begin(), values.end()));
        }
        EXPECT_EQ(sum.sum(), checksum);
        EXPECT_EQ(param.largest, largest);
        EXPECT_EQ(smallest, param.isUnsigned ? 0 : -largest);
    }
}

TEST(ScalefactorBook, TreeDecodesEveryCodeword) {
    expectPrefixFreeAndComplete(kScalefactorBook);
    Checksum sum;
    for (const auto& [length, codeword] : kScalefactorBook) {
        const std::uint32_t stream = codeword << (32 - length);
        const Leaf leaf = walk<std::uint8_t>(_pHfTableScf, stream);
        ASSERT_EQ(leaf.bits, length);
        const int value = _pHfTableScf[leaf.node] / 2;
        sum.add(length).add(codeword).add(value - 60);
    }
    EXPECT_EQ(sum.sum(), 0x31c13973ddcf6b44U);
}

TEST(AacBands, AscendingClosedAndAsListed) {
    const auto check = [](const auto& offsets, const auto& counts, int lines) {
        Checksum sum;
        for (int index = 0; index < kNumSamplingFrequencies; ++index) {
            const std::span band(offsets[index], counts[index] + 1);
            EXPECT_EQ(band.front(), 0);
            EXPECT_EQ(band.back(), lines);
            EXPECT_TRUE(std::is_sorted(band.begin(), band.end(), std::less_equal<>()));
            sum.add(counts[index]).addAll(band);
        }
        return sum.sum();
    };
    EXPECT_EQ(check(_pAACSwbOffsetTableLong, _pAACNumSwbTableLong, 1024), 0x4479c58b6c44c758U);
    EXPECT_EQ(check(_pAACSwbOffsetTableShort, _pAACNumSwbTableShort, 128), 0x4eafd152671f61eeU);
}

TEST(AacLists, AsListed) {
    Checksum tnsMaxBands;
    for (const auto& row : _pAACTnsMaxBandTable) tnsMaxBands.addAll(row);
    EXPECT_EQ(tnsMaxBands.sum(), 0xc07a42c17e20c492U);
    EXPECT_EQ(Checksum().addAll(_Tab_LtpCoef_AAC).sum(), 0x9abbb70c7aa6dc54U);
}

TEST(AacTns, ReflectionIsTheSineOfTheQuantiserStep) {
    for (const int bits : {3, 4}) {
        const int half = 1 << (bits - 1);
        for (int value = -8; value < 8; ++value) {
            const bool transmittable = -half <= value && value < half;
            const long double step = (half + (value < 0 ? 0.5L : -0.5L)) / (M_PIl / 2);
            const long double exact = transmittable ? sinl(value / step) : 0;
            EXPECT_NEAR(kTnsReflection[bits - 3][value + 8], exact * 0x1p31L, kHalfUnit);
        }
    }
}

TEST(AacIntensity, SharesAreQuarterPowers) {
    for (int i = 0; i < 11; ++i)
        EXPECT_NEAR(_pAacIsSqrt14_32s[i], powl(2, 31 - (i + 1) / 4.0L), kHalfUnit) << i;
}

// I0(x) is the mean of e^(x cos t) over a period; over 128 points the trapezoidal rule leaves an
// error of about 2 I128(x), which is nothing for x up to 6 pi.
long double besselI0ByMean(long double x) {
    long double sum = 0;
    for (int k = 0; k < 128; ++k) sum += expl(x * cosl(2 * M_PIl * k / 128));
    return sum / 128;
}

template <std::size_t half>
void expectWindows(const Table<std::int32_t, half>& sine, const Table<std::int32_t, half>& kbd,
                   int alpha) {
    std::vector<long double> running(half + 1);
    long double sum = 0;
    for (std::size_t p = 0; p <= half; ++p) {
        const long double r = 2.0L * p / half - 1;
        running[p] = sum += besselI0ByMean(M_PIl * alpha * sqrtl(1 - r * r));
    }
    for (std::size_t n = 0; n < half; ++n) {
        ASSERT_NEAR(sine[n], sinl(M_PIl / (2 * half) * (n + 0.5L)) * 0x1p31L, kHalfUnit) << n;
        ASSERT_NEAR(kbd[n], sqrtl(running[n] / sum) * 0x1p31L, kHalfUnit) << n;
    }
}

TEST(AacWindows, AgreeWithTheirDefinitions) {
    expectWindows(pWinSINShort, pWinKBDShort, 6);
    expectWindows(pWinSINLong, pWinKBDLong, 4);
}

// Ascending from 0 to the end in even steps, as pairs of lines need them.
std::uint64_t checkMp3Bands(std::span<const std::int16_t> rows, int entries, int end) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const bool isFirst = i % entries == 0;
        EXPECT_TRUE(isFirst ? rows[i] == 0 : rows[i] > rows[i - 1]) << i;
        EXPECT_EQ(rows[i] % 2, 0) << i;
        EXPECT_TRUE(!isFirst || rows[i + entries - 1] == end) << i;
    }
    return Checksum().addAll(rows).sum();
}

TEST(Mp3Bands, AscendingClosedAndAsListed) {
    EXPECT_EQ(checkMp3Bands(_zet_pMP3SfbTableLong, 23, 576), 0x8e5fcf0fa5628aefU);
    EXPECT_EQ(checkMp3Bands(_zet_pMP3SfbTableShort, 14, 192), 0x390cf07e84ee5329U);
}

}  // namespace
}  // namespace zetac::tables
