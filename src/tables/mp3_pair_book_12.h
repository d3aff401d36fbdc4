// Huffman code table 12 of Layer III (ISO/IEC 11172-3, Table B.7): pairs of magnitudes 0..7.
// {length, codeword}, in ascending order of the pair; each row has one x and runs through y.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kPairBook12[64] = {
    /* 0 */ { 4, 0x09}, { 3, 0x06}, { 5, 0x10}, { 7, 0x21},
            { 8, 0x29}, { 9, 0x27}, { 9, 0x26}, { 9, 0x1a},
    /* 1 */ { 3, 0x07}, { 3, 0x05}, { 4, 0x06}, { 5, 0x09},
            { 7, 0x17}, { 7, 0x10}, { 8, 0x1a}, { 8, 0x0b},
    /* 2 */ { 5, 0x11}, { 4, 0x07}, { 5, 0x0b}, { 6, 0x0e},
            { 7, 0x15}, { 8, 0x1e}, { 7, 0x0a}, { 8, 0x07},
    /* 3 */ { 6, 0x11}, { 5, 0x0a}, { 6, 0x0f}, { 6, 0x0c},
            { 7, 0x12}, { 8, 0x1c}, { 8, 0x0e}, { 8, 0x05},
    /* 4 */ { 7, 0x20}, { 6, 0x0d}, { 7, 0x16}, { 7, 0x13},
            { 8, 0x12}, { 8, 0x10}, { 8, 0x09}, { 9, 0x05},
    /* 5 */ { 8, 0x28}, { 7, 0x11}, { 8, 0x1f}, { 8, 0x1d},
            { 8, 0x11}, { 9, 0x0d}, { 8, 0x04}, { 9, 0x02},
    /* 6 */ { 8, 0x1b}, { 7, 0x0c}, { 7, 0x0b}, { 8, 0x0f},
            { 8, 0x0a}, { 9, 0x07}, { 9, 0x04}, {10, 0x01},
    /* 7 */ { 9, 0x1b}, { 8, 0x0c}, { 8, 0x08}, { 9, 0x0c},
            { 9, 0x06}, { 9, 0x03}, { 9, 0x01}, {10, 0x00},
};
// clang-format on

}  // namespace zetac::tables
