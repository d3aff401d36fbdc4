// Huffman code table 10 of Layer III (ISO/IEC 11172-3, Table B.7): pairs of magnitudes 0..7.
// {length, codeword}, in ascending order of the pair; each row has one x and runs through y.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kPairBook10[64] = {
    /* 0 */ { 1, 0x01}, { 3, 0x02}, { 6, 0x0a}, { 8, 0x17},
            { 9, 0x23}, { 9, 0x1e}, { 9, 0x0c}, {10, 0x11},
    /* 1 */ { 3, 0x03}, { 4, 0x03}, { 6, 0x08}, { 7, 0x0c},
            { 8, 0x12}, { 9, 0x15}, { 8, 0x0c}, { 8, 0x07},
    /* 2 */ { 6, 0x0b}, { 6, 0x09}, { 7, 0x0f}, { 8, 0x15},
            { 9, 0x20}, {10, 0x28}, { 9, 0x13}, { 9, 0x06},
    /* 3 */ { 7, 0x0e}, { 7, 0x0d}, { 8, 0x16}, { 9, 0x22},
            {10, 0x2e}, {10, 0x17}, { 9, 0x12}, {10, 0x07},
    /* 4 */ { 8, 0x14}, { 8, 0x13}, { 9, 0x21}, {10, 0x2f},
            {10, 0x1b}, {10, 0x16}, {10, 0x09}, {10, 0x03},
    /* 5 */ { 9, 0x1f}, { 9, 0x16}, {10, 0x29}, {10, 0x1a},
            {11, 0x15}, {11, 0x14}, {10, 0x05}, {11, 0x03},
    /* 6 */ { 8, 0x0e}, { 8, 0x0d}, { 9, 0x0a}, {10, 0x0b},
            {10, 0x10}, {10, 0x06}, {11, 0x05}, {11, 0x01},
    /* 7 */ { 9, 0x09}, { 8, 0x08}, { 9, 0x07}, {10, 0x08},
            {10, 0x04}, {11, 0x04}, {11, 0x02}, {11, 0x00},
};
// clang-format on

}  // namespace zetac::tables
