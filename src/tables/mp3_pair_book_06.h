// Huffman code table 6 of Layer III (ISO/IEC 11172-3, Table B.7): pairs of magnitudes 0..3.
// {length, codeword}, in ascending order of the pair; each row has one x and runs through y.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kPairBook6[16] = {
    /* 0 */ {3, 0x7}, {3, 0x3}, {5, 0x5}, {7, 0x1},
    /* 1 */ {3, 0x6}, {2, 0x2}, {4, 0x3}, {5, 0x2},
    /* 2 */ {4, 0x5}, {4, 0x4}, {5, 0x4}, {6, 0x1},
    /* 3 */ {6, 0x3}, {5, 0x3}, {6, 0x2}, {7, 0x0},
};
// clang-format on

}  // namespace zetac::tables
