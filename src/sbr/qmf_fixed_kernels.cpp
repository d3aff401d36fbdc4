// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/qmf_fixed_kernels.h"

#include <algorithm>
#include <bit>

#include "core/fixed_point.h"
#include "tables/sbr/qmf_fixed.h"

#define ZETAC_FAMILY sbr
#define ZETAC_KERNELS "sbr/qmf_fixed_kernels.inc"
#define ZETAC_WIDE_KERNELS
#include "core/every_level.inc"

namespace zetac::sbr {

constexpr core::LevelTable<QmfFixedKernels> kQmfFixedKernels = {
    baseline::kKernels, sse41::kKernels, avx2::kKernels, avx512wide::kKernels};

}  // namespace zetac::sbr
