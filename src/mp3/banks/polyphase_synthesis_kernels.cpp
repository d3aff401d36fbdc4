// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/banks/polyphase_synthesis_kernels.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "core/fixed_point.h"
#include "tables/mp3/polyphase.h"

#define ZETAC_FAMILY mp3
#define ZETAC_KERNELS "mp3/banks/polyphase_synthesis_kernels.inc"
#define ZETAC_WIDE_KERNELS
#include "core/every_level.inc"

namespace zetac::mp3 {

constexpr core::LevelTable<PolyphaseSynthesis> kPolyphaseSynthesis = {
    baseline::kKernels, sse41::kKernels, avx2::kKernels, avx512wide::kKernels};

}  // namespace zetac::mp3
