// The inverse filter bank up to the overlap-add.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::aac {

// What the windowed samples have beyond the three fractional bits of a spectrum.
inline constexpr int kExtraBits = 5;

// The 2048 windowed samples of a frame, Q8, the window products rounded to nearest: the first 1024
// complete this frame, the others overlap the next one. Destroys the spectrum.
void synthesizeWindowed(Zet32s* spectrum, Zet32s* windowed, int winSequence, int winShape,
                        int prevWinShape);

}  // namespace zetac::aac
