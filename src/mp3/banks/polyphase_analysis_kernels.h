// The arithmetic of the polyphase analysis filter bank, compiled once per instruction-set level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"
#include "mp3/banks/subbands.h"

namespace zetac::mp3 {

inline constexpr int kHistory = 480;  // samples of the window before those of its own slot
inline constexpr int kAnalysisSamples = kHistory + ZETAC_MP3_GRANULE_LEN;

struct PolyphaseAnalysis {
    // kAnalysisSamples samples to [18][32] subband samples, Q26.
    void (*analyze)(const Zet16s* samples, Zet32s* dst);
};

extern const core::LevelTable<PolyphaseAnalysis> kPolyphaseAnalysis;

}  // namespace zetac::mp3
