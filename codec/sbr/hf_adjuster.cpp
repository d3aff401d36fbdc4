// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/hf_adjuster.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "sbr/tables/noise.h"

namespace zetac::codec {
namespace {

constexpr int kNoiseLength = 512;

/** V with its parts apart, continued by a band's length so that a row can be read in one piece. */
struct NoiseTable {
    float re[kNoiseLength + kSbrBandsMax];
    float im[kNoiseLength + kSbrBandsMax];
};

constexpr NoiseTable makeNoiseTable() {
    NoiseTable table{};
    for (int i = 0; i < kNoiseLength + kSbrBandsMax; ++i) {
        table.re[i] = kSbrNoise[i % kNoiseLength][0];
        table.im[i] = kSbrNoise[i % kNoiseLength][1];
    }
    return table;
}

constexpr NoiseTable kNoise = makeNoiseTable();

constexpr float kSmoothing[] = {0.33333333333333F, 0.30150283239582F, 0.21816949906249F,
                                0.11516383427084F, 0.03183050093751F};  // h_smooth

/** Spreads values of bands over their subbands. */
template <int bandsMax>
void spread(const SbrBandTable<bandsMax>& table, const float* values, float* row) {
    for (int i = 0; i < table.bands; ++i) {
        std::fill(row + table.column(i), row + table.column(i + 1), values[i]);
    }
}

/** Mean power of each subband between two slots. */
void measure(const HighBand& high, int from, int to, int padded, float* power) {
    std::fill(power, power + padded, 0.F);
    for (int slot = from; slot < to; ++slot) {
        const float* re = high.re[slot];
        const float* im = high.im[slot];
        for (int m = 0; m < padded; ++m) power[m] += re[m] * re[m] + im[m] * im[m];
    }
    const float scale = 1.F / static_cast<float>(to - from);
    for (int m = 0; m < padded; ++m) power[m] *= scale;
}

/** Without bs_interpol_freq all subbands of a band count as equally loud. */
void average(const SbrBandTable<kSbrBandsMax>& table, float* power) {
    for (int i = 0; i < table.bands; ++i) {
        float* first = power + table.column(i);
        float* last = power + table.column(i + 1);
        float sum = 0;
        for (const float* p = first; p < last; ++p) sum += *p;
        std::fill(first, last, sum / static_cast<float>(last - first));
    }
}

/** Lowers gains that stand out of their limiter band, and makes up for the loss by raising all.
 * Sums go along a band in loops of their own, so that all other work is in vectors. */
void limit(const SbrBandTable<kSbrBandsMax>& table, int bs_limiter_gains, const float* wanted,
           const float* measured, bool isTransient, float* gain, float* noise, float* sine) {
    static constexpr float kLimiterGain[] = {0.70795F, 1.0F, 1.41254F, 1e10F};
    constexpr float kGainMax = 1e5F;
    constexpr float kBoostMax = 1.584893192F;
    constexpr float kEpsilon = 1e-12F;
    const int count = table.end() - table.first();
    float value[kSbrBandsMax];  // of each band
    float perSubband[kSbrBandsMax];
    float wantedSum[kSbrBandsMax];  // of each band
    for (int band = 0; band < table.bands; ++band) {
        float measuredSum = kEpsilon;
        wantedSum[band] = kEpsilon;
        for (int m = table.column(band); m < table.column(band + 1); ++m) {
            wantedSum[band] += wanted[m];
            measuredSum += measured[m];
        }
        value[band] = std::min(
            kGainMax, kLimiterGain[bs_limiter_gains] * std::sqrt(wantedSum[band] / measuredSum));
    }
    spread(table, value, perSubband);
    float power[kSbrBandsMax];
    float noisePower[kSbrBandsMax];
    for (int m = 0; m < count; ++m) {
        const bool isLow = gain[m] <= perSubband[m];
        noise[m] *= isLow ? 1.F : perSubband[m] / gain[m];
        gain[m] = isLow ? gain[m] : perSubband[m];
        power[m] = measured[m] * gain[m] * gain[m] + sine[m] * sine[m];
        noisePower[m] = !isTransient && sine[m] == 0 ? noise[m] * noise[m] : 0.F;
    }
    for (int band = 0; band < table.bands; ++band) {
        float made = kEpsilon;
        for (int m = table.column(band); m < table.column(band + 1); ++m) {
            made += power[m];
            made += noisePower[m];
        }
        value[band] = std::min(kBoostMax, std::sqrt(wantedSum[band] / made));
    }
    spread(table, value, perSubband);
    for (int m = 0; m < count; ++m) {
        gain[m] *= perSubband[m];
        noise[m] *= perSubband[m];
        sine[m] *= perSubband[m];
    }
}

}  // namespace

struct SbrHfAdjuster::Frame {
    const SbrHeader& header;
    const SbrFrequencyTables& tables;
    const SbrChannel& channel;
    const HighBand& high;
    int first;             // slot before which nothing is written
    unsigned firstNumber;  // of slot 0 in the stream

