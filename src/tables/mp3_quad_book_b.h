// Huffman code table B of the count1 region of Layer III (ISO/IEC 11172-3, Table B.7):
// quadruples of magnitudes 0..1.
// {length, codeword}, in ascending order of the quadruple, v most significant; each row has the v
// and w in front.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kQuadBookB[16] = {
    /* 0 0 */ {4, 0xf}, {4, 0xe}, {4, 0xd}, {4, 0xc},
    /* 0 1 */ {4, 0xb}, {4, 0xa}, {4, 0x9}, {4, 0x8},
    /* 1 0 */ {4, 0x7}, {4, 0x6}, {4, 0x5}, {4, 0x4},
    /* 1 1 */ {4, 0x3}, {4, 0x2}, {4, 0x1}, {4, 0x0},
};
// clang-format on

}  // namespace zetac::tables
