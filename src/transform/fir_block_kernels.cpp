// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "transform/fir_block_kernels.h"

#include <utility>

#define ZETAC_FAMILY transform::fir
#define ZETAC_KERNELS "transform/fir_block_kernels.inc"
#define ZETAC_FLOAT_KERNELS
#include "core/every_level.inc"

namespace zetac::transform {

constexpr core::LevelTable<FirBlockKernels> kFirBlockKernels = {
    fir::baseline::kKernels, fir::baseline::kKernels, fir::avx2::kKernels, fir::avx512::kKernels};

}  // namespace zetac::transform
