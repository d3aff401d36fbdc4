// What both directions know of the two styles of escapes.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <algorithm>

namespace zetac::vlc {

inline constexpr Zet32s kLargestValue = 32767;

inline constexpr Zet32s kMp3Escape = 15;     // magnitude behind which an extension follows
inline constexpr int kMp3ExtensionMax = 15;  // bits; they take a magnitude to the end of 16 bits

inline constexpr Zet32s kAacEscape = 16;
inline constexpr int kAacEscapeBits = 4;  // of the shortest escape, behind its leading one
inline constexpr int kAacPrefixMax = 8;   // ones, to 12 bits

inline Zet32s magnitudeOf(Zet32s value) {
    return value < 0 ? -value : value;
}

inline int extensionBits(int escLen) {
    return std::clamp(escLen, 0, kMp3ExtensionMax);
}

}  // namespace zetac::vlc
