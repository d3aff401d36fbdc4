// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/ps_hybrid.h"

#include <cstring>

#include "sbr/trigonometry.h"

namespace zetac::codec {
namespace {

constexpr int kReach = 6;  // slots to either side of a filter's middle

/** Half of a symmetric prototype: g(6), g(7), ... g(12) (Tables 8.36 to 8.38). */
using Prototype = float[kReach + 1];

constexpr Prototype k20Parts8 = {0.125F,
                                 0.11793710567217F,
                                 0.09885108575264F,
                                 0.07266113929591F,
                                 0.04546865930473F,
                                 0.02270420949825F,
                                 0.00746082949812F};
constexpr Prototype k20Parts2 = {0.5F, 0.30596630545168F, 0, -0.07293139167538F,
                                 0,    0.01899487526049F, 0};
constexpr Prototype k34Parts12 = {0.08333333333333F, 0.08100347892914F, 0.07428313801106F,
                                  0.06399831151592F, 0.05144908135699F, 0.03812810994926F,
                                  0.04081179924692F};
constexpr Prototype k34Parts8 = {0.125F,
                                 0.12222452249753F,
                                 0.10307344158036F,
                                 0.08417044116767F,
                                 0.05417891378782F,
                                 0.03752716391991F,
                                 0.01565675600122F};
constexpr Prototype k34Parts4 = {0.25F, 0.23279856662996F,  0.16486303567403F, 0.07778723915851F,
                                 0,     -0.04871498374946F, -0.05908211155639F};

/** Filters of one QMF subband side by side: g(6 + n) exp(i 2 pi / Q (q + 1/2) n) for n from 0. */
template <int filters>
struct Bank {
    float re[kReach + 1][filters];
    float im[kReach + 1][filters];

    constexpr void add(int column, const Prototype& g, int parts, int q) {
        for (int n = 0; n <= kReach; ++n) {
            const auto [cos, sin] = cosSinPi(2. / parts * (q + 0.5) * n);
            re[n][column] += static_cast<float>(g[n] * cos);
            im[n][column] += static_cast<float>(g[n] * sin);
        }
    }
};

template <int filters>
constexpr Bank<filters> makeBank(const Prototype& g) {
    Bank<filters> bank{};
    for (int q = 0; q < filters; ++q) bank.add(q, g, filters, q);
    return bank;
}

/** Of eight parts the first two are the last, and two pairs that mirror each other are one. */
constexpr Bank<8> makeBank20() {
    constexpr int kColumns[8] = {2, 3, 4, 5, 5, 4, 0, 1};
    Bank<8> bank{};
    for (int q = 0; q < 8; ++q) bank.add(kColumns[q], k20Parts8, 8, q);
    return bank;
}

constexpr Bank<8> kBank20 = makeBank20();
constexpr Bank<12> kBank34Of12 = makeBank<12>(k34Parts12);
constexpr Bank<8> kBank34Of8 = makeBank<8>(k34Parts8);
constexpr Bank<4> kBank34Of4 = makeBank<4>(k34Parts4);

/** One slot of all filters. A prototype's halves mirror each other, so samples at the same distance
 *  from the middle go in as their sum and difference.
 *  @param re, im  the middle of the samples */
template <int filters>
void filter(const Bank<filters>& bank, const float* re, const float* im, float* outRe,
            float* outIm) {
    float sumRe[filters];
    float sumIm[filters];
    for (int q = 0; q < filters; ++q) {
        sumRe[q] = bank.re[0][q] * re[0];
        sumIm[q] = bank.re[0][q] * im[0];
    }
    for (int n = 1; n <= kReach; ++n) {
        const float evenRe = re[-n] + re[n];
        const float evenIm = im[-n] + im[n];
        const float oddRe = re[-n] - re[n];
        const float oddIm = im[-n] - im[n];
        for (int q = 0; q < filters; ++q) {
            sumRe[q] += bank.re[n][q] * evenRe - bank.im[n][q] * oddIm;
            sumIm[q] += bank.re[n][q] * evenIm + bank.im[n][q] * oddRe;
        }
    }
    std::memcpy(outRe, sumRe, sizeof sumRe);
    std::memcpy(outIm, sumIm, sizeof sumIm);
}

/** The real filters of two parts: their sum is the delayed sample. */
void halve(const float* x, float& lower, float& upper) {
    const Prototype& g = k20Parts2;
    const float odd = g[1] * (x[-1] + x[1]) + g[3] * (x[-3] + x[3]) + g[5] * (x[-5] + x[5]);
    lower = g[0] * x[0] + odd;
    upper = g[0] * x[0] - odd;
}

}  // namespace

void PsHybridAnalysis::split(const LowBand& low, bool is34, PsHybridBand& hybrid) {
    for (int band = 0; band < kPsSplitMax; ++band) {
        std::memmove(re_[band], re_[band] + kSbrSlots, kHistory * sizeof(float));
        std::memmove(im_[band], im_[band] + kSbrSlots, kHistory * sizeof(float));
        for (int i = 0; i < kSbrSlots; ++i) {
            re_[band][kHistory + i] = low.re[kSbrHistory + i][band];
            im_[band][kHistory + i] = low.im[kSbrHistory + i][band];
        }
    }
    for (int slot = 0; slot < kSbrSlots; ++slot) {
        const int row = slot + kPsAllPassDelay;
        if (is34) {
            split34(slot, hybrid.re[row], hybrid.im[row]);
        } else {
            split20(slot, hybrid.re[row], hybrid.im[row]);
        }
    }
}

void PsHybridAnalysis::split20(int slot, float* re, float* im) const {
    const int middle = slot + kReach;
    filter(kBank20, re_[0] + middle, im_[0] + middle, re, im);
    halve(re_[1] + middle, re[7], re[6]);
    halve(im_[1] + middle, im[7], im[6]);
    halve(re_[2] + middle, re[8], re[9]);
    halve(im_[2] + middle, im[8], im[9]);
    std::fill(re + 10, re + 12, 0.F);
    std::fill(im + 10, im + 12, 0.F);
}

void PsHybridAnalysis::split34(int slot, float* re, float* im) const {
    const int middle = slot + kReach;
    filter(kBank34Of12, re_[0] + middle, im_[0] + middle, re, im);
    filter(kBank34Of8, re_[1] + middle, im_[1] + middle, re + 12, im + 12);
    for (int band = 2; band < kPsSplitMax; ++band) {
        const int first = kPsBands34.part[band];
        filter(kBank34Of4, re_[band] + middle, im_[band] + middle, re + first, im + first);
    }
}

void joinParts(const PsBands& bands, const float* parts, float* subbands) {
    for (int band = 0; band < bands.split; ++band) {
        float sum = 0;
        for (int k = bands.part[band]; k < bands.part[band + 1]; ++k) sum += parts[k];
        subbands[band] = sum;
    }
}

}  // namespace zetac::codec
