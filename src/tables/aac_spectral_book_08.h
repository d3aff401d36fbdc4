// Spectral codebook 8 (ISO/IEC 14496-3, Table 4.A.9): pairs of magnitudes 0..7.
// {length, codeword}, in ascending order of the tuple, first value most significant;
// each row has the leading value y in front and runs through the last value z.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kSpectralBook8[64] = {
    /*  0 */ { 5, 0x00e}, { 4, 0x005}, { 5, 0x010}, { 6, 0x030},
             { 7, 0x06f}, { 8, 0x0f1}, { 9, 0x1fa}, {10, 0x3fe},
    /*  1 */ { 4, 0x003}, { 3, 0x000}, { 4, 0x004}, { 5, 0x012},
             { 6, 0x02c}, { 7, 0x06a}, { 7, 0x075}, { 8, 0x0f8},
    /*  2 */ { 5, 0x00f}, { 4, 0x002}, { 4, 0x006}, { 5, 0x014},
             { 6, 0x02e}, { 7, 0x069}, { 7, 0x072}, { 8, 0x0f5},
    /*  3 */ { 6, 0x02f}, { 5, 0x011}, { 5, 0x013}, { 6, 0x02a},
             { 6, 0x032}, { 7, 0x06c}, { 8, 0x0ec}, { 8, 0x0fa},
    /*  4 */ { 7, 0x071}, { 6, 0x02b}, { 6, 0x02d}, { 6, 0x031},
             { 7, 0x06d}, { 7, 0x070}, { 8, 0x0f2}, { 9, 0x1f9},
    /*  5 */ { 8, 0x0ef}, { 7, 0x068}, { 6, 0x033}, { 7, 0x06b},
             { 7, 0x06e}, { 8, 0x0ee}, { 8, 0x0f9}, {10, 0x3fc},
    /*  6 */ { 9, 0x1f8}, { 7, 0x074}, { 7, 0x073}, { 8, 0x0ed},
             { 8, 0x0f0}, { 8, 0x0f6}, { 9, 0x1f6}, { 9, 0x1fd},
    /*  7 */ {10, 0x3fd}, { 8, 0x0f3}, { 8, 0x0f4}, { 8, 0x0f7},
             { 9, 0x1f7}, { 9, 0x1fb}, { 9, 0x1fc}, {10, 0x3ff},
};
// clang-format on

}  // namespace zetac::tables
