// The spec structure of the DCTs. A power of two runs on a complex FFT of half the length, any
// other length on two FFTs that convolve with a chirp.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/spec.h"
#include "transform/fft_spec.h"

namespace zetac::transform {

struct DctSpec {
    core::SpecHeader header;
    int len;
    int bufSize;
    FftPlan plan;
    Zet32f edge;               // sqrt(1/N), the factor of values 0 and N/2
    const Zet32f* rows;        // power of two: see dct_kernels.h
    const Zet32fc* chirp;      // other lengths: e^(-pi i n^2 / N)
    const Zet32fc* rotations;  // the chirp times the rotation and norm of coefficient k
    const Zet32fc* response;   // the transform of the conjugate chirp, divided by its length
};

struct DctParameters {
    core::SpecId id;
    int len;
};

struct DctSizes {
    uint64_t spec;
    uint64_t init;
    uint64_t work;
    bool fit() const { return core::fitsInt(spec) && core::fitsInt(init) && core::fitsInt(work); }
};

DctSizes dctSizes(int len);

// Lays a structure out in memory; init holds what dctSizes tells.
DctSpec* makeDctSpec(const DctParameters& parameters, Zet8u* memory, Zet8u* init);

// The order of the FFT that a length runs on.
int dctFftOrder(int len);

}  // namespace zetac::transform

struct ZetsDCTFwdSpec_32f
    : zetac::core::SpecOf<zetac::transform::DctSpec, zetac::core::SpecId::kDctFwd32f> {};
struct ZetsDCTInvSpec_32f
    : zetac::core::SpecOf<zetac::transform::DctSpec, zetac::core::SpecId::kDctInv32f> {};
