// Scalefactor codebook (ISO/IEC 14496-3, Table 4.A.1): {length, codeword} of the differences
// -60..60 of scalefactors, intensity positions and noise energies.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kScalefactorBook[121] = {
    /* -60 */ {18, 0x3ffe8}, {18, 0x3ffe6}, {18, 0x3ffe7}, {18, 0x3ffe5}, {19, 0x7fff5},
    /* -55 */ {19, 0x7fff1}, {19, 0x7ffed}, {19, 0x7fff6}, {19, 0x7ffee}, {19, 0x7ffef},
    /* -50 */ {19, 0x7fff0}, {19, 0x7fffc}, {19, 0x7fffd}, {19, 0x7ffff}, {19, 0x7fffe},
    /* -45 */ {19, 0x7fff7}, {19, 0x7fff8}, {19, 0x7fffb}, {19, 0x7fff9}, {18, 0x3ffe4},
    /* -40 */ {19, 0x7fffa}, {18, 0x3ffe3}, {17, 0x1ffef}, {17, 0x1fff0}, {16, 0x0fff5},
    /* -35 */ {17, 0x1ffee}, {16, 0x0fff2}, {16, 0x0fff3}, {16, 0x0fff4}, {16, 0x0fff1},
    /* -30 */ {15, 0x07ff6}, {15, 0x07ff7}, {14, 0x03ff9}, {14, 0x03ff5}, {14, 0x03ff7},
    /* -25 */ {14, 0x03ff3}, {14, 0x03ff6}, {14, 0x03ff2}, {13, 0x01ff7}, {13, 0x01ff5},
    /* -20 */ {12, 0x00ff9}, {12, 0x00ff7}, {12, 0x00ff6}, {11, 0x007f9}, {12, 0x00ff4},
    /* -15 */ {11, 0x007f8}, {10, 0x003f9}, {10, 0x003f7}, {10, 0x003f5}, { 9, 0x001f8},
    /* -10 */ { 9, 0x001f7}, { 8, 0x000fa}, { 8, 0x000f8}, { 8, 0x000f6}, { 7, 0x00079},
    /*  -5 */ { 6, 0x0003a}, { 6, 0x00038}, { 5, 0x0001a}, { 4, 0x0000b}, { 3, 0x00004},
    /*   0 */ { 1, 0x00000}, { 4, 0x0000a}, { 4, 0x0000c}, { 5, 0x0001b}, { 6, 0x00039},
    /*   5 */ { 6, 0x0003b}, { 7, 0x00078}, { 7, 0x0007a}, { 8, 0x000f7}, { 8, 0x000f9},
    /*  10 */ { 9, 0x001f6}, { 9, 0x001f9}, {10, 0x003f4}, {10, 0x003f6}, {10, 0x003f8},
    /*  15 */ {11, 0x007f5}, {11, 0x007f4}, {11, 0x007f6}, {11, 0x007f7}, {12, 0x00ff5},
    /*  20 */ {12, 0x00ff8}, {13, 0x01ff4}, {13, 0x01ff6}, {13, 0x01ff8}, {14, 0x03ff8},
    /*  25 */ {14, 0x03ff4}, {16, 0x0fff0}, {15, 0x07ff4}, {16, 0x0fff6}, {15, 0x07ff5},
    /*  30 */ {18, 0x3ffe2}, {19, 0x7ffd9}, {19, 0x7ffda}, {19, 0x7ffdb}, {19, 0x7ffdc},
    /*  35 */ {19, 0x7ffdd}, {19, 0x7ffde}, {19, 0x7ffd8}, {19, 0x7ffd2}, {19, 0x7ffd3},
    /*  40 */ {19, 0x7ffd4}, {19, 0x7ffd5}, {19, 0x7ffd6}, {19, 0x7fff2}, {19, 0x7ffdf},
    /*  45 */ {19, 0x7ffe7}, {19, 0x7ffe8}, {19, 0x7ffe9}, {19, 0x7ffea}, {19, 0x7ffeb},
    /*  50 */ {19, 0x7ffe6}, {19, 0x7ffe0}, {19, 0x7ffe1}, {19, 0x7ffe2}, {19, 0x7ffe3},
    /*  55 */ {19, 0x7ffe4}, {19, 0x7ffe5}, {19, 0x7ffd7}, {19, 0x7ffec}, {19, 0x7fff4},
    /*  60 */ {19, 0x7fff3},
};
// clang-format on

}  // namespace zetac::tables
