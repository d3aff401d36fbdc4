// Huffman code table 11 of Layer III (ISO/IEC 11172-3, Table B.7): pairs of magnitudes 0..7.
// {length, codeword}, in ascending order of the pair; each row has one x and runs through y.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kPairBook11[64] = {
    /* 0 */ { 2, 0x03}, { 3, 0x04}, { 5, 0x0a}, { 7, 0x18},
            { 8, 0x22}, { 9, 0x21}, { 8, 0x15}, { 9, 0x0f},
    /* 1 */ { 3, 0x05}, { 3, 0x03}, { 4, 0x04}, { 6, 0x0a},
            { 8, 0x20}, { 8, 0x11}, { 7, 0x0b}, { 8, 0x0a},
    /* 2 */ { 5, 0x0b}, { 5, 0x07}, { 6, 0x0d}, { 7, 0x12},
            { 8, 0x1e}, { 9, 0x1f}, { 8, 0x14}, { 8, 0x05},
    /* 3 */ { 7, 0x19}, { 6, 0x0b}, { 7, 0x13}, { 9, 0x3b},
            { 8, 0x1b}, {10, 0x12}, { 8, 0x0c}, { 9, 0x05},
    /* 4 */ { 8, 0x23}, { 8, 0x21}, { 8, 0x1f}, { 9, 0x3a},
            { 9, 0x1e}, {10, 0x10}, { 9, 0x07}, {10, 0x05},
    /* 5 */ { 8, 0x1c}, { 8, 0x1a}, { 9, 0x20}, {10, 0x13},
            {10, 0x11}, {11, 0x0f}, {10, 0x08}, {11, 0x0e},
    /* 6 */ { 8, 0x0e}, { 7, 0x0c}, { 7, 0x09}, { 8, 0x0d},
            { 9, 0x0e}, {10, 0x09}, {10, 0x04}, {10, 0x01},
    /* 7 */ { 8, 0x0b}, { 7, 0x04}, { 8, 0x06}, { 9, 0x06},
            {10, 0x06}, {10, 0x03}, {10, 0x02}, {10, 0x00},
};
// clang-format on

}  // namespace zetac::tables
