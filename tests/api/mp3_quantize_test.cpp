// Quantisation and rate control of Layer III: what the records promise is worked out again from the
// lines, with the codebooks that the decoder's tables hold and the requantiser's law in double.
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <random>
#include <vector>

#include "support/guarded.h"
#include "support/mp3_huffman_model.h"

namespace zetac::test {
namespace {

constexpr int kLines = ZETAC_MP3_GRANULE_LEN;
constexpr int kMaxQuantised = 8206;
constexpr int kVariableRate = 15;
constexpr double kUnity = 0x1p26;  // of Q26 lines

constexpr Zet16s kLong[3][23] = {{0,  4,  8,   12,  16,  20,  24,  30,  36,  44,  52, 62,
                                  74, 90, 110, 134, 162, 196, 238, 288, 342, 418, 576},
                                 {0,  4,  8,   12,  16,  20,  24,  30,  36,  42,  50, 60,
                                  72, 88, 106, 128, 156, 190, 230, 276, 330, 384, 576},
                                 {0,  4,   8,   12,  16,  20,  24,  30,  36,  44,  54, 66,
                                  82, 102, 126, 156, 194, 240, 296, 364, 448, 550, 576}};
constexpr Zet16s kShort[3][14] = {{0, 4, 8, 12, 16, 22, 30, 40, 52, 66, 84, 106, 136, 192},
                                  {0, 4, 8, 12, 16, 22, 28, 38, 50, 64, 80, 100, 126, 192},
                                  {0, 4, 8, 12, 16, 22, 30, 42, 58, 78, 104, 138, 180, 192}};
constexpr int kPretab[22] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 3, 3, 3, 2, 0};
constexpr int kSlen[2][16] = {{0, 0, 0, 0, 3, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4},
                              {0, 1, 2, 3, 0, 1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 3}};

// A band of a granule: its lines, window (3: long), scale factor (-1: none) and band number.
struct Band {
    int start, end, window, factor, number;
    bool upper;
};

std::vector<Band> bandsOf(int rate, const ZetMP3GranuleSideInfo& info) {
    std::vector<Band> bands;
    const bool isShort = info.block_type == 2;
    const int numLong = !isShort ? 22 : info.mixed_block_flag != 0 ? 8 : 0;
    for (int b = 0; b < numLong; ++b)
        bands.push_back({kLong[rate][b], kLong[rate][b + 1], 3, b < 21 ? b : -1, b, b >= 11});
    int place = numLong;
    for (int b = numLong > 0 ? 3 : 0; isShort && b < 13; ++b) {
        const int width = kShort[rate][b + 1] - kShort[rate][b];
        for (int w = 0; w < 3; ++w) {
            const int start = 3 * kShort[rate][b] + w * width;
            bands.push_back({start, start + width, w, b < 12 ? place++ : -1, b, b >= 6});
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

// ---- bits

// Lengths of the pairs of each table, -1 where it has no code.
struct Lengths {
    std::array<std::array<std::array<int, 16>, 16>, 32> pair{};
    std::array<std::array<int, 16>, 2> quad{};

    Lengths() {
        for (int table = 1; table < 32; ++table) {
            for (auto& row : pair[table]) row.fill(-1);
            if (codesNothing(table)) continue;
            for (const auto& [xy, code] : pairBook(table))
                pair[table][xy[0]][xy[1]] = code.length + (xy[0] > 0) + (xy[1] > 0);
        }
        for (int table = 0; table < 2; ++table)
            for (const auto& [q, code] : quadBook(table))
                quad[table][8 * q[0] + 4 * q[1] + 2 * q[2] + q[3]] =
                    code.length + q[0] + q[1] + q[2] + q[3];
    }
};

const Lengths& lengths() {
    static const Lengths all;
    return all;
}

constexpr int kNever = 1 << 20;

int bitsOfPairs(const Zet32s* lines, int count, int table) {
    int bits = 0;
    for (int i = 0; i < count; i += 2) {
        const int xy[2] = {std::abs(lines[i]), std::abs(lines[i + 1])};
        if (table == 0) {
            if (xy[0] != 0 || xy[1] != 0) return kNever;
            continue;
        }
        const int length = lengths().pair[table][std::min(xy[0], 15)][std::min(xy[1], 15)];
        if (length < 0) return kNever;
        bits += length;
        for (const int value : xy) {
            if (value < 15) continue;
            if (value - 15 >= 1 << linbitsOf(table)) return kNever;
            bits += linbitsOf(table);
        }
    }
    return bits;
}

int leastBits(const Zet32s* lines, int count) {
    int least = kNever;
    for (int table = 0; table < 32; ++table)
        least = std::min(least, bitsOfPairs(lines, count, table));
    return least;
}

int bitsOfCount1(const Zet32s* lines, int count, int table) {
    int bits = 0;
    for (int i = 0; i < count; i += 4) {
        int index = 0;
        for (int j = 0; j < 4; ++j) index = 2 * index + std::abs(lines[i + j]);
        bits += index > 15 ? kNever : lengths().quad[table][index];
    }
    return bits;
}

// Where regions 1 and 2 begin.
std::array<int, 2> borders(const Frame& frame, int record) {
    const auto& info = frame.info[record];
    if (info.window_switching_flag != 0) return {36, kLines};
    const Zet16s* starts = kLong[frame.header.sampling_frequency];
    return {starts[info.region0_count + 1], starts[info.region0_count + info.region1_count + 2]};
}

int countBits(const Frame& frame, int record) {
    const auto& info = frame.info[record];
    const Zet32s* lines = frame.lines[record].data();
    const int end = 2 * info.big_values;
    int bits = 0, from = 0;
    const auto inner = borders(frame, record);
    const int ends[3] = {std::min(inner[0], end), std::min(inner[1], end), end};
    for (int region = 0; region < 3; ++region) {
        bits += bitsOfPairs(lines + from, ends[region] - from, info.table_select[region]);
        from = ends[region];
    }
    const int top = end + frame.count1Len[record];
    EXPECT_EQ(frame.count1Len[record] % 4, 0);
    EXPECT_LE(top, kLines);
    EXPECT_TRUE(std::all_of(lines + top, lines + kLines, [](Zet32s q) { return q == 0; }));
    return bits + bitsOfCount1(lines + end, frame.count1Len[record], info.count1table_select);
}

// The fewest bits for the lines of a long block, over all divisions, with the same count1 region.
int fewestBits(const Frame& frame, int record) {
    const Zet16s* starts = kLong[frame.header.sampling_frequency];
    const Zet32s* lines = frame.lines[record].data();
    const int end = 2 * frame.info[record].big_values;
    int least = kNever;
    for (int end0 = 1; end0 <= 16; ++end0) {
        for (int end1 = end0 + 1; end1 <= std::min(end0 + 8, 22); ++end1) {
            const int a = std::min<int>(starts[end0], end), b = std::min<int>(starts[end1], end);
            const int sum =
                leastBits(lines, a) + leastBits(lines + a, b - a) + leastBits(lines + b, end - b);
            least = std::min(least, sum);
        }
    }
    const int count = frame.count1Len[record];
    return least +
           std::min(bitsOfCount1(lines + end, count, 0), bitsOfCount1(lines + end, count, 1));
}

// ---- what holds for every frame

void expectFactorsFit(const Frame& frame, int record) {
    const auto& info = frame.info[record];
    const int channel = record % frame.channels();
    const bool isLong = info.block_type != 2;
    constexpr int kGroupEnd[4] = {6, 11, 16, 21};
    int part2 = 0;
    for (const Band& band : frame.bands(record)) {
        if (band.factor < 0) continue;
        const int group = static_cast<int>(
            std::find_if(kGroupEnd, kGroupEnd + 3, [&](int e) { return band.factor < e; }) -
            kGroupEnd);
        if (isLong && record >= frame.channels() && frame.scfsi[4 * channel + group] != 0) {
            EXPECT_EQ(frame.scaleFactors[record][band.factor],
                      frame.scaleFactors[channel][band.factor]);
            continue;
        }
        const int slen = kSlen[band.upper][info.scalefac_compress];
        part2 += slen;
        EXPECT_EQ(frame.scaleFactors[record][band.factor] >> slen, 0);
    }
    EXPECT_EQ(info.part2_3_length, part2 + frame.hufSize[record]);
    if (!isLong) {
        EXPECT_EQ(info.preflag, 0);
        EXPECT_EQ(std::accumulate(frame.scfsi + 4 * channel, frame.scfsi + 4 * channel + 4, 0), 0);
    }
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
    SCOPED_TRACE("record " + std::to_string(record));
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
    expectFactorsFit(frame, record);
    expectNothingCut(frame, record);
}

// Returns the stuffing.
int expectHolds(const Frame& frame) {
    int stuffing = 0;
    for (int record = 0; record < frame.records(); ++record) {
        expectRecordHolds(frame, record);
        const int spare = frame.hufSize[record] - countBits(frame, record);
        EXPECT_GE(spare, 0);
        stuffing += spare;
    }
    EXPECT_EQ(frame.reservoir.capacity, frame.before.capacity);
    if (frame.header.bitrate_index == kVariableRate) {
        EXPECT_EQ(frame.reservoir.held, frame.before.held);
        EXPECT_LT(stuffing, 8);
        EXPECT_EQ(frame.sumOfBits() % 8, 0);
        EXPECT_LE(frame.sumOfBits(), frame.meanBits + frame.before.held);
    } else {
        EXPECT_EQ(frame.reservoir.held % 8, 0);
        EXPECT_LE(frame.reservoir.held, frame.reservoir.capacity);
        EXPECT_EQ(frame.sumOfBits(), frame.meanBits + frame.before.held - frame.reservoir.held);
        const int full = std::min(frame.reservoir.capacity, 4088) / 8 * 8;
        EXPECT_TRUE(stuffing < 8 || frame.reservoir.held == full) << stuffing;
    }
    return stuffing;
}

// ---- noise

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

TEST(Mp3Quantize, keepsTheBudgetToTheBitWhateverTheSignal) {
    std::mt19937 random(1);
    for (int trial = 0; trial < 400; ++trial) {
        SCOPED_TRACE(trial);
        Frame frame(pick(random, 0, 3), pick(random, 0, 2));
        frame.header.bitrate_index = pick(random, 0, 3) == 0 ? kVariableRate : pick(random, 0, 14);
        const int joint = pick(random, 0, 3), jointMixed = pick(random, 0, 1);
        for (int r = 0; r < frame.records(); ++r) {
            const bool isJoint = frame.header.mode == 1;
            frame.info[r].block_type = isJoint ? joint : pick(random, 0, 3);
            frame.info[r].mixed_block_flag = isJoint ? jointMixed : pick(random, 0, 1);
            for (Zet32s& ratio : frame.psy[r].ratio)
                ratio = pick(random, 0, 0x7ffffffe) >> pick(random, 0, 31);
        }
        frame.setNoise(random, std::exp2(-pick(random, -4, 26)), pick(random, 0, 12));
        if (frame.header.mode == 1 && pick(random, 0, 1)) makeIntensity(frame, random);
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

TEST(Mp3Quantize, dividesLongBlocksForTheFewestBits) {
    std::mt19937 random(2);
    for (const double slope : {0.0, 3.0, 6.0, 12.0}) {
        for (const int meanBits : {400, 1000, 3000, 7000}) {
            SCOPED_TRACE(testing::Message() << slope << ' ' << meanBits);
            Frame frame(0, meanBits % 3);
            frame.setNoise(random, 0.3, slope);
            frame.meanBits = meanBits;
            ASSERT_EQ(frame.run(), zetStsOk);
            expectHolds(frame);
            for (int record = 0; record < 3; ++record)  // the last one may have stuffing
                EXPECT_EQ(countBits(frame, record), fewestBits(frame, record));
        }
    }
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

// Lines at the limits of 32 bits, in all lines or alone, and ratios at the limits of theirs.
TEST(Mp3Quantize, standsExtremes) {
    for (const Zet32s ratio : {-1, 0, 1, 0x7fffffff}) {
        for (const Zet32s value : {2147483647, -2147483647 - 1, 1}) {
            for (const int step : {1, 575}) {
                for (const int blockType : {0, 2}) {
                    Frame frame;
                    frame.setBlocks(blockType, 0);
                    for (auto& lines : frame.source)
                        for (int i = 0; i < kLines; i += step) lines[i] = value;
                    for (auto& psy : frame.psy)
                        for (Zet32s& r : psy.ratio) r = ratio;
                    for (const int meanBits : {0, 8, 3048}) {
                        frame.meanBits = meanBits;
                        ASSERT_EQ(frame.run(), zetStsOk);
                        expectHolds(frame);
                    }
                }
            }
        }
    }
}

// A few loud lines, in the long or in the short bands of mixed blocks, with bits enough for them.
TEST(Mp3Quantize, cutsNoLinesOfMixedBlocks) {
    std::mt19937 random(8);
    for (int trial = 0; trial < 300; ++trial) {
        SCOPED_TRACE(trial);
        Frame frame(trial % 4, trial % 3);
        frame.setBlocks(2, 1);
        frame.meanBits = 8000;
        for (int r = 0; r < frame.records(); ++r)
            for (int i = 0; i < 12; ++i)
                frame.source[r][pick(random, 0, kLines - 1)] =
                    pick(random, -2147483647, 2147483647) >> pick(random, 0, 20);
        ASSERT_EQ(frame.run(), zetStsOk);
        expectHolds(frame);
        if (HasFailure()) return;
    }
}

// Packed and read back by the decoder's functions.
TEST(Mp3Quantize, makesRecordsThatTheDecoderReads) {
    std::mt19937 random(6);
    for (int trial = 0; trial < 40; ++trial) {
        SCOPED_TRACE(trial);
        Frame frame(trial % 2, trial % 3);
        frame.setBlocks(trial % 4, trial / 8 % 2);
        frame.setNoise(random, 0.2, pick(random, 0, 8));
        if (trial % 2 != 0) makeIntensity(frame, random);
        ASSERT_EQ(frame.run(), zetStsOk);
        std::vector<Zet8u> bytes(4096);
        Zet8u *write = bytes.data(), *read = bytes.data();
        int writeOffset = 0, readOffset = 0;
        Zet8s factors[2][ZETAC_MP3_SCF_MAX] = {};
        for (int r = 0; r < 4; ++r) {
            const int channel = r % 2, granule = r / 2;
            int* scfsi = frame.scfsi + 4 * channel;
            const int rest = frame.hufSize[r];
            ASSERT_EQ(zetsPackScaleFactors_MP3_8s1u(frame.scaleFactors[r], &write, &writeOffset,
                                                    &frame.header, &frame.info[r], scfsi, granule,
                                                    channel),
                      zetStsOk);
            ASSERT_EQ(zetsHuffmanEncode_MP3_32s1u(frame.lines[r].data(), &write, &writeOffset,
                                                  &frame.header, &frame.info[r], frame.count1Len[r],
                                                  rest),
                      zetStsOk);
            ASSERT_EQ(zetsUnpackScaleFactors_MP3_1u8s(&read, &readOffset, factors[channel],
                                                      &frame.info[r], scfsi, &frame.header, granule,
                                                      channel),
                      zetStsOk);
            std::array<Zet32s, kLines> lines;
            int bound = 0;
            ASSERT_EQ(zetsHuffmanDecode_MP3_1u32s(&read, &readOffset, lines.data(), &bound,
                                                  &frame.info[r], &frame.header, rest),
                      zetStsOk);
            EXPECT_EQ(lines, frame.lines[r]);
            EXPECT_TRUE(std::equal(factors[channel], factors[channel] + 39, frame.scaleFactors[r]));
            EXPECT_TRUE(read == write && readOffset == writeOffset);
        }
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
