// The scale factor bands of Layer III (ISO/IEC 11172-3, 2.4.2.7 and Table B.8; 13818-3, Annex B).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "mp3/syntax/syntax.h"
#include "tables/mp3/bands.h"

namespace zetac::mp3 {

inline constexpr int kLongBands = tables::kMP3SfbLongEntries - 1;
inline constexpr int kShortBands = tables::kMP3SfbShortEntries - 1;

// The uppermost band of either kind has no scale factor.
inline constexpr int kCodedLongBands = kLongBands - 1;
inline constexpr int kCodedShortBands = kShortBands - 1;

// MPEG-1: the bands whose scale factors have slen2 bits instead of slen1.
inline constexpr int kFirstUpperLongBand = 11;
inline constexpr int kFirstUpperShortBand = 6;

// MPEG-1: the groups of long bands that scfsi tells of, half of them with slen1.
inline constexpr int kScfsiGroups = 4;
inline constexpr int kScfsiGroupStart[kScfsiGroups + 1] = {0, 6, 11, 16, kCodedLongBands};
constexpr int scfsiGroupSize(int group) {
    return kScfsiGroupStart[group + 1] - kScfsiGroupStart[group];
}

// Mixed blocks are long up to here, in two subbands.
inline constexpr int kMixedLongLines = 36;

// So many long bands stand in front of the short ones.
constexpr int numLongBands(BlockKind kind, bool mpeg1) {
    if (kind == kMixedBlock) return mpeg1 ? 8 : 6;
    return kind == kLongBlock ? kLongBands : 0;
}
// The short bands begin with this one; kShortBands where there are none.
constexpr int firstShortBand(BlockKind kind) {
    if (kind == kMixedBlock) return 3;
    return kind == kLongBlock ? kShortBands : 0;
}

// With window switching region 0 has so many long bands, or in pure short blocks so many short
// ones.
inline constexpr int kSwitchedRegion0Bands = 8;
inline constexpr int kSwitchedRegion0ShortBands = 3;

// The row of the band tables.
constexpr int bandRow(const ZetMP3Header& header) {
    return header.ID * 3 + header.sampling_frequency;
}
constexpr const Zet16s* longBandsOf(const ZetMP3Header& header,
                                    const Zet16s* table = tables::_zet_pMP3SfbTableLong) {
    return table + bandRow(header) * tables::kMP3SfbLongEntries;
}
constexpr const Zet16s* shortBandsOf(const ZetMP3Header& header,
                                     const Zet16s* table = tables::_zet_pMP3SfbTableShort) {
    return table + bandRow(header) * tables::kMP3SfbShortEntries;
}

// Whether the region counts of a granule without window switching lead to a long band.
constexpr bool hasRegionCounts(const ZetMP3GranuleSideInfo& info) {
    constexpr int kMost = kLongBands - 2;
    return info.region0_count >= 0 && info.region0_count <= kMost && info.region1_count >= 0 &&
           info.region1_count <= kMost - info.region0_count;
}

}  // namespace zetac::mp3
