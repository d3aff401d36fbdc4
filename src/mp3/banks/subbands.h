// The shape of what lies between the filter banks and the spectrum of a granule.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "mp3/syntax/syntax.h"

namespace zetac::mp3 {

inline constexpr int kSubbands = 32;
inline constexpr int kTimeSlots = 18;
inline constexpr int kLinesPerSubband = 18;
static_assert(kSubbands * kLinesPerSubband == ZETAC_MP3_GRANULE_LEN);

// Lines of one short window in a subband.
inline constexpr int kWindowLines = kLinesPerSubband / kWindows;

// Subbands of a mixed block that are long, and take the normal window whatever its block type is.
inline constexpr int kMixedLongSubbands = 2;

// How many of the first subbands have alias butterflies between them.
constexpr int countAliased(int subbands, BlockType type, bool mixed) {
    if (type != BlockType::kShort) return subbands;
    if (!mixed) return 0;
    return subbands < kMixedLongSubbands ? subbands : kMixedLongSubbands;
}

}  // namespace zetac::mp3
