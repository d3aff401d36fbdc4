// The trees and the direct tables stand in one file because the direct tables are built from the
// trees.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/aac/huffman_trees.h"

#include "tables/aac/scalefactor_book.h"
#include "tables/aac/spectral_books.h"
#include "tables/aac/spectral_lookup.h"
#include "tables/huffman_builder.h"

namespace zetac::tables {
namespace {

constexpr unsigned field(int value, int width, int position) {
    return (static_cast<unsigned>(value) & ((1U << width) - 1)) << position;
}

template <int codebook, std::size_t numCodes>
constexpr auto makeSpectralTree(const HuffmanCode (&book)[numCodes]) {
    return makeHuffmanTree<std::int16_t>(book, [](int index) {
        constexpr SpectralTupleShape shape = kSpectralTupleShape[codebook];
        constexpr int width = 12 / shape.dimension;
        const SpectralTuple tuple = shape.tuple(index);
        unsigned leaf = 1;
        for (int i = 0; i < shape.dimension; ++i) {
            leaf |= field(tuple.values[i], width, 2 + width * i);
        }
        return leaf;
    });
}

template <int codebook, std::size_t numCodes, typename Tree>
constexpr auto makeSpectralLookup(const HuffmanCode (&book)[numCodes], const Tree& tree) {
    return makeHuffmanLookup<std::uint32_t, kSpectralLookupBits[codebook]>(
        book, tree,
        [&](int index) {
            constexpr SpectralTupleShape shape = kSpectralTupleShape[codebook];
            return makeSpectralEntry(shape, shape.tuple(index), book[index].length).packed;
        },
        [](int node) { return field(node, 16, 16); });
}

}  // namespace

constexpr HuffmanTree<std::int16_t, 81> _pHfTableSp1 = makeSpectralTree<1>(kSpectralBook1);
constexpr HuffmanTree<std::int16_t, 81> _pHfTableSp2 = makeSpectralTree<2>(kSpectralBook2);
constexpr HuffmanTree<std::int16_t, 81> _pHfTableSp3 = makeSpectralTree<3>(kSpectralBook3);
constexpr HuffmanTree<std::int16_t, 81> _pHfTableSp4 = makeSpectralTree<4>(kSpectralBook4);
constexpr HuffmanTree<std::int16_t, 81> _pHfTableSp5 = makeSpectralTree<5>(kSpectralBook5);
constexpr HuffmanTree<std::int16_t, 81> _pHfTableSp6 = makeSpectralTree<6>(kSpectralBook6);
constexpr HuffmanTree<std::int16_t, 64> _pHfTableSp7 = makeSpectralTree<7>(kSpectralBook7);
constexpr HuffmanTree<std::int16_t, 64> _pHfTableSp8 = makeSpectralTree<8>(kSpectralBook8);
constexpr HuffmanTree<std::int16_t, 169> _pHfTableSp9 = makeSpectralTree<9>(kSpectralBook9);
constexpr HuffmanTree<std::int16_t, 169> _pHfTableSp10 = makeSpectralTree<10>(kSpectralBook10);
constexpr HuffmanTree<std::int16_t, 289> _pHfTableSp11 = makeSpectralTree<11>(kSpectralBook11);
constexpr HuffmanTree<std::uint8_t, 121> _pHfTableScf =
    makeHuffmanTree<std::uint8_t>(kScalefactorBook, [](int index) { return 2 * index + 1; });

constexpr Table<std::uint32_t, 512> kSpectralLookup1 =
    makeSpectralLookup<1>(kSpectralBook1, _pHfTableSp1);
constexpr Table<std::uint32_t, 512> kSpectralLookup2 =
    makeSpectralLookup<2>(kSpectralBook2, _pHfTableSp2);
constexpr Table<std::uint32_t, 1024> kSpectralLookup3 =
    makeSpectralLookup<3>(kSpectralBook3, _pHfTableSp3);
constexpr Table<std::uint32_t, 1024> kSpectralLookup4 =
    makeSpectralLookup<4>(kSpectralBook4, _pHfTableSp4);
constexpr Table<std::uint32_t, 1024> kSpectralLookup5 =
    makeSpectralLookup<5>(kSpectralBook5, _pHfTableSp5);
constexpr Table<std::uint32_t, 512> kSpectralLookup6 =
    makeSpectralLookup<6>(kSpectralBook6, _pHfTableSp6);
constexpr Table<std::uint32_t, 1024> kSpectralLookup7 =
    makeSpectralLookup<7>(kSpectralBook7, _pHfTableSp7);
constexpr Table<std::uint32_t, 512> kSpectralLookup8 =
    makeSpectralLookup<8>(kSpectralBook8, _pHfTableSp8);
constexpr Table<std::uint32_t, 1024> kSpectralLookup9 =
    makeSpectralLookup<9>(kSpectralBook9, _pHfTableSp9);
constexpr Table<std::uint32_t, 1024> kSpectralLookup10 =
    makeSpectralLookup<10>(kSpectralBook10, _pHfTableSp10);
constexpr Table<std::uint32_t, 1024> kSpectralLookup11 =
    makeSpectralLookup<11>(kSpectralBook11, _pHfTableSp11);
constexpr Table<std::uint16_t, 256> kScalefactorLookup =
    makeHuffmanLookup<std::uint16_t, kScalefactorLookupBits>(
        kScalefactorBook, _pHfTableScf,
        [](int index) {
            return static_cast<std::uint16_t>(kScalefactorBook[index].length | index << 8);
        },
        [](int node) { return static_cast<std::uint16_t>(node << 8); });

}  // namespace zetac::tables
