// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/mp3_psycho_model.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <numeric>

#include "support/reference_fft.h"

namespace zetac::test {
namespace {

using Spectrum = std::vector<std::complex<double>>;
using Series = std::vector<double>;

// Windowed samples and lines are integers by definition.
Spectrum spectrumOf(const std::vector<Zet16s>& pcm, size_t start, size_t stride, size_t length) {
    Values x(length);
    for (size_t i = 0; i < length; ++i) {
        const double w = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * (i + 0.5) / length);
        const double q15 = std::min(std::round(w * 32768), 32767.0);
        x[i] = std::floor(pcm[start + stride * i] * q15 / 32768);
    }
    const Values transformed = referenceFft(x, false);
    Spectrum lines(length / 2 + 1);
    for (size_t k = 0; k < lines.size(); ++k) {
        lines[k] = {std::round(static_cast<double>(transformed[k].real())),
                    std::round(static_cast<double>(transformed[k].imag()))};
    }
    return lines;
}

double unpredictability(std::complex<double> now, std::complex<double> last,
                        std::complex<double> lastButOne) {
    const double magnitude = 2 * std::abs(last) - std::abs(lastButOne);
    const bool hasPhase = last != 0.0 && lastButOne != 0.0;
    const double phase = 2 * std::arg(last) - std::arg(lastButOne);
    const std::complex<double> predicted =
        hasPhase ? magnitude * std::polar(1.0, phase) : std::complex<double>();
    const double sum = std::abs(now) + std::abs(magnitude);
    return sum == 0 ? 1 : std::abs(now - predicted) / sum;
}

// Energies of left, right and their normalised sum and difference.
std::array<Series, 4> energies(const std::array<Spectrum, 2>& spectra) {
    std::array<Series, 4> result;
    for (size_t j = 0; j < spectra[0].size(); ++j) {
        const auto l = spectra[0][j], r = spectra[1][j];
        const double values[4] = {std::norm(l), std::norm(r), std::norm(l + r) / 2,
                                  std::norm(l - r) / 2};
        for (size_t a = 0; a < 4; ++a) result[a].push_back(values[a]);
    }
    return result;
}

Series partitionSums(const Series& lines, const PsyModelBlock& block) {
    Series sums(block.firstLine.size() - 1);
    for (size_t b = 0; b < sums.size(); ++b) {
        sums[b] = std::accumulate(lines.begin() + block.firstLine[b],
                                  lines.begin() + block.firstLine[b + 1], 0.0);
    }
    return sums;
}

Series spreadOf(const Series& partitions, const PsyModelBlock& block) {
    Series result;
    for (const auto& row : block.spreading) {
        result.push_back(std::inner_product(row.begin(), row.end(), partitions.begin(), 0.0));
    }
    return result;
}

// Annex D: signal-to-mask ratio between 6 dB for noise and 18 dB for tones.
double tonalFactor(double t) {
    const double tonality = t > 0 ? std::clamp(-0.299 - 0.43 * std::log(t), 0.0, 1.0) : 1;
    return std::pow(10, -(6 + 12 * tonality) / 10);
}

// nb: the thresholds of all four channels, changed; masking: what the binaural limits refer to.
void couple(std::array<Series, 4>& nb, const std::array<Series, 4>& masking, const Series& bmld) {
    for (size_t b = 0; b < bmld.size(); ++b) {
        const std::array<double, 4> old = {nb[0][b], nb[1][b], nb[2][b], nb[3][b]};
        const double r = std::min(old[2], old[3]) / std::max(old[2], old[3]);
        for (size_t a = 0; a < 2; ++a) {
            const double mld = bmld[b] * masking[a][b];
            if (old[a] >= mld) nb[a][b] = std::max(r * old[a], mld);
        }
        const double lower = std::min(old[0], old[1]);
        for (size_t a = 2; a < 4; ++a) {
            const double other = std::min(old[5 - a], bmld[b] * masking[5 - a][b]);
            nb[a][b] = std::min(lower, std::max(old[a], other));
        }
    }
}

double bandValue(const Series& values, const PsyModelBlock& block, size_t s) {
    double sum = 0;
    for (int b = block.bandStart[s]; b <= block.bandStart[s + 1]; ++b) {
        double share = 1;
        if (b == block.bandStart[s]) share = block.bandWeight[s];
        if (b == block.bandStart[s + 1]) share = 1 - block.bandWeight[s + 1];
        sum += share * values[b];
    }
    return sum;
}

Series bandRatios(const Series& eb, const Series& nb, const PsyModelBlock& block) {
    Series ratios;
    for (size_t s = 0; s + 1 < block.bandStart.size(); ++s) {
        const double en = bandValue(eb, block, s);
        ratios.push_back(en == 0 ? 1 : std::min(1.0, bandValue(nb, block, s) / en));
    }
    return ratios;
}

struct History {
    std::array<Series, 4> last, lastButOne;  // thresholds
    std::array<Spectrum, 2> spectrum, spectrumBefore;
};

class Model {
  public:
    Model(const PsyModelBlock& longBlock, const PsyModelBlock& shortBlock,
          const std::vector<Zet16s>& pcm, int channels, bool joint)
        : long_(longBlock),
          short_(shortBlock),
          pcm_(pcm),
          channels_(static_cast<size_t>(channels)),
          analysed_(joint ? 4 : channels_) {
        for (size_t a = 0; a < 4; ++a) {
            past_.last[a] = past_.lastButOne[a] = Series(long_.quiet.size());
        }
        for (auto* spectra : {&past_.spectrum, &past_.spectrumBefore}) {
            for (Spectrum& spectrum : *spectra) spectrum.resize(513);
        }
    }

