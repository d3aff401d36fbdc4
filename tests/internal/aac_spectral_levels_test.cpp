// Every level of the spectral kernels against level 0, bit by bit, and what each of them takes.
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <random>
#include <vector>

#include "aac/inverse_quantization.h"
#include "tables/aac_swb_offset.h"

namespace zetac::aac {
namespace {

constexpr Zet32s kCanary = 0x5ca1ab1e;
constexpr int kMargin = 16;

// Quantised values with a two-sided exponential distribution, the shape of real spectra.
std::vector<Zet32s> laplacian(int count, double meanMagnitude, int limit, std::mt19937& generator) {
    std::exponential_distribution<double> magnitude(1 / (meanMagnitude + 0.5));
    std::vector<Zet32s> values(static_cast<size_t>(count));
    for (Zet32s& value : values) {
        value = std::min(static_cast<int>(magnitude(generator)), limit);
        if (generator() % 2) value = -value;
    }
    return values;
}

std::vector<Zet32s> withCanaries(const std::vector<Zet32s>& values) {
    std::vector<Zet32s> padded(values.size() + 2 * kMargin, kCanary);
    std::copy(values.begin(), values.end(), padded.begin() + kMargin);
    return padded;
}

TEST(AacSpectralLevels, QuantInvGivesTheSameBits) {
    std::mt19937 generator(1);
    for (int round = 0; round < 20000; ++round) {
        const int count = 1 + static_cast<int>(generator() % 70);
        const double mean = std::exp2(static_cast<double>(generator() % 13) - 2);
        // Every eighth run has magnitudes out of range.
        const int limit = round % 8 ? 8191 : 9000;
        const auto source = withCanaries(laplacian(count, mean, limit, generator));
        const int scaleFactor = static_cast<int>(generator() % 420) - 80;
        auto expected = source;
        const bool converted = kQuantInvLines[0](expected.data() + kMargin, count, scaleFactor);
        for (int level = 1; level <= static_cast<int>(core::currentLevel()); ++level) {
            auto result = source;
            EXPECT_EQ(kQuantInvLines[level](result.data() + kMargin, count, scaleFactor),
                      converted);
            ASSERT_EQ(std::memcmp(result.data(), expected.data(), 4 * result.size()), 0)
                << "level " << level << ", " << count << " lines at " << scaleFactor;
        }
    }
}

// A channel of 1024 lines in the 49 bands of 44.1 kHz.
double nanosecondsPerChannel(QuantInvLines kernel, const std::vector<Zet32s>& source) {
    constexpr int kRounds = 2000;
    const int16_t* offset = tables::_pAACSwbOffsetTableLong[4];
    std::vector<Zet32s> lines(1024);
    double best = 1e9;
    for (int repetition = 0; repetition < 3; ++repetition) {
        const auto start = std::chrono::steady_clock::now();
        for (int round = 0; round < kRounds; ++round) {
            std::copy(source.begin(), source.end(), lines.begin());
            for (int band = 0; band < 49; ++band)
                kernel(lines.data() + offset[band], offset[band + 1] - offset[band], 110 + band);
        }
        const std::chrono::duration<double, std::nano> time =
            std::chrono::steady_clock::now() - start;
        best = std::min(best, time.count() / kRounds);
    }
    return best;
}

TEST(AacSpectralLevels, QuantInvTiming) {
    std::mt19937 generator(2);
    for (const double mean : {0.3, 1.5, 20.0}) {
        const auto source = laplacian(1024, mean, 8191, generator);
        for (int level = 0; level <= static_cast<int>(core::currentLevel()); ++level) {
            std::printf("mean magnitude %4.1f, level %d: %6.0f ns\n", mean, level,
                        nanosecondsPerChannel(kQuantInvLines[level], source));
        }
    }
}

}  // namespace
}  // namespace zetac::aac
