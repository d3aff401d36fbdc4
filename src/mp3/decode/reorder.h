// Short blocks of Layer III: how far their windows reach, and from coded order to window order.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "mp3/decode/requantization.h"

namespace zetac::mp3 {

// Finds, for each window, the last short band with a non-zero line below reach.lines.
void _sShortPreproc_MP3(const Zet32s* lines, const GranuleBands& bands, Reach& reach);

// Moves the short lines to where the hybrid synthesis wants them: six of each window in every
// subband of 18. Returns the index of the last non-zero line plus 1.
int _sReorder_MP3_32s(const Channel& channel, Zet32s* buffer);

}  // namespace zetac::mp3
