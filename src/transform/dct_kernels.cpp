// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "transform/dct_kernels.h"

#include <utility>

#include "core/levels.h"

#define ZETAC_FAMILY transform::dct
#define ZETAC_KERNELS "transform/dct_kernels.inc"
#define ZETAC_FLOAT_KERNELS
#include "core/every_level.inc"

namespace zetac::transform {

constexpr core::LevelTable<DctKernels> kDctKernels = {
    dct::baseline::kKernels, dct::baseline::kKernels, dct::avx2::kKernels, dct::avx512::kKernels};

}  // namespace zetac::transform
