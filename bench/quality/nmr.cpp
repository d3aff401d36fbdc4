#include "nmr.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace quality {
namespace {

constexpr std::size_t kLength = 2048;
constexpr std::size_t kLines = kLength / 2;
constexpr double kFullScaleDb = 92;
constexpr double kBarkPerBand = 1.0 / 3;
constexpr double kHighestHz = 18000;
constexpr double kLeastDb = -60;

using Powers = std::vector<double>;

double decibels(double power) {
    return 10 * std::log10(std::max(power, 1e-30));
}
double power(double decibels) {
    return std::pow(10, decibels / 10);
}

double barkOf(double hz) {
    return 13 * std::atan(0.00076 * hz) + 3.5 * std::atan(std::pow(hz / 7500, 2));
}

double quietDb(double hz) {
    const double f = std::max(hz, 20.0) / 1000;
    return 3.64 * std::pow(f, -0.8) - 6.5 * std::exp(-0.6 * std::pow(f - 3.3, 2)) +
           1e-3 * std::pow(f, 4);
}

void transform(std::vector<std::complex<double>>& x) {
    const std::size_t n = x.size();
    for (std::size_t i = 1, j = 0; i < n; ++i) {
        std::size_t bit = n / 2;
        for (; j & bit; bit /= 2) j ^= bit;
        j |= bit;
        if (i < j) std::swap(x[i], x[j]);
    }
    for (std::size_t len = 2; len <= n; len *= 2) {
        const auto step = std::polar(1.0, -2 * std::numbers::pi / static_cast<double>(len));
        for (std::size_t i = 0; i < n; i += len) {
            std::complex<double> w = 1;
            for (std::size_t k = 0; k < len / 2; ++k, w *= step) {
                const auto even = x[i + k], odd = x[i + k + len / 2] * w;
                x[i + k] = even + odd;
                x[i + k + len / 2] = even - odd;
            }
        }
    }
}

// The power of each line, such that a sine at full scale has kFullScaleDb in all its lines
// together.
Powers spectrumOf(const double* signal) {
    std::vector<std::complex<double>> x(kLength);
    for (std::size_t i = 0; i < kLength; ++i) {
        const double phase = 2 * std::numbers::pi * (static_cast<double>(i) + 0.5) / kLength;
        x[i] = signal[i] * 0.5 * (1 - std::cos(phase));
    }
    transform(x);
    // By Parseval a sine of amplitude 1 has 3/16 * kLength^2 / 2 in the positive lines.
    const double scale = power(kFullScaleDb) / (3.0 / 32 * kLength * kLength);
    Powers lines(kLines);
    for (std::size_t k = 0; k < kLines; ++k) lines[k] = std::norm(x[k]) * scale;
    return lines;
}

class Ear {
  public:
    explicit Ear(unsigned sampleRate) : hzPerLine_(1.0 * sampleRate / kLength) {
        const double end = std::min(kHighestHz, sampleRate / 2.0);
        const auto count = static_cast<std::size_t>(barkOf(end) / kBarkPerBand);
        for (std::size_t line = 1; line < kLines; ++line) {
            const auto band = static_cast<std::size_t>(barkOf(hz(line)) / kBarkPerBand);
            if (band >= count) break;
            if (bands_.empty() || band != bands_.back().index) bands_.push_back({band, line, line});
            bands_.back().end = line + 1;
        }
        flat_ = spread(Powers(bands_.size(), 1.0));
    }

    Powers bandsOf(const Powers& lines) const {
        Powers result;
        for (const Band& band : bands_) {
            double sum = 0;
            for (std::size_t i = band.begin; i < band.end; ++i) sum += lines[i];
            result.push_back(sum);
        }
        return result;
    }

    Powers thresholds(const Powers& lines) const {
        const Powers energies = bandsOf(lines);
        Powers result = spread(energies);
        for (std::size_t b = 0; b < result.size(); ++b) {
            const double tonality = tonalityOf(lines, bands_[b]);
            const double offset = tonality * (14.5 + centre(b)) + (1 - tonality) * 5.5;
            result[b] = std::max(result[b] / flat_[b] * power(-offset), quiet(bands_[b]));
        }
        return result;
    }

    bool isAudible(const Powers& energies) const {
        for (std::size_t b = 0; b < energies.size(); ++b)
            if (energies[b] > quiet(bands_[b])) return true;
        return false;
    }

  private:
    struct Band {
        std::size_t index;  // in steps of kBarkPerBand
        std::size_t begin, end;
    };

    double hz(std::size_t line) const { return static_cast<double>(line) * hzPerLine_; }
    double centre(std::size_t b) const {
        return (static_cast<double>(bands_[b].index) + 0.5) * kBarkPerBand;
    }

