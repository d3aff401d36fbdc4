// Noise balances in steps of 3 dB, delta coded in time (ISO/IEC 14496-3, Table 4.A.86): {length,
// codeword} of the differences -12..12.
#pragma once

#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

// clang-format off
inline constexpr SbrHuffmanCode kTimeNoiseBalance30Book[25] = {
    /* -12 */ { 8, 0xec}, { 8, 0xed}, { 8, 0xee}, { 8, 0xef}, { 8, 0xf0},
    /*  -7 */ { 8, 0xf1}, { 8, 0xf2}, { 8, 0xf3}, { 8, 0xf4}, { 8, 0xf5},
    /*  -2 */ { 5, 0x1c}, { 2, 0x02}, { 1, 0x00}, { 3, 0x06}, { 6, 0x3a},
    /*   3 */ { 8, 0xf6}, { 8, 0xf7}, { 8, 0xf8}, { 8, 0xf9}, { 8, 0xfa},
    /*   8 */ { 8, 0xfb}, { 8, 0xfc}, { 8, 0xfd}, { 8, 0xfe}, { 8, 0xff}
};
// clang-format on

}  // namespace zetac::codec
