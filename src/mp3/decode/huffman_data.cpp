// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/decode/huffman_data.h"

#include <algorithm>

#include "mp3/decode/huffman_reader.h"
#include "tables/mp3/huffman_decoder.h"

namespace zetac::mp3 {
namespace {

using tables::PairEntry;
using Word = HuffmanReader::Word;

// Where the last quadruple may start, so that it still ends within the granule.
constexpr int kLastQuadStart = ZETAC_MP3_GRANULE_LEN - 4;

// The longest codewords with their signs, without linbits: tables 1 to 12, and all.
constexpr uint32_t kSmallPairBits = 13;
constexpr uint32_t kPairBits = 21;

// Negative when the top bit of signs is set.
inline Zet32s withSign(Zet32s magnitude, Word signs) {
    const auto mask = static_cast<Zet32s>(static_cast<std::make_signed_t<Word>>(signs) >>
                                          (HuffmanReader::kWordBits - 1));
    return (magnitude ^ mask) - mask;
}

inline PairEntry lookUp(const HuffmanReader& reader, const uint32_t* book) {
    constexpr uint32_t kBits = tables::kPairLookupBits;
    const PairEntry entry{book[reader.peek(kBits)]};
    if (!entry.isLink()) [[likely]]
        return entry;
    const Word index = reader.behind(kBits) >> (HuffmanReader::kWordBits - entry.linkBits());
    return {book[entry.linkPlace() + index]};
}

// A value behind its codeword: linbits, then the sign.
inline Zet32s readEscapedValue(HuffmanReader& reader, Zet32s magnitude, uint32_t linbits) {
    constexpr Zet32s kEscaped = 15;
    reader.refill();
    if (magnitude == kEscaped) magnitude += static_cast<Zet32s>(reader.get(linbits));
    if (magnitude == 0) return 0;
    const Zet32s value = withSign(magnitude, reader.upcoming());
    reader.skip(1);
    return value;
}

template <bool hasLinbits>
inline void readPair(HuffmanReader& reader, const uint32_t* book, uint32_t linbits, Zet32s* line) {
    const PairEntry entry = lookUp(reader, book);
    if constexpr (hasLinbits) {
        if (entry.isEscaped()) [[unlikely]] {
            reader.skip(entry.codeBits());
            line[0] = readEscapedValue(reader, entry.x(), linbits);
            line[1] = readEscapedValue(reader, entry.y(), linbits);
            reader.refill();
            return;
        }
    }
    const Word signs = reader.behind(entry.codeBits());
    reader.skip(entry.totalBits());
    line[0] = withSign(entry.x(), signs);
    line[1] = withSign(entry.y(), signs << entry.hasX());
}

// Fills the lines [line, end); a pair has maxBits at most, linbits apart. Not inlined, since the
// loops of the three forms in one function take a third longer: they are short of registers.
template <bool hasLinbits, uint32_t maxBits>
[[gnu::noinline]] void readPairs(HuffmanReader& reader, const uint32_t* book, uint32_t linbits,
                                 Zet32s* line, Zet32s* end) {
    constexpr int kPairsPerRefill = HuffmanReader::kHeldBits / maxBits;
    static_assert(kPairsPerRefill >= 1);
    HuffmanReader local = reader;
    while (end - line >= 2 * kPairsPerRefill) {
        local.refill();
        for (int i = 0; i < kPairsPerRefill; ++i, line += 2)
            readPair<hasLinbits>(local, book, linbits, line);
    }
    for (; line != end; line += 2) {
        local.refill();
        readPair<hasLinbits>(local, book, linbits, line);
    }
    reader = local;
}

void _sHuffmanGetPairs_MP3(HuffmanReader& reader, int tableSelect, Zet32s* line, Zet32s* end) {
    const uint32_t* book = tables::kPairLookup[tableSelect];
    if (!book) {
        std::fill(line, end, 0);
    } else if (tableSelect < kFirstBigTable) {
        readPairs<false, kSmallPairBits>(reader, book, 0, line, end);
    } else if (const int linbits = linbitsOf(tableSelect); linbits == 0) {
        readPairs<false, kPairBits>(reader, book, 0, line, end);
    } else {
        readPairs<true, kPairBits>(reader, book, static_cast<uint32_t>(linbits), line, end);
    }
}

// Reads quadruples from `line` on until numBits are consumed or the lines are full, and returns the
// line behind the last one that the bits suffice for.
int _sHuffmanGetQuads_MP3(HuffmanReader& reader, int tableSelect, int numBits, Zet32s* lines,
                          int line) {
    const uint16_t* book = tables::kQuadLookup[tableSelect];
    const auto bookBits = static_cast<uint32_t>(tables::kQuadLookupBits[tableSelect]);
    HuffmanReader local = reader;
    int remaining = numBits - local.consumed();
    while (line <= kLastQuadStart && remaining > 0) {
        local.refill();
        const uint32_t entry = book[local.peek(bookBits)];
        const uint32_t length = entry & 63;
        local.skip(length);
        remaining -= static_cast<int>(length);
        for (int i = 0; i < 4; ++i)
            lines[line + i] = static_cast<Zet32s>(entry << (16 + 2 * i)) >> 30;
        line += 4;
    }
    return remaining < 0 ? line - 4 : line;
}

int findBound(const Zet32s* lines, int line) {
    while (line > 0 && lines[line - 1] == 0) --line;
    return line;
}

}  // namespace

ZetStatus readHuffmanData(const Zet8u* byte, int offset, int hufSize,
                          const BigValueRegions& regions, const ZetMP3GranuleSideInfo& info,
                          Zet32s* lines, int& nonZeroBound) {
    HuffmanReader::Tail tail;
    HuffmanReader reader(byte, offset, hufSize, tail);
    int line = 0;
    for (int region = 0; region < kRegions; ++region) {
        const int end = regions.end[region];
        if (end > line)
            _sHuffmanGetPairs_MP3(reader, info.table_select[region], lines + line, lines + end);
        line = end;
    }
    if (reader.consumed() > hufSize) return zetStsOutOfRange;
    line = _sHuffmanGetQuads_MP3(reader, info.count1table_select, hufSize, lines, line);
    std::fill(lines + line, lines + ZETAC_MP3_GRANULE_LEN, 0);
    nonZeroBound = findBound(lines, line);
    return zetStsOk;
}

}  // namespace zetac::mp3
