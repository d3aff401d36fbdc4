// The exported form of the Huffman books: a first level for the next 4 bits, then a tree.
//
// An odd entry of the first level is a pair whose codeword has at most 4 bits. Bits 1..3 say what
// the 4 bits hold besides the codeword, and what follows them; x and y stand in two fields. An even
// entry is the offset of an inner node behind the first level, in bytes: those of a big table as
// they are, those of a small one doubled. Nodes stand in pre-order; a bit 0 leads to the next
// entry, a bit 1 to the entry at the offset that the node holds. An odd node is a leaf with x and
// y.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include "tables/huffman_builder.h"
#include "tables/mp3/huffman_books.h"

namespace zetac::tables {
namespace {

constexpr int kFirstLevel = 16;
constexpr int kFirstLevelBits = 4;

struct Pair {
    int x, y;
};

constexpr int numSigns(Pair pair) {
    return (pair.x != 0) + (pair.y != 0);
}

constexpr unsigned field(int value, int width, int position) {
    return (static_cast<unsigned>(value) & ((1U << width) - 1)) << position;
}

// How the first level ends a codeword. A number 4 stands for x = 2 in a small table and for x = 1
// in a big one.
enum EndKind {
    kAllUsed = 0,
    kOneGivenBack = 1,
    kZerosTwoGivenBack = 2,
    kZerosThreeGivenBack = 3,
    kSignOfX = 4,
    kSignOfYOnly = 5,
    kSignOfY = 6,
    kTwoSigns = 7,
};

struct SmallForm {
    using Entry = Zet8u;
    static constexpr int kFirstX = 6, kFirstY = 4, kFirstWidth = 2;
    static constexpr int kLeafX = 5, kLeafY = 2, kLeafWidth = 3;
    static constexpr int kOffsetScale = 2;

    static constexpr EndKind endKind(Pair pair, int length) {
        const int signsOutside = length + numSigns(pair) - kFirstLevelBits;
        if (signsOutside == 2) return kTwoSigns;
        if (signsOutside == 1) return pair.y ? kSignOfY : kSignOfX;
        return static_cast<EndKind>(-signsOutside);
    }
};

struct BigForm {
    using Entry = Zet16s;
    static constexpr int kFirstX = 8, kFirstY = 4, kFirstWidth = 4;
    static constexpr int kLeafX = 6, kLeafY = 2, kLeafWidth = 4;
    static constexpr int kOffsetScale = sizeof(Entry);

