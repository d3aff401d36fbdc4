// Requantisation and stereo of Layer III against a model in double precision that follows the
// standard's own order: gains, stereo with its 1/sqrt(2), reordering by destination.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "support/guarded.h"
#include "support/mp3_bands.h"

namespace {

using namespace zetac::test;

constexpr int kLines = ZETAC_MP3_GRANULE_LEN;
constexpr Zet32s kMax = 2147483647;
constexpr int kMaxQuantised = 8206;
constexpr int kUnity = 210;  // global_gain of a factor of 1

// Those of the standard, and some of a caller whose bands begin a line earlier or later.
struct BandTables {
    Zet16s longStart[6][23], shortStart[6][14];

    explicit BandTables(bool isMoved) {
        for (int row = 0; row < 6; ++row) {
            const int fixed = row < 3 ? 6 : 8;  // line 36
            for (int i = 0; i < 23; ++i) {
                const int shift = isMoved && i > 0 && i < 22 && i != fixed ? i % 3 - 1 : 0;
                longStart[row][i] = static_cast<Zet16s>(kLongBandStarts[row][i] + shift);
            }
            for (int i = 0; i < 14; ++i) {
                const int shift = isMoved && i > 0 && i < 13 && i != 3 ? i % 3 - 1 : 0;
                shortStart[row][i] = static_cast<Zet16s>(kShortBandStarts[row][i] + shift);
            }
        }
    }
};
const BandTables kStandard(false), kMoved(true);

struct Granule {
    ZetMP3Header header{};
    ZetMP3GranuleSideInfo info[2]{};
    Zet8s scaleFactors[2][ZETAC_MP3_SCF_MAX]{};
    Zet32s lines[2][kLines]{};
    int bound[2]{};
    const BandTables* bands = &kStandard;

    Granule() {
        header.ID = 1;
        header.layer = 1;
        for (auto& channel : info) channel.global_gain = kUnity;
    }
    int row() const { return header.ID * 3 + header.sampling_frequency; }
    int channels() const { return header.mode == 3 ? 1 : 2; }

