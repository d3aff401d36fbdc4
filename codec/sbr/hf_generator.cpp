// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/hf_generator.h"

#include <algorithm>

namespace zetac::codec {
namespace {

/** newBw of a noise band, from its modes in the last frame and in this one. */
float newChirp(int before, int now) {
    static constexpr float kChirp[] = {0, 0.75F, 0.9F, 0.98F};
    constexpr float kTransition = 0.6F;  // between off and low
    return before + now == 1 ? kTransition : kChirp[now];
}

float smoothChirp(float before, float now) {
    const float chirp =
        now < before ? 0.75F * now + 0.25F * before : 0.90625F * now + 0.09375F * before;
    constexpr float kLeast = 0.015625F;
    return chirp < kLeast ? 0 : chirp;
}

/** Calls with every subband that is filled: operation(source, its column, its noise band). */
template <class Operation>
void forEachTarget(const SbrFrequencyTables& tables, Operation operation) {
    int noiseBand = 0;
    for (int p = 0; p < tables.patches; ++p) {
        const SbrPatch& patch = tables.patch[p];
        for (int i = 0; i < patch.bands; ++i) {
            const int target = patch.target + i;
            while (target >= tables.noise.edge[noiseBand + 1]) ++noiseBand;
            operation(patch.source + i, target - tables.kx(), noiseBand);
        }
    }
}

/** A slot of the low band and the two before it. */
struct Sources {
    const float *re0, *im0, *re1, *im1, *re2, *im2;

    Sources(const LowBand& low, int slot, int band)
        : re0(low.re[slot + kSbrDelay] + band),
          im0(low.im[slot + kSbrDelay] + band),
          re1(low.re[slot + kSbrDelay - 1] + band),
          im1(low.im[slot + kSbrDelay - 1] + band),
          re2(low.re[slot + kSbrDelay - 2] + band),
          im2(low.im[slot + kSbrDelay - 2] + band) {}
};

}  // namespace

uint32_t SbrHfGenerator::begin(const SbrFrequencyTables& tables, const SbrChannel& channel) {
    for (int i = 0; i < tables.noise.bands; ++i) {
        const uint8_t mode = channel.bs_invf_mode[i];
        chirp_[i] = smoothChirp(chirp_[i], newChirp(mode_[i], mode));
        mode_[i] = mode;
    }
    uint32_t needed = 0;
    forEachTarget(tables, [&](int source, int, int noiseBand) {
        if (chirp_[noiseBand] != 0) needed |= 1U << source;
    });
    isFlattened_ = needed != 0;
    return needed;
}

void SbrHfGenerator::makeFilter(const LowPrediction& prediction, const SbrFrequencyTables& tables,
                                Filter& filter) const {
    forEachTarget(tables, [&](int source, int m, int noiseBand) {
        const float chirp = chirp_[noiseBand];
        filter.a0Re[m] = chirp * prediction.alpha0Re[source];
        filter.a0Im[m] = chirp * prediction.alpha0Im[source];
        filter.a1Re[m] = chirp * chirp * prediction.alpha1Re[source];
        filter.a1Im[m] = chirp * chirp * prediction.alpha1Im[source];
    });
}

void SbrHfGenerator::copy(const LowBand& low, int slot, const SbrPatch& patch, int first,
                          HighBand& high) {
    std::copy_n(low.re[slot + kSbrDelay] + patch.source, patch.bands, high.re[slot] + first);
    std::copy_n(low.im[slot + kSbrDelay] + patch.source, patch.bands, high.im[slot] + first);
}

/** x(l) + a0 x(l - 1) + a1 x(l - 2). */
void SbrHfGenerator::filter(const LowBand& low, int slot, const SbrPatch& patch, int first,
                            const Filter& filter, HighBand& high) {
    const Sources x(low, slot, patch.source);
    const float* a0Re = filter.a0Re + first;
    const float* a0Im = filter.a0Im + first;
    const float* a1Re = filter.a1Re + first;
    const float* a1Im = filter.a1Im + first;
    float* __restrict re = high.re[slot] + first;
    float* __restrict im = high.im[slot] + first;
    for (int i = 0; i < patch.bands; ++i) {
        re[i] = x.re0[i] + (a0Re[i] * x.re1[i] - a0Im[i] * x.im1[i]) +
                (a1Re[i] * x.re2[i] - a1Im[i] * x.im2[i]);
        im[i] = x.im0[i] + (a0Re[i] * x.im1[i] + a0Im[i] * x.re1[i]) +
                (a1Re[i] * x.im2[i] + a1Im[i] * x.re2[i]);
    }
}

void SbrHfGenerator::generate(const LowBand& low, const LowPrediction& prediction,
                              const SbrFrequencyTables& tables, const SbrChannel& channel,
                              HighBand& high) {
    Filter filters;
    if (isFlattened_) makeFilter(prediction, tables, filters);
    const SbrPatch& last = tables.patch[tables.patches - 1];
    const int filled = last.target + last.bands - tables.kx();
    const int padded = paddedBands(tables.count());
    for (int slot = 2 * channel.grid.border[0]; slot < 2 * channel.grid.end(); ++slot) {
        for (int p = 0; p < tables.patches; ++p) {
            const SbrPatch& patch = tables.patch[p];
            const int first = patch.target - tables.kx();
            if (isFlattened_) {
                filter(low, slot, patch, first, filters, high);
            } else {
                copy(low, slot, patch, first, high);
            }
        }
        std::fill(high.re[slot] + filled, high.re[slot] + padded, 0.F);
        std::fill(high.im[slot] + filled, high.im[slot] + padded, 0.F);
    }
}

}  // namespace zetac::codec
