// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/psycho/kernels.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "core/fixed_point.h"
#include "mp3/psycho/arithmetic.h"
#include "tables/mp3/psycho_spectrum.h"

#define ZETAC_FAMILY mp3
#define ZETAC_KERNELS "mp3/psycho/kernels.inc"
#include "core/every_level.inc"

namespace zetac::mp3 {

constexpr core::LevelTable<PsyKernels> kPsyKernels = {baseline::kKernels, sse41::kKernels,
                                                      avx2::kKernels, avx512::kKernels};

}  // namespace zetac::mp3
