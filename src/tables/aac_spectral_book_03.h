// Spectral codebook 3 (ISO/IEC 14496-3, Table 4.A.4): quadruples of magnitudes 0..2.
// {length, codeword}, in ascending order of the tuple, first value most significant;
// each row has the leading values w x y in front and runs through the last value z.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kSpectralBook3[81] = {
    /*  0  0  0 */ { 1, 0x0000}, { 4, 0x0009}, { 8, 0x00ef},
    /*  0  0  1 */ { 4, 0x000b}, { 5, 0x0019}, { 8, 0x00f0},
    /*  0  0  2 */ { 9, 0x01eb}, { 9, 0x01e6}, {10, 0x03f2},
    /*  0  1  0 */ { 4, 0x000a}, { 6, 0x0035}, { 9, 0x01ef},
    /*  0  1  1 */ { 6, 0x0034}, { 6, 0x0037}, { 9, 0x01e9},
    /*  0  1  2 */ { 9, 0x01ed}, { 9, 0x01e7}, {10, 0x03f3},
    /*  0  2  0 */ { 9, 0x01ee}, {10, 0x03ed}, {13, 0x1ffa},
    /*  0  2  1 */ { 9, 0x01ec}, { 9, 0x01f2}, {11, 0x07f9},
    /*  0  2  2 */ {11, 0x07f8}, {10, 0x03f8}, {12, 0x0ff8},
    /*  1  0  0 */ { 4, 0x0008}, { 6, 0x0038}, {10, 0x03f6},
    /*  1  0  1 */ { 6, 0x0036}, { 7, 0x0075}, {10, 0x03f1},
    /*  1  0  2 */ {10, 0x03eb}, {10, 0x03ec}, {12, 0x0ff4},
    /*  1  1  0 */ { 5, 0x0018}, { 7, 0x0076}, {11, 0x07f4},
    /*  1  1  1 */ { 6, 0x0039}, { 7, 0x0074}, {10, 0x03ef},
    /*  1  1  2 */ { 9, 0x01f3}, { 9, 0x01f4}, {11, 0x07f6},
    /*  1  2  0 */ { 9, 0x01e8}, {10, 0x03ea}, {13, 0x1ffc},
    /*  1  2  1 */ { 8, 0x00f2}, { 9, 0x01f1}, {12, 0x0ffb},
    /*  1  2  2 */ {10, 0x03f5}, {11, 0x07f3}, {12, 0x0ffc},
    /*  2  0  0 */ { 8, 0x00ee}, {10, 0x03f7}, {15, 0x7ffe},
    /*  2  0  1 */ { 9, 0x01f0}, {11, 0x07f5}, {15, 0x7ffd},
    /*  2  0  2 */ {13, 0x1ffb}, {14, 0x3ffa}, {16, 0xffff},
    /*  2  1  0 */ { 8, 0x00f1}, {10, 0x03f0}, {14, 0x3ffc},
    /*  2  1  1 */ { 9, 0x01ea}, {10, 0x03ee}, {14, 0x3ffb},
    /*  2  1  2 */ {12, 0x0ff6}, {12, 0x0ffa}, {15, 0x7ffc},
    /*  2  2  0 */ {11, 0x07f2}, {12, 0x0ff5}, {16, 0xfffe},
    /*  2  2  1 */ {10, 0x03f4}, {11, 0x07f7}, {15, 0x7ffb},
    /*  2  2  2 */ {12, 0x0ff7}, {12, 0x0ff9}, {15, 0x7ffa},
};
// clang-format on

}  // namespace zetac::tables
