// Every level of the spectral kernels against level 0, bit by bit.
#include <gtest/gtest.h>

#include "aac/inverse_quantization.h"
#include "support/levels.h"

namespace zetac::aac {
namespace {

// Quantised values with a two-sided exponential distribution, the shape of real spectra; in every
// eighth run some are out of range. The last value is what the kernel returns.
TEST(AacSpectralLevels, QuantInvGivesTheSameBits) {
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        const size_t count = 1 + random() % 70;
        std::exponential_distribution<double> magnitude(1 / (std::exp2(random() % 13 - 2.0) + 0.5));
        const int limit = round % 8 ? 8191 : 9000;
        const int scaleFactor = static_cast<int>(random() % 420) - 80;
        std::vector<Zet32s> source(count);
        for (Zet32s& x : source)
            x = std::min(static_cast<int>(magnitude(random)), limit) * (random() % 2 ? 1 : -1);
        test::expectEqualLevels("conversion", [&](size_t level) {
            test::Guarded<Zet32s> lines(count, 4);
            std::ranges::copy(source, lines.data());
            const bool isInRange =
                kQuantInvLines[level](lines.data(), static_cast<int>(count), scaleFactor);
            auto result = test::contents(lines);
            result.push_back(isInRange);
            return result;
        });
    }
}

}  // namespace
}  // namespace zetac::aac
