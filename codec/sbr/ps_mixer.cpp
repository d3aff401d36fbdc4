// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/ps_mixer.h"

#include <algorithm>

#include "sbr/trigonometry.h"

namespace zetac::codec {
namespace {

// --- Matrices from parameters -------------------------------------------------------------------

constexpr int kIidSteps = 2 * kPsIidMax[1] + 1;
constexpr int kIccSteps = kPsIccMax + 1;

/** h11, h12, h21, h22 by procedure, grid, level and coherence. */
struct MixingTable {
    float h[2][2][kIidSteps][kIccSteps][4];
};

/** 10^(IID / 20), the ratio of left to right; beyond a grid's end that of its end. */
constexpr double ratioOf(bool isFine, int index) {
    constexpr int kLevels[2][kPsIidMax[1] + 1] = {
        {0, 2, 4, 7, 10, 14, 18, 25},
        {0, 2, 4, 6, 8, 10, 13, 16, 19, 22, 25, 30, 35, 40, 45, 50}};  // dB
    constexpr double kDecibel = 1.1220184543019634;
    double ratio = 1;
    const int steps = std::min(index < 0 ? -index : index, kPsIidMax[isFine]);
    for (int i = kLevels[isFine][steps]; i > 0; --i) ratio *= kDecibel;
    return index < 0 ? 1 / ratio : ratio;
}

/** Procedure A (8.6.4.6.2): turns level and decorrelated part by an angle. */
constexpr void mixA(double c, int icc, float (&h)[4]) {
    constexpr double kPi = 3.14159265358979323846;
    constexpr double kAlpha[kIccSteps] = {0,
                                          0.17842763716226831,
                                          0.28566733020309482,
                                          0.46307236069096619,
                                          0.59716315213821702,
                                          0.78539816339744828,
                                          1.1003085943613728,
                                          1.5707963267948966};
    const double right = rootOf(2 / (1 + c * c));
    const double left = c * right;
    const double alpha = kAlpha[icc] / kPi;
    const double beta = alpha * (right - left) / rootOf(2);
    const CosSin plus = cosSinPi(alpha + beta);
    const CosSin minus = cosSinPi(beta - alpha);
    h[0] = static_cast<float>(left * plus.cos);
    h[1] = static_cast<float>(right * minus.cos);
    h[2] = static_cast<float>(left * plus.sin);
    h[3] = static_cast<float>(right * minus.sin);
}

/** Procedure B: the principal component and what is at right angles to it. The angles themselves,
 *  atan2(2 c rho, c^2 - 1) / 2 and atan(sqrt((1 - mu) / (1 + mu))), are not needed. */
constexpr void mixB(double c, int icc, float (&h)[4]) {
    constexpr double kRho[kIccSteps] = {1,       0.937, 0.84118, 0.60092,
                                        0.36764, 0.05,  0.05,    0.05};  // 0.05 and above
    const double rho = kRho[icc];
    const double x = c * c - 1;
    const double y = 2 * c * rho;
    const double cosine = x / rootOf(x * x + y * y);  // of twice alpha
    const double sum = c + 1 / c;
    const double mu = rootOf(1 + 4 * (rho * rho - 1) / (sum * sum));
    const double cosAlpha = rootOf(1 + cosine);  // the square root of 2 included
    const double sinAlpha = rootOf(1 - cosine);
    const double cosGamma = rootOf((1 + mu) / 2);
    const double sinGamma = mu < 1 ? rootOf((1 - mu) / 2) : 0;
    h[0] = static_cast<float>(cosAlpha * cosGamma);
    h[1] = static_cast<float>(sinAlpha * cosGamma);
    h[2] = static_cast<float>(-sinAlpha * sinGamma);
    h[3] = static_cast<float>(cosAlpha * sinGamma);
}

constexpr MixingTable makeMixingTable() {
    MixingTable table{};
    for (int fine = 0; fine < 2; ++fine) {
        for (int i = 0; i < kIidSteps; ++i) {
            const double c = ratioOf(fine != 0, i - kPsIidMax[1]);
            for (int icc = 0; icc < kIccSteps; ++icc) {
                mixA(c, icc, table.h[0][fine][i][icc]);
                mixB(c, icc, table.h[1][fine][i][icc]);
            }
        }
    }
    return table;
}

constexpr MixingTable kMixing = makeMixingTable();

// --- Phases -------------------------------------------------------------------------------------

struct Rotation {
    float re = 1;
    float im = 0;
};

constexpr int kPhaseHistories = kPsPhases * kPsPhases * kPsPhases;

/** Phases smoothed over three envelopes, the oldest one in the highest digit. */
constexpr std::array<Rotation, kPhaseHistories> makeRotations() {
    std::array<Rotation, kPhaseHistories> rotations{};
    for (int i = 0; i < kPhaseHistories; ++i) {
        const CosSin first = cosSinPi(i / 64 * 0.25);
        const CosSin second = cosSinPi(i / 8 % 8 * 0.25);
        const CosSin third = cosSinPi(i % 8 * 0.25);
        const double re = 0.25 * first.cos + 0.5 * second.cos + third.cos;
        const double im = 0.25 * first.sin + 0.5 * second.sin + third.sin;
        const double length = rootOf(re * re + im * im);
        rotations[static_cast<size_t>(i)] = {static_cast<float>(re / length),
                                             static_cast<float>(im / length)};
    }
    return rotations;
}

constexpr std::array<Rotation, kPhaseHistories> kRotations = makeRotations();

uint16_t appendPhase(uint16_t history, int phase) {
    return static_cast<uint16_t>((history * kPsPhases + phase) % kPhaseHistories);
}

}  // namespace

/** Neither level nor phase between the channels, and nothing decorrelated. */
PsMixer::PsMixer() {
    std::fill_n(last_.re[0], kPsBandsMax, 1.F);
    std::fill_n(last_.re[1], kPsBandsMax, 1.F);
}

PsMixer::Matrix PsMixer::matrixOf(const PsFrame& frame, const PsEnvelope& envelope) {
    Matrix matrix;
    const auto& table = kMixing.h[frame.isMixingB][frame.isIidFine];
    for (size_t b = 0; b < kPsBandsMax; ++b) {
        const auto& h = table[envelope.iid()[b] + kPsIidMax[1]][envelope.icc()[b]];
        for (int e = 0; e < kElements; ++e) matrix.re[e][b] = h[e];
        ipd_[b] = appendPhase(ipd_[b], envelope.ipd()[b]);
        opd_[b] = appendPhase(opd_[b], envelope.opd()[b]);
        if ((ipd_[b] | opd_[b]) == 0) continue;
        const Rotation left = kRotations[opd_[b]];
        const Rotation between = kRotations[ipd_[b]];
        const Rotation right = {left.re * between.re + left.im * between.im,
                                left.im * between.re - left.re * between.im};
        for (int e = 0; e < kElements; ++e) {
            const Rotation& turn = e % 2 ? right : left;
            matrix.re[e][b] = h[e] * turn.re;
            matrix.im[e][b] = h[e] * turn.im;
        }
        matrix.isComplex = true;
    }
    return matrix;
}

// --- Between 20 and 34 bands --------------------------------------------------------------------

namespace {

void spread(const float* from, float* to) {
    for (int b = 0; b < kPsBandsMax; ++b) {
        const auto [first, second] = kPsSourcesOf34[b];
        to[b] = (from[first] + from[second]) * 0.5F;
    }
}

void gather(const float* from, float* to) {
    constexpr float kThird = 1 / 3.F;
    for (int i = 0; i < 2; ++i) {
        const float* p = from + 3 * i;
        to[2 * i] = (2 * p[0] + p[1]) * kThird;
        to[2 * i + 1] = (p[1] + 2 * p[2]) * kThird;
    }
    static constexpr int kFirst[] = {6,  8,  10, 11, 12, 14, 16, 17, 18,
                                     19, 20, 22, 24, 26, 28, 32, 34};
    for (int i = 0; i < 16; ++i) {
        float sum = 0;
        for (int b = kFirst[i]; b < kFirst[i + 1]; ++b) sum += from[b];
        to[4 + i] = sum / static_cast<float>(kFirst[i + 1] - kFirst[i]);
    }
}

}  // namespace

void PsMixer::change(bool is34) {
    const Matrix from = last_;
    const auto map = is34 ? spread : gather;
    for (int e = 0; e < kElements; ++e) {
        map(from.re[e], last_.re[e]);
        map(from.im[e], last_.im[e]);
    }
    ipd_ = {};
    opd_ = {};
    is34_ = is34;
}

// --- Mixing -------------------------------------------------------------------------------------

/** Matrices of all subbands on their way from one to the next, a step a slot. */
struct PsMixer::Ramp {
    alignas(32) float re[kElements][kQmfBands];
    alignas(32) float im[kElements][kQmfBands];
    alignas(32) float stepRe[kElements][kQmfBands];
    alignas(32) float stepIm[kElements][kQmfBands];

