#include "support/qmf_banks.h"

#include <numbers>

namespace zetac::test {
namespace {

// exp(i pi / denominator * multiple).
std::complex<double> turn(double multiple, double denominator) {
    return std::polar(1.0, std::numbers::pi / denominator * std::fmod(multiple, 2 * denominator));
}

// Of a bank that keeps its state from call to call.
template <class Spec, class GetSize, class Init>
auto shared(GetSize getSize, Init init, size_t alignment) {
    return std::make_shared<Bank<Spec>>(getSize, init, alignment);
}

size_t partsOf(Kind kind) {
    return kind == Kind::kPairs ? 2 : 1;
}

// One call: call(rows, imaginaryRows, numSlots) with rows for the slots behind two others.
template <class Call>
Slots analyze(Kind kind, size_t alignment, size_t count, Call call) {
    constexpr int kOffset = 2;
    Rows re(count + kOffset, 32 * partsOf(kind), alignment);
    Rows im(count + kOffset, 32, alignment);
    EXPECT_EQ(zetStsOk, call(re, im, kOffset));
    Slots slots(count, Slot(32));
    for (size_t l = 0; l < count; ++l) {
        for (size_t k = 0; k < 32; ++k) {
            const Zet32f* row = re[l + kOffset];
            if (kind == Kind::kReal) slots[l][k] = row[k];
            if (kind == Kind::kParts) slots[l][k] = {row[k], im[l + kOffset][k]};
            if (kind == Kind::kPairs) slots[l][k] = {row[2 * k], row[2 * k + 1]};
        }
    }
    return slots;
}

template <class Call>
std::vector<float> synthesize(Kind kind, size_t bands, size_t alignment, const Slots& slots,
                              Call call) {
    Rows re(slots.size(), bands * partsOf(kind), alignment);
    Rows im(slots.size(), bands, alignment);
    for (size_t l = 0; l < slots.size(); ++l) {
        for (size_t k = 0; k < bands; ++k) {
            re[l][partsOf(kind) * k] = slots[l][k].real();
            (kind == Kind::kPairs ? re[l][2 * k + 1] : im[l][k]) =
                kind == Kind::kReal ? 0 : slots[l][k].imag();
        }
    }
    Guarded<Zet32f> samples(bands * slots.size(), alignment);
    EXPECT_EQ(zetStsOk, call(re, im, samples.data(), static_cast<int>(slots.size())));
    EXPECT_TRUE(samples.intact());
    return {samples.data(), samples.data() + bands * slots.size()};
}

}  // namespace

std::vector<Zet32f> qmfWindow(int bands) {
    const Zet32f* prototype = SBR_TAB_QMF_WINDOW_640_FP;
    std::vector<Zet32f> window(prototype, prototype + 640);
    if (bands == 64) return window;
    for (size_t i = 0; i < 320; ++i) window[i] = prototype[2 * i];
    window.resize(320);
    return window;
}

#define ZETAC_ANALYSIS(types, ...)                                                                 \
    {                                                                                              \
        auto bank = shared<ZetsAnalysisFilterSpec_SBR_##types>(                                    \
            zetsAnalysisFilterGetSize_SBR_##types, zetsAnalysisFilterInit_SBR_##types, alignment); \
        return [=](const std::vector<float>& samples, int kx) {                                    \
            Guarded<Zet32f> src(samples.size(), alignment);                                        \
            std::copy(samples.begin(), samples.end(), src.data());                                 \
            const int count = static_cast<int>(samples.size() / 32);                               \
            return analyze(kind, alignment, samples.size() / 32,                                   \
                           [&]([[maybe_unused]] Rows& re, [[maybe_unused]] Rows& im, int offset) { \
                               return zetsAnalysisFilter_SBR_##types##_D2L(                        \
                                   src.data(), __VA_ARGS__, window.data(), count, offset, kx,      \
                                   bank->spec(), bank->work());                                    \
                           });                                                                     \
        };                                                                                         \
    }

Analysis analysisBank(Kind kind, size_t alignment) {
    const std::vector<Zet32f> window = qmfWindow(32);
    if (kind == Kind::kReal) ZETAC_ANALYSIS(RToR_32f, re.singles())
    if (kind == Kind::kParts) ZETAC_ANALYSIS(RToC_32f, re.singles(), im.singles())
    ZETAC_ANALYSIS(RToC_32f32fc, re.pairs())
}
#undef ZETAC_ANALYSIS

