// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "aac/bit_stream.h"

namespace zetac::aac {

// ics_info() with Main-profile prediction (ISO/IEC 13818-7, 8.3). predSfbMax is the prediction band
// limit of the sampling rate.
ZetStatus readIcsInfo(BitReader& stream, ZetAACIcsInfo& ics, int predSfbMax);

// ics_info() of ISO/IEC 14496-3, 4.4.2.1: Main prediction for audio object type 1, long-term
// prediction for the others; the data of one channel, or of two where the window is common.
ZetStatus readIcsInfoMp4(BitReader& stream, ZetAACIcsInfo& ics, int predSfbMax, int audioObjectType,
                         ZetAACLtpInfo* ltp, int numLtpChannels);

// Derives the window groups of an eight-short frame from scale_factor_grouping; returns their
// number.
int deriveWindowGroups(Zet32s scaleFactorGrouping, Zet32s* groupLength);

// max_sfb and the window groups of an eight-short frame, into either record that has them.
template <class Record>
void readShortWindows(BitReader& stream, Record& record) {
    record.max_sfb = ownsGetBits_AAC(stream, 4);
    record.scale_factor_grouping = ownsGetBits_AAC(stream, 7);
    record.num_window_groups =
        deriveWindowGroups(record.scale_factor_grouping, record.window_group_length);
}

}  // namespace zetac::aac
