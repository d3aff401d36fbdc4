// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/mp3_huffman_model.h"

#include <algorithm>
#include <cstdlib>

#include "support/bit_writer.h"

namespace zetac::test {
namespace {

int signedField(int entry, int position, int width) {
    const int raw = entry >> position & ((1 << width) - 1);
    return raw >> (width - 1) ? raw - (1 << width) : raw;
}

int magnitudeField(int entry, int position, int width) {
    return entry >> position & ((1 << width) - 1);
}

int withSign(BitSource& in, int magnitude) {
    return in.bit() ? -magnitude : magnitude;
}

// What follows a codeword that ends in the tree, or in the first level with two signs.
Pair readRest(BitSource& in, Pair pair, int linbits) {
    for (int& value : pair) {
        if (value == 15) value += in.bits(linbits);
        if (value) value = withSign(in, value);
    }
    return pair;
}

// Where the entries of small and big tables have x and y, in the first level and in leaves.
struct Layout {
    int firstX, firstY, firstWidth, leafX, leafY, leafWidth;
    int soleX;  // the value of x that is followed by its sign
};
constexpr Layout kSmall = {6, 4, 2, 5, 2, 3, 2};
constexpr Layout kBig = {8, 4, 4, 6, 2, 4, 1};

template <class Entry>
Pair readTablePair(BitSource& in, const Entry* table, const Layout& layout, int linbits) {
    const int entry = table[in.bits(4)];
    if (entry & 1) {
        const int x = signedField(entry, layout.firstX, layout.firstWidth);
        const int y = signedField(entry, layout.firstY, layout.firstWidth);
        const int kind = entry >> 1 & 7;
        if (kind <= 3) in.giveBack(kind);
        switch (kind) {
            case 0:
            case 1:
                return {x, y};
            case 2:
            case 3:
                return {0, 0};
            case 4:
                return {withSign(in, layout.soleX), 0};
            case 5:
                return {0, withSign(in, 1)};
            case 6:
                return {x, withSign(in, 1)};
        }
        return readRest(in,
                        {magnitudeField(entry, layout.firstX, layout.firstWidth),
                         magnitudeField(entry, layout.firstY, layout.firstWidth)},
                        linbits);
    }
    const Entry* tree = table + 16;
    const Entry* node = tree + entry / 2;
    while (!(*node & 1)) node = in.bit() ? tree + *node / 2 : node + 1;
    return readRest(in,
                    {magnitudeField(*node, layout.leafX, layout.leafWidth),
                     magnitudeField(*node, layout.leafY, layout.leafWidth)},
                    linbits);
}

Quad signedFields(int entry) {
    return {signedField(entry, 6, 2), signedField(entry, 4, 2), signedField(entry, 2, 2),
            signedField(entry, 0, 2)};
}

Quad readSigns(BitSource& in, Quad quad) {
    for (int& value : quad)
        if (value) value = withSign(in, value);
    return quad;
}

Quad readQuadA(BitSource& in) {
    const int index = in.bits(6);
    const int entry = _pHfQTable0[index];
    if (index >= 32) {
        in.giveBack(5);
        return {};
    }
    if (index >= 16) {
        in.giveBack(1);
        return signedFields(entry);
    }
    if (index >= 6) return signedFields(_pHfQTable0[entry + in.bit()]);
    if ((entry & 7) == 2) return readSigns(in, {0, 1, 0, 1});
    if ((entry & 7) == 3)
        return readSigns(in, {entry >> 6 & 1, entry >> 5 & 1, entry >> 4 & 1, entry >> 3 & 1});
    return readSigns(in, {1, 1, 1, 1});
}

// The books that a reader of tuples implies: each tuple that comes from a pattern stands for all
// patterns that begin with its codeword, and the next one begins behind them.
template <size_t size, class Read>
Book<size> bookOf(Read read, int linbits) {
    Book<size> book;
    constexpr uint64_t kAll = uint64_t{1} << 32;
    uint64_t pattern = 0;
    while (pattern < kAll) {
        BitSource in(BitWriter().append(static_cast<uint32_t>(pattern), 32).bytes(8));
        auto tuple = read(in);
        int length = static_cast<int>(in.position());
        for (int& value : tuple) {
            value = std::abs(value);
            length -= (value != 0) + (value >= 15 ? linbits : 0);
        }
        if (length < 1 || length > 32 || book.count(tuple)) return {};
        book[tuple] = {static_cast<uint32_t>(pattern >> (32 - length)), length};
        pattern += uint64_t{1} << (32 - length);
    }
    return pattern == kAll ? book : Book<size>{};
}

}  // namespace

Pair readPair(BitSource& in, int table) {
    if (codesNothing(table)) return {};
    if (table < 13) return readTablePair(in, _pHuffmanSmallTables[table], kSmall, 0);
    return readTablePair(in, _pHuffmanBigTables[table - 13], kBig, linbitsOf(table));
}

Quad readQuad(BitSource& in, int table) {
    if (table == 0) return readQuadA(in);
    const int flags = 15 - in.bits(4);
    return readSigns(in, {flags >> 3, flags >> 2 & 1, flags >> 1 & 1, flags & 1});
}

Book<2> pairBook(int table) {
    return bookOf<2>([table](BitSource& in) { return readPair(in, table); }, linbitsOf(table));
}

Book<4> quadBook(int table) {
    return bookOf<4>([table](BitSource& in) { return readQuad(in, table); }, 0);
}

Granule decodeGranule(BitSource in, const std::array<int, 3>& ends, const int* tables,
                      int count1Table, int hufSize) {
    Granule granule;
    if (hufSize == 0) return granule;  // whatever the side information announces
    const size_t end = in.position() + static_cast<size_t>(hufSize);
    size_t line = 0;
    for (int region = 0; region < 3; ++region) {
        for (; line < static_cast<size_t>(ends[region]); line += 2)
            std::ranges::copy(readPair(in, tables[region]), &granule.lines[line]);
    }
    if (in.position() > end) {
        granule.status = zetStsOutOfRange;
        return granule;
    }
    for (; line < 574 && in.position() < end; line += 4) {
        const Quad quad = readQuad(in, count1Table);
        if (in.position() <= end) std::ranges::copy(quad, &granule.lines[line]);
    }
    for (int i = 0; i < 576; ++i)
        if (granule.lines[i]) granule.bound = i + 1;
    return granule;
}

}  // namespace zetac::test
