// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/qmf_float_kernels.h"

#include <utility>

#include "tables/sbr/qmf_rotations.h"

#define ZETAC_FAMILY sbr::qmf
#define ZETAC_KERNELS "sbr/qmf_float_kernels.inc"
#define ZETAC_FLOAT_KERNELS
#include "core/every_level.inc"

namespace zetac::sbr {

constexpr core::LevelTable<QmfFloatKernels> kQmfFloatKernels = {
    qmf::baseline::kKernels, qmf::baseline::kKernels, qmf::avx2::kKernels, qmf::avx512::kKernels};

}  // namespace zetac::sbr
