// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/ps_decorrelator.h"

#include <algorithm>
#include <cmath>

#include "sbr/trigonometry.h"

namespace zetac::codec {
namespace {

/** Multiplies the samples of a row by gains, from one subband to another. */
void scale(const float* from, const float* gain, int first, int end, float* __restrict to) {
    for (int k = first; k < end; ++k) to[k] = from[k] * gain[k];
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
            c.set(k, k + 0.5, k - bands.split + bands.hybrid, bands.decayCutoff);
        }
        return c;
    }
};

/** A link is (Q z^-d - c) / (1 - c Q z^-d); its ring holds what goes into the delay. */
template <int columns>
void PsDecorrelator::AllPass<columns>::filter(const Coefficients<columns>& c, const int* row,
                                              const float* inRe, const float* inIm,
                                              const float* gain, float* outRe, float* outIm) {
    alignas(32) float xRe[columns];
    alignas(32) float xIm[columns];
    for (int k = 0; k < columns; ++k) {
        xRe[k] = c.phaseRe[k] * inRe[k] - c.phaseIm[k] * inIm[k];
        xIm[k] = c.phaseRe[k] * inIm[k] + c.phaseIm[k] * inRe[k];
    }
    for (int m = 0; m < kLinks; ++m) {
        float* ringRe = re[row[m]];
        float* ringIm = im[row[m]];
        for (int k = 0; k < columns; ++k) {
            const float turnedRe = c.linkRe[m][k] * ringRe[k] - c.linkIm[m][k] * ringIm[k];
            const float turnedIm = c.linkRe[m][k] * ringIm[k] + c.linkIm[m][k] * ringRe[k];
            ringRe[k] = xRe[k] + c.gain[m][k] * turnedRe;
            ringIm[k] = xIm[k] + c.gain[m][k] * turnedIm;
            xRe[k] = turnedRe - c.gain[m][k] * ringRe[k];
            xIm[k] = turnedIm - c.gain[m][k] * ringIm[k];
        }
    }
    scale(xRe, gain, 0, columns, outRe);
    scale(xIm, gain, 0, columns, outIm);
}

/** Lets through what is not much weaker than the peak that decays before it (8.6.4.5.3). */
void PsDecorrelator::Detector::detect(const float* power, float* gain) {
    constexpr float kDecay = 0.76592833836465F;
    constexpr float kSmoothing = 0.25F;
    constexpr float kImpact = 1.5F;
    for (int b = 0; b < kBands; ++b) {
        peak[b] = std::max(kDecay * peak[b], power[b]);
        mean[b] += kSmoothing * (power[b] - mean[b]);
        excess[b] += kSmoothing * (peak[b] - power[b] - excess[b]);
        const float limit = kImpact * excess[b];
        gain[b] = limit > mean[b] ? mean[b] / limit : 1.F;
    }
}

void PsDecorrelator::findTransients(const PsBands& bands, int columns, const PsSignal& signal,
                                    int slot, Gains& gains) {
    alignas(32) float power[Detector::kBands] = {};
    alignas(32) float gain[Detector::kBands];
    const float* re = signal.hybrid.re[slot + kPsAllPassDelay];
    const float* im = signal.hybrid.im[slot + kPsAllPassDelay];
    for (int k = 0; k < bands.hybrid; ++k) {
        power[bands.hybridBand[k]] += re[k] * re[k] + im[k] * im[k];
    }
    re = signal.whole.re[slot + kPsLongDelay];
    im = signal.whole.im[slot + kPsLongDelay];
    alignas(32) float squares[kQmfBands];
    for (int k = 0; k < columns; ++k) squares[k] = re[k] * re[k] + im[k] * im[k];
    for (int b = bands.firstWhole; b < bands.bands; ++b) {
        const int end = std::min<int>(bands.edge[b + 1], columns);
        for (int k = bands.edge[b]; k < end; ++k) power[b] += squares[k];
    }
    detector_.detect(power, gain);
    for (int k = 0; k < bands.padded; ++k) gains.hybrid[k] = gain[bands.hybridBand[k]];
    for (int k = 0; k < columns; ++k) gains.whole[k] = gain[bands.wholeBand[k]];
}

void PsDecorrelator::filter(bool is34, const PsSignal& signal, int slot, const Gains& gains,
                            PsSignal& out) {
    static constexpr auto kWhole20 = Coefficients<kAllPassColumns>::ofWhole(kPsBands20);
    static constexpr auto kWhole34 = Coefficients<kAllPassColumns>::ofWhole(kPsBands34);
    static constexpr auto kHybrid20 = Coefficients<kPsBands20.padded>::ofHybrid(kPsBands20);
    static constexpr auto kHybrid34 = Coefficients<kPsBands34.padded>::ofHybrid(kPsBands34);
    const int row = slot + kPsLongDelay;
    const int from = row - kPsAllPassDelay;
    whole_.filter(is34 ? kWhole34 : kWhole20, row_, signal.whole.re[from], signal.whole.im[from],
                  gains.whole, out.whole.re[row], out.whole.im[row]);
    const float* re = signal.hybrid.re[slot];
    const float* im = signal.hybrid.im[slot];
    float* outRe = out.hybrid.re[slot + kPsAllPassDelay];
    float* outIm = out.hybrid.im[slot + kPsAllPassDelay];
    if (is34) {
        hybrid34_.filter(kHybrid34, row_, re, im, gains.hybrid, outRe, outIm);
    } else {
        hybrid20_.filter(kHybrid20, row_, re, im, gains.hybrid, outRe, outIm);
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
    const int longEnd = std::min(columns, kPsLongDelayEnd);
    for (int slot = 0; slot < kSbrSlots; ++slot) {
        Gains gains;
        findTransients(bands, columns, signal, slot, gains);
        filter(&bands == &kPsBands34, signal, slot, gains, out);
        turnRings();
        const int row = slot + kPsLongDelay;
        for (const auto part : {&PsWholeBand::re, &PsWholeBand::im}) {
            const auto& from = signal.whole.*part;
            float* to = (out.whole.*part)[row];
            scale(from[slot], gains.whole, kPsAllPassEnd, longEnd, to);
            scale(from[row - 1], gains.whole, kPsLongDelayEnd, columns, to);
        }
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
