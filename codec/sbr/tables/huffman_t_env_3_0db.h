// Envelope levels in steps of 3 dB, delta coded in time (ISO/IEC 14496-3, Table 4.A.81): {length,
// codeword} of the differences -31..31.
#pragma once

#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

// clang-format off
inline constexpr SbrHuffmanCode kTimeEnvelope30Book[63] = {
    /* -31 */ {18, 0x3ffed}, {18, 0x3ffee}, {19, 0x7ffde}, {19, 0x7ffdf}, {19, 0x7ffe0},
    /* -26 */ {19, 0x7ffe1}, {19, 0x7ffe2}, {19, 0x7ffe3}, {19, 0x7ffe4}, {19, 0x7ffe5},
    /* -21 */ {19, 0x7ffe6}, {19, 0x7ffe7}, {19, 0x7ffe8}, {19, 0x7ffe9}, {19, 0x7ffea},
    /* -16 */ {19, 0x7ffeb}, {19, 0x7ffec}, {17, 0x1fff4}, {16, 0x0fff7}, {16, 0x0fff9},
    /* -11 */ {16, 0x0fff8}, {14, 0x03ffb}, {14, 0x03ffa}, {14, 0x03ff8}, {13, 0x01ffa},
    /*  -6 */ {12, 0x00ffc}, {11, 0x007fc}, { 8, 0x000fe}, { 6, 0x0003e}, { 4, 0x0000e},
    /*  -1 */ { 2, 0x00002}, { 1, 0x00000}, { 3, 0x00006}, { 5, 0x0001e}, { 7, 0x0007e},
    /*   4 */ { 9, 0x001fe}, {11, 0x007fd}, {13, 0x01ffb}, {14, 0x03ff9}, {14, 0x03ffc},
    /*   9 */ {15, 0x07ffa}, {16, 0x0fff6}, {17, 0x1fff5}, {18, 0x3ffec}, {19, 0x7ffed},
    /*  14 */ {19, 0x7ffee}, {19, 0x7ffef}, {19, 0x7fff0}, {19, 0x7fff1}, {19, 0x7fff2},
    /*  19 */ {19, 0x7fff3}, {19, 0x7fff4}, {19, 0x7fff5}, {19, 0x7fff6}, {19, 0x7fff7},
    /*  24 */ {19, 0x7fff8}, {19, 0x7fff9}, {19, 0x7fffa}, {19, 0x7fffb}, {19, 0x7fffc},
    /*  29 */ {19, 0x7fffd}, {19, 0x7fffe}, {19, 0x7ffff}
};
// clang-format on

}  // namespace zetac::codec
