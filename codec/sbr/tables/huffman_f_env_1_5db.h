// Envelope levels in steps of 1.5 dB, delta coded in frequency (ISO/IEC 14496-3, Table 4.A.78):
// {length, codeword} of the differences -60..60.
#pragma once

#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

// clang-format off
inline constexpr SbrHuffmanCode kFrequencyEnvelope15Book[121] = {
    /* -60 */ {19, 0x7ffe7}, {19, 0x7ffe8}, {20, 0xfffd2}, {20, 0xfffd3}, {20, 0xfffd4},
    /* -55 */ {20, 0xfffd5}, {20, 0xfffd6}, {20, 0xfffd7}, {20, 0xfffd8}, {19, 0x7ffda},
    /* -50 */ {20, 0xfffd9}, {20, 0xfffda}, {20, 0xfffdb}, {20, 0xfffdc}, {19, 0x7ffdb},
    /* -45 */ {20, 0xfffdd}, {19, 0x7ffdc}, {19, 0x7ffdd}, {20, 0xfffde}, {18, 0x3ffe4},
    /* -40 */ {20, 0xfffdf}, {20, 0xfffe0}, {20, 0xfffe1}, {19, 0x7ffde}, {20, 0xfffe2},
    /* -35 */ {20, 0xfffe3}, {20, 0xfffe4}, {19, 0x7ffdf}, {20, 0xfffe5}, {19, 0x7ffe0},
    /* -30 */ {18, 0x3ffe8}, {19, 0x7ffe1}, {18, 0x3ffe0}, {18, 0x3ffe9}, {17, 0x1ffef},
    /* -25 */ {18, 0x3ffe5}, {17, 0x1ffec}, {17, 0x1ffed}, {17, 0x1ffee}, {16, 0x0fff4},
    /* -20 */ {16, 0x0fff3}, {16, 0x0fff0}, {15, 0x07ff7}, {15, 0x07ff6}, {14, 0x03ffa},
    /* -15 */ {13, 0x01ffa}, {13, 0x01ff9}, {12, 0x00ffa}, {12, 0x00ff8}, {11, 0x007f9},
    /* -10 */ {10, 0x003fb}, { 9, 0x001fc}, { 9, 0x001fa}, { 8, 0x000fb}, { 7, 0x0007c},
    /*  -5 */ { 6, 0x0003c}, { 5, 0x0001c}, { 4, 0x0000c}, { 3, 0x00005}, { 2, 0x00001},
    /*   0 */ { 2, 0x00000}, { 3, 0x00004}, { 4, 0x0000d}, { 5, 0x0001d}, { 6, 0x0003d},
    /*   5 */ { 8, 0x000fa}, { 8, 0x000fc}, { 9, 0x001fb}, {10, 0x003fa}, {11, 0x007f8},
    /*  10 */ {11, 0x007fa}, {11, 0x007fb}, {12, 0x00ff9}, {12, 0x00ffb}, {13, 0x01ff8},
    /*  15 */ {13, 0x01ffb}, {14, 0x03ff8}, {14, 0x03ff9}, {16, 0x0fff1}, {16, 0x0fff2},
    /*  20 */ {17, 0x1ffea}, {17, 0x1ffeb}, {18, 0x3ffe1}, {18, 0x3ffe2}, {18, 0x3ffea},
    /*  25 */ {18, 0x3ffe3}, {18, 0x3ffe6}, {18, 0x3ffe7}, {18, 0x3ffeb}, {20, 0xfffe6},
    /*  30 */ {19, 0x7ffe2}, {20, 0xfffe7}, {20, 0xfffe8}, {20, 0xfffe9}, {20, 0xfffea},
    /*  35 */ {20, 0xfffeb}, {20, 0xfffec}, {19, 0x7ffe3}, {20, 0xfffed}, {20, 0xfffee},
    /*  40 */ {20, 0xfffef}, {20, 0xffff0}, {19, 0x7ffe4}, {20, 0xffff1}, {18, 0x3ffec},
    /*  45 */ {20, 0xffff2}, {20, 0xffff3}, {19, 0x7ffe5}, {19, 0x7ffe6}, {20, 0xffff4},
    /*  50 */ {20, 0xffff5}, {20, 0xffff6}, {20, 0xffff7}, {20, 0xffff8}, {20, 0xffff9},
    /*  55 */ {20, 0xffffa}, {20, 0xffffb}, {20, 0xffffc}, {20, 0xffffd}, {20, 0xffffe},
    /*  60 */ {20, 0xfffff}
};
// clang-format on

}  // namespace zetac::codec
