// The AAC codebooks as binary trees (ISO/IEC 14496-3, 4.6.3).
//
// Nodes stand in pre-order: node, 0-subtree, 1-subtree. An inner node is even; a bit 0 leads to the
// next entry, a bit 1 node/2 entries forward. A node with the lowest bit set is a leaf:
//   quadruples  four 3-bit two's-complement values at bits 2, 5, 8 and 11, first to fourth;
//   pairs       two 6-bit two's-complement values at bits 2 and 8;
//   _pHfTableScf  node/2 is the difference plus 60.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "tables/table.h"

namespace zetac::tables {

// A book of n codewords has n leaves and n - 1 inner nodes.
template <typename Node, int numCodes>
using HuffmanTree = Table<Node, 2 * numCodes - 1>;

extern const HuffmanTree<std::int16_t, 81> _pHfTableSp1;
extern const HuffmanTree<std::int16_t, 81> _pHfTableSp2;
extern const HuffmanTree<std::int16_t, 81> _pHfTableSp3;
extern const HuffmanTree<std::int16_t, 81> _pHfTableSp4;
extern const HuffmanTree<std::int16_t, 81> _pHfTableSp5;
extern const HuffmanTree<std::int16_t, 81> _pHfTableSp6;
extern const HuffmanTree<std::int16_t, 64> _pHfTableSp7;
extern const HuffmanTree<std::int16_t, 64> _pHfTableSp8;
extern const HuffmanTree<std::int16_t, 169> _pHfTableSp9;
extern const HuffmanTree<std::int16_t, 169> _pHfTableSp10;
extern const HuffmanTree<std::int16_t, 289> _pHfTableSp11;
extern const HuffmanTree<std::uint8_t, 121> _pHfTableScf;

}  // namespace zetac::tables
