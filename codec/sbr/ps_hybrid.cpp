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

/** Filters q of one QMF subband side by side: g(6 + n) exp(i 2 pi / Q (q + 1/2) n) for n from 0.
 *  Filter Q - 1 - q is the mirror image of filter q, so half of them are enough. */
template <int half>
struct Bank {
    float cos[kReach + 1][half];
    float sin[kReach + 1][half];

    constexpr explicit Bank(const Prototype& g, int parts) : cos{}, sin{} {
        for (int n = 0; n <= kReach; ++n) {
            for (int q = 0; q < parts / 2; ++q) {
                const CosSin factor = cosSinPi(2. / parts * (q + 0.5) * n);
                cos[n][q] = static_cast<float>(g[n] * factor.cos);
                sin[n][q] = static_cast<float>(g[n] * factor.sin);
            }
        }
    }

    /** Makes a filter and its mirror image one: their sum, on either side. */
    constexpr void merge(int q) {
        for (int n = 0; n <= kReach; ++n) {
            cos[n][q] *= 2;
            sin[n][q] = 0;
        }
    }
};

constexpr Bank<4> makeBank20() {
    Bank<4> bank(k20Parts8, 8);
    bank.merge(2);
    bank.merge(3);
    return bank;
}

constexpr Bank<4> kBank20 = makeBank20();
constexpr Bank<8> kBank34Of12(k34Parts12, 12);
constexpr Bank<4> kBank34Of8(k34Parts8, 8);
constexpr Bank<4> kBank34Of4(k34Parts4, 4);

/** A slot of all filters, and of their mirror images. */
template <int half>
struct Parts {
    float re[half], im[half];
    float mirrorRe[half], mirrorIm[half];

    /** A prototype's halves mirror each other, so samples at the same distance from the middle go
     *  in as their sum and difference.
     *  @param x, y  real and imaginary parts, at the middle */
    Parts(const Bank<half>& bank, const float* x, const float* y) {
        float evenX[half], evenY[half], oddX[half], oddY[half];
        for (int q = 0; q < half; ++q) {
            evenX[q] = bank.cos[0][q] * x[0];
            evenY[q] = bank.cos[0][q] * y[0];
            oddX[q] = oddY[q] = 0;
        }
        for (int n = 1; n <= kReach; ++n) {
            const float sumX = x[-n] + x[n];
            const float sumY = y[-n] + y[n];
            const float differenceX = x[-n] - x[n];
            const float differenceY = y[-n] - y[n];
            for (int q = 0; q < half; ++q) {
                evenX[q] += bank.cos[n][q] * sumX;
                evenY[q] += bank.cos[n][q] * sumY;
                oddX[q] += bank.sin[n][q] * differenceX;
                oddY[q] += bank.sin[n][q] * differenceY;
            }
        }
        for (int q = 0; q < half; ++q) {
            re[q] = evenX[q] - oddY[q];
            im[q] = evenY[q] + oddX[q];
            mirrorRe[q] = evenX[q] + oddY[q];
            mirrorIm[q] = evenY[q] - oddX[q];
        }
    }

    /** Writes them in the order of q. */
    void write(int parts, float* toRe, float* toIm) const {
        for (int q = 0; q < parts / 2; ++q) {
            toRe[q] = re[q];
            toIm[q] = im[q];
            toRe[parts - 1 - q] = mirrorRe[q];
            toIm[parts - 1 - q] = mirrorIm[q];
        }
    }
};

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
    const Parts parts(kBank20, re_[0] + middle, im_[0] + middle);
    for (int i = 0; i < 2; ++i) {
        re[i] = parts.mirrorRe[1 - i];
        im[i] = parts.mirrorIm[1 - i];
    }
    for (int i = 0; i < 4; ++i) {
        re[2 + i] = parts.re[i];
        im[2 + i] = parts.im[i];
    }
    halve(re_[1] + middle, re[7], re[6]);
    halve(im_[1] + middle, im[7], im[6]);
    halve(re_[2] + middle, re[8], re[9]);
    halve(im_[2] + middle, im[8], im[9]);
    for (int i = kPsBands20.hybrid; i < kPsBands20.padded; ++i) re[i] = im[i] = 0;
}

void PsHybridAnalysis::split34(int slot, float* re, float* im) const {
    const int middle = slot + kReach;
    const auto split = [&](const auto& bank, int band, int parts) {
        const int first = kPsBands34.part[band];
        Parts(bank, re_[band] + middle, im_[band] + middle).write(parts, re + first, im + first);
    };
    split(kBank34Of12, 0, 12);
    split(kBank34Of8, 1, 8);
    for (int band = 2; band < kPsSplitMax; ++band) split(kBank34Of4, band, 4);
}

namespace {

template <const PsBands& bands>
void join(const float* parts, float* subbands) {
    forEachIndex<0, bands.split>([&](auto band) {
        float sum = parts[bands.part[band]];
        forEachIndex<bands.part[band] + 1, bands.part[band + 1]>([&](auto k) { sum += parts[k]; });
        subbands[band] = sum;
    });
}

template <const PsBands& bands>
void joinSlots(PsSignal& signal) {
    for (int i = 0; i < kSbrSlots; ++i) {
        const int from = i + kPsAllPassDelay;
        const int to = i + kPsLongDelay;
        join<bands>(signal.hybrid.re[from], signal.whole.re[to]);
        join<bands>(signal.hybrid.im[from], signal.whole.im[to]);
    }
}

}  // namespace

void joinParts(bool is34, PsSignal& signal) {
    is34 ? joinSlots<kPsBands34>(signal) : joinSlots<kPsBands20>(signal);
}

}  // namespace zetac::codec
