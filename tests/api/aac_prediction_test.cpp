// Frequency-domain and long-term prediction.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "support/guarded.h"

namespace zetac::test {
namespace {

// --- A model of one predictor -------------------------------------------------------------------
//
// Written on doubles, whose products of two singles are exact and whose sums round to the same
// single. Precision is cut by dividing by the value of the last bit that is kept.

// The last of 8 bits of mantissa of a single, and that of subnormal ones.
double quantumOf(float x) {
    int exponent = 0;
    std::frexp(x, &exponent);
    return std::ldexp(1, std::max(exponent - 8, -133));
}
float cut(float x) {
    const double quantum = quantumOf(x);
    return static_cast<float>(std::trunc(x / quantum) * quantum);
}
float roundOff(float x) {
    const double quantum = quantumOf(x);
    return static_cast<float>(std::copysign(std::floor(std::abs(x) / quantum + 0.5) * quantum, x));
}
float times(double a, double b) {
    return static_cast<float>(a * b);
}
float plus(double a, double b) {
    return static_cast<float>(a + b);
}

struct Predictor {
    float cor[2] = {0, 0};
    float var[2] = {1, 1};
    float r[2] = {0, 0};

    // 0.953125 / energy, both with 8 bits of mantissa; nothing below an energy of 2.
    static float reciprocal(float energy) {
        if (energy < 2) return 0;
        int exponent = 0;
        const float mantissa = 2 * std::frexp(cut(energy), &exponent);
        return times(roundOff(static_cast<float>(0.953125 / mantissa)),
                     std::ldexp(1, 1 - exponent));
    }
    float k(int stage) const { return times(cor[stage], reciprocal(var[stage])); }
    float predict() const { return roundOff(plus(times(k(0), r[0]), times(k(1), r[1]))); }

    void learn(float x) {
        const float k0 = k(0);
        const float error[2] = {x, plus(x, -times(k0, r[0]))};
        for (int stage = 0; stage < 2; ++stage) {
            const float e = error[stage];
            cor[stage] = cut(plus(times(0.90625, cor[stage]), times(r[stage], e)));
            const float squares = plus(times(r[stage], r[stage]), times(e, e));
            var[stage] = cut(plus(times(0.90625, var[stage]), times(0.5, squares)));
        }
        r[1] = cut(times(0.953125, plus(r[0], -times(k0, x))));
        r[0] = cut(times(0.953125, x));
    }
};

// --- Frequency-domain prediction ----------------------------------------------------------------

struct FreeState {
    void operator()(ZetsFDPState_32f* state) const { zetsFDPFree_32f(state); }
};
using State = std::unique_ptr<ZetsFDPState_32f, FreeState>;

State makeState(int len) {
    ZetsFDPState_32f* state = nullptr;
    EXPECT_EQ(zetsFDPInitAlloc_32f(&state, len), zetStsOk);
    return State(state);
}

constexpr int kLines = 150;
using Lines = std::array<float, kLines>;

// Tones that come and go, on lines of many levels, with energies around 2, where prediction begins,
// and beyond. The values have few bits, so that a residual and its prediction add up to them again.
class Signal {
  public:
    Lines next() {
        Lines lines;
        if (frame_++ % 97 == 0) {
            for (float& phase : step_) phase = std::uniform_real_distribution<float>(0, 3)(random_);
        }
        for (int i = 0; i < kLines; ++i) {
            const double level = std::exp2(-2 + 15. * i / kLines);
            const double noise = std::normal_distribution<double>(0, 0.02)(random_);
            const double x = level * (std::cos(step_[i] * frame_) + noise);
            lines[i] = static_cast<float>(std::round(x * 64) / 64);
        }
        return lines;
    }

