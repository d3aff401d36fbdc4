// Compile-time construction of decoding tables from a complete prefix code.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <algorithm>
#include <cstdint>

#include "tables/huffman_code.h"
#include "tables/table.h"

namespace zetac::tables {

// A codeword shifted left until its first transmitted bit is bit 31, with its index in the book.
struct AlignedCode {
    std::uint32_t bits;
    int index;
};

// Codewords in ascending order, which is the order of the leaves from the all-zero path to the
// all-one path.
template <std::size_t numCodes>
constexpr Table<AlignedCode, numCodes> sortedCodes(const HuffmanCode (&book)[numCodes]) {
    Table<AlignedCode, numCodes> sorted{};
    for (std::size_t i = 0; i < numCodes; ++i) {
        sorted.values[i] = {book[i].codeword << (32 - book[i].length), static_cast<int>(i)};
    }
    std::sort(sorted.values, sorted.values + numCodes,
              [](const AlignedCode& a, const AlignedCode& b) { return a.bits < b.bits; });
    return sorted;
}

// Writes the tree of the sorted codes [begin, end), which agree in their first `depth` bits.
template <typename Node, typename LeafOf>
constexpr void writeSubtree(Node* node, const AlignedCode* begin, const AlignedCode* end, int depth,
                            LeafOf leafOf) {
    if (end - begin == 1) {
        *node = static_cast<Node>(leafOf(begin->index));
        return;
    }
    const AlignedCode* split = begin;
    while (!(split->bits << depth >> 31)) ++split;
    // The 0-subtree of m leaves takes 2m - 1 entries behind this node.
    const auto jump = 2 * (split - begin);
    *node = static_cast<Node>(2 * jump);
    writeSubtree(node + 1, begin, split, depth + 1, leafOf);
    writeSubtree(node + jump, split, end, depth + 1, leafOf);
}

// The tree of a book in pre-order; leafOf(index) gives the (odd) leaf of a codeword.
template <typename Node, std::size_t numCodes, typename LeafOf>
constexpr auto makeHuffmanTree(const HuffmanCode (&book)[numCodes], LeafOf leafOf) {
    Table<Node, 2 * numCodes - 1> tree{};
    const auto sorted = sortedCodes(book);
    writeSubtree(tree.values, sorted.begin(), sorted.end(), 0, leafOf);
    return tree;
}

// The node that the first `length` bits of a right-aligned codeword lead to, in entries.
template <typename Node>
constexpr int nodeAfter(const Node* tree, std::uint32_t prefix, int length) {
    int node = 0;
    while (length-- > 0) node += prefix >> length & 1 ? tree[node] / 2 : 1;
    return node;
}

// The table of what the next `bits` bits of a stream say: shortEntry(index) where they hold a whole
// codeword, longEntry(node) where they only lead to a node of the tree.
template <typename Entry, int bits, std::size_t numCodes, typename Tree, typename ShortEntry,
          typename LongEntry>
constexpr auto makeHuffmanLookup(const HuffmanCode (&book)[numCodes], const Tree& tree,
                                 ShortEntry shortEntry, LongEntry longEntry) {
    Table<Entry, std::size_t{1} << bits> lookup{};
    for (std::size_t i = 0; i < numCodes; ++i) {
        const auto [length, codeword] = book[i];
        if (length > bits) {
            const std::uint32_t prefix = codeword >> (length - bits);
            lookup.values[prefix] = longEntry(nodeAfter(tree.values, prefix, bits));
            continue;
        }
        const int rest = bits - length;
        const Entry entry = shortEntry(static_cast<int>(i));
        Entry* first = lookup.values + (codeword << rest);
        std::fill(first, first + (1 << rest), entry);
    }
    return lookup;
}

}  // namespace zetac::tables
