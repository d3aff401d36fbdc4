// Huffman code table 2 of Layer III (ISO/IEC 11172-3, Table B.7): pairs of magnitudes 0..2.
// {length, codeword}, in ascending order of the pair; each row has one x and runs through y.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kPairBook2[9] = {
    /* 0 */ {1, 0x1}, {3, 0x2}, {6, 0x1},
    /* 1 */ {3, 0x3}, {3, 0x1}, {5, 0x1},
    /* 2 */ {5, 0x3}, {5, 0x2}, {6, 0x0},
};
// clang-format on

}  // namespace zetac::tables
