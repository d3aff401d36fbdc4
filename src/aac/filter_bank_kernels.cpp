// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/filter_bank_kernels.h"

#include <bit>

#include "aac/window_lengths.h"
#include "core/fixed_point.h"
#include "tables/aac/mdct_twiddles.h"

#define ZETAC_FAMILY aac
#define ZETAC_KERNELS "aac/filter_bank_kernels.inc"
#define ZETAC_WIDE_KERNELS
#include "core/every_level.inc"

namespace zetac::aac {
namespace {

// Sixteen lanes where there are enough columns.
constexpr FilterBankKernels avx512Kernels() {
    FilterBankKernels kernels = avx512::kKernels;
    kernels.inverseTransformLong = avx512wide::inverseTransformLong;
    kernels.forwardTransformLong = avx512wide::forwardTransformLong;
    kernels.overlapAddLong = avx512wide::overlapAddLong;
    kernels.unfoldLong = avx512wide::unfoldLong;
    kernels.multiplyRising = avx512wide::multiplyRising;
    kernels.multiplyFalling = avx512wide::multiplyFalling;
    kernels.windowShort = avx512wide::windowShort;
    kernels.roundToPcm = avx512wide::roundToPcm;
    kernels.storePcm = avx512wide::storePcm;
    return kernels;
}

}  // namespace

constexpr core::LevelTable<FilterBankKernels> kFilterBankKernels = {
    baseline::kKernels, sse41::kKernels, avx2::kKernels, avx512Kernels()};

}  // namespace zetac::aac
