// Huffman code table 7 of Layer III (ISO/IEC 11172-3, Table B.7): pairs of magnitudes 0..5.
// {length, codeword}, in ascending order of the pair; each row has one x and runs through y.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kPairBook7[36] = {
    /* 0 */ { 1, 0x01}, { 3, 0x02}, { 6, 0x0a}, { 8, 0x13}, { 8, 0x10}, { 9, 0x0a},
    /* 1 */ { 3, 0x03}, { 4, 0x03}, { 6, 0x07}, { 7, 0x0a}, { 7, 0x05}, { 8, 0x03},
    /* 2 */ { 6, 0x0b}, { 5, 0x04}, { 7, 0x0d}, { 8, 0x11}, { 8, 0x08}, { 9, 0x04},
    /* 3 */ { 7, 0x0c}, { 7, 0x0b}, { 8, 0x12}, { 9, 0x0f}, { 9, 0x0b}, { 9, 0x02},
    /* 4 */ { 7, 0x07}, { 7, 0x06}, { 8, 0x09}, { 9, 0x0e}, { 9, 0x03}, {10, 0x01},
    /* 5 */ { 8, 0x06}, { 8, 0x04}, { 9, 0x05}, {10, 0x03}, {10, 0x02}, {10, 0x00},
};
// clang-format on

}  // namespace zetac::tables
