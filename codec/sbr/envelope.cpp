// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/envelope.h"

#include <algorithm>
#include <bit>

#include "sbr/huffman.h"

namespace zetac::codec {
namespace {

constexpr int kNoiseMax = 30;

/** Scale factors beyond it stand for energies above 2^70. */
constexpr int envelopeMax(int bs_amp_res) {
    return bs_amp_res ? 63 : 127;
}

/** Adds up differences; false when a sum leaves 0..max. Balances come in half steps. */
class Sum {
  public:
    Sum(bool isBalance, int max) : step_(isBalance ? 2 : 1), max_(max) {}

    bool add(int from, int difference, uint8_t& value) {
        const int sum = from + step_ * difference;
        value = static_cast<uint8_t>(sum);
        return sum >= 0 && sum <= max_;
    }

  private:
    int step_;
    int max_;
};

/** The values of a row from the row before. */
template <class BandBefore>
bool readTimeDeltas(SbrBits& bits, const SbrHuffmanBook& book, Sum sum, int bands,
                    const uint8_t* before, BandBefore bandBefore, uint8_t* values) {
    for (int i = 0; i < bands; ++i) {
        if (!sum.add(before[bandBefore(i)], book.read(bits), values[i])) return false;
    }
    return true;
}

bool readFrequencyDeltas(SbrBits& bits, const SbrHuffmanBook& book, Sum sum, int startBits,
                         int bands, uint8_t* values) {
    if (!sum.add(0, bits.number(startBits), values[0])) return false;
    for (int i = 1; i < bands; ++i) {
        if (!sum.add(values[i - 1], book.read(bits), values[i])) return false;
    }
    return true;
}

}  // namespace

void SbrScaleFactors::readDirections(SbrBits& bits, const SbrGrid& grid) {
    for (int i = 0; i < grid.envelopes; ++i) bs_df_env[i] = static_cast<uint8_t>(bits.get(1));
    for (int i = 0; i < grid.noiseFloors; ++i) bs_df_noise[i] = static_cast<uint8_t>(bits.get(1));
}

Fault SbrScaleFactors::readEnvelopes(SbrBits& bits, const SbrGrid& grid,
                                     const SbrFrequencyTables& tables, bool isBalance) {
    const SbrHuffmanBook& timeBook = envelopeBook(bs_amp_res, isBalance, SbrDelta::kTime);
    const SbrHuffmanBook& frequencyBook = envelopeBook(bs_amp_res, isBalance, SbrDelta::kFrequency);
    const Sum sum(isBalance, envelopeMax(bs_amp_res));
    const int startBits = 7 - bs_amp_res - (isBalance ? 1 : 0);
    const int odd = tables.high.bands % 2;
    const uint8_t* before = lastEnvelope_;
    bool wasHigh = lastIsHigh_;
    for (int l = 0; l < grid.envelopes; ++l) {
        const bool isHigh = grid.bs_freq_res[l] != 0;
        const int bands = tables.envelope(isHigh).bands;
        // Between the resolutions: the low band that holds a high one, the high one that starts
        // where a low one does.
        const auto bandBefore = [&](int i) {
            if (isHigh == wasHigh) return i;
            return isHigh ? (i + odd) / 2 : std::max(0, 2 * i - odd);
        };
        const bool isGood =
            bs_df_env[l]
                ? readTimeDeltas(bits, timeBook, sum, bands, before, bandBefore, envelope[l])
                : readFrequencyDeltas(bits, frequencyBook, sum, startBits, bands, envelope[l]);
        if (!isGood) return SbrFault::kValue;
        before = envelope[l];
        wasHigh = isHigh;
    }
    std::copy_n(before, kSbrBandsMax, lastEnvelope_);
    lastIsHigh_ = wasHigh;
    return Fault::kNone;
}

Fault SbrScaleFactors::readNoise(SbrBits& bits, const SbrGrid& grid,
                                 const SbrFrequencyTables& tables, bool isBalance) {
    constexpr int kStartBits = 5;
    const Sum sum(isBalance, kNoiseMax);
    const int bands = tables.noise.bands;
    const uint8_t* before = lastNoise_;
    for (int l = 0; l < grid.noiseFloors; ++l) {
        const auto direction = static_cast<SbrDelta>(bs_df_noise[l]);
        const SbrHuffmanBook& book = noiseBook(isBalance, direction);
        const bool isGood =
            direction == SbrDelta::kTime
                ? readTimeDeltas(
                      bits, book, sum, bands, before, [](int i) { return i; }, noise[l])
                : readFrequencyDeltas(bits, book, sum, kStartBits, bands, noise[l]);
        if (!isGood) return SbrFault::kValue;
        before = noise[l];
    }
    std::copy_n(before, kSbrNoiseBandsMax, lastNoise_);
    return Fault::kNone;
}

// --- Dequantisation -----------------------------------------------------------------------------

namespace {

/** 2^(halves / 2) for -250..250. */
float rootOfTwo(int halves) {
    constexpr float kRoot = 1.41421356F;
    const auto power = std::bit_cast<float>(static_cast<uint32_t>((halves >> 1) + 127) << 23);
    return halves & 1 ? power * kRoot : power;
}

/** Calls with every value of a frame's matrix: operation(row, band). */
template <class Operation>
void forEachEnvelopeBand(const SbrGrid& grid, const SbrFrequencyTables& tables,
                         Operation operation) {
    for (int l = 0; l < grid.envelopes; ++l) {
        const int bands = tables.envelope(grid.bs_freq_res[l] != 0).bands;
        for (int i = 0; i < bands; ++i) operation(l, i);
    }
}

template <class Operation>
void forEachNoiseBand(const SbrGrid& grid, const SbrFrequencyTables& tables, Operation operation) {
    for (int l = 0; l < grid.noiseFloors; ++l) {
        for (int i = 0; i < tables.noise.bands; ++i) operation(l, i);
    }
}

/** Two values of a given mean and ratio. */
void share(float sum, float ratio, float& left, float& right) {
    left = sum / (1 + ratio);
    right = left * ratio;
}

}  // namespace

void dequantise(const SbrScaleFactors& f, const SbrGrid& grid, const SbrFrequencyTables& tables,
                SbrLevels& levels) {
    const int step = f.bs_amp_res + 1;  // in half powers of two
    forEachEnvelopeBand(grid, tables, [&](int l, int i) {
        levels.envelope[l][i] = rootOfTwo(12 + step * f.envelope[l][i]);
    });
    forEachNoiseBand(grid, tables, [&](int l, int i) {
        levels.noise[l][i] = rootOfTwo(2 * (6 - f.noise[l][i]));
    });
}

void dequantisePair(const SbrScaleFactors& level, const SbrScaleFactors& balance,
                    const SbrGrid& grid, const SbrFrequencyTables& tables, SbrLevels& left,
                    SbrLevels& right) {
    const int step = level.bs_amp_res + 1;
    const int centre = level.bs_amp_res ? 12 : 24;
    forEachEnvelopeBand(grid, tables, [&](int l, int i) {
        share(rootOfTwo(14 + step * level.envelope[l][i]),
              rootOfTwo(step * (centre - balance.envelope[l][i])), left.envelope[l][i],
              right.envelope[l][i]);
    });
    forEachNoiseBand(grid, tables, [&](int l, int i) {
        share(rootOfTwo(2 * (7 - level.noise[l][i])), rootOfTwo(2 * (12 - balance.noise[l][i])),
              left.noise[l][i], right.noise[l][i]);
    });
}

}  // namespace zetac::codec
