// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/banks/hybrid_kernels.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "core/constexpr_math.h"
#include "core/fixed_point.h"
#include "tables/mp3/hybrid.h"

#define ZETAC_FAMILY mp3
#define ZETAC_KERNELS "mp3/banks/hybrid_kernels.inc"
#include "core/every_level.inc"

namespace zetac::mp3 {

constexpr core::LevelTable<HybridKernels> kHybridKernels = {baseline::kKernels, sse41::kKernels,
                                                            avx2::kKernels, avx512::kKernels};

}  // namespace zetac::mp3
