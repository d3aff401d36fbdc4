// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "transform/fft_kernels.h"

#include <utility>

#include "core/levels.h"
#include "transform/fft_real.h"

#define ZETAC_FAMILY transform::fft
#define ZETAC_KERNELS "transform/fft_kernels.inc"
#define ZETAC_FLOAT_KERNELS
#include "core/every_level.inc"

namespace zetac::transform {

constexpr core::LevelTable<FftKernels> kFftKernels = {
    fft::baseline::kKernels, fft::baseline::kKernels, fft::avx2::kKernels, fft::avx512::kKernels};

}  // namespace zetac::transform
