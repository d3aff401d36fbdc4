// Huffman code table 8 of Layer III (ISO/IEC 11172-3, Table B.7): pairs of magnitudes 0..5.
// {length, codeword}, in ascending order of the pair; each row has one x and runs through y.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kPairBook8[36] = {
    /* 0 */ { 2, 0x03}, { 3, 0x04}, { 6, 0x06}, { 8, 0x12}, { 8, 0x0c}, { 9, 0x05},
    /* 1 */ { 3, 0x05}, { 2, 0x01}, { 4, 0x02}, { 8, 0x10}, { 8, 0x09}, { 8, 0x03},
    /* 2 */ { 6, 0x07}, { 4, 0x03}, { 6, 0x05}, { 8, 0x0e}, { 8, 0x07}, { 9, 0x03},
    /* 3 */ { 8, 0x13}, { 8, 0x11}, { 8, 0x0f}, { 9, 0x0d}, { 9, 0x0a}, {10, 0x04},
    /* 4 */ { 8, 0x0d}, { 7, 0x05}, { 8, 0x08}, { 9, 0x0b}, {10, 0x05}, {10, 0x01},
    /* 5 */ { 9, 0x0c}, { 8, 0x04}, { 9, 0x04}, { 9, 0x01}, {11, 0x01}, {11, 0x00},
};
// clang-format on

}  // namespace zetac::tables
