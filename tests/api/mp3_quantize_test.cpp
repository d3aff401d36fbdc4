// Quantisation and rate control of Layer III: what the records promise is held against the packers
// and the decoder's readers, and against the requantiser's law in double.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <random>
#include <vector>

#include "support/guarded.h"
#include "support/mp3_bands.h"

namespace zetac::test {
namespace {

constexpr int kLines = ZETAC_MP3_GRANULE_LEN;
constexpr int kMaxQuantised = 8206;
constexpr int kVariableRate = 15;
constexpr double kUnity = 0x1p26;  // of Q26 lines
constexpr int kPretab[22] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 3, 3, 3, 2, 0};

// A band of a granule: its lines, window (3: long), scale factor (-1: none) and band number.
struct Band {
    int start, end, window, factor, number;
};

std::vector<Band> bandsOf(int rate, const ZetMP3GranuleSideInfo& info) {
    std::vector<Band> bands;
    const auto& longStart = kLongBandStarts[3 + rate];
    const auto& shortStart = kShortBandStarts[3 + rate];
    const bool isShort = info.block_type == 2;
    const int numLong = !isShort ? 22 : info.mixed_block_flag != 0 ? 8 : 0;
    for (int b = 0; b < numLong; ++b)
        bands.push_back({longStart[b], longStart[b + 1], 3, b < 21 ? b : -1, b});
    int place = numLong;
    for (int b = numLong > 0 ? 3 : 0; isShort && b < 13; ++b) {
        const int width = shortStart[b + 1] - shortStart[b];
        for (int w = 0; w < 3; ++w) {
            const int start = 3 * shortStart[b] + w * width;
            bands.push_back({start, start + width, w, b < 12 ? place++ : -1, b});
        }
    }
    return bands;
}

// The arguments of a call, and what it made of them.
struct Frame {
    ZetMP3Header header{};
    std::array<std::array<Zet32s, kLines>, 4> source{}, lines{};
    Zet8s scaleFactors[4][ZETAC_MP3_SCF_MAX] = {};
    int scfsi[8] = {}, count1Len[4] = {}, hufSize[4] = {};
    ZetMP3GranuleSideInfo info[4] = {};
    ZetMP3PsyOutput psy[4] = {};
    Zet32s bounds[2][3] = {};
    ZetMP3BitReservoir reservoir{0, 4088}, before{};
    int meanBits = 3048;

    explicit Frame(int mode = 0, int rate = 0) {
        header.ID = 1;
        header.layer = 1;
        header.bitrate_index = 9;
        header.sampling_frequency = rate;
        header.mode = mode;
        setRatio(0.02);
    }
    int channels() const { return header.mode == 3 ? 1 : 2; }
    int records() const { return 2 * channels(); }
    std::vector<Band> bands(int record) const {
        return bandsOf(header.sampling_frequency, info[record]);
    }
    void setBlocks(int blockType, int mixed) {
        for (int r = 0; r < records(); ++r) {
            info[r].block_type = blockType;
            info[r].mixed_block_flag = mixed;
        }
    }
    void setRatio(double ratio) {
        for (auto& psyOfRecord : psy)
            for (Zet32s& value : psyOfRecord.ratio) value = static_cast<Zet32s>(ratio * 0x1p31);
    }
    // Noise that falls off by `slope` nepers towards the top, `level` of full scale at line 0.
    void setNoise(std::mt19937& random, double level, double slope) {
        std::normal_distribution<double> normal;
        for (int r = 0; r < records(); ++r)
            for (int i = 0; i < kLines; ++i)
                source[r][i] = static_cast<Zet32s>(std::clamp(
                    normal(random) * level * std::exp(-slope * i / kLines) * kUnity, -2e9, 2e9));
    }

