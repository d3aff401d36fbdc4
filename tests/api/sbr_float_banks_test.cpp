// The floating QMF banks of SBR against their formulas, against each other, and cut into calls.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>

#include "support/qmf_banks.h"
#include "support/reference_fft.h"

namespace zetac::test {
namespace {

constexpr int kAll = 32;  // kx

// Relative RMS errors against the formulas, measured with these inputs: 1.06e-7 to 1.26e-7.
constexpr double kTolerance = 2e-7;

Slots randomSlots(size_t count, size_t bands, uint32_t seed) {
    const auto values = randomSingles(2 * count * bands, seed);
    Slots slots(count, Slot(bands));
    for (size_t i = 0; i < count * bands; ++i)
        slots[i / bands][i % bands] = {values[2 * i], values[2 * i + 1]};
    return slots;
}

TEST(SbrFloatAnalysis, isItsFormula) {
    const auto samples = randomSingles(32 * 45, 1);
    for (const Kind kind : kKinds) {
        const Slots slots = analysisBank(kind)(samples, kAll);
        const auto model = modelAnalysis(samples, kind == Kind::kReal);
        double error = 0, power = 0;
        for (size_t l = 0; l < slots.size(); ++l) {
            for (size_t k = 0; k < 32; ++k) {
                error += std::norm(std::complex<double>(slots[l][k]) - model[l][k]);
                power += std::norm(model[l][k]);
            }
        }
        EXPECT_LT(std::sqrt(error / power), kTolerance) << static_cast<int>(kind);
    }
}

TEST(SbrFloatSynthesis, isItsFormula) {
    for (const int bands : {32, 64}) {
        const Slots slots = randomSlots(45, static_cast<size_t>(bands), 2);
        for (const Kind kind : kKinds) {
            const auto samples = synthesisBank(kind, bands)(slots);
            const auto model = modelSynthesis(slots, bands, kind == Kind::kReal);
            ASSERT_EQ(model.size(), samples.size());
            double error = 0, power = 0;
            for (size_t i = 0; i < model.size(); ++i) {
                error += std::pow(samples[i] - model[i], 2);
                power += std::pow(model[i], 2);
            }
            EXPECT_LT(std::sqrt(error / power), kTolerance)
                << bands << " bands, " << static_cast<int>(kind);
        }
    }
}

// Tones below the transition band that the two rates share, sampled at rate times 32 a slot.
std::vector<float> tones(size_t slots, int rate) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> uniform(0, 1);
    std::vector<double> sum(32 * slots * static_cast<size_t>(rate));
    for (int tone = 0; tone < 100; ++tone) {
        const double frequency = 0.96 * std::numbers::pi * uniform(random);
        const double phase = 7 * uniform(random);
        const double amplitude = uniform(random);
        for (size_t i = 0; i < sum.size(); ++i)
            sum[i] += amplitude * std::sin(frequency / rate * static_cast<double>(i) + phase);
    }
    return {sum.begin(), sum.end()};
}

// With unit gain: the measured ratios are 59.0 to 59.7 dB, which is the prototype's own limit. A
// gain off by 1 % would leave 40 dB, a sample of delay more or less hardly anything.
TEST(SbrFloatBanks, reconstructWithTheirDelay) {
    constexpr size_t kSlots = 100;
    const auto samples = tones(kSlots, 1);
    for (const Kind kind : kKinds) {
        for (const int bands : {32, 64}) {
            Slots slots = analysisBank(kind)(samples, kAll);
            for (Slot& slot : slots) slot.resize(static_cast<size_t>(bands));
            const auto output = synthesisBank(kind, bands)(slots);
            const auto expected = tones(kSlots, bands / 32);
            const size_t delay = bands == 64 ? 578 : 289;
            double error = 0, power = 0;
            for (size_t i = 640; i + delay < output.size(); ++i) {
                error += std::pow(output[i + delay] - expected[i], 2);
                power += std::pow(expected[i], 2);
            }
            EXPECT_GT(10 * std::log10(power / error), 58.5)
                << bands << " bands, " << static_cast<int>(kind);
        }
    }
}

template <class Value>
bool sameBits(const std::vector<Value>& a, const std::vector<Value>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

// Lengths of calls around those of vectors.
constexpr size_t kCalls[] = {1, 2, 3, 4, 5, 7, 8, 9, 16, 17, 31, 32};

TEST(SbrFloatAnalysis, cutsAndAlignmentDoNotMatter) {
    const auto samples = randomSingles(32 * 135, 4);
    for (const Kind kind : kKinds) {
        const Slots whole = analysisBank(kind, 0)(samples, kAll);
        const Analysis bank = analysisBank(kind, 12);
        auto next = samples.begin();
        size_t slot = 0;
        for (const size_t count : kCalls) {
            for (const Slot& part : bank({next, next + 32 * static_cast<int>(count)}, kAll))
                ASSERT_TRUE(sameBits(part, whole[slot++])) << slot << static_cast<int>(kind);
            next += 32 * static_cast<int>(count);
        }
    }
}

TEST(SbrFloatSynthesis, cutsAndAlignmentDoNotMatter) {
    for (const int bands : {32, 64}) {
        const Slots slots = randomSlots(135, static_cast<size_t>(bands), 5);
        for (const Kind kind : kKinds) {
            const auto whole = synthesisBank(kind, bands, 0)(slots);
            const Synthesis bank = synthesisBank(kind, bands, 12);
            std::vector<float> joined;
            auto next = slots.begin();
            for (const size_t count : kCalls) {
                const auto part = bank({next, next + static_cast<int>(count)});
                joined.insert(joined.end(), part.begin(), part.end());
                next += static_cast<int>(count);
            }
            EXPECT_TRUE(sameBits(joined, whole)) << bands << static_cast<int>(kind);
        }
    }
}

TEST(SbrFloatAnalysis, clearsTheBandsFromKxOn) {
    const auto samples = randomSingles(32 * 20, 6);
    for (const Kind kind : kKinds) {
        const Slots whole = analysisBank(kind)(samples, kAll);
        for (const int kx : {0, 1, 17, 31}) {
            const Analysis bank = analysisBank(kind);
            const auto middle = samples.begin() + 32 * 6;
            Slots slots = bank({samples.begin(), middle}, kx);
            for (size_t l = 0; l < slots.size(); ++l) {
                Slot expected = whole[l];
                std::fill(expected.begin() + kx, expected.end(), 0);
                EXPECT_TRUE(sameBits(slots[l], expected)) << kx << static_cast<int>(kind);
            }
            // The line has moved on all the same.
            slots = bank({middle, samples.end()}, kAll);
            for (size_t l = 0; l < slots.size(); ++l)
                EXPECT_TRUE(sameBits(slots[l], whole[l + 6])) << kx << static_cast<int>(kind);
        }
    }
}

// What stands at the beginning of a state.
struct Front {
    Zet32s id;
    const Zet32f* line;
    Zet32s position;
    const void* transform;
};

struct Life {
    Zet32s id;
    int room;   // bytes beside the transform's
    int line;   // values
    int block;  // by which the position goes back
};

template <class Spec, class GetSize, class Init, class Run, class TransformSize>
void expectLife(const Life& life, GetSize getSize, Init init, Run run,
                TransformSize transformSize) {
    int expected[3], sizes[3];
    ASSERT_EQ(zetStsOk, transformSize(&expected[0], &expected[1], &expected[2]));
    ASSERT_EQ(zetStsOk, getSize(&sizes[0], &sizes[1], &sizes[2]));
    const int t = (expected[0] + 15) / 16 * 16;
    EXPECT_EQ(t + life.room, sizes[0]);
    EXPECT_EQ(expected[1] + 4, sizes[1]);
    EXPECT_EQ(expected[2] + 4, sizes[2]);

    for (const size_t alignment : {0, 3, 16, 31}) {
        Guarded<Zet8u> memory(sizes[0], alignment);
        Guarded<Zet8u> work(4096);
        Spec* spec = nullptr;
        ASSERT_EQ(zetStsOk, init(&spec, memory.data(), work.data()));
        const auto address = reinterpret_cast<uintptr_t>(memory.data());
        EXPECT_EQ((address + 15) / 16 * 16 + t, reinterpret_cast<uintptr_t>(spec));
        Front front;
        const auto look = [&] { std::memcpy(&front, static_cast<void*>(spec), sizeof front); };
        look();
        EXPECT_EQ(life.id, front.id);
        EXPECT_EQ(reinterpret_cast<const Zet32f*>(reinterpret_cast<Zet8u*>(spec) + 32), front.line);
        EXPECT_EQ(life.line, std::count(front.line, front.line + life.line, 0.0f));
        for (int slots = 0, place = 0; slots < 12; ++slots) {
            EXPECT_EQ(place, front.position);
            ASSERT_EQ(zetStsOk, run(spec, work.data(), 0));  // moves nothing
            ASSERT_EQ(zetStsOk, run(spec, work.data(), 1));
            look();
            place = (place + 9 * life.block) % (10 * life.block);
        }
        EXPECT_NE(life.line, std::count(front.line, front.line + life.line, 0.0f));
        ASSERT_EQ(zetStsOk, init(&spec, memory.data(), work.data()));
        look();
        EXPECT_EQ(0, front.position);
        EXPECT_EQ(life.line, std::count(front.line, front.line + life.line, 0.0f));
        EXPECT_TRUE(memory.intact());
    }
}

template <class Fft>
auto fftSize(Fft getSize, int order) {
    return [=](int* spec, int* init, int* work) {
        return getSize(order, zetFftNoDiv, zetAlgHintAccurate, spec, init, work);
    };
}
template <class Dct>
auto dctSize(Dct getSize, int len) {
    return [=](int* spec, int* init, int* work) {
        return getSize(len, zetAlgHintFast, spec, init, work);
    };
}

// A call of a bank on a row of ones.
struct OneSlot {
    std::vector<Zet32f> samples = std::vector<Zet32f>(128, 1);
    Zet32f* rows[1] = {samples.data()};
    const Zet32f* constRows[1] = {samples.data()};
    std::vector<Zet32f> pairs = std::vector<Zet32f>(128, 1);
    Zet32fc* pairRows[1] = {reinterpret_cast<Zet32fc*>(pairs.data())};
    const Zet32fc* constPairRows[1] = {pairRows[0]};
    std::vector<Zet32f> src = std::vector<Zet32f>(64, 1);
};

#define EXPECT_LIFE(bank, types, transform, id, room, line, block, ...)           \
    expectLife<Zets##bank##FilterSpec_SBR_##types>(                               \
        {id, room, line, block}, zets##bank##FilterGetSize_SBR_##types,           \
        zets##bank##FilterInit_SBR_##types,                                       \
        [&]([[maybe_unused]] auto* spec, Zet8u* work, int n) {                    \
            return zets##bank##Filter_SBR_##types##_D2L(__VA_ARGS__, spec, work); \
        },                                                                        \
        transform)

TEST(SbrFloatBanks, layTheirStatesOut) {
    OneSlot s;
    const Zet32f* window = SBR_TAB_QMF_WINDOW_640_FP;
    const auto parts = fftSize(zetsFFTGetSize_C_32f, 5);
    const auto pairs = fftSize(zetsFFTGetSize_C_32fc, 5);
    const auto downPairs = fftSize(zetsFFTGetSize_C_32fc, 6);
    EXPECT_LIFE(Analysis, RToC_32f32fc, parts, 0x434D4156, 1327, 320, 32, s.src.data(), s.pairRows,
                window, n, 0, 32);
    EXPECT_LIFE(Analysis, RToC_32f, parts, 0x434D4157, 1327, 320, 32, s.src.data(), s.rows, s.rows,
                window, n, 0, 32);
    EXPECT_LIFE(Analysis, RToR_32f, dctSize(zetsDCTInvGetSize_32f, 32), 0x434D4158, 1327, 320, 32,
                s.src.data(), s.rows, window, n, 0, 32);
    EXPECT_LIFE(Synthesis, CToR_32fc32f, pairs, 0x434D4159, 5167, 1280, 128, s.constPairRows,
                s.src.data(), window, n);
    EXPECT_LIFE(Synthesis, CToR_32f, pairs, 0x434D415A, 5167, 1280, 128, s.constRows, s.constRows,
                s.src.data(), window, n);
    EXPECT_LIFE(Synthesis, RToR_32f, dctSize(zetsDCTFwdGetSize_32f, 64), 0x434D415B, 5183, 1280,
                128, s.constRows, s.src.data(), window, n);
    EXPECT_LIFE(SynthesisDown, CToR_32fc32f, downPairs, 0x434D415C, 2607, 640, 64, s.constPairRows,
                s.src.data(), window, n);
    EXPECT_LIFE(SynthesisDown, CToR_32f, downPairs, 0x434D415D, 2607, 640, 64, s.constRows,
                s.constRows, s.src.data(), window, n);
    EXPECT_LIFE(SynthesisDown, RToR_32f, dctSize(zetsDCTFwdGetSize_32f, 32), 0x434D415E, 2607, 640,
                64, s.constRows, s.src.data(), window, n);
}

TEST(SbrFloatBanks, staySilentOnSilence) {
    for (const Kind kind : kKinds) {
        const Slots slots = analysisBank(kind)(std::vector<float>(32 * 12), kAll);
        for (const Slot& slot : slots)
            EXPECT_EQ(32, std::count(slot.begin(), slot.end(), std::complex<float>()));
        for (const int bands : {32, 64}) {
            const auto samples =
                synthesisBank(kind, bands)(Slots(12, Slot(static_cast<size_t>(bands))));
            EXPECT_EQ(12 * bands, std::count(samples.begin(), samples.end(), 0.0f));
        }
    }
}

// The prototype by what the standard says of it: its peak, its symmetry with two exceptions at the
// borders of blocks, and a checksum of all digits (the sum of (i + 1) c[i] of the literal table).
TEST(SbrPrototype, isTheStandardsInEveryForm) {
    const Zet32f* c = SBR_TAB_QMF_WINDOW_640_FP;
    EXPECT_EQ(0, c[0]);
    EXPECT_FLOAT_EQ(0.8537385f, *std::max_element(c, c + 640));
    EXPECT_EQ(c + 320, std::max_element(c, c + 640));
    for (int i = 1; i < 640; ++i) EXPECT_EQ(i % 128 == 0 ? -c[i] : c[i], c[640 - i]) << i;
    int64_t sum31 = 0;
    int64_t sum30 = 0;
    for (int i = 0; i < 640; ++i) {
        const Zet32s q31 = SBR_TABLE_QMF_WINDOW_640_INT_Q31[i];
        const Zet32s q30 = SBR_TABLE_QMF_WINDOW_640_INT_Q30[i];
        sum31 += int64_t{i + 1} * q31;
        sum30 += int64_t{i + 1} * q30;
        EXPECT_NEAR(c[i] * 0x1p31, q31, 128 * std::abs(c[i]) + 0.5) << i;  // halves of both units
        if (i % 2 == 0) {
            EXPECT_EQ(q31, SBR_TABLE_QMF_WINDOW_320_INT_Q31[i / 2]);
            EXPECT_EQ(q30, SBR_TABLE_QMF_WINDOW_320_INT_Q30[i / 2]);
        }
    }
    EXPECT_EQ(56045675280493, sum31);
    EXPECT_EQ(28022837639957, sum30);
}

}  // namespace
}  // namespace zetac::test