  private:
    std::mt19937 random_{1};
    Lines step_ = {};
    int frame_ = 0;
};

constexpr int kBandOffset[] = {0, 4, 16, 40, 41, 90, 140, kLines};
constexpr int kBands = 7;
using Flags = std::array<Zet8u, kBands>;

Flags randomFlags(std::mt19937& random) {
    Flags flags;
    for (Zet8u& flag : flags) flag = random() % 3 ? static_cast<Zet8u>(1 + random() % 255) : 0;
    return flags;
}

// One of the resets that a stream may ask for, in both states and the model.
void resetSome(std::mt19937& random, ZetsFDPState_32f* a, ZetsFDPState_32f* b,
               std::vector<Predictor>& model) {
    const uint32_t kind = random() % 40;
    if (kind < 8) {
        const int first = static_cast<int>(random() % 30);
        for (auto* state : {a, b}) EXPECT_EQ(zetsFDPResetGroup_32f(30, first, state), zetStsOk);
        for (int i = first; i < kLines; i += 30) model[i] = {};
    } else if (kind < 10) {
        const Flags flags = randomFlags(random);
        for (auto* state : {a, b})
            EXPECT_EQ(zetsFDPResetSfb_32f(kBandOffset, kBands, flags.data(), state), zetStsOk);
        for (int band = 0; band < kBands; ++band)
            for (int i = kBandOffset[band]; flags[band] && i < kBandOffset[band + 1]; ++i)
                model[i] = {};
    } else if (kind == 10) {
        for (auto* state : {a, b}) EXPECT_EQ(zetsFDPReset_32f(state), zetStsOk);
        model.assign(kLines, {});
    }
}

TEST(FrequencyDomainPrediction, EncoderDecoderAndModelStayInStepBitForBit) {
    std::mt19937 random(2);
    Signal signal;
    const State encoder = makeState(kLines), decoder = makeState(kLines);
    std::vector<Predictor> model(kLines);
    double energy = 0, residualEnergy = 0;
    for (int frame = 0; frame < 4000; ++frame) {
        const Lines lines = signal.next();
        const Flags flags = randomFlags(random);
        alignas(16) Lines residual, sent = lines;
        ASSERT_GE(zetsFDPFwd_32f(lines.data(), residual.data(), encoder.get()), zetStsOk);
        for (int band = 0; band < kBands; ++band)
            for (int i = kBandOffset[band]; flags[band] && i < kBandOffset[band + 1]; ++i)
                sent[i] = residual[i];
        ASSERT_EQ(zetsFDPInv_32f_I(sent.data(), kBandOffset, kBands, flags.data(), decoder.get()),
                  zetStsOk);
        for (int i = 0; i < kLines; ++i) {
            const float expected = plus(lines[i], -model[i].predict());
            ASSERT_EQ(residual[i], expected) << "frame " << frame << ", line " << i;
            ASSERT_EQ(sent[i], lines[i]) << "frame " << frame << ", line " << i;
            model[i].learn(lines[i]);
            energy += lines[i] * lines[i];
            residualEnergy += residual[i] * residual[i];
        }
        resetSome(random, encoder.get(), decoder.get(), model);
    }
    // Tones are predicted, in spite of all resets: measured 0.34.
    EXPECT_LT(residualEnergy, energy / 2);
}

TEST(FrequencyDomainPrediction, BeginsAtAnEnergyOfTwo) {
    for (const auto& [second, predicts] : {std::pair{0.734375f, false}, {0.75f, true}}) {
        // The energy after both: 0.90625 * 1.40625 + (0.953125^2 + second^2) / 2, 1.998 and 2.010,
        // and of that 8 bits: 1.992 and 2 exactly.
        const State state = makeState(1);
        const float lines[] = {1, second, 0};
        float residual = 0;
        for (const float& line : lines) zetsFDPFwd_32f(&line, &residual, state.get());
        Predictor model;
        model.learn(1);
        model.learn(second);
        EXPECT_EQ(model.var[0], predicts ? 2 : 1.9921875f);
        EXPECT_EQ(residual != 0, predicts);
    }
}

TEST(FrequencyDomainPrediction, UnalignedAndInPlaceGiveTheSameBits) {
    Signal signal;
    const State aligned = makeState(kLines), unaligned = makeState(kLines);
    Guarded<float> a(kLines), b(kLines, 4), c(kLines);
    Flags all;
    all.fill(1);
    for (int frame = 0; frame < 20; ++frame) {
        const Lines lines = signal.next();
        std::memcpy(a.data(), lines.data(), sizeof lines);
        std::memcpy(b.data(), lines.data(), sizeof lines);
        EXPECT_EQ(zetsFDPFwd_32f(a.data(), c.data(), aligned.get()), zetStsOk);
        EXPECT_EQ(zetsFDPFwd_32f(b.data(), b.data(), unaligned.get()), zetStsMisaligned);
        ASSERT_EQ(std::memcmp(b.data(), c.data(), sizeof lines), 0);
    }
    EXPECT_EQ(zetsFDPFwd_32f(a.data(), b.data(), aligned.get()), zetStsMisaligned);
    EXPECT_EQ(zetsFDPInv_32f_I(b.data(), kBandOffset, kBands, all.data(), aligned.get()),
              zetStsMisaligned);
    EXPECT_TRUE(a.intact() && b.intact() && c.intact());
}

// Bands may be named that the state does not have, lines be no numbers.
TEST(FrequencyDomainPrediction, StaysInItsMemory) {
    for (const int len : {1, 7, 8, 9, 65}) {
        const auto count = static_cast<size_t>(len);
        Guarded<Zet8u> memory(24 * count + 260, 5);
        ZetsFDPState_32f* state = nullptr;
        ASSERT_EQ(zetsFDPInit_32f(&state, len, memory.data()), zetStsOk);
        Guarded<float> lines(count);
        constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
        const float odd[] = {kNan, -kNan, 1e38f, -std::numeric_limits<float>::infinity()};
        const int offsets[] = {-5, 5, 1000, 2000};
        const Zet8u flags[] = {1, 1, 1};
        for (int frame = 0; frame < 8; ++frame) {
            for (int i = 0; i < len; ++i) lines.data()[i] = odd[(i + frame) % 4];
            EXPECT_EQ(zetsFDPInv_32f_I(lines.data(), offsets, 3, flags, state), zetStsOk);
        }
        EXPECT_EQ(zetsFDPResetSfb_32f(offsets, 3, flags, state), zetStsOk);
        EXPECT_EQ(zetsFDPResetGroup_32f(INT_MAX, INT_MAX, state), zetStsOk);
        EXPECT_TRUE(memory.intact() && lines.intact());
    }
}

// --- Long-term prediction -----------------------------------------------------------------------

constexpr int kFrame = ZETAC_AAC_FRAME_LEN;
constexpr double kGains[] = {0.570829, 0.696616, 0.813004, 0.911304,
                             0.984900, 1.067894, 1.194601, 1.369533};

ZetAACLtpInfo ltpOf(int lag, double gain) {
    ZetAACLtpInfo info = {};
    info.ltp_data_present = 1;
    info.ltp_lag = lag;
    info.ltp_coef = static_cast<Zet32s>(std::lround(gain * (1 << 14)));
    return info;
}

std::vector<Zet32s> randomValues(size_t count, int bits, uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<Zet32s> values(count);
    for (Zet32s& value : values) value = static_cast<Zet32s>(random()) >> (31 - bits);
    return values;
}

TEST(LongTermPrediction, ScalesTheHistoryAtTheLag) {
    const auto history = randomValues(ZETAC_AAC_LTP_HISTORY_LEN, 23, 3);
    for (const int lag : {0, 1, 1023, 1024, 1500, 2047, 2048, 3000, 100000, -1, -1024, -2000}) {
        for (const double gain : kGains) {
            std::vector<Zet32s> predicted(2 * kFrame, -1);
            const ZetAACLtpInfo info = ltpOf(lag, gain);
            ASSERT_EQ(zetsLongTermPredict_AAC_32s(history.data(), predicted.data(), &info),
                      zetStsOk);
            for (int i = 0; i < 2 * kFrame; ++i) {
                const int at = 2 * kFrame + i - lag;
                const bool isKnown = at >= 0 && at < ZETAC_AAC_LTP_HISTORY_LEN;
                const double expected = isKnown ? gain * history[at] / 8 : 0;  // Q8 to Q5
                // Half a unit of rounding, and 2^-30 of the gain times 2^20.
                ASSERT_NEAR(predicted[i], expected, 0.502) << lag << " " << gain << " " << i;
            }
        }
    }
}

TEST(LongTermPrediction, TakesOtherGains) {
    std::vector<Zet32s> history(ZETAC_AAC_LTP_HISTORY_LEN, INT32_MIN), predicted(2 * kFrame);
    for (const double gain : {1.5, 131071.9, -131072.}) {
        const ZetAACLtpInfo info = ltpOf(0, gain);
        zetsLongTermPredict_AAC_32s(history.data(), predicted.data(), &info);
        EXPECT_NEAR(predicted[0], std::clamp(gain, -4., 4.) * INT32_MIN / 8, 1) << gain;
        EXPECT_EQ(predicted[kFrame], 0);
    }
}

// Bands at 44.1 kHz and, for index 12, at 7350 Hz (ISO/IEC 14496-3, 4.5.4).
TEST(LongTermPrediction, AddsTheBandsInUse) {
    const struct {
        int sequence, frequency;
        std::vector<int> longUsed, shortUsed;
        bool (*isUsed)(int k);
    } cases[] = {{zetAacLongStart,
                  4,
                  {0, 11, 39},
                  {},
                  [](int k) { return k < 4 || (k >= 48 && k < 56) || (k >= 640 && k < 672); }},
                 {zetAacOnlyLong, 12, {39}, {}, [](int k) { return k >= 944; }},
                 {zetAacEightShort, 4, {39}, {2, 7}, [](int k) {
                      return (k / 128 == 2 || k / 128 == 7) && k % 128 < 44;
                  }}};
    const auto predicted = randomValues(kFrame, 31, 4), spectrum = randomValues(kFrame, 31, 5);
    for (const auto& c : cases) {
        ZetAACLtpInfo info = ltpOf(0, 1);
        for (const int sfb : c.longUsed) info.ltp_long_used[sfb] = 1;
        for (const int window : c.shortUsed) info.ltp_short_used[window] = 1;
        std::vector<Zet32s> result = spectrum;
        ASSERT_EQ(zetsLongTermReconstruct_AAC_32s(predicted.data(), result.data(), &info,
                                                  c.sequence, c.frequency),
                  zetStsOk);
        for (int k = 0; k < kFrame; ++k) {
            const double sum =
                spectrum[k] + (c.isUsed(k) ? std::floor(predicted[k] / 4. + 0.5) : 0);
            ASSERT_EQ(result[k], std::clamp(sum, -2147483648., 2147483647.)) << k;
        }
    }
}

struct Window {
    int sequence, shape, previousShape;
};

// The spectrum of a frame of a signal; x points to the first of 2048 samples.
std::vector<Zet32s> analyse(const Zet32s* x, const Window& window) {
    std::vector<Zet32s> spectrum(kFrame), work(2 * kFrame);
    Zet32s reserved = 0;
    if (window.sequence != zetAacEightShort) {
        zetsMDCTFwd_AAC_32s(x, spectrum.data(), &reserved, window.sequence, window.shape,
                            window.previousShape, work.data());
        return spectrum;
    }
    for (int w = 0; w < 8; ++w) {
        zetsMDCTFwd_AAC_32s(x + 448 + 128 * w, spectrum.data() + 128 * w, &reserved,
                            window.sequence, window.shape,
                            w == 0 ? window.previousShape : window.shape, work.data());
    }
    return spectrum;
}

// Analysis and update return the signal, through all sequences and shapes of windows, and agree
// with the filter bank that rounds to integers.
TEST(LongTermPrediction, HistoryIsTheOutputOfTheFilterBank) {
    constexpr int kSequences[] = {0, 0, 1, 2, 2, 3, 0, 1, 2, 3, 0, 0};
    constexpr int kFrames = std::size(kSequences);
    const auto signal = randomValues((kFrames + 1) * kFrame, 18, 6);
    std::vector<Zet32s> history(ZETAC_AAC_LTP_HISTORY_LEN), overlap(kFrame), previous(kFrame);
    std::mt19937 random(7);
    int shape = zetAacSine;
    double worst = 0;
    for (int frame = 0; frame < kFrames; ++frame) {
        const int previousShape = shape;
        shape = static_cast<int>(random() % 2);
        const Zet32s* x = signal.data() + frame * kFrame;
        const auto spectrum = analyse(x, {kSequences[frame], shape, previousShape});
        std::vector<Zet32s> spectrum1 = spectrum, spectrum2 = spectrum;
        ASSERT_EQ(zetsLtpUpdate_AAC_32s(spectrum1.data(), history.data(), kSequences[frame], shape,
                                        previousShape),
                  zetStsOk);
        zetsMDCTInv_AAC_32s_I(spectrum2.data(), overlap.data(), kSequences[frame], shape,
                              previousShape, kFrame);
        ASSERT_EQ(std::memcmp(history.data(), previous.data(), kFrame * sizeof(Zet32s)), 0);
        std::memcpy(previous.data(), &history[kFrame], kFrame * sizeof(Zet32s));
        for (int n = 0; n < kFrame; ++n) {
            const double output = history[kFrame + n] / 256.;
            // That one rounds transforms and truncates products to eighths: measured 2 units in the
            // overlap, and 0.13 in the output besides half a step of rounding.
            ASSERT_NEAR(spectrum2[n], output, 0.5 + 0.2) << frame << " " << n;
            ASSERT_NEAR(overlap[n], history[2 * kFrame + n] / 32., 3) << frame << " " << n;
            if (frame > 0) worst = std::max(worst, std::abs(8 * output - x[n]));
        }
    }
    // Measured 2.03: the analysis truncates its window products, in units of the signal.
    EXPECT_LT(worst, 3);
}

TEST(LongTermPrediction, UpdateSaturates) {
    std::vector<Zet32s> history(ZETAC_AAC_LTP_HISTORY_LEN);
    for (int frame = 0; frame < 4; ++frame) {
        auto spectrum = randomValues(kFrame, 31, static_cast<uint32_t>(frame));
        zetsLtpUpdate_AAC_32s(spectrum.data(), history.data(), frame == 2 ? 2 : 0, 1, 1);
    }
    int saturated = 0;
    for (const Zet32s value : history) saturated += value == INT32_MAX || value == INT32_MIN;
    EXPECT_GT(saturated, 100);
}

}  // namespace
}  // namespace zetac::test