    void setBounds() {
        for (int ch = 0; ch < 2; ++ch)
            for (int i = 0; i < kLines; ++i)
                if (lines[ch][i] != 0) bound[ch] = i + 1;
    }
    ZetStatus requantize() {
        Guarded<Zet32s> buffer(kLines);
        const auto run = [&](auto function, auto... tables) {
            return function(lines[0], bound, scaleFactors[0], info, &header, buffer.data(),
                            tables...);
        };
        const ZetStatus status =
            bands == &kStandard
                ? run(zetsReQuantize_MP3_32s_I)
                : run(zetsReQuantizeSfb_MP3_32s_I, bands->longStart[0], bands->shortStart[0]);
        EXPECT_TRUE(buffer.intact());
        return status;
    }
};

// ---- the law

// A result is rounded to nearest from a product of two doubles that are themselves rounded: 3 *
// 2^-53 of 2^31 on top of a half.
constexpr double kRounding = 0.5 + 0x1p-20;

// Every magnitude with every exponent from the quietest to the loudest, at all gains.
TEST(Mp3Requant, followsThePowerLawEverywhere) {
    std::vector<long double> power(kMaxQuantised + 1);
    for (int q = 0; q <= kMaxQuantised; ++q) power[q] = q * cbrtl(q);
    long double worst = 0;
    for (int gain = 0; gain < 256; ++gain) {
        const long double unit = exp2l(26 - (kUnity - gain) / 4.0L);
        for (int first = 0; first <= kMaxQuantised; first += kLines) {
            const int count = std::min(kLines, kMaxQuantised + 1 - first);
            Granule granule;
            for (int ch = 0; ch < 2; ++ch) granule.info[ch].global_gain = gain;
            for (int i = 0; i < count; ++i)
                granule.lines[1][i] = -(granule.lines[0][i] = first + i);
            granule.setBounds();
            ASSERT_EQ(granule.requantize(), zetStsOk);
            for (int i = 0; i < count; ++i) {
                const long double exact =
                    std::min(power[first + i] * unit, static_cast<long double>(kMax));
                worst = std::max(worst, fabsl(granule.lines[0][i] - exact));
                ASSERT_EQ(granule.lines[1][i], -granule.lines[0][i]) << first + i;
            }
        }
    }
    EXPECT_LE(worst, kRounding);
    RecordProperty("largest_error_in_units", std::to_string(worst));
}

// ---- the whole stage

enum { kLongWindow = -1 };

// The standard's view of a coded line: its band, window, and where its scale factor stands.
struct Place {
    int band, window, scaleFactor;
};

std::vector<Place> placesOf(const Granule& granule, int ch) {
    const auto& info = granule.info[ch];
    const Zet16s* longStart = granule.bands->longStart[granule.row()];
    const Zet16s* shortStart = granule.bands->shortStart[granule.row()];
    const bool isShort = info.block_type == 2;
    const int longLines = !isShort ? kLines : info.mixed_block_flag ? 36 : 0;
    std::vector<Place> places;
    int scaleFactor = 0;
    for (int band = 0; longStart[band] < longLines; ++band, ++scaleFactor)
        places.insert(places.end(), longStart[band + 1] - longStart[band],
                      {band, kLongWindow, scaleFactor});
    for (int band = info.mixed_block_flag ? 3 : 0; isShort && band < 13; ++band)
        for (int window = 0; window < 3; ++window, ++scaleFactor)
            places.insert(places.end(), shortStart[band + 1] - shortStart[band],
                          {band, window, scaleFactor});
    EXPECT_EQ(places.size(), static_cast<size_t>(kLines));
    return places;
}

double clamp(double value) {
    return std::clamp(value, -1.0 * kMax - (std::abs(value) > kMax), 1.0 * kMax);
}

class Model {
  public:
    explicit Model(const Granule& granule) : g_(granule) {
        for (int ch = 0; ch < g_.channels(); ++ch) {
            place_[ch] = placesOf(g_, ch);
            for (int i = 0; i < kLines; ++i) value_[ch][i] = requantized(ch, i);
        }
        if (g_.header.mode == 1) undoStereo();
        for (int ch = 0; ch < g_.channels(); ++ch) reorder(ch);
    }
    double value(int ch, int line) const { return value_[ch][line]; }

  private:
    double requantized(int ch, int line) const {
        static constexpr int pretab[22] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                           1, 1, 1, 1, 2, 2, 3, 3, 3, 2, 0};
        const auto& info = g_.info[ch];
        const Place& place = place_[ch][line];
        const int x = g_.lines[ch][line];
        const double multiplier = info.scalefac_scale ? 1 : 0.5;
        double exponent = (info.global_gain - kUnity) / 4.0;
        exponent -= multiplier * std::abs(g_.scaleFactors[ch][place.scaleFactor]);
        if (place.window == kLongWindow)
            exponent -= info.preflag ? multiplier * pretab[place.band] : 0;
        else
            exponent -= 2 * info.subblock_gain[place.window];
        return std::copysign(std::pow(std::abs(x), 4.0 / 3) * std::exp2(exponent + 26), x);
    }

    // Intensity begins above the last band, of this window, in which the right channel has a line.
    // The uppermost band goes on with the position of the band below, or has the filler.
    void undoStereo() {
        int last[4] = {-1, -1, -1, -1};  // band, of the long window and the short ones
        for (int i = 0; i < kLines; ++i) {
            const Place& place = place_[1][i];
            if (g_.lines[1][i] == 0) continue;
            last[1 + place.window] = place.band;
            if (place.window != kLongWindow) last[0] = 22;
        }
        for (int i = 0; i < kLines; ++i) {
            const Place& place = place_[1][i];
            const bool isLong = place.window == kLongWindow;
            const int end = last[1 + place.window], top = isLong ? 21 : 12;
            const bool goesOn = place.band == top && end < top - 1;
            const int factor = place.scaleFactor - (goesOn ? isLong ? 1 : 3 : 0);
            undo(value_[0][i], value_[1][i], place.band > end, g_.scaleFactors[1][factor]);
        }
    }
    void undo(double& l, double& r, bool isAbove, int position) const {
        const bool legal = g_.header.ID ? position != 7 : position >= 0;
        const double sum = clamp(l);
        if (isAbove && legal && (g_.header.mode_extension & 1) != 0 && g_.header.ID) {
            const double ratio = std::tan(position * M_PI / 12);
            l = position == 6 ? sum : sum * ratio / (1 + ratio);
            r = position == 6 ? 0 : sum / (1 + ratio);
        } else if (isAbove && legal && (g_.header.mode_extension & 1) != 0) {
            const double i0 = std::exp2(g_.info[1].scalefac_compress % 2 ? -0.5 : -0.25);
            const double scaled = sum * std::pow(i0, (position + 1) / 2);
            l = position % 2 ? scaled : sum;
            r = position % 2 ? sum : scaled;
        } else if ((g_.header.mode_extension & 2) != 0) {
            const double m = clamp(l / std::sqrt(2)), s = clamp(r / std::sqrt(2));
            l = m + s;
            r = m - s;
        }
    }

