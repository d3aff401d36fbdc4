// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/huffman.h"

#include "sbr/tables/huffman_f_env_1_5db.h"
#include "sbr/tables/huffman_f_env_3_0db.h"
#include "sbr/tables/huffman_f_env_bal_1_5db.h"
#include "sbr/tables/huffman_f_env_bal_3_0db.h"
#include "sbr/tables/huffman_t_env_1_5db.h"
#include "sbr/tables/huffman_t_env_3_0db.h"
#include "sbr/tables/huffman_t_env_bal_1_5db.h"
#include "sbr/tables/huffman_t_env_bal_3_0db.h"
#include "sbr/tables/huffman_t_noise_3_0db.h"
#include "sbr/tables/huffman_t_noise_bal_3_0db.h"

namespace zetac::codec {
namespace {

using Entry = SbrHuffmanBook::Entry;
using Node = SbrHuffmanBook::Node;
constexpr int kDirectBits = SbrHuffmanBook::kDirectBits;

template <int codes>
struct Tables {
    Entry direct[1 << kDirectBits];
    Node tree[codes - 1][2];  // a complete binary tree
};

template <int codes>
constexpr Tables<codes> makeTables(const SbrHuffmanCode (&book)[codes]) {
    Tables<codes> tables{};
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
        Entry& entry = tables.direct[prefix];
        for (entry = {0, 0}; entry.next >= 0 && entry.bits < kDirectBits; ++entry.bits) {
            entry.next = tables.tree[entry.next][prefix >> (kDirectBits - 1 - entry.bits) & 1];
        }
    }
    return tables;
}

/** A book whose middle codeword stands for no difference. */
template <const auto& book>
struct Built {
    static constexpr int kCodes = sizeof book / sizeof book[0];
    static constexpr Tables<kCodes> kTables = makeTables(book);
    static constexpr SbrHuffmanBook kBook{kTables.direct, kTables.tree, kCodes / 2};
};

}  // namespace

const SbrHuffmanBook& envelopeBook(int bs_amp_res, bool isBalance, SbrDelta direction) {
    static constexpr const SbrHuffmanBook* kBooks[2][2][2] = {
        {{&Built<kFrequencyEnvelope15Book>::kBook, &Built<kTimeEnvelope15Book>::kBook},
         {&Built<kFrequencyBalance15Book>::kBook, &Built<kTimeBalance15Book>::kBook}},
        {{&Built<kFrequencyEnvelope30Book>::kBook, &Built<kTimeEnvelope30Book>::kBook},
         {&Built<kFrequencyBalance30Book>::kBook, &Built<kTimeBalance30Book>::kBook}}};
    return *kBooks[bs_amp_res][isBalance][static_cast<int>(direction)];
}

const SbrHuffmanBook& noiseBook(bool isBalance, SbrDelta direction) {
    if (direction == SbrDelta::kFrequency) return envelopeBook(1, isBalance, direction);
    return isBalance ? Built<kTimeNoiseBalance30Book>::kBook : Built<kTimeNoise30Book>::kBook;
}

}  // namespace zetac::codec
