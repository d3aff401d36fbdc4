// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/ps_decorrelator.h"

#include <algorithm>
#include <cmath>

#include "sbr/trigonometry.h"

namespace zetac::codec {
namespace {

/** Power of each parameter band.
 *  @param whole    power of QMF subbands
 *  @param columns  of them that count */
template <const PsBands& bands>
void addUp(const float* hybrid, const float* whole, int columns, float* power) {
    for (int b = 0; b < PsBands::paddedTo4(bands.bands); ++b) power[b] = 0;
    forEachIndex<0, bands.hybrid>([&](auto k) { power[bands.hybridBand[k]] += hybrid[k]; });
    forEachIndex<bands.firstWhole, bands.bands - 1>([&](auto b) {
        float sum = power[b];
        for (int k = bands.edge[b]; k < bands.edge[b + 1]; ++k) sum += whole[k];
        power[b] = sum;
    });
    constexpr int kLast = bands.bands - 1;
    for (int k = bands.edge[kLast]; k < columns; ++k) power[kLast] += whole[k];
}

/** What has died away would go on as denormal numbers, which are slow. */
template <size_t count>
void forgetTraces(float (&values)[count]) {
    constexpr float kTrace = 1e-20F;
    for (float& value : values) value = std::fabs(value) < kTrace ? 0 : value;
}

template <size_t rows, size_t columns>
void forgetTraces(float (&values)[rows][columns]) {
    for (auto& row : values) forgetTraces(row);
}

}  // namespace

template <int columns>
struct PsDecorrelator::Coefficients {
    float phaseRe[columns] = {};
    float phaseIm[columns] = {};
    float linkRe[kLinks][columns] = {};
    float linkIm[kLinks][columns] = {};
    float gain[kLinks][columns] = {};

    /** @param centre  frequency in QMF subbands
     *  @param index   of the subband, k in the standard */
    constexpr void set(int column, double centre, int index, int decayCutoff) {
        constexpr double kPhase = 0.39;
        constexpr double kLinkPhase[] = {0.43, 0.75, 0.347};
        constexpr double kLinkGain[] = {0.65143905753106, 0.56471812200776, 0.48954165955695};
        constexpr double kDecaySlope = 0.05;
        const auto [re, im] = cosSinPi(-kPhase * centre);
        phaseRe[column] = static_cast<float>(re);
        phaseIm[column] = static_cast<float>(im);
        const double decay = std::clamp(1 - kDecaySlope * (index - decayCutoff), 0., 1.);
        for (int m = 0; m < kLinks; ++m) {
            const auto [cos, sin] = cosSinPi(-kLinkPhase[m] * centre);
            linkRe[m][column] = static_cast<float>(cos);
            linkIm[m][column] = static_cast<float>(sin);
            gain[m][column] = static_cast<float>(kLinkGain[m] * decay);
        }
    }

    static constexpr Coefficients ofHybrid(const PsBands& bands) {
        Coefficients c;
        for (int k = 0; k < bands.hybrid; ++k)
            c.set(k, bands.centre[k] / 24., k, bands.decayCutoff);
        return c;
    }

