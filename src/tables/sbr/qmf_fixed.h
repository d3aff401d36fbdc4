// Rotations of the fixed-point QMF banks of SBR, with K = 32 or 64 bands and transforms of K
// points.
//
// Point m of a transform belongs to band 2m, m < K/2, and to band 2K - 1 - 2m from there on: the
// band whose sample is the conjugate of what an even band beyond K would have.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::tables {

template <int kPoints>
struct Rotations32sc {
    alignas(64) Zet32sc values[kPoints];
};

// Those ahead of the transform are Q28, which takes 2^-3 of headroom along.
inline constexpr int kQmfPreProcBits = 28;

// High quality analysis: e^(i pi n / 64) ahead of the transform; behind it, e^(-i pi/128 (k + 1/2))
// of the band k of point m, Q31.
extern const Rotations32sc<32> pTabPreProc_CosSin_DCT4_64_32s;
extern const Rotations32sc<32> pTabPostProc_CosSin_DCT4_64_32s;

// Low power analysis: e^(i pi (n - 48) / 64), which leaves nothing to do behind the transform.
extern const Rotations32sc<32> pTabPreProc_QMFA_LPmode;

// High quality synthesis: e^(i pi/128 (k + 1/2) (-255)) and e^(i pi/64 (k + 1/2) (-127.5)) of the
// band k of point m, conjugate for the odd bands.
extern const Rotations32sc<64> pTabPreProc_QMFS_HQ_FAST;
extern const Rotations32sc<32> pTabPreProc_QMFSD_HQmode;

// Both modes of synthesis, behind the transform: e^(-i pi n / (2K)), Q31.
extern const Rotations32sc<64> pTabPostProc_QMFS;
extern const Rotations32sc<32> pTabPostProc_QMFSD;

// Between the passes of a transform: row k - 1, column n is e^(2 pi i k n / K), k = 1.. and n =
// 0..7, scaled by 1/8 (64 points) or 1/4 (32 points), Q31.
extern const Rotations32sc<7 * 8> kQmfTwiddles64;
extern const Rotations32sc<3 * 8> kQmfTwiddles32;

}  // namespace zetac::tables