#define ZETAC_SYNTHESIS(bank, types, ...)                                                          \
    {                                                                                              \
        auto state = shared<Zets##bank##FilterSpec_SBR_##types>(                                   \
            zets##bank##FilterGetSize_SBR_##types, zets##bank##FilterInit_SBR_##types, alignment); \
        return [=](const Slots& slots) {                                                           \
            return synthesize(kind, static_cast<size_t>(bands), alignment, slots,                  \
                              [&](Rows& re, [[maybe_unused]] Rows& im, Zet32f* dst, int count) {   \
                                  return zets##bank##Filter_SBR_##types##_D2L(                     \
                                      __VA_ARGS__, dst, window.data(), count, state->spec(),       \
                                      state->work());                                              \
                              });                                                                  \
        };                                                                                         \
    }

Synthesis synthesisBank(Kind kind, int bands, size_t alignment) {
    const std::vector<Zet32f> window = qmfWindow(bands);
    if (bands == 64) {
        if (kind == Kind::kReal) ZETAC_SYNTHESIS(Synthesis, RToR_32f, re.constSingles())
        if (kind == Kind::kParts)
            ZETAC_SYNTHESIS(Synthesis, CToR_32f, re.constSingles(), im.constSingles())
        ZETAC_SYNTHESIS(Synthesis, CToR_32fc32f, re.constPairs())
    }
    if (kind == Kind::kReal) ZETAC_SYNTHESIS(SynthesisDown, RToR_32f, re.constSingles())
    if (kind == Kind::kParts)
        ZETAC_SYNTHESIS(SynthesisDown, CToR_32f, re.constSingles(), im.constSingles())
    ZETAC_SYNTHESIS(SynthesisDown, CToR_32fc32f, re.constPairs())
}
#undef ZETAC_SYNTHESIS

std::vector<std::vector<std::complex<double>>> modelAnalysis(const std::vector<float>& samples,
                                                             bool real) {
    std::vector<double> history(288);
    history.insert(history.end(), samples.begin(), samples.end());
    const std::vector<Zet32f> window = qmfWindow(32);
    std::vector<std::vector<std::complex<double>>> slots;
    for (size_t l = 0; l < samples.size() / 32; ++l) {
        double u[64] = {};
        for (size_t i = 0; i < 320; ++i) u[i % 64] += window[i] * history[32 * l + 319 - i];
        slots.emplace_back(32);
        for (int k = 0; k < 32; ++k) {
            for (int n = 0; n < 64; ++n) {
                const auto kernel = turn((k + 0.5) * (2 * n - (real ? 96 : 0.5)), 64);
                slots[l][static_cast<size_t>(k)] += 2 * u[n] * (real ? kernel.real() : kernel);
            }
        }
    }
    return slots;
}

std::vector<double> modelSynthesis(const Slots& slots, int bands, bool real) {
    const std::vector<Zet32f> window = qmfWindow(bands);
    const double phase = real ? bands : bands == 64 ? 255 : 127.5;
    std::vector<double> v(static_cast<size_t>(20 * bands)), samples;
    for (const Slot& slot : slots) {
        std::vector<double> fresh;
        for (int n = 0; n < 2 * bands; ++n) {
            double sum = 0;
            for (int k = 0; k < bands; ++k) {
                const auto kernel = turn((k + 0.5) * (2 * n - phase), 2 * bands);
                const std::complex<double> x = slot[static_cast<size_t>(k)];
                sum += real ? x.real() * kernel.real() / 32 : (x * kernel).real() / 64;
            }
            fresh.push_back(sum);
        }
        v.insert(v.begin(), fresh.begin(), fresh.end());
        v.resize(static_cast<size_t>(20 * bands));
        for (int n = 0; n < bands; ++n) {
            double sum = 0;
            for (int i = 0; i < 5; ++i) {
                const auto at = [&](int place, int tap) {
                    return v[static_cast<size_t>(place)] * window[static_cast<size_t>(tap)];
                };
                sum += at(4 * bands * i + n, 2 * bands * i + n) +
                       at(4 * bands * i + 3 * bands + n, 2 * bands * i + bands + n);
            }
            samples.push_back(sum);
        }
    }
    return samples;
}

}  // namespace zetac::test