    PsyModelGranule granule(size_t index, bool afterShort) {
        PsyModelGranule result;
        std::array<Spectrum, 2> now;
        std::array<Series, 2> c;
        std::array<std::array<Spectrum, 2>, 3> shorts;
        for (size_t channel = 0; channel < 2; ++channel) {
            const size_t source = std::min(channel, channels_ - 1);
            const size_t start = 576 * index * channels_ + source;
            now[channel] = spectrumOf(pcm_, start, channels_, 1024);
            for (size_t k = 0; k < 3; ++k) {
                shorts[k][channel] =
                    spectrumOf(pcm_, start + (256 + 128 * k) * channels_, channels_, 256);
            }
            c[channel].assign(513, 0.4);
            for (size_t j = 0; j < 206; ++j) {
                const size_t s = (j + 2) / 4;
                c[channel][j] = j < 6
                                    ? unpredictability(now[channel][j], past_.spectrum[channel][j],
                                                       past_.spectrumBefore[channel][j])
                                    : unpredictability(shorts[2][channel][s], shorts[1][channel][s],
                                                       shorts[0][channel][s]);
            }
        }
        past_.spectrumBefore = past_.spectrum;
        past_.spectrum = now;
        longThresholds(now, c, afterShort, result);
        std::array<Series, 3> totals;
        for (size_t k = 0; k < 3; ++k) shortThresholds(shorts[k], k, result, totals[k]);
        decide(totals, result);
        return result;
    }

