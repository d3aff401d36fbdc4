// SBR data: books, band tables, and what a writer of its own puts into payloads.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "sbr/huffman.h"
#include "support/streams/sbr_stream.h"

namespace zetac::test {
namespace {

using codec::Fault;
using codec::SbrFault;
using codec::SbrFrequencyTables;
using codec::SbrHeader;

codec::SbrPayload payloadOf(const Bytes& bytes) {
    codec::SbrPayload payload;
    payload.bytes = bytes.size();
    std::ranges::copy(bytes, payload.data);
    return payload;
}

/** Draws headers until one asks for possible bands. */
SbrHeader anyHeader(Random& random, int sampleRate) {
    SbrHeader h;
    const auto bits = [&](int count) { return static_cast<int>(random.below(1u << count)); };
    do {
        h = {bits(1), bits(4), bits(4), bits(3), bits(2), bits(1),
             bits(2), bits(2), bits(2), bits(1), bits(1)};
    } while (!SbrFrequencyTables::make(h, sampleRate));
    return h;
}

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
    EXPECT_TRUE(ascends(t.high) && ascends(t.low) && ascends(t.noise) && ascends(t.limiter));
    EXPECT_TRUE(isPartOf(t.low, t.high) && isPartOf(t.noise, t.low));
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

TEST(SbrBooks, AreCompleteAndReadBack) {
    for (const int bs_amp_res : {0, 1}) {
        for (const bool isBalance : {false, true}) {
            for (const auto direction : {codec::SbrDelta::kFrequency, codec::SbrDelta::kTime}) {
                for (const auto* book : {&codec::envelopeBook(bs_amp_res, isBalance, direction),
                                         &codec::noiseBook(isBalance, direction)}) {
                    // Every 20 bits begin a codeword: lengths by value fill the space exactly.
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
        }
    }
}

void expectTruth(const SbrWriter& writer, const codec::SbrParser& parser, int index) {
    const SbrTruth& truth = writer.truth(index);
    const codec::SbrChannel& c = parser.channel(index);
    const auto& grid = c.grid;
    ASSERT_EQ(grid.envelopes, truth.grid.envelopes);
    EXPECT_TRUE(std::equal(grid.border, grid.border + grid.envelopes + 1, truth.grid.border));
    EXPECT_EQ(grid.transient, truth.grid.transient);
    ASSERT_EQ(grid.noiseFloors, truth.grid.noiseFloors);
    EXPECT_TRUE(grid.noiseFloors == 1 || grid.noiseBorder == truth.grid.noiseBorder);
    for (int l = 0; l < grid.envelopes; ++l) {
        ASSERT_EQ(grid.bs_freq_res[l], truth.grid.bs_freq_res[l]);
        const int bands = writer.tables().envelope(grid.bs_freq_res[l] != 0).bands;
        for (int i = 0; i < bands; ++i) {
            ASSERT_EQ(c.factors.envelope[l][i], truth.envelope[l][i]) << l << " " << i;
        }
    }
    const int noiseBands = writer.tables().noise.bands;
    for (int i = 0; i < noiseBands; ++i) EXPECT_EQ(c.bs_invf_mode[i], truth.bs_invf_mode[i]);
    for (int l = 0; l < grid.noiseFloors; ++l) {
        for (int i = 0; i < noiseBands; ++i) EXPECT_EQ(c.factors.noise[l][i], truth.noise[l][i]);
    }
    for (int i = 0; i < writer.tables().high.bands; ++i) {
        EXPECT_EQ(c.bs_add_harmonic[i] != 0, truth.bs_add_harmonic[i]);
    }
}

/** Levels by the formulas of 4.6.18.3.5, in double precision. */
void expectLevels(const SbrWriter& writer, const codec::SbrParser& parser) {
    const auto& left = parser.channel(0);
    const auto& right = parser.channel(1);
    const double a = left.factors.bs_amp_res ? 1 : 0.5;
    const double pan = left.factors.bs_amp_res ? 12 : 24;
    const int e0 = writer.truth(0).envelope[0][0];
    const int q0 = writer.truth(0).noise[0][0];
    double e = std::exp2(6 + a * e0);
    double q = std::exp2(6 - q0);
    if (writer.isCoupled()) {
        const double ratio = std::exp2(a * (pan - writer.truth(1).envelope[0][0]));
        const double noiseRatio = std::exp2(12 - writer.truth(1).noise[0][0]);
        e *= 2 / (1 + ratio);
        q *= 2 / (1 + noiseRatio);
        EXPECT_NEAR(right.levels.envelope[0][0] / (e * ratio), 1, 1e-6);
        EXPECT_NEAR(right.levels.noise[0][0] / (q * noiseRatio), 1, 1e-6);
    }
    EXPECT_NEAR(left.levels.envelope[0][0] / e, 1, 1e-6);  // a few roundings to 24 bits
    EXPECT_NEAR(left.levels.noise[0][0] / q, 1, 1e-6);
}

TEST(SbrParser, ReadsWhatWasWritten) {
    Random random(1);
    int coupled = 0;
    for (int stream = 0; stream < 200; ++stream) {
        SbrStyle style;
        style.isPair = stream % 2 != 0;
        style.hasCrc = stream % 3 == 0;
        style.sampleRate = stream % 5 == 0 ? 32000 : 44100;
        style.header = anyHeader(random, style.sampleRate);
        SbrWriter writer(style, static_cast<uint32_t>(stream));
        codec::SbrParser parser(style.isPair, style.sampleRate);
        for (int frame = 0; frame < 20; ++frame) {
            SCOPED_TRACE(testing::Message() << stream << " " << frame);
            ASSERT_EQ(parser.parse(payloadOf(writer.next())), Fault::kNone);
            ASSERT_TRUE(parser.isActive());
            EXPECT_EQ(parser.isReset(), frame == 0);
            for (int c = 0; c < parser.channels(); ++c) expectTruth(writer, parser, c);
            expectLevels(writer, parser);
            coupled += writer.isCoupled();
            if (HasFailure()) return;
        }
    }
    EXPECT_GT(coupled, 300);
}

// The polynomial has an even number of terms and catches every burst of 10 bits.
TEST(SbrParser, NoticesDamageByTheCrc) {
    Random random(2);
    SbrStyle style;
    style.hasCrc = true;
    style.headerEvery = 1;
    style.header = anyHeader(random, style.sampleRate);
    SbrWriter writer(style, 1);
    const Bytes good = writer.next();
    for (size_t bit = 4; bit < good.size() * 8; ++bit) {
        Bytes bad = good;
        bad[bit / 8] ^= static_cast<Zet8u>(0x80 >> bit % 8);
        codec::SbrParser parser(false, style.sampleRate);
        ASSERT_EQ(parser.parse(payloadOf(bad)), SbrFault::kCrc) << bit;
        ASSERT_FALSE(parser.isActive());
    }
}

TEST(SbrParser, WaitsForAHeaderAfterDamage) {
    Random random(3);
    SbrStyle style;
    style.isPair = true;
    style.header = anyHeader(random, style.sampleRate);
    SbrWriter writer(style, 5);
    codec::SbrParser parser(true, style.sampleRate);
    for (int frame = 0; frame < 40; ++frame) {
        Bytes payload = writer.next();
        if (frame == 3) payload.resize(3);
        if (frame == 19) payload.clear();
        const bool isLost = (frame >= 3 && frame < 8) || (frame >= 19 && frame < 24);
        EXPECT_EQ(parser.parse(payloadOf(payload)) != Fault::kNone, frame == 3) << frame;
        EXPECT_EQ(parser.isActive(), !isLost) << frame;
        EXPECT_EQ(parser.isReset(), frame == 0 || frame == 8 || frame == 24) << frame;
    }
}

}  // namespace
}  // namespace zetac::test
