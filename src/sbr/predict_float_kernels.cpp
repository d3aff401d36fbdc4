// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/predict_float_kernels.h"

#include <utility>

#define ZETAC_FAMILY sbr::predict
#define ZETAC_KERNELS "sbr/predict_float_kernels.inc"
#define ZETAC_FLOAT_KERNELS
#include "core/every_level.inc"

namespace zetac::sbr {

constexpr core::LevelTable<PredictFloatKernels> kPredictFloatKernels = {
    predict::baseline::kKernels, predict::baseline::kKernels, predict::avx2::kKernels,
    predict::avx512::kKernels};

}  // namespace zetac::sbr