    unsigned number(int slot) const { return firstNumber + static_cast<unsigned>(slot); }
    int padded() const { return paddedBands(tables.count()); }
    int slot(int envelope) const { return 2 * channel.grid.border[envelope]; }
};

/** Sinusoids start in the envelope of a transient, unless they were there before. */
void SbrHfAdjuster::placeSinusoids(const Frame& f, int envelope, bool* isSine) const {
    for (int i = 0; i < f.tables.high.bands; ++i) {
        if (!f.channel.bs_add_harmonic[i]) continue;
        const int k = (f.tables.high.edge[i] + f.tables.high.edge[i + 1]) / 2;
        isSine[k] = envelope >= f.channel.grid.transient || hadSine_[k];
    }
}

/** Gains of 4.6.18.7.5. Where a band has a sinusoid, what it is added to counts as noise. */
void SbrHfAdjuster::makeGains(const Frame& f, int envelope, const bool* isSine,
                              Envelope& out) const {
    const SbrGrid& grid = f.channel.grid;
    const auto& bands = f.tables.envelope(grid.bs_freq_res[envelope] != 0);
    const int kx = f.tables.kx();
    const int count = f.tables.count();
    Row wanted;
    Row ratio;
    Row measured;
    spread(bands, f.channel.levels.envelope[envelope], wanted.v);
    spread(f.tables.noise, f.channel.levels.noise[grid.noiseFloorOf(envelope)], ratio.v);
    measure(f.high, f.slot(envelope), f.slot(envelope + 1), f.padded(), measured.v);
    if (!f.header.bs_interpol_freq) average(bands, measured.v);

    bool hasSine[kSbrBandsMax] = {};  // somewhere in the band around
    for (int i = 0; i < bands.bands; ++i) {
        const bool* first = isSine + bands.edge[i];
        const bool* last = isSine + bands.edge[i + 1];
        std::fill(hasSine + bands.column(i), hasSine + bands.column(i + 1),
                  std::find(first, last, true) != last);
    }
    const bool isTransient = grid.isTransient(envelope);
    for (int m = 0; m < count; ++m) {
        const float q = ratio.v[m];
        const float share = wanted.v[m] / (1 + q);
        const float divisor = hasSine[m] || !isTransient ? 1 + q : 1.F;
        const float factor = hasSine[m] ? q : 1.F;
        out.gain.v[m] = std::sqrt(wanted.v[m] * factor / ((1 + measured.v[m]) * divisor));
        out.noise.v[m] = std::sqrt(share * q);
        out.sine.v[m] = isSine[kx + m] ? std::sqrt(share) : 0.F;
    }
    out.hasSine = std::find(isSine, isSine + kQmfBands, true) != isSine + kQmfBands;
    limit(f.tables.limiter, f.header.bs_limiter_gains, wanted.v, measured.v, isTransient,
          out.gain.v, out.noise.v, out.sine.v);
}

/** Smooths gains over the current slot and those before it.
 *  @param slot  in the envelope; from kTaps on all taps lie inside */
void SbrHfAdjuster::History::smooth(const Row& current, int slot, Row& out) const {
    for (int m = 0; m < kSbrBandsMax; ++m) out.v[m] = kSmoothing[0] * current.v[m];
    for (int tap = 1; tap <= kTaps; ++tap) {
        const Row& row = tap <= slot ? current : rows[kTaps - tap + slot];
        for (int m = 0; m < kSbrBandsMax; ++m) out.v[m] += kSmoothing[tap] * row.v[m];
    }
}

void SbrHfAdjuster::History::push(const Row& row, int slots) {
    const int kept = std::max(0, kTaps - slots);
    std::copy(rows + kTaps - kept, rows + kTaps, rows);
    std::fill(rows + kept, rows + kTaps, row);
}

/** Writes the slots of one envelope (4.6.18.7.6). Noise stays out of subbands with a sinusoid, and
 *  of envelopes with a transient. */
void SbrHfAdjuster::assemble(const Frame& f, int envelope, const Envelope& e, OutputBand& output) {
    const bool isTransient = f.channel.grid.isTransient(envelope);
    const bool isSmooth = f.header.bs_smoothing_mode == 0 && !isTransient;
    const int count = f.tables.count();
    const int begin = f.slot(envelope);
    const int slots = f.slot(envelope + 1) - begin;
    Row mask;
    for (int m = 0; m < count; ++m) mask.v[m] = e.sine.v[m] == 0 && !isTransient ? 1.F : 0.F;
    Row gain = e.gain;
    Row noise = e.noise;
    for (int i = 0; i < slots; ++i) {
        if (isSmooth && i <= kTaps) {
            gains_.smooth(e.gain, i, gain);
            noises_.smooth(e.noise, i, noise);
        }
        if (i == 0 || (isSmooth && i <= kTaps)) {
            for (int m = 0; m < kSbrBandsMax; ++m) noise.v[m] *= mask.v[m];
        }
        if (begin + i >= f.first) {
            addNoise(f, begin + i, gain, noise, output);
            if (e.hasSine) addSinusoids(f, begin + i, e.sine, output);
        }
    }
    gains_.push(e.gain, slots);
    noises_.push(e.noise, slots);
}

void SbrHfAdjuster::addNoise(const Frame& f, int slot, const Row& gain, const Row& noise,
                             OutputBand& output) const {
    const unsigned index =
        (f.number(slot) - noiseOrigin_) * static_cast<unsigned>(f.tables.count());
    const float* noiseRe = kNoise.re + (index + 1) % kNoiseLength;
    const float* noiseIm = kNoise.im + (index + 1) % kNoiseLength;
    float* __restrict re = output.re[slot] + f.tables.kx();
    float* __restrict im = output.im[slot] + f.tables.kx();
    const int padded = f.padded();
    for (int m = 0; m < padded; ++m) {
        re[m] = gain.v[m] * f.high.re[slot][m] + noise.v[m] * noiseRe[m];
        im[m] = gain.v[m] * f.high.im[slot][m] + noise.v[m] * noiseIm[m];
    }
}

/** The phase turns by a quarter a slot, backwards in odd subbands. */
void SbrHfAdjuster::addSinusoids(const Frame& f, int slot, const Row& sine,
                                 OutputBand& output) const {
    static constexpr float kSigns[] = {1, -1, 1};
    const int kx = f.tables.kx();
    const unsigned phase = f.number(slot) % 4;
    const bool isImaginary = phase % 2 != 0;
    const float sign = phase < 2 ? 1.F : -1.F;
    // Of the first subband and every second one after it, and of those between.
    const float first = isImaginary ? sign * kSigns[kx % 2] : sign;
    const float second = isImaginary ? sign * kSigns[kx % 2 + 1] : sign;
    float* __restrict part = (isImaginary ? output.im : output.re)[slot] + kx;
    for (int m = 0; m < f.padded(); m += 2) {
        part[m] += sine.v[m] * first;
        part[m + 1] += sine.v[m + 1] * second;
    }
}

void SbrHfAdjuster::adjust(const SbrHeader& header, const SbrFrequencyTables& tables,
                           const SbrChannel& channel, bool isReset, const HighBand& high, int first,
                           unsigned firstNumber, OutputBand& output) {
    const Frame frame{header, tables, channel, high, first, firstNumber};
    bool isSine[kQmfBands] = {};
    if (isReset) noiseOrigin_ = hasRun_ ? frame.number(frame.slot(0)) : 0;
    hasRun_ = true;
    for (int l = 0; l < channel.grid.envelopes; ++l) {
        Envelope gains;
        std::fill(isSine, isSine + kQmfBands, false);
        placeSinusoids(frame, l, isSine);
        makeGains(frame, l, isSine, gains);
        if (isReset && l == 0) {
            gains_.push(gains.gain, kTaps);
            noises_.push(gains.noise, kTaps);
        }
        assemble(frame, l, gains, output);
    }
    std::copy(isSine, isSine + kQmfBands, hadSine_);
}

}  // namespace zetac::codec