    ZetStatus run(int offset = 0) {
        Guarded<Zet8u> buffer(ZETAC_MP3_QUANTIZE_BUFFER_LEN + offset);
        lines = source;
        before = reservoir;
        const ZetStatus status = zetsQuantize_MP3_32s_I(
            lines[0].data(), scaleFactors[0], scfsi, count1Len, hufSize, &header, info, psy,
            bounds[0], &reservoir, meanBits, buffer.data() + offset);
        EXPECT_TRUE(buffer.intact());
        return status;
    }
    int sumOfBits() const {
        return std::accumulate(info, info + records(), 0, [](int sum, const auto& record) {
            return sum + record.part2_3_length;
        });
    }
};

// ---- what holds for every frame

struct Position {
    Zet8u* byte;
    int offset = 0;
    int operator-(const Position& other) const {
        return static_cast<int>(8 * (byte - other.byte)) + offset - other.offset;
    }
};

// The bits that the packer makes of lines.
int bitsOf(const Frame& frame, int record) {
    std::vector<Zet8u> bytes(8192);
    Position start{bytes.data()}, end = start;
    EXPECT_EQ(
        zetsHuffmanEncode_MP3_32s1u(frame.lines[record].data(), &end.byte, &end.offset,
                                    &frame.header, &frame.info[record], frame.count1Len[record], 0),
        zetStsOk);
    return end - start;
}

// Packs a record and reads it back: the scale factors, of which granule 1 may share some, the
// lines, and no bit more than announced. Returns the bits of stuffing.
int expectComesBack(const Frame& frame, int record, Zet8s* factors) {
    std::vector<Zet8u> bytes(8192);
    Position write{bytes.data()}, read = write, behindFactors = write;
    ZetMP3Header header = frame.header;
    ZetMP3GranuleSideInfo info = frame.info[record];
    const int channel = record % frame.channels(), granule = record / frame.channels();
    int scfsi[4];
    std::copy_n(frame.scfsi + 4 * channel, 4, scfsi);
    EXPECT_EQ(zetsPackScaleFactors_MP3_8s1u(frame.scaleFactors[record], &write.byte, &write.offset,
                                            &header, &info, scfsi, granule, channel),
              zetStsOk);
    behindFactors = write;
    EXPECT_EQ(zetsHuffmanEncode_MP3_32s1u(frame.lines[record].data(), &write.byte, &write.offset,
                                          &header, &info, frame.count1Len[record], 0),
              zetStsOk);
    EXPECT_EQ(info.part2_3_length, behindFactors - read + frame.hufSize[record]);
    EXPECT_EQ(zetsUnpackScaleFactors_MP3_1u8s(&read.byte, &read.offset, factors, &info, scfsi,
                                              &header, granule, channel),
              zetStsOk);
    EXPECT_EQ(read - behindFactors, 0);
    for (const Band& band : frame.bands(record)) {
        if (band.factor < 0) continue;
        EXPECT_EQ(factors[band.factor], frame.scaleFactors[record][band.factor]) << band.factor;
    }
    std::array<Zet32s, kLines> lines;
    int bound = 0;
    const int bits = write - behindFactors;
    EXPECT_EQ(zetsHuffmanDecode_MP3_1u32s(&read.byte, &read.offset, lines.data(), &bound, &info,
                                          &header, bits),
              zetStsOk);
    EXPECT_EQ(lines, frame.lines[record]);
    return frame.hufSize[record] - bits;
}

// What a quantised line of 1 in a band stands for.
double stepOf(const Frame& frame, int record, const Band& band) {
    const auto& info = frame.info[record];
    double quarters = info.global_gain - 210;
    if (band.window < 3) quarters -= 8 * info.subblock_gain[band.window];
    if (band.factor >= 0) {
        const int pretab = band.window == 3 && info.preflag ? kPretab[band.factor] : 0;
        quarters -=
            (frame.scaleFactors[record][band.factor] + pretab) * (info.scalefac_scale ? 4 : 2);
    }
    return kUnity * std::exp2(quarters / 4);
}

// No line that is coded is cut: the power of 3/4 is rounded from 0.5946 on, in singles.
void expectNothingCut(const Frame& frame, int record) {
    for (const Band& band : frame.bands(record)) {
        const double step = stepOf(frame, record, band);
        for (int i = band.start; i < band.end; ++i) {
            const int q = std::abs(frame.lines[record][i]);
            const double power = std::pow(std::abs(frame.source[record][i] / step), 0.75);
            if (q == 0) continue;
            EXPECT_LT(power, (q + 0.595) * (1 + 1e-6)) << band.number << ' ' << i;
        }
    }
}

void expectRecordHolds(const Frame& frame, int record) {
    const auto& info = frame.info[record];
    EXPECT_LE(info.part2_3_length, 4095);
    EXPECT_EQ(info.window_switching_flag, info.block_type != 0);
    EXPECT_TRUE(info.global_gain >= 0 && info.global_gain <= 255);
    for (const Zet32s gain : info.subblock_gain) EXPECT_TRUE(gain >= 0 && gain <= 7);
    for (int i = 0; i < kLines; ++i) {
        const Zet32s q = frame.lines[record][i];
        ASSERT_LE(std::abs(q), kMaxQuantised);
        ASSERT_TRUE(q == 0 || (q < 0) == (frame.source[record][i] < 0));
    }
    if (info.block_type == 2) {
        const int* scfsi = frame.scfsi + 4 * (record % frame.channels());
        EXPECT_EQ(std::accumulate(scfsi, scfsi + 4, info.preflag), 0);
    }
    expectNothingCut(frame, record);
}

// Returns the stuffing.
int expectHolds(const Frame& frame) {
    int stuffing = 0;
    Zet8s factors[2][ZETAC_MP3_SCF_MAX] = {};
    for (int record = 0; record < frame.records(); ++record) {
        SCOPED_TRACE("record " + std::to_string(record));
        expectRecordHolds(frame, record);
        const int spare = expectComesBack(frame, record, factors[record % frame.channels()]);
        EXPECT_GE(spare, 0);
        stuffing += spare;
    }
    const int held = frame.reservoir.held, capacity = frame.reservoir.capacity;
    EXPECT_EQ(capacity, frame.before.capacity);
    if (frame.header.bitrate_index == kVariableRate) {
        EXPECT_EQ(held, frame.before.held);
        EXPECT_LT(stuffing, 8);
        EXPECT_EQ(frame.sumOfBits() % 8, 0);
        EXPECT_LE(frame.sumOfBits(), frame.meanBits + held);
    } else {
        EXPECT_EQ(held % 8, 0);
        EXPECT_LE(held, capacity);
        EXPECT_EQ(frame.sumOfBits(), frame.meanBits + frame.before.held - held);
        EXPECT_TRUE(stuffing < 8 || held == std::min(capacity, 4088) / 8 * 8) << stuffing;
    }
    return stuffing;
}

// ---- the tests

int pick(std::mt19937& random, int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
}

// Empties the right channel from the bounds on, with positions for its bands.
void makeIntensity(Frame& frame, std::mt19937& random) {
    frame.header.mode_extension |= 1;
    for (int record = 1; record < 4; record += 2) {
        for (Zet32s& bound : frame.bounds[record / 2]) bound = pick(random, 0, 14);
        for (const Band& band : frame.bands(record)) {
            if (band.number < frame.bounds[record / 2][band.window % 3]) continue;
            std::fill(&frame.source[record][band.start], &frame.source[record][band.end], 0);
            if (band.factor >= 0)
                frame.scaleFactors[record][band.factor] = static_cast<Zet8s>(pick(random, 0, 6));
        }
    }
}

// Noise of any level; a few lines of any size, in the long or in the short bands of mixed blocks;
// lines at the limits of 32 bits. Ratios of any size, none and below none.
void fillAnyhow(Frame& frame, std::mt19937& random) {
    const int kind = pick(random, 0, 3);
    if (kind == 0) {
        for (int n = 12 * frame.records(); n > 0; --n)
            frame.source[n % frame.records()][pick(random, 0, kLines - 1)] =
                pick(random, -INT_MAX, INT_MAX) >> pick(random, 0, 20);
    } else if (kind == 1) {
        const int step = pick(random, 0, 1) ? 1 : 575,
                  value = pick(random, 0, 1) ? INT_MIN : INT_MAX;
        for (auto& lines : frame.source)
            for (int i = 0; i < kLines; i += step) lines[i] = value;
    } else {
        frame.setNoise(random, std::exp2(-pick(random, -4, 26)), pick(random, 0, 12));
    }
    for (auto& psy : frame.psy)
        for (Zet32s& ratio : psy.ratio)
            ratio =
                pick(random, 0, 30) == 0 ? -1 : pick(random, 0, INT_MAX - 1) >> pick(random, 0, 31);
}

TEST(Mp3Quantize, keepsTheBudgetToTheBitWhateverTheSignal) {
    std::mt19937 random(1);
    for (int trial = 0; trial < 900; ++trial) {
        SCOPED_TRACE(trial);
        Frame frame(pick(random, 0, 3), pick(random, 0, 2));
        frame.header.bitrate_index = pick(random, 0, 3) == 0 ? kVariableRate : pick(random, 0, 14);
        const bool isJoint = frame.header.mode == 1;
        for (int r = 0; r < frame.records(); ++r) {
            auto& info = frame.info[r];
            info.block_type = isJoint && r > 0 ? frame.info[0].block_type : pick(random, 0, 3);
            info.mixed_block_flag =
                isJoint && r > 0 ? frame.info[0].mixed_block_flag : pick(random, 0, 1);
        }
        fillAnyhow(frame, random);
        if (isJoint && pick(random, 0, 1)) makeIntensity(frame, random);
        frame.reservoir = {8 * pick(random, 0, 511),
                           pick(random, 0, 1) ? 4088 : pick(random, 0, 5000)};
        // Up to what stuffing can fill.
        const int most = 4095 * frame.records() - frame.reservoir.held;
        frame.meanBits = std::min(
            pick(random, 0, 2) == 0 ? pick(random, 0, 12000) : 8 * pick(random, 40, 400), most);
        ASSERT_EQ(frame.run(trial % 64), zetStsOk);
        expectHolds(frame);
        if (HasFailure()) return;
    }
}

TEST(Mp3Quantize, leavesToTheCallerWhatStuffingCannotFill) {
    Frame frame(3);
    frame.reservoir.capacity = 0;
    for (const int meanBits : {11352, 2147483647}) {
        frame.meanBits = meanBits;
        ASSERT_EQ(frame.run(), zetStsOk);
        EXPECT_EQ(frame.sumOfBits(), 2 * 4095);
        EXPECT_EQ(frame.reservoir.held, 0);
    }
}

TEST(Mp3Quantize, savesTheBitsOfSilenceUntilTheReservoirIsFull) {
    Frame frame;
    frame.reservoir.capacity = 4001;
    for (const int held : {3048, 4000, 4000}) {
        ASSERT_EQ(frame.run(), zetStsOk);
        EXPECT_EQ(frame.reservoir.held, held);
        EXPECT_EQ(expectHolds(frame), frame.sumOfBits());
        for (const auto& record : frame.info) EXPECT_EQ(record.big_values, 0);
    }
}

// The bands of the right channel in intensity stereo carry positions, and those that a decoder
// would take for such bands because nothing follows them carry the one that is none.
TEST(Mp3Quantize, codesIntensityPositions) {
    std::mt19937 random(4);
    for (const int blockType : {0, 2}) {
        Frame frame(1);
        frame.setBlocks(blockType, 0);
        frame.setNoise(random, 0.1, 3);
        makeIntensity(frame, random);
        const Frame given = frame;
        ASSERT_EQ(frame.run(), zetStsOk);
        expectHolds(frame);
        for (const int record : {1, 3}) {
            int end[4] = {};  // of the lines that are not 0, by window
            for (const Band& band : frame.bands(record))
                for (int i = band.start; i < band.end; ++i)
                    if (frame.lines[record][i] != 0) end[band.window] = band.end;
            for (const Band& band : frame.bands(record)) {
                if (band.factor < 0 || band.start < end[band.window]) continue;
                const bool isIntensity = band.number >= frame.bounds[record / 2][band.window % 3];
                EXPECT_EQ(frame.scaleFactors[record][band.factor],
                          isIntensity ? given.scaleFactors[record][band.factor] : 7);
            }
        }
    }
}

// Least bits of a run of lines with any table that holds them, as the packer writes them.
int leastBits(int rate, const Zet32s* lines, int count) {
    constexpr int kLargest[16] = {0, 1, 2, 2, 0, 3, 3, 5, 5, 5, 7, 7, 7, 15, 0, 15};
    int peak = 0, least = count > 0 ? INT_MAX : 0;
    for (int i = 0; i < count; ++i) peak = std::max(peak, std::abs(lines[i]));
    for (int table = 0; table < 32 && count > 0; ++table) {
        const int linbits = table < 16 ? 0 : _pHfLinbits[table - 13];
        if (peak > (table < 16 ? kLargest[table] : 14 + (1 << linbits))) continue;
        Frame alone(0, rate);
        alone.info[0].big_values = count / 2;
        std::fill_n(alone.info[0].table_select, 3, table);
        std::copy_n(lines, count, alone.lines[0].begin());
        least = std::min(least, bitsOf(alone, 0));
    }
    return least;
}

// The fewest bits for the big values of a long block, over all divisions.
int fewestBits(const Frame& frame, int record) {
    const auto& starts = kLongBandStarts[3 + frame.header.sampling_frequency];
    const Zet32s* lines = frame.lines[record].data();
    const int end = 2 * frame.info[record].big_values;
    int bits[23][23], least = INT_MAX;  // of the bands from .. to
    for (int from = 0; from < 23; ++from)
        for (int to = from; to < 23; ++to) {
            const int a = std::min(starts[from], end);
            bits[from][to] = leastBits(frame.header.sampling_frequency, lines + a,
                                       std::min(starts[to], end) - a);
        }
    for (int end0 = 1; end0 <= 16; ++end0)
        for (int end1 = end0 + 1; end1 <= std::min(end0 + 8, 22); ++end1)
            least = std::min(least, bits[0][end0] + bits[end0][end1] + bits[end1][22]);
    return least;
}

TEST(Mp3Quantize, dividesLongBlocksForTheFewestBits) {
    std::mt19937 random(2);
    for (const double slope : {0.0, 3.0, 6.0, 12.0}) {
        for (const int meanBits : {400, 3000, 7000}) {
            SCOPED_TRACE(testing::Message() << slope << ' ' << meanBits);
            Frame frame(0, meanBits / 100 % 3);
            frame.setNoise(random, 0.3, slope);
            frame.meanBits = meanBits;
            ASSERT_EQ(frame.run(), zetStsOk);
            for (int record = 0; record < 3; ++record) {  // the last one may have stuffing
                Frame other = frame;
                other.info[record].count1table_select ^= 1;
                EXPECT_LE(bitsOf(frame, record), bitsOf(other, record));
                other.info[record] = frame.info[record];
                other.count1Len[record] = 0;
                EXPECT_EQ(bitsOf(other, record), fewestBits(frame, record));
                EXPECT_EQ(frame.hufSize[record], bitsOf(frame, record));
            }
        }
    }
}

// Noise of a band in units of its energy.
double noiseOf(const Frame& frame, int record, const Band& band) {
    const double step = stepOf(frame, record, band);
    double noise = 0, energy = 0;
    for (int i = band.start; i < band.end; ++i) {
        const double x = frame.source[record][i], q = frame.lines[record][i];
        const double value = std::copysign(std::pow(std::abs(q), 4.0 / 3), q) * step;
        noise += (x - value) * (x - value);
        energy += x * x;
    }
    return energy > 0 ? noise / energy : 0;
}

// With bits enough, no band has more noise than its threshold; energies and noise are sums of at
// most 158 singles, good for 158 * 2^-24. Nor are bits wasted: a step changes the noise by 1.1 dB,
// and scale factors round two or four steps up; over all these granules the mean distance to the
// threshold is 3.5 dB at most.
TEST(Mp3Quantize, meetsEveryThresholdAtVariableRateAndStopsThere) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> decibels(-20, -10);
    for (int trial = 0; trial < 50; ++trial) {
        const int blockType = trial % 5 % 4, mixed = trial % 5 == 2 ? trial / 5 % 2 : trial % 2;
        SCOPED_TRACE(testing::Message() << trial << ": " << blockType << ' ' << mixed);
        Frame frame(0, trial % 3);
        frame.header.bitrate_index = kVariableRate;
        frame.meanBits = 12000;
        frame.setBlocks(blockType, mixed);
        frame.setNoise(random, 0.1, 3);
        for (auto& psy : frame.psy)
            for (Zet32s& ratio : psy.ratio)
                ratio = static_cast<Zet32s>(0x1p31 * std::pow(10, decibels(random) / 10));
        ASSERT_EQ(frame.run(), zetStsOk);
        expectHolds(frame);
        for (int record = 0; record < 4; ++record) {
            double over = 0;
            int count = 0;
            for (const Band& band : frame.bands(record)) {
                const bool isShort = blockType == 2;
                if (band.factor < 0 || (isShort && band.window == 3)) continue;
                const int place = isShort ? 3 * band.number + band.window : band.number;
                const double limit = frame.psy[record].ratio[place] * 0x1p-31;
                const double noise = noiseOf(frame, record, band);
                EXPECT_LE(noise, limit * (1 + 1e-5)) << band.number << ' ' << band.window;
                over += 10 * std::log10(noise / limit);
                ++count;
            }
            EXPECT_GT(over / count, -4);
        }
    }
}

