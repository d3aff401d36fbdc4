// How a frame is divided into windows.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::aac {

inline constexpr int kLongLen = ZETAC_AAC_FRAME_LEN;  // lines of the long window
inline constexpr int kShortLen = 128;                 // of each short one
inline constexpr int kShortWindows = 8;

}  // namespace zetac::aac
