// What many stages read out of the header and the side information (ISO/IEC 11172-3, 2.4.2;
// 13818-3, 2.4.2).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::mp3 {

enum class BlockType : Zet32s { kNormal, kStart, kShort, kStop };
enum class Mode : Zet32s { kStereo, kJointStereo, kDualChannel, kSingleChannel };

inline constexpr int kRegions = 3;   // of big values
inline constexpr int kWindows = 3;   // of short blocks
inline constexpr int kGranules = 2;  // MPEG-1

constexpr bool isMpeg1(const ZetMP3Header& header) {
    return header.ID == 1;
}
constexpr bool isMode(const ZetMP3Header& header, Mode mode) {
    return header.mode == static_cast<Zet32s>(mode);
}
constexpr int numChannels(const ZetMP3Header& header) {
    return isMode(header, Mode::kSingleChannel) ? 1 : 2;
}
constexpr int numGranules(const ZetMP3Header& header) {
    return isMpeg1(header) ? kGranules : 1;
}

// The Huffman tables of big values from kFirstBigTable on have magnitudes up to 15, and linbits.
inline constexpr int kFirstBigTable = 13;
inline int linbitsOf(int table_select) {
    return table_select < kFirstBigTable ? 0 : _pHfLinbits[table_select - kFirstBigTable];
}

// Bits of mode_extension.
constexpr bool hasIntensity(const ZetMP3Header& header) {
    return (header.mode_extension & 1) != 0;
}
constexpr bool hasMiddleSide(const ZetMP3Header& header) {
    return (header.mode_extension & 2) != 0;
}

// Of any record that has a block type.
template <class Record>
constexpr BlockType typeOf(const Record& record) {
    return static_cast<BlockType>(record.block_type);
}
template <class Record>
constexpr bool isShort(const Record& record) {
    return typeOf(record) == BlockType::kShort;
}

// How the lines of a granule are divided into bands.
enum BlockKind { kLongBlock, kShortBlock, kMixedBlock, kBlockKinds };

constexpr BlockKind blockKindOf(const ZetMP3GranuleSideInfo& info) {
    if (!isShort(info)) return kLongBlock;
    return (info.mixed_block_flag & 1) != 0 ? kMixedBlock : kShortBlock;
}

}  // namespace zetac::mp3
