// Envelope and noise levels in steps of 3 dB, delta coded in
// frequency (ISO/IEC 14496-3, Table 4.A.82): {length, codeword} of the
// differences -31..31.
#pragma once

#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

// clang-format off
inline constexpr SbrHuffmanCode kFrequencyEnvelope30Book[63] = {
    /* -31 */ {20, 0xffff0}, {20, 0xffff1}, {20, 0xffff2}, {20, 0xffff3}, {20, 0xffff4},
    /* -26 */ {20, 0xffff5}, {20, 0xffff6}, {18, 0x3fff3}, {19, 0x7fff5}, {19, 0x7ffee},
    /* -21 */ {19, 0x7ffef}, {19, 0x7fff6}, {18, 0x3fff4}, {18, 0x3fff2}, {20, 0xffff7},
    /* -16 */ {19, 0x7fff0}, {17, 0x1fff5}, {18, 0x3fff0}, {17, 0x1fff4}, {16, 0x0fff7},
    /* -11 */ {16, 0x0fff6}, {15, 0x07ff8}, {14, 0x03ffb}, {12, 0x00ffd}, {11, 0x007fd},
    /*  -6 */ {10, 0x003fd}, { 9, 0x001fd}, { 8, 0x000fd}, { 6, 0x0003e}, { 4, 0x0000e},
    /*  -1 */ { 2, 0x00002}, { 1, 0x00000}, { 3, 0x00006}, { 5, 0x0001e}, { 8, 0x000fc},
    /*   4 */ { 9, 0x001fc}, {10, 0x003fc}, {11, 0x007fc}, {12, 0x00ffc}, {13, 0x01ffc},
    /*   9 */ {14, 0x03ffa}, {15, 0x07ff9}, {15, 0x07ffa}, {16, 0x0fff8}, {16, 0x0fff9},
    /*  14 */ {17, 0x1fff6}, {17, 0x1fff7}, {18, 0x3fff5}, {18, 0x3fff6}, {18, 0x3fff1},
    /*  19 */ {20, 0xffff8}, {19, 0x7fff1}, {19, 0x7fff2}, {19, 0x7fff3}, {20, 0xffff9},
    /*  24 */ {19, 0x7fff7}, {19, 0x7fff4}, {20, 0xffffa}, {20, 0xffffb}, {20, 0xffffc},
    /*  29 */ {20, 0xffffd}, {20, 0xffffe}, {20, 0xfffff}
};
// clang-format on

}  // namespace zetac::codec