  private:
    void longThresholds(const std::array<Spectrum, 2>& spectra, const std::array<Series, 2>& c,
                        bool afterShort, PsyModelGranule& result) {
        const auto lines = energies(spectra);
        std::array<Series, 4> eb, nb, masking;
        for (size_t a = 0; a < 4; ++a) {
            Series weighted = lines[a];
            for (size_t j = 0; j < weighted.size(); ++j) {
                weighted[j] *= a < 2 ? c[a][j] : std::min(c[0][j], c[1][j]);
            }
            eb[a] = partitionSums(lines[a], long_);
            const Series ecb = spreadOf(eb[a], long_);
            const Series ct = spreadOf(partitionSums(weighted, long_), long_);
            for (size_t b = 0; b < ecb.size(); ++b) {
                nb[a].push_back(ecb[b] == 0 ? 1 : ecb[b] * tonalFactor(ct[b] / ecb[b]));
                masking[a].push_back(ecb[b] / 2);  // the library's scale of long blocks
            }
        }
        if (analysed_ == 4) couple(nb, masking, long_.bmld);
        for (size_t a = 0; a < analysed_; ++a) {
            Series limited = nb[a];
            for (size_t b = 0; b < limited.size(); ++b) {
                limited[b] = std::min(limited[b], 2 * past_.last[a][b]);
                if (!afterShort) limited[b] = std::min(limited[b], 16 * past_.lastButOne[a][b]);
                limited[b] = std::max(limited[b], long_.quiet[b]);
                const int width = long_.firstLine[b + 1] - long_.firstLine[b];
                // The quotient has 20 bits before the point.
                const double excess = std::clamp(eb[a][b] / (limited[b] + 1), 1.0, 0x1p20);
                result.pe[a] += width * std::log10(excess);
            }
            past_.lastButOne[a] = past_.last[a];
            past_.last[a] = nb[a];
            result.ratioLong[a] = bandRatios(eb[a], limited, long_);
        }
    }

    void shortThresholds(const std::array<Spectrum, 2>& spectra, size_t window,
                         PsyModelGranule& result, Series& totals) {
        const auto lines = energies(spectra);
        std::array<Series, 4> eb, nb, ecb;
        for (size_t a = 0; a < 4; ++a) {
            eb[a] = partitionSums(lines[a], short_);
            ecb[a] = spreadOf(eb[a], short_);
            for (size_t b = 0; b < ecb[a].size(); ++b) {
                nb[a].push_back(ecb[a][b] == 0 ? 1 : ecb[a][b] * short_.ratio[b]);
            }
            totals.push_back(std::accumulate(eb[a].begin(), eb[a].end(), 0.0));
        }
        if (analysed_ == 4) couple(nb, ecb, short_.bmld);
        for (size_t a = 0; a < analysed_; ++a) {
            for (size_t b = 0; b < nb[a].size(); ++b)
                nb[a][b] = std::max(nb[a][b], short_.quiet[b]);
            const Series ratios = bandRatios(eb[a], nb[a], short_);
            result.ratioShort[a].resize(36);
            for (size_t s = 0; s < 12; ++s) result.ratioShort[a][3 * s + window] = ratios[s];
        }
    }

    // type becomes 2 where a granule has to be short.
    void decide(const std::array<Series, 3>& totals, PsyModelGranule& result) const {
        for (size_t a = 0; a < channels_; ++a) {
            const auto [low, high] = std::minmax({totals[0][a], totals[1][a], totals[2][a]});
            const double rise = low > 0 ? high / low : high > 0 ? 1e30 : 1;
            const double pe = result.pe[a];
            if (rise > 40 || (rise > 8 && pe > 800) || pe > 1000) result.type = 2;
            for (const double distance : {rise / 40 - 1, rise / 8 - 1, pe / 800 - 1, pe / 1000 - 1})
                result.margin = std::min(result.margin, std::abs(distance));
        }
    }

    const PsyModelBlock& long_;
    const PsyModelBlock& short_;
    const std::vector<Zet16s>& pcm_;
    size_t channels_;
    size_t analysed_;
    History past_;
};

}  // namespace

std::vector<PsyModelGranule> modelPsychoacoustics(const PsyModelBlock& longBlock,
                                                  const PsyModelBlock& shortBlock,
                                                  const std::vector<Zet16s>& pcm, int channels,
                                                  bool joint, int granules) {
    Model model(longBlock, shortBlock, pcm, channels, joint);
    std::vector<PsyModelGranule> result;
    int type = 0;
    for (int g = 0; g < granules; ++g) {
        result.push_back(model.granule(static_cast<size_t>(g), type == 2));
        PsyModelGranule& now = result.back();
        if (now.type != 2) now.type = type == 2 ? 3 : 0;
        if (now.type == 2 && g > 0) {  // the one before has to lead over
            int& before = result[result.size() - 2].type;
            before = before == 0 ? 1 : before == 3 ? 2 : before;
        }
        type = now.type;
    }
    return result;
}

}  // namespace zetac::test
