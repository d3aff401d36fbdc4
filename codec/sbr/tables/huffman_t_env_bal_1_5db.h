// Envelope balances in steps of 1.5 dB, delta coded in time (ISO/IEC 14496-3, Table 4.A.79):
// {length, codeword} of the differences -24..24.
#pragma once

#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

// clang-format off
inline constexpr SbrHuffmanCode kTimeBalance15Book[49] = {
    /* -24 */ {16, 0x0ffe4}, {16, 0x0ffe5}, {16, 0x0ffe6}, {16, 0x0ffe7}, {16, 0x0ffe8},
    /* -19 */ {16, 0x0ffe9}, {16, 0x0ffea}, {16, 0x0ffeb}, {16, 0x0ffec}, {16, 0x0ffed},
    /* -14 */ {16, 0x0ffee}, {16, 0x0ffef}, {16, 0x0fff0}, {16, 0x0fff1}, {16, 0x0fff2},
    /*  -9 */ {16, 0x0fff3}, {16, 0x0fff4}, {16, 0x0ffe2}, {12, 0x00ffc}, {11, 0x007fc},
    /*  -4 */ { 9, 0x001fe}, { 7, 0x0007e}, { 5, 0x0001e}, { 3, 0x00006}, { 1, 0x00000},
    /*   1 */ { 2, 0x00002}, { 4, 0x0000e}, { 6, 0x0003e}, { 8, 0x000fe}, {11, 0x007fd},
    /*   6 */ {12, 0x00ffd}, {15, 0x07ff0}, {16, 0x0ffe3}, {16, 0x0fff5}, {16, 0x0fff6},
    /*  11 */ {16, 0x0fff7}, {16, 0x0fff8}, {16, 0x0fff9}, {16, 0x0fffa}, {17, 0x1fff6},
    /*  16 */ {17, 0x1fff7}, {17, 0x1fff8}, {17, 0x1fff9}, {17, 0x1fffa}, {17, 0x1fffb},
    /*  21 */ {17, 0x1fffc}, {17, 0x1fffd}, {17, 0x1fffe}, {17, 0x1ffff}
};
// clang-format on

}  // namespace zetac::codec