    static constexpr Coefficients ofWhole(const PsBands& bands) {
        Coefficients c;
        for (int k = bands.split; k < kPsAllPassEnd; ++k) {
            c.set(k - kFirstWhole, k + 0.5, k - bands.split + bands.hybrid, bands.decayCutoff);
        }
        return c;
    }
};

/** A link is (Q z^-d - c) / (1 - c Q z^-d); its ring holds what goes into the delay. */
template <int columns>
void PsDecorrelator::AllPass<columns>::filter(const Coefficients<columns>& c, const int* row,
                                              const float* inRe, const float* inIm,
                                              const float* gain, float* __restrict outRe,
                                              float* __restrict outIm) {
    alignas(32) float xRe[columns];
    alignas(32) float xIm[columns];
    for (int k = 0; k < columns; ++k) {
        xRe[k] = c.phaseRe[k] * inRe[k] - c.phaseIm[k] * inIm[k];
        xIm[k] = c.phaseRe[k] * inIm[k] + c.phaseIm[k] * inRe[k];
    }
    for (int m = 0; m < kLinks; ++m) {
        float* __restrict ringRe = re[row[m]];
        float* __restrict ringIm = im[row[m]];
        for (int k = 0; k < columns; ++k) {
            const float turnedRe = c.linkRe[m][k] * ringRe[k] - c.linkIm[m][k] * ringIm[k];
            const float turnedIm = c.linkRe[m][k] * ringIm[k] + c.linkIm[m][k] * ringRe[k];
            const float fedRe = xRe[k] + c.gain[m][k] * turnedRe;
            const float fedIm = xIm[k] + c.gain[m][k] * turnedIm;
            ringRe[k] = fedRe;
            ringIm[k] = fedIm;
            xRe[k] = turnedRe - c.gain[m][k] * fedRe;
            xIm[k] = turnedIm - c.gain[m][k] * fedIm;
        }
    }
    for (int k = 0; k < columns; ++k) {
        outRe[k] = xRe[k] * gain[k];
        outIm[k] = xIm[k] * gain[k];
    }
}

/** Lets through what is not much weaker than the peak that decays before it (8.6.4.5.3). */
void PsDecorrelator::Detector::detect(int bands, const float* power, float* gain) {
    constexpr float kDecay = 0.76592833836465F;
    constexpr float kSmoothing = 0.25F;
    constexpr float kImpact = 1.5F;
    for (int b = 0; b < bands; ++b) {
        peak[b] = std::max(kDecay * peak[b], power[b]);
        mean[b] += kSmoothing * (power[b] - mean[b]);
        excess[b] += kSmoothing * (peak[b] - power[b] - excess[b]);
        const float limit = kImpact * excess[b];
        gain[b] = limit > mean[b] ? mean[b] / limit : 1.F;
    }
}

/** @param gain  out: of each parameter band */
void PsDecorrelator::findTransients(const PsBands& bands, int columns, const PsSignal& signal,
                                    int slot, float* gain) {
    const auto square = [](const float* re, const float* im, int count, float* __restrict out) {
        for (int k = 0; k < count; ++k) out[k] = re[k] * re[k] + im[k] * im[k];
    };
    alignas(32) float hybrid[kPsHybridMax] = {};
    alignas(32) float whole[kQmfBands] = {};
    alignas(32) float power[Detector::kBands] = {};
    square(signal.hybrid.re[slot + kPsAllPassDelay], signal.hybrid.im[slot + kPsAllPassDelay],
           bands.padded, hybrid);
    square(signal.whole.re[slot + kPsLongDelay], signal.whole.im[slot + kPsLongDelay], columns,
           whole);
    const auto add = &bands == &kPsBands34 ? addUp<kPsBands34> : addUp<kPsBands20>;
    add(hybrid, whole, columns, power);
    detector_.detect(PsBands::paddedTo4(bands.bands), power, gain);
}

void PsDecorrelator::filter(const PsBands& bands, const PsSignal& signal, int slot,
                            const float* gain, PsSignal& out) {
    static constexpr auto kWhole20 = Coefficients<kAllPassColumns>::ofWhole(kPsBands20);
    static constexpr auto kWhole34 = Coefficients<kAllPassColumns>::ofWhole(kPsBands34);
    static constexpr auto kHybrid20 = Coefficients<kPsBands20.padded>::ofHybrid(kPsBands20);
    static constexpr auto kHybrid34 = Coefficients<kPsBands34.padded>::ofHybrid(kPsBands34);
    const bool is34 = &bands == &kPsBands34;
    alignas(32) float spread[kPsHybridMax];
    for (int k = 0; k < kAllPassColumns; ++k) spread[k] = gain[bands.wholeBand[kFirstWhole + k]];
    const int row = slot + kPsLongDelay;
    const int from = row - kPsAllPassDelay;
    whole_.filter(is34 ? kWhole34 : kWhole20, row_, signal.whole.re[from] + kFirstWhole,
                  signal.whole.im[from] + kFirstWhole, spread, out.whole.re[row] + kFirstWhole,
                  out.whole.im[row] + kFirstWhole);
    for (int k = 0; k < bands.padded; ++k) spread[k] = gain[bands.hybridBand[k]];
    const float* re = signal.hybrid.re[slot];
    const float* im = signal.hybrid.im[slot];
    float* outRe = out.hybrid.re[slot + kPsAllPassDelay];
    float* outIm = out.hybrid.im[slot + kPsAllPassDelay];
    if (is34) {
        hybrid34_.filter(kHybrid34, row_, re, im, spread, outRe, outIm);
    } else {
        hybrid20_.filter(kHybrid20, row_, re, im, spread, outRe, outIm);
    }
}

void PsDecorrelator::delay(const PsBands& bands, int columns, const PsWholeBand& signal, int slot,
                           const float* gain, PsWholeBand& out) {
    constexpr int kShortDelay = 1;
    const int row = slot + kPsLongDelay;
    const auto scale = [&](int first, int end, int from, float factor) {
        for (int k = first; k < end; ++k) out.re[row][k] = signal.re[from][k] * factor;
        for (int k = first; k < end; ++k) out.im[row][k] = signal.im[from][k] * factor;
    };
    int first = kPsAllPassEnd;
    for (int b = bands.wholeBand[first]; b < bands.bands; ++b) {
        const int end = std::min<int>(bands.edge[b + 1], columns);
        const int middle = std::clamp(kPsLongDelayEnd, first, std::max(first, end));
        scale(first, middle, slot, gain[b]);
        scale(middle, end, row - kShortDelay, gain[b]);
        first = std::max(first, end);
    }
}

void PsDecorrelator::turnRings() {
    static constexpr int kFirst[] = {0, 3, 7, kRingRows};
    for (int m = 0; m < kLinks; ++m) {
        if (++row_[m] == kFirst[m + 1]) row_[m] = kFirst[m];
    }
}

void PsDecorrelator::decorrelate(const PsBands& bands, int columns, const PsSignal& signal,
                                 PsSignal& out) {
    for (int slot = 0; slot < kSbrSlots; ++slot) {
        alignas(32) float gain[Detector::kBands];
        findTransients(bands, columns, signal, slot, gain);
        filter(bands, signal, slot, gain, out);
        delay(bands, columns, signal.whole, slot, gain, out.whole);
        turnRings();
    }
    forgetTraces(detector_.peak);
    forgetTraces(detector_.mean);
    forgetTraces(detector_.excess);
    forgetTraces(whole_.re);
    forgetTraces(whole_.im);
    forgetTraces(hybrid20_.re);
    forgetTraces(hybrid20_.im);
    forgetTraces(hybrid34_.re);
    forgetTraces(hybrid34_.im);
}

}  // namespace zetac::codec
