// The Huffman books of Layer III as an encoder picks them, by table number.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// The codeword of the magnitudes (x, y) is codes[x * radix + y]. Where linbits is not 0, magnitudes
// from radix - 1 = 15 on are escaped.
struct PairEncoder {
    const HuffmanCode* codes;  // null where the table codes nothing
    int radix;
    int linbits;
};
extern const PairEncoder kPairEncoder[32];

// By count1table_select: the codeword of (v, w, x, y), each 0 or 1, is at 8 v + 4 w + 2 x + y.
extern const HuffmanCode* const kQuadEncoder[2];

}  // namespace zetac::tables