    /** @param isMirrored  whose phases turn the other way */
    template <class IsMirrored>
    Ramp(const Matrix& from, const Matrix& to, int slots, const uint8_t* band, int columns,
         IsMirrored isMirrored) {
        const float step = 1 / static_cast<float>(slots);
        for (int e = 0; e < kElements; ++e) {
            for (int k = 0; k < columns; ++k) {
                const int b = band[k];
                re[e][k] = from.re[e][b];
                stepRe[e][k] = (to.re[e][b] - from.re[e][b]) * step;
                if (!from.isComplex && !to.isComplex) continue;
                const float sign = isMirrored(k) ? -1.F : 1.F;
                im[e][k] = sign * from.im[e][b];
                stepIm[e][k] = sign * (to.im[e][b] - from.im[e][b]) * step;
            }
        }
    }

    void mix(int columns, float* __restrict leftRe, float* __restrict leftIm,
             float* __restrict rightRe, float* __restrict rightIm);
    void mixComplex(int columns, float* __restrict leftRe, float* __restrict leftIm,
                    float* __restrict rightRe, float* __restrict rightIm);
};

void PsMixer::Ramp::mix(int columns, float* __restrict leftRe, float* __restrict leftIm,
                        float* __restrict rightRe, float* __restrict rightIm) {
    for (int k = 0; k < columns; ++k) {
        const float h11 = re[0][k] += stepRe[0][k];
        const float h12 = re[1][k] += stepRe[1][k];
        const float h21 = re[2][k] += stepRe[2][k];
        const float h22 = re[3][k] += stepRe[3][k];
        const float sRe = leftRe[k];
        const float sIm = leftIm[k];
        const float dRe = rightRe[k];
        const float dIm = rightIm[k];
        leftRe[k] = h11 * sRe + h21 * dRe;
        leftIm[k] = h11 * sIm + h21 * dIm;
        rightRe[k] = h12 * sRe + h22 * dRe;
        rightIm[k] = h12 * sIm + h22 * dIm;
    }
}

void PsMixer::Ramp::mixComplex(int columns, float* __restrict leftRe, float* __restrict leftIm,
                               float* __restrict rightRe, float* __restrict rightIm) {
    for (int e = 0; e < kElements; ++e) {
        for (int k = 0; k < columns; ++k) {
            re[e][k] += stepRe[e][k];
            im[e][k] += stepIm[e][k];
        }
    }
    for (int k = 0; k < columns; ++k) {
        const float sRe = leftRe[k];
        const float sIm = leftIm[k];
        const float dRe = rightRe[k];
        const float dIm = rightIm[k];
        leftRe[k] = (re[0][k] * sRe - im[0][k] * sIm) + (re[2][k] * dRe - im[2][k] * dIm);
        leftIm[k] = (re[0][k] * sIm + im[0][k] * sRe) + (re[2][k] * dIm + im[2][k] * dRe);
        rightRe[k] = (re[1][k] * sRe - im[1][k] * sIm) + (re[3][k] * dRe - im[3][k] * dIm);
        rightIm[k] = (re[1][k] * sIm + im[1][k] * sRe) + (re[3][k] * dIm + im[3][k] * dRe);
    }
}

void PsMixer::mix(const PsFrame& frame, int columns, PsSignal& left, PsSignal& right) {
    if (frame.is34 != is34_) change(frame.is34);
    const PsBands& bands = is34_ ? kPsBands34 : kPsBands20;
    int begin = 0;
    for (int e = 0; e < frame.envelopes; ++e) {
        const int end = frame.envelope[e].end;
        const Matrix next = matrixOf(frame, frame.envelope[e]);
        const auto run = last_.isComplex || next.isComplex ? &Ramp::mixComplex : &Ramp::mix;
        const auto mixPart = [&](Ramp& ramp, int count, int firstRow, auto& l, auto& r) {
            for (int row = firstRow + begin; row < firstRow + end; ++row) {
                (ramp.*run)(count, l.re[row], l.im[row], r.re[row], r.im[row]);
            }
        };
        if (end > begin) {
            Ramp whole(last_, next, end - begin, bands.wholeBand, columns,
                       [](int) { return false; });
            mixPart(whole, columns, kPsLongDelay, left.whole, right.whole);
            Ramp parts(last_, next, end - begin, bands.hybridBand, bands.padded,
                       [&](int k) { return bands.centre[k] < 0; });
            mixPart(parts, bands.padded, kPsAllPassDelay, left.hybrid, right.hybrid);
        }
        last_ = next;
        begin = end;
    }
}

}  // namespace zetac::codec