    void reorder(int ch) {
        if (g_.info[ch].block_type != 2) return;
        const auto coded = value_[ch];
        const Zet16s* start = g_.bands->shortStart[g_.row()];
        for (int i = g_.info[ch].mixed_block_flag ? 36 : 0; i < kLines; ++i) {
            const int subband = i / 18, window = i % 18 / 6, line = subband * 6 + i % 6;
            int band = 0;
            while (start[band + 1] <= line) ++band;
            const int width = start[band + 1] - start[band];
            value_[ch][i] = coded[3 * start[band] + window * width + line - start[band]];
        }
    }

    const Granule& g_;
    std::vector<Place> place_[2];
    std::array<double, kLines> value_[2];
};

class RandomGranules {
  public:
    Granule next() {
        Granule g;
        g.bands = below(2) ? &kStandard : &kMoved;
        g.header.ID = below(2);
        g.header.sampling_frequency = below(3);
        g.header.mode = below(3) ? 1 : below(4);
        g.header.mode_extension = below(4);
        for (int ch = 0; ch < 2; ++ch) {
            g.info[ch] = ch == 1 && g.header.mode == 1 ? g.info[0] : info(g.header);
            g.info[ch].global_gain = (below(8) ? 130 : 210) + below(46);
            for (Zet8s& scaleFactor : g.scaleFactors[ch])
                scaleFactor = static_cast<Zet8s>(below(ch == 1 ? 8 : 16));
            if (g.header.ID == 0 && ch == 1)
                for (Zet8s& scaleFactor : g.scaleFactors[ch])
                    scaleFactor = static_cast<Zet8s>(below(4) ? scaleFactor + below(24) : -7);
            fill(g, ch);
        }
        g.setBounds();
        return g;
    }

  private:
    int below(int n) { return static_cast<int>(generator_() % static_cast<unsigned>(n)); }

    ZetMP3GranuleSideInfo info(const ZetMP3Header& header) {
        ZetMP3GranuleSideInfo i{};
        i.block_type = below(2) ? 2 : below(4);
        i.mixed_block_flag = below(2);
        i.scalefac_compress = below(header.ID ? 16 : 512);
        for (Zet32s& gain : i.subblock_gain) gain = i.block_type == 2 ? below(8) : -99;
        i.preflag = below(2);
        i.scalefac_scale = below(2);
        return i;
    }

    // Lines up to a bound, sparse towards it, so that windows end in different bands.
    void fill(Granule& g, int ch) {
        const int end = below(3) ? below(kLines + 1) : below(60);
        const int largest = below(4) ? 15 : kMaxQuantised;
        for (int i = 0; i < end; ++i)
            if (below(end) >= i || below(40) == 0)
                g.lines[ch][i] = (below(2) ? 1 : -1) * below(1 + below(largest + 1));
        for (int w = below(9); w < 3; ++w)  // no lines in some windows
            for (int i = 0; i < end; ++i)
                if (g.info[ch].block_type == 2 && placesOf(g, ch)[i].window == w)
                    g.lines[ch][i] = 0;
    }

    std::mt19937 generator_{5};
};

// Two rounded values are added in middle/side. In intensity the share is rounded to 31 bits, or is
// the largest fraction, and product and shift round down: four units at most.
constexpr double kTolerance = 4;

