// Spectral codebook 7 (ISO/IEC 14496-3, Table 4.A.8): pairs of magnitudes 0..7.
// {length, codeword}, in ascending order of the tuple, first value most significant;
// each row has the leading value y in front and runs through the last value z.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kSpectralBook7[64] = {
    /*  0 */ { 1, 0x000}, { 3, 0x005}, { 6, 0x037}, { 7, 0x074},
             { 8, 0x0f2}, { 9, 0x1eb}, {10, 0x3ed}, {11, 0x7f7},
    /*  1 */ { 3, 0x004}, { 4, 0x00c}, { 6, 0x035}, { 7, 0x071},
             { 8, 0x0ec}, { 8, 0x0ee}, { 9, 0x1ee}, { 9, 0x1f5},
    /*  2 */ { 6, 0x036}, { 6, 0x034}, { 7, 0x072}, { 8, 0x0ea},
             { 8, 0x0f1}, { 9, 0x1e9}, { 9, 0x1f3}, {10, 0x3f5},
    /*  3 */ { 7, 0x073}, { 7, 0x070}, { 8, 0x0eb}, { 8, 0x0f0},
             { 9, 0x1f1}, { 9, 0x1f0}, {10, 0x3ec}, {10, 0x3fa},
    /*  4 */ { 8, 0x0f3}, { 8, 0x0ed}, { 9, 0x1e8}, { 9, 0x1ef},
             {10, 0x3ef}, {10, 0x3f1}, {10, 0x3f9}, {11, 0x7fb},
    /*  5 */ { 9, 0x1ed}, { 8, 0x0ef}, { 9, 0x1ea}, { 9, 0x1f2},
             {10, 0x3f3}, {10, 0x3f8}, {11, 0x7f9}, {11, 0x7fc},
    /*  6 */ {10, 0x3ee}, { 9, 0x1ec}, { 9, 0x1f4}, {10, 0x3f4},
             {10, 0x3f7}, {11, 0x7f8}, {12, 0xffd}, {12, 0xffe},
    /*  7 */ {11, 0x7f6}, {10, 0x3f0}, {10, 0x3f2}, {10, 0x3f6},
             {11, 0x7fa}, {11, 0x7fd}, {12, 0xffc}, {12, 0xfff},
};
// clang-format on

}  // namespace zetac::tables
