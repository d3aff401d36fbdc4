// Huffman code table A of the count1 region of Layer III (ISO/IEC 11172-3, Table B.7):
// quadruples of magnitudes 0..1.
// {length, codeword}, in ascending order of the quadruple, v most significant; each row has the v
// and w in front.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kQuadBookA[16] = {
    /* 0 0 */ {1, 0x1}, {4, 0x5}, {4, 0x4}, {5, 0x5},
    /* 0 1 */ {4, 0x6}, {6, 0x5}, {5, 0x4}, {6, 0x4},
    /* 1 0 */ {4, 0x7}, {5, 0x3}, {5, 0x6}, {6, 0x0},
    /* 1 1 */ {5, 0x7}, {6, 0x2}, {6, 0x3}, {6, 0x1},
};
// clang-format on

}  // namespace zetac::tables
