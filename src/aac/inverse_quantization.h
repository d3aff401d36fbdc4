// Inverse quantisation of a run of lines with one scalefactor, for every level.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/levels.h"

namespace zetac::aac {

// Converts count values in place. Returns false, and changes nothing, when a magnitude is above
// 8191.
using QuantInvLines = bool (*)(Zet32s* line, int count, int scaleFactor);

extern const core::LevelTable<QuantInvLines> kQuantInvLines;

}  // namespace zetac::aac
