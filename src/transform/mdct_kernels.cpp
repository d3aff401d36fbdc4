// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "transform/mdct_kernels.h"

#include <utility>

#include "transform/fft_kernels.h"
#include "transform/fft_real.h"

#define ZETAC_FAMILY transform::mdct
#define ZETAC_KERNELS "transform/mdct_kernels.inc"
#define ZETAC_FLOAT_KERNELS
#include "core/every_level.inc"

namespace zetac::transform {

constexpr core::LevelTable<MdctKernels> kMdctKernels = {
    mdct::baseline::kMdct, mdct::baseline::kMdct, mdct::avx2::kMdct, mdct::avx512::kMdct};

}  // namespace zetac::transform
