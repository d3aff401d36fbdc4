// Spectral codebook 4 (ISO/IEC 14496-3, Table 4.A.5): quadruples of magnitudes 0..2.
// {length, codeword}, in ascending order of the tuple, first value most significant;
// each row has the leading values w x y in front and runs through the last value z.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kSpectralBook4[81] = {
    /*  0  0  0 */ { 4, 0x007}, { 5, 0x016}, { 8, 0x0f6},
    /*  0  0  1 */ { 5, 0x018}, { 4, 0x008}, { 8, 0x0ef},
    /*  0  0  2 */ { 9, 0x1ef}, { 8, 0x0f3}, {11, 0x7f8},
    /*  0  1  0 */ { 5, 0x019}, { 5, 0x017}, { 8, 0x0ed},
    /*  0  1  1 */ { 5, 0x015}, { 4, 0x001}, { 8, 0x0e2},
    /*  0  1  2 */ { 8, 0x0f0}, { 7, 0x070}, {10, 0x3f0},
    /*  0  2  0 */ { 9, 0x1ee}, { 8, 0x0f1}, {11, 0x7fa},
    /*  0  2  1 */ { 8, 0x0ee}, { 8, 0x0e4}, {10, 0x3f2},
    /*  0  2  2 */ {11, 0x7f6}, {10, 0x3ef}, {11, 0x7fd},
    /*  1  0  0 */ { 4, 0x005}, { 5, 0x014}, { 8, 0x0f2},
    /*  1  0  1 */ { 4, 0x009}, { 4, 0x004}, { 8, 0x0e5},
    /*  1  0  2 */ { 8, 0x0f4}, { 8, 0x0e8}, {10, 0x3f4},
    /*  1  1  0 */ { 4, 0x006}, { 4, 0x002}, { 8, 0x0e7},
    /*  1  1  1 */ { 4, 0x003}, { 4, 0x000}, { 7, 0x06b},
    /*  1  1  2 */ { 8, 0x0e3}, { 7, 0x069}, { 9, 0x1f3},
    /*  1  2  0 */ { 8, 0x0eb}, { 8, 0x0e6}, {10, 0x3f6},
    /*  1  2  1 */ { 7, 0x06e}, { 7, 0x06a}, { 9, 0x1f4},
    /*  1  2  2 */ {10, 0x3ec}, { 9, 0x1f0}, {10, 0x3f9},
    /*  2  0  0 */ { 8, 0x0f5}, { 8, 0x0ec}, {11, 0x7fb},
    /*  2  0  1 */ { 8, 0x0ea}, { 7, 0x06f}, {10, 0x3f7},
    /*  2  0  2 */ {11, 0x7f9}, {10, 0x3f3}, {12, 0xfff},
    /*  2  1  0 */ { 8, 0x0e9}, { 7, 0x06d}, {10, 0x3f8},
    /*  2  1  1 */ { 7, 0x06c}, { 7, 0x068}, { 9, 0x1f5},
    /*  2  1  2 */ {10, 0x3ee}, { 9, 0x1f2}, {11, 0x7f4},
    /*  2  2  0 */ {11, 0x7f7}, {10, 0x3f1}, {12, 0xffe},
    /*  2  2  1 */ {10, 0x3ed}, { 9, 0x1f1}, {11, 0x7f5},
    /*  2  2  2 */ {11, 0x7fe}, {10, 0x3f5}, {11, 0x7fc},
};
// clang-format on

}  // namespace zetac::tables
