// Makes a Huffman book as its decoder reads it from the list of its codewords, at compile time.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr/huffman.h"
#include "sbr/tables/huffman_code.h"

namespace zetac::codec {

template <int codes>
struct SbrHuffmanTables {
    SbrHuffmanBook::Entry direct[1 << SbrHuffmanBook::kDirectBits];
    SbrHuffmanBook::Node tree[codes - 1][2];  // a complete binary tree
};

template <int codes>
constexpr SbrHuffmanTables<codes> makeSbrHuffmanTables(const SbrHuffmanCode (&book)[codes]) {
    constexpr int kDirectBits = SbrHuffmanBook::kDirectBits;
    using Node = SbrHuffmanBook::Node;
    SbrHuffmanTables<codes> tables{};
    Node used = 1;  // node 0 is the root, which no branch leads to
    for (int i = 0; i < codes; ++i) {
        Node node = 0;
        for (int bit = book[i].length; --bit > 0;) {
            Node& branch = tables.tree[node][book[i].codeword >> bit & 1];
            if (branch == 0) branch = used++;
            node = branch;
        }
        tables.tree[node][book[i].codeword & 1] = static_cast<Node>(~i);
    }
    for (int prefix = 0; prefix < 1 << kDirectBits; ++prefix) {
        SbrHuffmanBook::Entry& entry = tables.direct[prefix];
        for (entry = {0, 0}; entry.next >= 0 && entry.bits < kDirectBits; ++entry.bits) {
            entry.next = tables.tree[entry.next][prefix >> (kDirectBits - 1 - entry.bits) & 1];
        }
    }
    return tables;
}

template <const auto& book>
inline constexpr auto kSbrHuffmanTables = makeSbrHuffmanTables(book);

/** @tparam zero  index of the codeword that stands for 0: the middle one where values are
 *                differences of either sign */
template <const auto& book, int zero = static_cast<int>(sizeof book / sizeof book[0] / 2)>
inline constexpr SbrHuffmanBook kSbrBook{kSbrHuffmanTables<book>.direct,
                                         kSbrHuffmanTables<book>.tree, zero};

}  // namespace zetac::codec
