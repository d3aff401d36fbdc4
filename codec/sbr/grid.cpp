// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/grid.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace zetac::codec {

Fault SbrGrid::read(SbrBits& bits, SbrGrid& grid) {
    SbrGrid g;
    g.bs_frame_class = bits.number(2);
    const bool isGood = g.bs_frame_class == kFixFix ? g.readFixed(bits) : g.readBorders(bits);
    if (!isGood || !g.isValid()) return SbrFault::kGrid;
    g.noiseFloors = g.envelopes > 1 ? 2 : 1;
    g.noiseBorder = g.border[g.noiseBorderIndex()];
    grid = g;
    return Fault::kNone;
}

bool SbrGrid::readFixed(SbrBits& bits) {
    envelopes = 1 << bits.number(2);
    if (envelopes > 4) return false;
    for (int i = 0; i <= envelopes; ++i) {
        border[i] = static_cast<uint8_t>(i * kSbrTimeSlots / envelopes);
    }
    std::fill_n(bs_freq_res, envelopes, static_cast<uint8_t>(bits.get(1)));
    return true;
}

/** The variable classes: a leading border with borders relative to it, a trailing one likewise. */
bool SbrGrid::readBorders(SbrBits& bits) {
    const bool isLeadVariable = bs_frame_class != kFixVar;
    const bool isTrailVariable = bs_frame_class != kVarFix;
    const int lead = isLeadVariable ? bits.number(2) : 0;                      // bs_var_bord_0
    const int trail = kSbrTimeSlots + (isTrailVariable ? bits.number(2) : 0);  // bs_var_bord_1
    const int fromLead = isLeadVariable ? bits.number(2) : 0;                  // bs_num_rel_0
    const int fromTrail = isTrailVariable ? bits.number(2) : 0;                // bs_num_rel_1
    envelopes = fromLead + fromTrail + 1;
    if (envelopes > kSbrEnvelopesMax) return false;
    const auto distance = [&] { return 2 * bits.number(2) + 2; };
    int at = lead;
    border[0] = static_cast<uint8_t>(lead);
    for (int i = 1; i <= fromLead; ++i) border[i] = static_cast<uint8_t>(at += distance());
    at = trail;
    border[envelopes] = static_cast<uint8_t>(trail);
    for (int i = 1; i <= fromTrail; ++i) {
        at -= distance();
        if (at < 0) return false;
        border[envelopes - i] = static_cast<uint8_t>(at);
    }
    readPointer(bits);
    for (int i = 0; i < envelopes; ++i) {
        const int envelope = bs_frame_class == kFixVar ? envelopes - 1 - i : i;
        bs_freq_res[envelope] = static_cast<uint8_t>(bits.get(1));
    }
    return pointer_ <= envelopes + 1;
}

/** bs_pointer counts envelopes from the end, in frames with a fixed end from the start. */
void SbrGrid::readPointer(SbrBits& bits) {
    pointer_ = bits.number(std::bit_width(static_cast<unsigned>(envelopes)));
    if (bs_frame_class == kVarFix) {
        transient = pointer_ > 1 ? pointer_ - 1 : -1;
    } else {
        transient = pointer_ > 0 ? envelopes + 1 - pointer_ : -1;
    }
}

bool SbrGrid::isValid() const {
    return std::is_sorted(border, border + envelopes + 1, std::less_equal<>());
}

/** The envelope border at which the second noise floor begins. */
int SbrGrid::noiseBorderIndex() const {
    switch (bs_frame_class) {
        case kFixFix:
            return envelopes / 2;
        case kVarFix:
            if (pointer_ == 0) return 1;
            return pointer_ == 1 ? envelopes - 1 : pointer_ - 1;
        default:
            return envelopes - std::max(pointer_ - 1, 1);
    }
}

}  // namespace zetac::codec