TEST(Mp3Requant, agreesWithTheModelOnRandomGranules) {
    RandomGranules random;
    for (int trial = 0; trial < 4000; ++trial) {
        const Granule before = random.next();
        Granule after = before;
        ASSERT_EQ(after.requantize(), zetStsOk);
        const Model model(before);
        if (before.channels() == 1) {
            ASSERT_TRUE(std::ranges::equal(after.lines[1], before.lines[1]));
        }
        for (int ch = 0; ch < before.channels(); ++ch) {
            SCOPED_TRACE(testing::Message()
                         << "trial " << trial << " channel " << ch << " ID " << before.header.ID
                         << " mode " << before.header.mode << "/" << before.header.mode_extension
                         << " block " << before.info[ch].block_type
                         << before.info[ch].mixed_block_flag);
            for (int i = 0; i < kLines; ++i)
                ASSERT_NEAR(after.lines[ch][i], clamp(model.value(ch, i)), kTolerance) << i;
            const auto end = std::find_if(std::rbegin(after.lines[ch]), std::rend(after.lines[ch]),
                                          [](Zet32s line) { return line != 0; });
            const auto last = static_cast<int>(std::rend(after.lines[ch]) - end);
            if (before.info[ch].block_type == 2)
                ASSERT_EQ(after.bound[ch], last);
            else
                ASSERT_GE(after.bound[ch], last);
            ASSERT_LE(after.bound[ch], kLines);
        }
    }
}

Granule jointGranule(int modeExtension) {
    Granule granule;
    granule.header.mode = 1;
    granule.header.mode_extension = modeExtension;
    return granule;
}

// The loudest middle and side of all: sums stop at the limits instead of wrapping.
TEST(Mp3Requant, saturatesMiddleSide) {
    Granule granule = jointGranule(2);
    for (auto& channel : granule.info) channel.global_gain = 255;
    const Zet32s middle[] = {8206, 8206, -8206, -8206, 8206, -8206};
    const Zet32s side[] = {8206, -8206, 8206, -8206, 0, 0};
    std::copy(std::begin(middle), std::end(middle), granule.lines[0]);
    std::copy(std::begin(side), std::end(side), granule.lines[1]);
    granule.setBounds();
    ASSERT_EQ(granule.requantize(), zetStsOk);
    const std::array left = {kMax, 0, 0, -kMax - 1, kMax, -kMax};
    const std::array right = {0, kMax, -kMax - 1, 0, kMax, -kMax};
    EXPECT_TRUE(std::equal(left.begin(), left.end(), granule.lines[0]));
    EXPECT_TRUE(std::equal(right.begin(), right.end(), granule.lines[1]));
}

// One band at or above the right channel's bound suffices, wherever the left channel ends.
TEST(Mp3Requant, refusesPositionsBeyondTheTable) {
    for (const int blockType : {0, 2}) {
        for (int factor = 0; factor < (blockType == 0 ? 21 : 36); ++factor) {
            const auto statusOf = [&](int ID, int modeExtension, int rightLine) {
                Granule granule = jointGranule(modeExtension);
                granule.header.ID = ID;
                for (auto& channel : granule.info) channel.block_type = blockType;
                granule.scaleFactors[1][factor] = 8;
                granule.lines[1][kLines - 1] = rightLine;  // in window 2 of short blocks
                granule.setBounds();
                return granule.requantize();
            };
            const bool isOtherWindow = blockType == 2 && factor % 3 != 2;
            EXPECT_EQ(statusOf(1, 1, 0), zetStsOutOfRange) << factor;
            EXPECT_EQ(statusOf(1, 1, 1), isOtherWindow ? zetStsOutOfRange : zetStsOk);
            EXPECT_EQ(statusOf(1, 2, 0), zetStsOk);  // no positions
            EXPECT_EQ(statusOf(0, 1, 0), zetStsOk);  // LSF has positions up to 30
        }
    }
}

// ---- power functions

long double pow43(int q) {
    return q * cbrtl(std::abs(q));
}
Zet16s rounded(long double value) {
    return static_cast<Zet16s>(std::min(rintl(value), 32767.0L));
}