// At a constant rate bits go where the noise is heard: a channel 40 dB below the other, whose
// thresholds are as much lower, has the same noise over threshold.
TEST(Mp3Quantize, givesAllChannelsTheSameNoiseOverThreshold) {
    std::mt19937 random(5);
    for (const int meanBits : {1600, 3048, 5000}) {
        Frame frame;
        frame.meanBits = meanBits;
        frame.setNoise(random, 0.1, 2);
        for (const int record : {1, 3})
            for (Zet32s& line : frame.source[record]) line /= 100;
        ASSERT_EQ(frame.run(), zetStsOk);
        double mean[2] = {};
        for (int record = 0; record < 4; ++record)
            for (const Band& band : frame.bands(record))
                if (band.factor >= 0)
                    mean[record % 2] += 10 * std::log10(noiseOf(frame, record, band)) / (2 * 21);
        EXPECT_NEAR(mean[0], mean[1], 0.5) << meanBits;
    }
}

// Single precision in a fixed order: every processor and word size gives this sum.
TEST(Mp3Quantize, givesTheSameBitsEverywhere) {
    std::mt19937 random(7);
    uint64_t sum = 14695981039346656037u;
    const auto add = [&sum](const auto* values, size_t count) {
        for (size_t i = 0; i < count; ++i)
            sum = (sum ^ static_cast<uint32_t>(values[i])) * 1099511628211u;
    };
    for (int trial = 0; trial < 64; ++trial) {
        Frame frame(trial % 4, trial % 3);
        frame.setBlocks(trial / 4 % 4, trial / 16 % 2);
        frame.meanBits = 8 * pick(random, 50, 900);
        for (auto& lines : frame.source)
            for (int i = 0; i < kLines; ++i)
                lines[i] = pick(random, -1000000, 1000000) * 64 / (i * trial / 4 + 1);
        for (auto& psy : frame.psy)
            for (Zet32s& ratio : psy.ratio) ratio = pick(random, 0, 0x7ffffffe) >> 4;
        ASSERT_EQ(frame.run(), zetStsOk);
        for (int r = 0; r < frame.records(); ++r) {
            add(frame.lines[r].data(), kLines);
            add(frame.scaleFactors[r], ZETAC_MP3_SCF_MAX);
            add(&frame.info[r].part2_3_length, sizeof frame.info[r] / sizeof(Zet32s));
        }
    }
    EXPECT_EQ(sum, 15823100793807585926u);
}

}  // namespace
}  // namespace zetac::test
