// Noise levels in steps of 3 dB, delta coded in time (ISO/IEC 14496-3, Table 4.A.85): {length,
// codeword} of the differences -31..31.
#pragma once

#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

// clang-format off
inline constexpr SbrHuffmanCode kTimeNoise30Book[63] = {
    /* -31 */ {13, 0x1fce}, {13, 0x1fcf}, {13, 0x1fd0}, {13, 0x1fd1}, {13, 0x1fd2},
    /* -26 */ {13, 0x1fd3}, {13, 0x1fd4}, {13, 0x1fd5}, {13, 0x1fd6}, {13, 0x1fd7},
    /* -21 */ {13, 0x1fd8}, {13, 0x1fd9}, {13, 0x1fda}, {13, 0x1fdb}, {13, 0x1fdc},
    /* -16 */ {13, 0x1fdd}, {13, 0x1fde}, {13, 0x1fdf}, {13, 0x1fe0}, {13, 0x1fe1},
    /* -11 */ {13, 0x1fe2}, {13, 0x1fe3}, {13, 0x1fe4}, {13, 0x1fe5}, {13, 0x1fe6},
    /*  -6 */ {13, 0x1fe7}, {11, 0x07f2}, { 8, 0x00fd}, { 6, 0x003e}, { 4, 0x000e},
    /*  -1 */ { 3, 0x0006}, { 1, 0x0000}, { 2, 0x0002}, { 5, 0x001e}, { 8, 0x00fc},
    /*   4 */ {10, 0x03f8}, {13, 0x1fcc}, {13, 0x1fe8}, {13, 0x1fe9}, {13, 0x1fea},
    /*   9 */ {13, 0x1feb}, {13, 0x1fec}, {13, 0x1fcd}, {13, 0x1fed}, {13, 0x1fee},
    /*  14 */ {13, 0x1fef}, {13, 0x1ff0}, {13, 0x1ff1}, {13, 0x1ff2}, {13, 0x1ff3},
    /*  19 */ {13, 0x1ff4}, {13, 0x1ff5}, {13, 0x1ff6}, {13, 0x1ff7}, {13, 0x1ff8},
    /*  24 */ {13, 0x1ff9}, {13, 0x1ffa}, {13, 0x1ffb}, {13, 0x1ffc}, {13, 0x1ffd},
    /*  29 */ {13, 0x1ffe}, {14, 0x3ffe}, {14, 0x3fff}
};
// clang-format on

}  // namespace zetac::codec
