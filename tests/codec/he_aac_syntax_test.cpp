// SBR data: books and band tables.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "sbr/frequency_tables.h"
#include "sbr/huffman_tables.h"
#include "sbr/tables/ps_huffman.h"

namespace zetac::test {
namespace {

using codec::SbrFrequencyTables;
using codec::SbrHeader;

template <int bandsMax>
bool ascends(const codec::SbrBandTable<bandsMax>& table) {
    return std::is_sorted(table.edge, table.edge + table.bands + 1, std::less_equal<>());
}

template <int bandsMax, int allMax>
bool isPartOf(const codec::SbrBandTable<bandsMax>& table, const codec::SbrBandTable<allMax>& all) {
    return std::includes(all.edge, all.edge + all.bands + 1, table.edge,
                         table.edge + table.bands + 1);
}

/** What the standard promises of any tables. */
void expectSound(const SbrFrequencyTables& t) {
    EXPECT_TRUE(ascends(t.high) && ascends(t.low) && ascends(t.limiter));
    EXPECT_TRUE(isPartOf(t.low, t.high));
    EXPECT_TRUE(t.noise.bands > t.low.bands || (ascends(t.noise) && isPartOf(t.noise, t.low)));
    EXPECT_TRUE(std::is_sorted(t.noise.edge, t.noise.edge + t.noise.bands + 1));
    EXPECT_LE(t.kx(), 32);
    EXPECT_LE(t.high.end(), 64);
    for (const int end : {t.low.end(), t.noise.end(), t.limiter.end()})
        EXPECT_EQ(end, t.high.end());
    for (const int first : {t.low.first(), t.noise.first(), t.limiter.first()}) {
        EXPECT_EQ(first, t.kx());
    }
    int target = t.kx();
    for (int i = 0; i < t.patches; ++i) {
        EXPECT_EQ(t.patch[i].target, target);
        EXPECT_GE(t.patch[i].source, 1);
        EXPECT_LE(t.patch[i].source + t.patch[i].bands, t.k0);
        EXPECT_EQ((t.patch[i].target - t.patch[i].source) % 2, 0);  // keeps the sign of the phase
        target += t.patch[i].bands;
    }
    EXPECT_LE(target, t.high.end());
    EXPECT_LT(t.high.end() - target, 3);
}

TEST(SbrTables, AreSoundForEveryHeader) {
    int possible = 0;
    for (const int rate : {16000, 22050, 24000, 32000, 44100, 48000, 64000, 88200, 96000}) {
        for (int code = 0; code < 1 << 16; ++code) {
            const SbrHeader h{0,
                              code & 15,
                              code >> 4 & 15,
                              code >> 8 & 7,
                              code >> 11 & 3,
                              code >> 13 & 1,
                              code >> 14 & 3,
                              code & 3};
            const auto tables = SbrFrequencyTables::make(h, rate);
            if (!tables) continue;
            ++possible;
            expectSound(*tables);
            if (testing::Test::HasFailure()) FAIL() << rate << " " << code;
        }
    }
    std::printf("%d possible headers\n", possible);
    EXPECT_GT(possible, 100000);
}

// By hand from the formulas of 4.6.18.3.2, and as an encoder uses them at 44.1 kHz.
TEST(SbrTables, HaveTheValuesOfTheStandard) {
    SbrHeader h;
    h.bs_start_freq = 7;
    h.bs_stop_freq = 8;
    const auto t = SbrFrequencyTables::make(h, 44100);
    ASSERT_TRUE(t);
    EXPECT_EQ(t->k0, 16);
    EXPECT_EQ(t->kx(), 16);
    EXPECT_EQ(t->high.end(), 43);
    EXPECT_EQ(t->high.bands, 14);
    EXPECT_EQ(t->low.bands, 7);
    EXPECT_EQ(t->noise.bands, 3);
    EXPECT_EQ(t->patches, 2);
    h = {0, 3, 4, 1, 0, 0, 0, 2};
    const auto linear = SbrFrequencyTables::make(h, 64000);
    ASSERT_TRUE(linear);
    EXPECT_EQ(linear->high.bands, 17);
    EXPECT_EQ(linear->patches, 2);  // a third one of two subbands is dropped
}

// Every 20 bits begin a codeword: lengths by value fill the space exactly.
TEST(SbrBooks, AreComplete) {
    std::vector<const codec::SbrHuffmanBook*> books = {
        &codec::kSbrBook<codec::kPsIidFrequencyBook>,
        &codec::kSbrBook<codec::kPsIidTimeBook>,
        &codec::kSbrBook<codec::kPsIidFineFrequencyBook>,
        &codec::kSbrBook<codec::kPsIidFineTimeBook>,
        &codec::kSbrBook<codec::kPsIccFrequencyBook>,
        &codec::kSbrBook<codec::kPsIccTimeBook>,
        &codec::kSbrBook<codec::kPsIpdFrequencyBook, 0>,
        &codec::kSbrBook<codec::kPsIpdTimeBook, 0>,
        &codec::kSbrBook<codec::kPsOpdFrequencyBook, 0>,
        &codec::kSbrBook<codec::kPsOpdTimeBook, 0>};
    for (int i = 0; i < 8; ++i) {
        const auto direction = i % 2 ? codec::SbrDelta::kTime : codec::SbrDelta::kFrequency;
        books.push_back(&codec::envelopeBook(i / 4, i / 2 % 2, direction));
        books.push_back(&codec::noiseBook(i / 2 % 2, direction));
    }
    for (const auto* book : books) {
        double space = 0;
        std::vector<size_t> lengths(256);
        for (uint32_t code = 0; code < 1u << 20; ++code) {
            codec::SbrPayload payload;
            payload.bytes = 3;
            for (int i = 0; i < 3; ++i) {
                payload.data[i] = static_cast<Zet8u>(code << 4 >> (16 - 8 * i));
            }
            codec::SbrBits bits(payload);
            size_t& length = lengths[static_cast<size_t>(book->read(bits) + 128)];
            if (length == 0) space += std::exp2(-static_cast<double>(bits.position()));
            EXPECT_TRUE(length == 0 || length == bits.position());
            length = bits.position();
        }
        EXPECT_EQ(space, 1);
    }
}

}  // namespace
}  // namespace zetac::test
