// Huffman code table 5 of Layer III (ISO/IEC 11172-3, Table B.7): pairs of magnitudes 0..3.
// {length, codeword}, in ascending order of the pair; each row has one x and runs through y.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kPairBook5[16] = {
    /* 0 */ {1, 0x1}, {3, 0x2}, {6, 0x6}, {7, 0x5},
    /* 1 */ {3, 0x3}, {3, 0x1}, {6, 0x4}, {7, 0x4},
    /* 2 */ {6, 0x7}, {6, 0x5}, {7, 0x7}, {8, 0x1},
    /* 3 */ {7, 0x6}, {6, 0x1}, {7, 0x1}, {8, 0x0},
};
// clang-format on

}  // namespace zetac::tables
