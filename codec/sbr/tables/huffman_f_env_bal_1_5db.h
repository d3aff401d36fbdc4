// Envelope balances in steps of 1.5 dB, delta coded in frequency (ISO/IEC 14496-3, Table 4.A.80):
// {length, codeword} of the differences -24..24.
#pragma once

#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

// clang-format off
inline constexpr SbrHuffmanCode kFrequencyBalance15Book[49] = {
    /* -24 */ {18, 0x3ffe2}, {18, 0x3ffe3}, {18, 0x3ffe4}, {18, 0x3ffe5}, {18, 0x3ffe6},
    /* -19 */ {18, 0x3ffe7}, {18, 0x3ffe8}, {18, 0x3ffe9}, {18, 0x3ffea}, {18, 0x3ffeb},
    /* -14 */ {18, 0x3ffec}, {18, 0x3ffed}, {18, 0x3ffee}, {18, 0x3ffef}, {18, 0x3fff0},
    /*  -9 */ {16, 0x0fff7}, {17, 0x1fff0}, {14, 0x03ffc}, {11, 0x007fe}, {11, 0x007fc},
    /*  -4 */ { 8, 0x000fe}, { 7, 0x0007e}, { 4, 0x0000e}, { 2, 0x00002}, { 1, 0x00000},
    /*   1 */ { 3, 0x00006}, { 5, 0x0001e}, { 6, 0x0003e}, { 9, 0x001fe}, {11, 0x007fd},
    /*   6 */ {12, 0x00ffe}, {15, 0x07ffa}, {16, 0x0fff6}, {18, 0x3fff1}, {18, 0x3fff2},
    /*  11 */ {18, 0x3fff3}, {18, 0x3fff4}, {18, 0x3fff5}, {18, 0x3fff6}, {18, 0x3fff7},
    /*  16 */ {18, 0x3fff8}, {18, 0x3fff9}, {18, 0x3fffa}, {18, 0x3fffb}, {18, 0x3fffc},
    /*  21 */ {18, 0x3fffd}, {18, 0x3fffe}, {19, 0x7fffe}, {19, 0x7ffff}
};
// clang-format on

}  // namespace zetac::codec
