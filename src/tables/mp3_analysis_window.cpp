#include "tables/mp3_analysis_window.h"

#include "core/constexpr_math.h"
#include "tables/mp3_synthesis_window.h"

namespace zetac::tables {
namespace {

constexpr AnalysisWindowWords makeWindow() {
    AnalysisWindowWords words{};
    for (int n = 0; n < 512; ++n) {
        const std::int32_t d = synthesisWindow(511 - n);
        const std::int32_t coarse = (d + 2) >> 2;
        words.coarse[n] = static_cast<std::int16_t>(coarse);
        words.fine[n] = static_cast<std::int16_t>(d - 4 * coarse);
    }
    return words;
}

constexpr Dct3Secants makeSecants() {
    Dct3Secants secants{};
    int i = 0;
    for (int size = 2; size <= 32; size *= 2)
        for (int k = 0; k < size / 2; ++k)
            secants.values[i++] = core::toFixedPoint<std::int32_t>(
                1 / (2 * core::cosine(core::kPi / (2 * size) * (2 * k + 1))),
                kDct3SecantFractionBits);
    return secants;
}

}  // namespace

constexpr AnalysisWindowWords kAnalysisWindowWords = makeWindow();
constexpr Dct3Secants kDct3Secants = makeSecants();

}  // namespace zetac::tables
