// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <cstring>

#include "aac/individual_channel_stream.h"

namespace zetac::aac {
namespace {

// sect_len: increments up to and with the first that is not the escape value. A length that passes
// max_sfb is an error however it goes on, so it may stop there.
int readSectionLength(BitReader& stream, const BandLayout& layout) {
    const int bits = layout.isShort ? 3 : 5;
    const int escape = (1 << bits) - 1;
    int length = 0;
    while (length <= layout.maxSfb) {
        const int increment = ownsGetBits_AAC(stream, bits);
        length += increment;
        if (increment != escape) break;
    }
    return length;
}

}  // namespace

// Sections of length 0 are legal syntax without an end; the room for sections bounds them.
ZetStatus ownsDecodeSectData_AAC(BitReader& stream, const BandLayout& layout, ZetAACChanInfo& info,
                                 Zet8u* sfbCb) {
    int section = 0;
    for (int g = 0; g < layout.numGroups; ++g, sfbCb += layout.maxSfb) {
        info.num_sec[g] = 0;
        int k = 0;
        while (k < layout.maxSfb) {
            if (section == ZETAC_AAC_GROUP_BANDS_MAX) return zetStsAacSectDataErr;
            const auto sectCb = static_cast<Zet8u>(ownsGetBits_AAC(stream, 4));
            const int end = k + readSectionLength(stream, layout);
            std::memset(sfbCb + k, sectCb, static_cast<size_t>(std::min(end, layout.maxSfb) - k));
            info.sect_cb[section] = sectCb;
            info.sect_end[section] = static_cast<Zet8u>(end);
            ++section;
            ++info.num_sec[g];
            k = end;
        }
        if (k != layout.maxSfb) return zetStsAacSectDataErr;
    }
    return zetStsOk;
}

}  // namespace zetac::aac