    double quiet(const Band& band) const {
        double least = quietDb(hz(band.begin));
        for (std::size_t i = band.begin; i < band.end; ++i) least = std::min(least, quietDb(hz(i)));
        return power(least);
    }

    Powers spread(const Powers& energies) const {
        Powers result(energies.size());
        for (std::size_t from = 0; from < energies.size(); ++from) {
            const double f = hz((bands_[from].begin + bands_[from].end) / 2);
            const double upwards =
                std::max(24 + 230 / f - 0.2 * std::max(decibels(energies[from]), 0.0), 4.0);
            for (std::size_t to = 0; to < energies.size(); ++to) {
                const double distance = centre(to) - centre(from);
                const double fall = distance > 0 ? upwards * distance : -27 * distance;
                result[to] += energies[from] * power(-fall);
            }
        }
        return result;
    }

    // 0 for noise, 1 for a tone.
    double tonalityOf(const Powers& lines, const Band& band) const {
        const double low = barkOf(hz(band.begin)) - 1.0 / 3, high = barkOf(hz(band.end)) + 1.0 / 3;
        double sum = 0, logSum = 0;
        std::size_t count = 0;
        for (std::size_t i = 1; i < kLines && barkOf(hz(i)) < high; ++i) {
            if (barkOf(hz(i)) < low) continue;
            sum += lines[i] + 1e-12;
            logSum += std::log(lines[i] + 1e-12);
            ++count;
        }
        const auto n = static_cast<double>(count);
        const double flatness = 10 / std::numbers::ln10 * (logSum / n - std::log(sum / n)) + 2.5;
        return std::clamp(flatness / -20, 0.0, 1.0);
    }

    double hzPerLine_;
    std::vector<Band> bands_;
    Powers flat_;  // what spreading makes of a flat spectrum
};

double frameNmr(const Powers& noise, const Powers& thresholds) {
    double sum = 0;
    for (std::size_t b = 0; b < noise.size(); ++b) sum += noise[b] / thresholds[b];
    return std::max(decibels(sum / static_cast<double>(noise.size())), kLeastDb);
}

std::size_t commonLength(const Signal& a, const Signal& b) {
    return std::min(a.size(), b.size());
}

}  // namespace

Nmr measureNmr(const std::vector<Signal>& original, const std::vector<Signal>& decoded,
               unsigned sampleRate) {
    const Ear ear(sampleRate);
    std::vector<double> frames;
    for (std::size_t c = 0; c < original.size(); ++c) {
        const std::size_t length = commonLength(original[c], decoded[c]);
        Signal difference(length);
        for (std::size_t i = 0; i < length; ++i) difference[i] = decoded[c][i] - original[c][i];
        for (std::size_t at = 0; at + kLength <= length; at += kLength / 2) {
            const Powers lines = spectrumOf(&original[c][at]);
            if (!ear.isAudible(ear.bandsOf(lines))) continue;
            const Powers noise = ear.bandsOf(spectrumOf(&difference[at]));
            frames.push_back(frameNmr(noise, ear.thresholds(lines)));
        }
    }
    Nmr result;
    result.frames = frames.size();
    if (frames.empty()) return result;
    for (const double nmr : frames) result.segmental += nmr / static_cast<double>(frames.size());
    std::sort(frames.begin(), frames.end());
    result.worst = frames[frames.size() * 95 / 100];
    return result;
}

double bandwidthOf(const std::vector<Signal>& original, const std::vector<Signal>& decoded,
                   unsigned sampleRate) {
    constexpr double kStepHz = 250;
    const double hzPerLine = 1.0 * sampleRate / kLength;
    std::vector<double> sums[2];
    for (auto& sum : sums) sum.resize(static_cast<std::size_t>(sampleRate / 2 / kStepHz) + 1);
    for (std::size_t c = 0; c < original.size(); ++c) {
        const std::size_t length = commonLength(original[c], decoded[c]);
        for (std::size_t at = 0; at + kLength <= length; at += kLength / 2) {
            const Powers lines[2] = {spectrumOf(&original[c][at]), spectrumOf(&decoded[c][at])};
            for (std::size_t k = 1; k < kLines; ++k) {
                const auto step =
                    static_cast<std::size_t>(static_cast<double>(k) * hzPerLine / kStepHz);
                for (int i = 0; i < 2; ++i) sums[i][step] += lines[i][k];
            }
        }
    }
    std::size_t steps = sums[0].size();
    while (steps > 0 && (sums[1][steps - 1] < 0.1 * sums[0][steps - 1] || sums[0][steps - 1] == 0))
        --steps;
    return static_cast<double>(steps) * kStepHz;
}

}  // namespace quality
