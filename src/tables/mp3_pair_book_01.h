// Huffman code table 1 of Layer III (ISO/IEC 11172-3, Table B.7): pairs of magnitudes 0..1.
// {length, codeword}, in ascending order of the pair; each row has one x and runs through y.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kPairBook1[4] = {
    /* 0 */ {1, 0x1}, {3, 0x1},
    /* 1 */ {2, 0x1}, {3, 0x0},
};
// clang-format on

}  // namespace zetac::tables
