// Huffman code table 9 of Layer III (ISO/IEC 11172-3, Table B.7): pairs of magnitudes 0..5.
// {length, codeword}, in ascending order of the pair; each row has one x and runs through y.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kPairBook9[36] = {
    /* 0 */ {3, 0x7}, {3, 0x5}, {5, 0x9}, {6, 0xe}, {8, 0xf}, {9, 0x7},
    /* 1 */ {3, 0x6}, {3, 0x4}, {4, 0x5}, {5, 0x5}, {6, 0x6}, {8, 0x7},
    /* 2 */ {4, 0x7}, {4, 0x6}, {5, 0x8}, {6, 0x8}, {7, 0x8}, {8, 0x5},
    /* 3 */ {6, 0xf}, {5, 0x6}, {6, 0x9}, {7, 0xa}, {7, 0x5}, {8, 0x1},
    /* 4 */ {7, 0xb}, {6, 0x7}, {7, 0x9}, {7, 0x6}, {8, 0x4}, {9, 0x1},
    /* 5 */ {8, 0xe}, {7, 0x4}, {8, 0x6}, {8, 0x2}, {9, 0x6}, {9, 0x0},
};
// clang-format on

}  // namespace zetac::tables
