// Envelope levels in steps of 1.5 dB, delta coded in time (ISO/IEC 14496-3, Table 4.A.77): {length,
// codeword} of the differences -60..60.
#pragma once

#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

// clang-format off
inline constexpr SbrHuffmanCode kTimeEnvelope15Book[121] = {
    /* -60 */ {18, 0x3ffd6}, {18, 0x3ffd7}, {18, 0x3ffd8}, {18, 0x3ffd9}, {18, 0x3ffda},
    /* -55 */ {18, 0x3ffdb}, {19, 0x7ffb8}, {19, 0x7ffb9}, {19, 0x7ffba}, {19, 0x7ffbb},
    /* -50 */ {19, 0x7ffbc}, {19, 0x7ffbd}, {19, 0x7ffbe}, {19, 0x7ffbf}, {19, 0x7ffc0},
    /* -45 */ {19, 0x7ffc1}, {19, 0x7ffc2}, {19, 0x7ffc3}, {19, 0x7ffc4}, {19, 0x7ffc5},
    /* -40 */ {19, 0x7ffc6}, {19, 0x7ffc7}, {19, 0x7ffc8}, {19, 0x7ffc9}, {19, 0x7ffca},
    /* -35 */ {19, 0x7ffcb}, {19, 0x7ffcc}, {19, 0x7ffcd}, {19, 0x7ffce}, {19, 0x7ffcf},
    /* -30 */ {19, 0x7ffd0}, {19, 0x7ffd1}, {19, 0x7ffd2}, {19, 0x7ffd3}, {17, 0x1ffe6},
    /* -25 */ {18, 0x3ffd4}, {16, 0x0fff0}, {17, 0x1ffe9}, {18, 0x3ffd5}, {17, 0x1ffe7},
    /* -20 */ {16, 0x0fff1}, {16, 0x0ffec}, {16, 0x0ffed}, {16, 0x0ffee}, {15, 0x07ff4},
    /* -15 */ {14, 0x03ff9}, {14, 0x03ff7}, {13, 0x01ffa}, {13, 0x01ff9}, {12, 0x00ffb},
    /* -10 */ {11, 0x007fc}, {10, 0x003fc}, { 9, 0x001fd}, { 8, 0x000fd}, { 7, 0x0007d},
    /*  -5 */ { 6, 0x0003d}, { 5, 0x0001d}, { 4, 0x0000d}, { 3, 0x00005}, { 2, 0x00001},
    /*   0 */ { 2, 0x00000}, { 3, 0x00004}, { 4, 0x0000c}, { 5, 0x0001c}, { 6, 0x0003c},
    /*   5 */ { 7, 0x0007c}, { 8, 0x000fc}, { 9, 0x001fc}, {10, 0x003fd}, {12, 0x00ffa},
    /*  10 */ {13, 0x01ff8}, {14, 0x03ff6}, {14, 0x03ff8}, {15, 0x07ff5}, {16, 0x0ffef},
    /*  15 */ {17, 0x1ffe8}, {16, 0x0fff2}, {19, 0x7ffd4}, {19, 0x7ffd5}, {19, 0x7ffd6},
    /*  20 */ {19, 0x7ffd7}, {19, 0x7ffd8}, {19, 0x7ffd9}, {19, 0x7ffda}, {19, 0x7ffdb},
    /*  25 */ {19, 0x7ffdc}, {19, 0x7ffdd}, {19, 0x7ffde}, {19, 0x7ffdf}, {19, 0x7ffe0},
    /*  30 */ {19, 0x7ffe1}, {19, 0x7ffe2}, {19, 0x7ffe3}, {19, 0x7ffe4}, {19, 0x7ffe5},
    /*  35 */ {19, 0x7ffe6}, {19, 0x7ffe7}, {19, 0x7ffe8}, {19, 0x7ffe9}, {19, 0x7ffea},
    /*  40 */ {19, 0x7ffeb}, {19, 0x7ffec}, {19, 0x7ffed}, {19, 0x7ffee}, {19, 0x7ffef},
    /*  45 */ {19, 0x7fff0}, {19, 0x7fff1}, {19, 0x7fff2}, {19, 0x7fff3}, {19, 0x7fff4},
    /*  50 */ {19, 0x7fff5}, {19, 0x7fff6}, {19, 0x7fff7}, {19, 0x7fff8}, {19, 0x7fff9},
    /*  55 */ {19, 0x7fffa}, {19, 0x7fffb}, {19, 0x7fffc}, {19, 0x7fffd}, {19, 0x7fffe},
    /*  60 */ {19, 0x7ffff}
};
// clang-format on

}  // namespace zetac::codec