    static constexpr EndKind endKind(Pair pair, int length) {
        const int signsOutside = length + numSigns(pair) - kFirstLevelBits;
        if (signsOutside == 2) return kTwoSigns;
        if (signsOutside == 1) return pair.x == 0 ? kSignOfYOnly : pair.y ? kSignOfY : kSignOfX;
        return static_cast<EndKind>(-signsOutside);
    }
};

template <class Form>
constexpr typename Form::Entry firstLevelLeaf(Pair pair, EndKind kind) {
    return static_cast<typename Form::Entry>(1U | field(kind, 3, 1) |
                                             field(pair.x, Form::kFirstWidth, Form::kFirstX) |
                                             field(pair.y, Form::kFirstWidth, Form::kFirstY));
}

// Fills the first-level entries that begin with a short codeword: its signs within the 4 bits come
// in both values, bits that are given back in all.
template <class Form>
constexpr void writeShortCode(typename Form::Entry* table, HuffmanCode code, Pair pair) {
    const EndKind kind = Form::endKind(pair, code.length);
    const int rest = kFirstLevelBits - code.length;
    for (int tail = 0; tail < 1 << rest; ++tail) {
        Pair signedPair = pair;
        int bit = rest;
        if (pair.x && bit > 0 && tail >> --bit & 1) signedPair.x = -pair.x;
        if (pair.y && bit > 0 && tail >> --bit & 1) signedPair.y = -pair.y;
        const auto index = (code.codeword << rest) + static_cast<unsigned>(tail);
        table[index] = firstLevelLeaf<Form>(signedPair, kind);
    }
}

// Writes the tree of the sorted codes [begin, end), which agree in their first `depth` bits, at
// `node`, and returns the entry behind it.
template <class Form, std::size_t numCodes>
constexpr int writeTree(typename Form::Entry* tree, int node, const AlignedCode* begin,
                        const AlignedCode* end, int depth, const HuffmanCode (&book)[numCodes]) {
    using Entry = typename Form::Entry;
    if (end - begin == 1) {
        const int radix = pairRadix(book);
        tree[node] =
            static_cast<Entry>(1U | field(begin->index / radix, Form::kLeafWidth, Form::kLeafX) |
                               field(begin->index % radix, Form::kLeafWidth, Form::kLeafY));
        return node + 1;
    }
    const AlignedCode* split = begin;
    while (!(split->bits << depth >> 31)) ++split;
    const int ones = writeTree<Form>(tree, node + 1, begin, split, depth + 1, book);
    tree[node] = static_cast<Entry>(ones * Form::kOffsetScale);
    return writeTree<Form>(tree, ones, split, end, depth + 1, book);
}

// Every first-level entry that leads to a tree costs one inner node less than it has leaves.
template <std::size_t numCodes>
constexpr int tableSize(const HuffmanCode (&book)[numCodes]) {
    int nodes = 0;
    Table<bool, kFirstLevel> leads{};
    for (const auto& [length, codeword] : book) {
        if (length <= kFirstLevelBits) continue;
        nodes += 2;
        leads.values[codeword >> (length - kFirstLevelBits)] = true;
    }
    for (const bool isTree : leads) nodes -= isTree;
    return kFirstLevel + nodes;
}

template <class Form, int size, std::size_t numCodes>
constexpr auto makeTable(const HuffmanCode (&book)[numCodes]) {
    Table<typename Form::Entry, size> table{};
    const int radix = pairRadix(book);
    for (int i = 0; i < static_cast<int>(numCodes); ++i) {
        if (book[i].length <= kFirstLevelBits)
            writeShortCode<Form>(table.values, book[i], {i / radix, i % radix});
    }
    const auto sorted = sortedCodes(book);
    int node = 0;
    for (const AlignedCode* code = sorted.begin(); code != sorted.end();) {
        const auto prefix = code->bits >> (32 - kFirstLevelBits);
        const AlignedCode* end = code;
        while (end != sorted.end() && end->bits >> (32 - kFirstLevelBits) == prefix) ++end;
        if (book[code->index].length > kFirstLevelBits) {
            table.values[prefix] = static_cast<typename Form::Entry>(node * Form::kOffsetScale);
            node =
                writeTree<Form>(table.values + kFirstLevel, node, code, end, kFirstLevelBits, book);
        }
        code = end;
    }
    return table;
}

#define ZETAC_PAIR_TABLE(form, number) \
    constexpr auto kTable##number = makeTable<form, tableSize(kPairBook##number)>(kPairBook##number)
ZETAC_PAIR_TABLE(SmallForm, 1);
ZETAC_PAIR_TABLE(SmallForm, 2);
ZETAC_PAIR_TABLE(SmallForm, 3);
ZETAC_PAIR_TABLE(SmallForm, 5);
ZETAC_PAIR_TABLE(SmallForm, 6);
ZETAC_PAIR_TABLE(SmallForm, 7);
ZETAC_PAIR_TABLE(SmallForm, 8);
ZETAC_PAIR_TABLE(SmallForm, 9);
ZETAC_PAIR_TABLE(SmallForm, 10);
ZETAC_PAIR_TABLE(SmallForm, 11);
ZETAC_PAIR_TABLE(SmallForm, 12);
ZETAC_PAIR_TABLE(BigForm, 13);
ZETAC_PAIR_TABLE(BigForm, 15);
ZETAC_PAIR_TABLE(BigForm, 16);
ZETAC_PAIR_TABLE(BigForm, 24);
#undef ZETAC_PAIR_TABLE

constexpr unsigned signedQuad(int magnitudes, unsigned signs) {
    unsigned fields = 0;
    int sign = 0;
    for (int bit = 0; bit < 4; ++bit) {
        if (!(magnitudes >> bit & 1)) continue;
        fields |= field(signs >> sign++ & 1 ? -1 : 1, 2, 2 * bit);
    }
    return fields;
}

constexpr unsigned longQuad(int magnitudes, int numOnes) {
    constexpr unsigned kSecondAndFourth = 2, kThreeOnes = 3, kFourOnes = 4;
    const unsigned flags = static_cast<unsigned>(magnitudes) << 3;
    return flags | (numOnes == 2 ? kSecondAndFourth : numOnes == 3 ? kThreeOnes : kFourOnes);
}

// By 6 bits: codewords with their signs up to 6 bits are whole. Those of 7 bits have the index of
// two further entries, which stand in the upper half, where no codeword is looked up because all
// begin with the one-bit code. The rest are codewords of 6 bits with all their signs to follow.
constexpr auto makeCount1TableA() {
    Table<Zet8u, 64> table{};
    int further = 32;
    for (int quad = 1; quad < 16; ++quad) {
        const auto [length, codeword] = kQuadBookA[quad];
        const int ones = (quad & 1) + (quad >> 1 & 1) + (quad >> 2 & 1) + (quad >> 3);
        if (length == 6) {
            table.values[codeword] = static_cast<Zet8u>(longQuad(quad, ones));
        } else if (length == 4) {
            for (unsigned tail = 0; tail < 4; ++tail)
                table.values[codeword << 2 | tail] =
                    static_cast<Zet8u>(signedQuad(quad, tail >> 1));
        } else {
            for (unsigned signs = 0; signs < 4; ++signs)
                table.values[further + static_cast<int>(signs)] =
                    static_cast<Zet8u>(signedQuad(quad, signs));
            table.values[codeword << 1] = static_cast<Zet8u>(further);
            table.values[codeword << 1 | 1] = static_cast<Zet8u>(further + 2);
            further += 4;
        }
    }
    return table;
}

constexpr auto kCount1TableA = makeCount1TableA();

}  // namespace
}  // namespace zetac::tables

