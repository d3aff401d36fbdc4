// Layer III Huffman decoding, bit by bit as the layout of the exported tables reads, and the books
// that these tables turn out to hold. The library decodes from other tables.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <array>
#include <cstdint>
#include <map>
#include <vector>

namespace zetac::test {

// Bits with zeros behind them.
class BitSource {
  public:
    explicit BitSource(std::vector<uint8_t> bytes, size_t position = 0)
        : bytes_(std::move(bytes)), position_(position) {}

    int bit() {
        const size_t i = position_++;
        return i / 8 < bytes_.size() ? bytes_[i / 8] >> (7 - i % 8) & 1 : 0;
    }
    int bits(int count) {
        int value = 0;
        while (count-- > 0) value = value << 1 | bit();
        return value;
    }
    void giveBack(int count) { position_ -= static_cast<size_t>(count); }
    size_t position() const { return position_; }

  private:
    std::vector<uint8_t> bytes_;
    size_t position_;
};

using Pair = std::array<int, 2>;
using Quad = std::array<int, 4>;

inline bool codesNothing(int table) {
    return table == 0 || table == 4 || table == 14;
}
inline int linbitsOf(int table) {
    return table < 13 ? 0 : _pHfLinbits[table - 13];
}
Pair readPair(BitSource& in, int table);
Quad readQuad(BitSource& in, int table);

struct Code {
    uint32_t codeword;
    int length;
};
template <size_t size>
using Book = std::map<std::array<int, size>, Code>;

// The codewords of magnitudes that a table decodes, found by walking through all bit patterns; an
// empty book when they do not fill the patterns without gap and overlap.
Book<2> pairBook(int table);
Book<4> quadBook(int table);

struct Granule {
    ZetStatus status = zetStsOk;
    std::array<Zet32s, 576> lines{};
    int bound = 0;
};
// Decodes a granule whose regions of big values end at the given lines.
Granule decodeGranule(BitSource in, const std::array<int, 3>& ends, const int* tables,
                      int count1Table, int hufSize);

}  // namespace zetac::test