TEST(Mp3Power, pow43IsRoundedToNearest) {
    constexpr int kBeyond = kMaxQuantised + 3;  // taken as the largest
    std::vector<Zet16s> x(2 * kBeyond + 1);
    std::iota(x.begin(), x.end(), static_cast<Zet16s>(-kBeyond));
    x.push_back(-32768);
    Guarded<Zet32f> y(x.size());
    ASSERT_EQ(zetsPow43_16s32f(x.data(), y.data(), static_cast<int>(x.size())), zetStsOk);
    EXPECT_TRUE(y.intact());
    for (size_t i = 0; i < x.size(); ++i)
        ASSERT_EQ(y[i],
                  static_cast<float>(pow43(std::clamp<int>(x[i], -kMaxQuantised, kMaxQuantised))))
            << x[i];
}

// In singles three roundings to half a unit, one of them halved by the root behind it, and a
// fourth: 1.75 * 2^-23 of the value. To 16 bits it is rounded to nearest.
TEST(Mp3Power, pow34IsAsExactAsItsResult) {
    constexpr int kLen = 200003;
    std::mt19937 generator(3);
    Guarded<Zet32f> x(kLen), y(kLen, 4);
    Guarded<Zet16s> words(kLen, 2);
    for (int i = 0; i < kLen; ++i) {
        const long double mantissa = 1 + (generator() >> 9) * 0x1p-23L;
        const int exponent = i % 3 ? i / 3 % 27 - 3 : i / 3 % 277 - 149;
        x.data()[i] = static_cast<float>(ldexpl(i % 2 ? -mantissa : mantissa, exponent));
    }
    ASSERT_EQ(zetsPow34_32f(x.data(), y.data(), kLen), zetStsMisaligned);
    ASSERT_EQ(zetsPow34_32f16s(x.data(), words.data(), kLen), zetStsMisaligned);
    EXPECT_TRUE(y.intact() && words.intact());
    for (int i = 0; i < kLen; ++i) {
        const long double exact = powl(fabsl(x[i]), 0.75L);
        ASSERT_LE(fabsl(y[i] - exact), exact * 1.75 * 0x1p-23) << x[i];
        ASSERT_EQ(words[i], rounded(exact)) << x[i];
    }
    alignas(16) const Zet32f special[8] = {0, -0.0f, INFINITY, -16, -1e38f, 1048576, 1e-40f, 1};
    alignas(16) Zet32f singles[8];
    alignas(16) Zet16s limited[8];
    ASSERT_EQ(zetsPow34_32f(special, singles, 8), zetStsOk);
    ASSERT_EQ(zetsPow34_32f16s(special, limited, 8), zetStsOk);
    EXPECT_TRUE(std::equal(singles, singles + 4, std::array{0.0f, 0.0f, INFINITY, 8.0f}.begin()));
    EXPECT_TRUE(std::ranges::equal(limited, std::array{0, 0, 32767, 8, 32767, 32767, 0, 1}));
}

// The scale factors go under the root, where they are exact: there are ties, and they go to even,
// as 9604^(3/4) * 2^(-5/2) = 171.5 does.
TEST(Mp3Power, pow34WithScaleFactorsIsRoundedToNearest) {
    std::vector<Zet16s> x(65535), y(65535);
    for (int i = 0; i < 65535; ++i) x[i] = static_cast<Zet16s>(i - 32768);
    for (const int in : {INT_MIN, -40, -5, -2, -1, 0, 1, 2, 7, 40, INT_MAX}) {
        for (const int out : {INT_MIN, -12, -3, 0, 1, 4, 30, INT_MAX}) {
            ASSERT_EQ(zetsPow34_16s_Sfs(x.data(), in, y.data(), out, 65535), zetStsOk);
            const long double factor = exp2l(-3.0L * in - 4.0L * out);
            for (int i = 0; i < 65535; ++i) {
                const long double cube = powl(std::abs(x[i]), 3);
                const long double exact = x[i] == 0 ? 0 : sqrtl(sqrtl(cube * factor));
                ASSERT_EQ(y[i], rounded(exact)) << x[i] << " " << in << " " << out;
            }
        }
    }
}

}  // namespace
