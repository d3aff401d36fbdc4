// The parameters of the sixteen codebook numbers (ISO/IEC 14496-3, 4.6.3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "tables/aac/huffman_trees.h"

namespace zetac::tables {

struct CodebookParam {
    std::int32_t codebook;
    std::int32_t isUnsigned;  // magnitudes, with a sign bit behind the codeword for each non-zero
    std::int32_t dimension;
    std::int32_t largest;  // absolute value; 16 of codebook 11 is the escape
    const std::int16_t* tree;
};

// Numbers without a book of their own (zero, reserved, noise, intensity) have all fields 0.
inline constexpr CodebookParam _pCbParam_AAC[16] = {
    {},
    {1, 0, 4, 1, _pHfTableSp1},
    {2, 0, 4, 1, _pHfTableSp2},
    {3, 1, 4, 2, _pHfTableSp3},
    {4, 1, 4, 2, _pHfTableSp4},
    {5, 0, 2, 4, _pHfTableSp5},
    {6, 0, 2, 4, _pHfTableSp6},
    {7, 1, 2, 7, _pHfTableSp7},
    {8, 1, 2, 7, _pHfTableSp8},
    {9, 1, 2, 12, _pHfTableSp9},
    {10, 1, 2, 12, _pHfTableSp10},
    {11, 1, 2, 16, _pHfTableSp11},
    {},
    {},
    {},
    {},
};

}  // namespace zetac::tables
