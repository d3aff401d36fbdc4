// Codes the quantised lines of one granule of one channel (ISO/IEC 11172-3, 2.4.1.7, 2.4.2.7):
// big values, count1, stuffing.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "core/checks.h"
#include "mp3/syntax/bands.h"
#include "mp3/syntax/fields.h"
#include "tables/mp3/huffman_encoder.h"

namespace zetac::mp3 {
namespace {

constexpr uint32_t kEscaped = 15;

constexpr uint32_t magnitude(Zet32s value) {
    return value < 0 ? 0U - static_cast<uint32_t>(value) : static_cast<uint32_t>(value);
}
constexpr uint32_t signBit(Zet32s value) {
    return static_cast<uint32_t>(value) >> 31;
}

// linbits and sign of a value behind its codeword.
inline void writeEscapable(core::BitWriter& stream, Zet32s value, int linbits) {
    const uint32_t size = magnitude(value);
    if (size >= kEscaped) stream.put((size - kEscaped) & ((1U << linbits) - 1), linbits);
    if (size != 0) stream.put(signBit(value), 1);
}

template <bool hasLinbits>
inline void writePair(core::BitWriter& stream, const tables::PairEncoder& table, int linbits,
                      const Zet32s* pair) {
    const auto largest = static_cast<uint32_t>(table.radix - 1);
    const uint32_t x = magnitude(pair[0]);
    const uint32_t y = magnitude(pair[1]);
    const auto [length, codeword] =
        table.codes[std::min(x, largest) * (largest + 1) + std::min(y, largest)];
    if (hasLinbits && std::max(x, y) >= kEscaped) {
        stream.put(codeword, length);
        writeEscapable(stream, pair[0], linbits);
        writeEscapable(stream, pair[1], linbits);
        return;
    }
    // Codeword and signs together are 21 bits at most.
    const int hasX = x != 0;
    const int hasY = y != 0;
    const uint32_t signs = (hasX ? signBit(pair[0]) << hasY : 0) | (hasY ? signBit(pair[1]) : 0);
    stream.put(codeword << (hasX + hasY) | signs, length + hasX + hasY);
}

void ownHuffmanEncodePairs_MP3(core::BitWriter& stream, int tableSelect, const Zet32s* line,
                               const Zet32s* end) {
    const tables::PairEncoder table = tables::kPairEncoder[tableSelect];
    const int linbits = linbitsOf(tableSelect);
    if (!table.codes) return;
    core::BitWriter local = stream;
    if (linbits)
        for (; line != end; line += 2) writePair<true>(local, table, linbits, line);
    else
        for (; line != end; line += 2) writePair<false>(local, table, 0, line);
    stream = local;
}

void ownHuffmanEncodeQuads_MP3(core::BitWriter& stream, int tableSelect, const Zet32s* line,
                               const Zet32s* end) {
    const tables::HuffmanCode* book = tables::kQuadEncoder[tableSelect];
    for (; line < end; line += 4) {
        uint32_t index = 0, signs = 0;
        int count = 0;
        for (int i = 0; i < 4; ++i) {
            const bool isSet = line[i] != 0;
            index = index << 1 | isSet;
            if (!isSet) continue;
            signs = signs << 1 | signBit(line[i]);
            ++count;
        }
        stream.put(book[index].codeword << count | signs, book[index].length + count);
    }
}

void ownPutStuffingBits(core::BitWriter& stream, int count) {
    for (; count > 0; count -= 31) ownSetBits(stream, -1, std::min(count, 31));
}

struct Regions {
    int count;
    int end[kRegions];
};

// Regions 0 and 1 end with the bands that the counts name. With window switching there are two, and
// region 0 ends with a band that at all MPEG-1 rates ends at the same line.
Regions findRegions(const ZetMP3Header& header, const ZetMP3GranuleSideInfo& info) {
    const Zet16s* bands = longBandsOf(header);
    const int end = 2 * info.big_values;
    if (info.window_switching_flag != 0 && typeOf(info) != BlockType::kNormal)
        return {2, {std::min<int>(bands[kSwitchedRegion0Bands], end), end}};
    const int band1 = info.region0_count + 1;
    const int band2 = band1 + info.region1_count + 1;
    return {3, {std::min<int>(bands[band1], end), std::min<int>(bands[band2], end), end}};
}

// A decoder starts no quadruple at line 573 or later.
int count1End(int start, int count1Len) {
    constexpr int kQuadStarts = 573;
    return std::clamp(count1Len, 0, std::max(kQuadStarts - start, 0)) + start;
}

ZetStatus writeLines(core::BitWriter& stream, const ZetMP3Header& header,
                     const ZetMP3GranuleSideInfo& info, const Zet32s* lines, int count1Len,
                     int hufSize) {
    const int begin = stream.position();
    const Regions regions = findRegions(header, info);
    int line = 0;
    for (int region = 0; region < regions.count; ++region) {
        const int end = regions.end[region];
        ZETAC_REQUIRE(core::inRange(info.table_select[region], 0, 31), zetStsBadSideInfo);
        ownHuffmanEncodePairs_MP3(stream, info.table_select[region], lines + line, lines + end);
        line = end;
    }
    ownHuffmanEncodeQuads_MP3(stream, info.count1table_select, lines + line,
                              lines + count1End(line, count1Len));
    ownPutStuffingBits(stream, hufSize - (stream.position() - begin));
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsHuffmanEncode_MP3_32s1u(const Zet32s* pSrcIx, Zet8u** ppBitStream, int* pOffset,
                                      const ZetMP3Header* pFrameHeader,
                                      const ZetMP3GranuleSideInfo* pSideInfo, int count1Len,
                                      int hufSize) {
    ZETAC_REQUIRE(
        core::isSet(ppBitStream) && core::allSet(pSrcIx, pOffset, pFrameHeader, pSideInfo),
        zetStsNullPointer);
    const ZetMP3Header& header = *pFrameHeader;
    const ZetMP3GranuleSideInfo& info = *pSideInfo;
    ZETAC_REQUIRE(core::isBitOffset(pOffset), zetStsBadArg);
    ZETAC_REQUIRE(core::inRange(info.big_values, 0, ZETAC_MP3_GRANULE_LEN / 2), zetStsBadSideInfo);
    ZETAC_REQUIRE(mp3::hasRegionCounts(info), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(info.count1table_select, 0, 1), zetStsBadSideInfo);
    ZETAC_REQUIRE(header.ID == 1, zetStsBadFrameHeader);
    ZETAC_REQUIRE(header.layer == 1, zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(header.sampling_frequency, 0, 2), zetStsBadFrameHeader);
    core::BitWriter stream(ppBitStream, pOffset, core::BitWriter::Behind::kJoined);
    const ZetStatus status = mp3::writeLines(stream, header, info, pSrcIx, count1Len, hufSize);
    stream.store(ppBitStream, pOffset);
    return status;
}
