// Envelope balances in steps of 3 dB, delta coded in time (ISO/IEC 14496-3, Table 4.A.83): {length,
// codeword} of the differences -12..12.
#pragma once

#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

// clang-format off
inline constexpr SbrHuffmanCode kTimeBalance30Book[25] = {
    /* -12 */ {13, 0x1ff2}, {13, 0x1ff3}, {13, 0x1ff4}, {13, 0x1ff5}, {13, 0x1ff6},
    /*  -7 */ {13, 0x1ff7}, {13, 0x1ff8}, {12, 0x0ff8}, { 8, 0x00fe}, { 7, 0x007e},
    /*  -2 */ { 4, 0x000e}, { 3, 0x0006}, { 1, 0x0000}, { 2, 0x0002}, { 5, 0x001e},
    /*   3 */ { 6, 0x003e}, { 9, 0x01fe}, {13, 0x1ff9}, {13, 0x1ffa}, {13, 0x1ffb},
    /*   8 */ {13, 0x1ffc}, {13, 0x1ffd}, {13, 0x1ffe}, {14, 0x3ffe}, {14, 0x3fff}
};
// clang-format on

}  // namespace zetac::codec
