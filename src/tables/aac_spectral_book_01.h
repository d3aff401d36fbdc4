// Spectral codebook 1 (ISO/IEC 14496-3, Table 4.A.2): signed quadruples of -1..1.
// {length, codeword}, in ascending order of the tuple, first value most significant;
// each row has the leading values w x y in front and runs through the last value z.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kSpectralBook1[81] = {
    /* -1 -1 -1 */ {11, 0x7f8}, { 9, 0x1f1}, {11, 0x7fd},
    /* -1 -1  0 */ {10, 0x3f5}, { 7, 0x068}, {10, 0x3f0},
    /* -1 -1  1 */ {11, 0x7f7}, { 9, 0x1ec}, {11, 0x7f5},
    /* -1  0 -1 */ {10, 0x3f1}, { 7, 0x072}, {10, 0x3f4},
    /* -1  0  0 */ { 7, 0x074}, { 5, 0x011}, { 7, 0x076},
    /* -1  0  1 */ { 9, 0x1eb}, { 7, 0x06c}, {10, 0x3f6},
    /* -1  1 -1 */ {11, 0x7fc}, { 9, 0x1e1}, {11, 0x7f1},
    /* -1  1  0 */ { 9, 0x1f0}, { 7, 0x061}, { 9, 0x1f6},
    /* -1  1  1 */ {11, 0x7f2}, { 9, 0x1ea}, {11, 0x7fb},
    /*  0 -1 -1 */ { 9, 0x1f2}, { 7, 0x069}, { 9, 0x1ed},
    /*  0 -1  0 */ { 7, 0x077}, { 5, 0x017}, { 7, 0x06f},
    /*  0 -1  1 */ { 9, 0x1e6}, { 7, 0x064}, { 9, 0x1e5},
    /*  0  0 -1 */ { 7, 0x067}, { 5, 0x015}, { 7, 0x062},
    /*  0  0  0 */ { 5, 0x012}, { 1, 0x000}, { 5, 0x014},
    /*  0  0  1 */ { 7, 0x065}, { 5, 0x016}, { 7, 0x06d},
    /*  0  1 -1 */ { 9, 0x1e9}, { 7, 0x063}, { 9, 0x1e4},
    /*  0  1  0 */ { 7, 0x06b}, { 5, 0x013}, { 7, 0x071},
    /*  0  1  1 */ { 9, 0x1e3}, { 7, 0x070}, { 9, 0x1f3},
    /*  1 -1 -1 */ {11, 0x7fe}, { 9, 0x1e7}, {11, 0x7f3},
    /*  1 -1  0 */ { 9, 0x1ef}, { 7, 0x060}, { 9, 0x1ee},
    /*  1 -1  1 */ {11, 0x7f0}, { 9, 0x1e2}, {11, 0x7fa},
    /*  1  0 -1 */ {10, 0x3f3}, { 7, 0x06a}, { 9, 0x1e8},
    /*  1  0  0 */ { 7, 0x075}, { 5, 0x010}, { 7, 0x073},
    /*  1  0  1 */ { 9, 0x1f4}, { 7, 0x06e}, {10, 0x3f7},
    /*  1  1 -1 */ {11, 0x7f6}, { 9, 0x1e0}, {11, 0x7f9},
    /*  1  1  0 */ {10, 0x3f2}, { 7, 0x066}, { 9, 0x1f5},
    /*  1  1  1 */ {11, 0x7ff}, { 9, 0x1f7}, {11, 0x7f4},
};
// clang-format on

}  // namespace zetac::tables
