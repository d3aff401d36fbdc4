// Spectral codebook 5 (ISO/IEC 14496-3, Table 4.A.6): signed pairs of -4..4.
// {length, codeword}, in ascending order of the tuple, first value most significant;
// each row has the leading value y in front and runs through the last value z.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kSpectralBook5[81] = {
    /* -4 */ {13, 0x1fff}, {12, 0x0ff7}, {11, 0x07f4}, {11, 0x07e8}, {10, 0x03f1},
             {11, 0x07ee}, {11, 0x07f9}, {12, 0x0ff8}, {13, 0x1ffd},
    /* -3 */ {12, 0x0ffd}, {11, 0x07f1}, {10, 0x03e8}, { 9, 0x01e8}, { 8, 0x00f0},
             { 9, 0x01ec}, {10, 0x03ee}, {11, 0x07f2}, {12, 0x0ffa},
    /* -2 */ {12, 0x0ff4}, {10, 0x03ef}, { 9, 0x01f2}, { 8, 0x00e8}, { 7, 0x0070},
             { 8, 0x00ec}, { 9, 0x01f0}, {10, 0x03ea}, {11, 0x07f3},
    /* -1 */ {11, 0x07eb}, { 9, 0x01eb}, { 8, 0x00ea}, { 5, 0x001a}, { 4, 0x0008},
             { 5, 0x0019}, { 8, 0x00ee}, { 9, 0x01ef}, {11, 0x07ed},
    /*  0 */ {10, 0x03f0}, { 8, 0x00f2}, { 7, 0x0073}, { 4, 0x000b}, { 1, 0x0000},
             { 4, 0x000a}, { 7, 0x0071}, { 8, 0x00f3}, {11, 0x07e9},
    /*  1 */ {11, 0x07ef}, { 9, 0x01ee}, { 8, 0x00ef}, { 5, 0x0018}, { 4, 0x0009},
             { 5, 0x001b}, { 8, 0x00eb}, { 9, 0x01e9}, {11, 0x07ec},
    /*  2 */ {11, 0x07f6}, {10, 0x03eb}, { 9, 0x01f3}, { 8, 0x00ed}, { 7, 0x0072},
             { 8, 0x00e9}, { 9, 0x01f1}, {10, 0x03ed}, {11, 0x07f7},
    /*  3 */ {12, 0x0ff6}, {11, 0x07f0}, {10, 0x03e9}, { 9, 0x01ed}, { 8, 0x00f1},
             { 9, 0x01ea}, {10, 0x03ec}, {11, 0x07f8}, {12, 0x0ff9},
    /*  4 */ {13, 0x1ffc}, {12, 0x0ffc}, {12, 0x0ff5}, {11, 0x07ea}, {10, 0x03f3},
             {10, 0x03f2}, {11, 0x07f5}, {12, 0x0ffb}, {13, 0x1ffe},
};
// clang-format on

}  // namespace zetac::tables