using namespace zetac::tables;

const Zet8u* const _pHuffmanSmallTables[13] = {nullptr,  kTable1,  kTable2, kTable3, nullptr,
                                               kTable5,  kTable6,  kTable7, kTable8, kTable9,
                                               kTable10, kTable11, kTable12};

const Zet16s* const _pHuffmanBigTables[19] = {
    kTable13, nullptr,  kTable15,                                                    // 13 to 15
    kTable16, kTable16, kTable16, kTable16, kTable16, kTable16, kTable16, kTable16,  // 16 to 23
    kTable24, kTable24, kTable24, kTable24, kTable24, kTable24, kTable24, kTable24,  // 24 to 31
};

const Zet32s _pHfLinbits[19] = {0, 0, 0,                    // 13 to 15
                                1, 2, 3, 4, 6, 8, 10, 13,   // 16 to 23
                                4, 5, 6, 7, 8, 9, 11, 13};  // 24 to 31

#define ZETAC_ENTRIES_4(i)                                                                 \
    kCount1TableA.values[i], kCount1TableA.values[(i) + 1], kCount1TableA.values[(i) + 2], \
        kCount1TableA.values[(i) + 3]
#define ZETAC_ENTRIES_16(i)                                                 \
    ZETAC_ENTRIES_4(i), ZETAC_ENTRIES_4((i) + 4), ZETAC_ENTRIES_4((i) + 8), \
        ZETAC_ENTRIES_4((i) + 12)
const Zet8u _pHfQTable0[64] = {ZETAC_ENTRIES_16(0), ZETAC_ENTRIES_16(16), ZETAC_ENTRIES_16(32),
                               ZETAC_ENTRIES_16(48)};
#undef ZETAC_ENTRIES_16
#undef ZETAC_ENTRIES_4

const Zet32s _pBitsMasks[32] = {
    0x0,      0x1,       0x3,       0x7,       0xf,       0x1f,       0x3f,       0x7f,
    0xff,     0x1ff,     0x3ff,     0x7ff,     0xfff,     0x1fff,     0x3fff,     0x7fff,
    0xffff,   0x1ffff,   0x3ffff,   0x7ffff,   0xfffff,   0x1fffff,   0x3fffff,   0x7fffff,
    0xffffff, 0x1ffffff, 0x3ffffff, 0x7ffffff, 0xfffffff, 0x1fffffff, 0x3fffffff, 0x7fffffff,
};
