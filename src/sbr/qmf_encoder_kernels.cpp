// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/qmf_encoder_kernels.h"

#include <utility>

#include "tables/sbr/qmf_rotations.h"

#define ZETAC_FAMILY sbr::encoder
#define ZETAC_KERNELS "sbr/qmf_encoder_kernels.inc"
#define ZETAC_FLOAT_KERNELS
#include "core/every_level.inc"

namespace zetac::sbr {

constexpr core::LevelTable<QmfEncoderKernels> kQmfEncoderKernels = {
    encoder::baseline::kKernels, encoder::baseline::kKernels, encoder::avx2::kKernels,
    encoder::avx512::kKernels};

}  // namespace zetac::sbr
