// How far up a bit rate pays for coding lines.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

namespace zetac::mp3 {

// Lines to be coded, 0..576 of a long block, a multiple of 6. bits: of a granule and channel.
int codedLines(int sampling_frequency, int bits);

}  // namespace zetac::mp3
