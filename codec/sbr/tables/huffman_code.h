// What a Huffman book of the SBR tool consists of.
#pragma once

#include <cstdint>

namespace zetac::codec {

/** A codeword, right-aligned: its first transmitted bit is bit length - 1. */
struct SbrHuffmanCode {
    uint8_t length;
    uint32_t codeword;
};

}  // namespace zetac::codec
