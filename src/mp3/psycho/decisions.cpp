// What the model decides: block types and the stereo mode (ISO/IEC 11172-3, C.1.5.3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "mp3/psycho/model.h"

namespace zetac::mp3 {
namespace {

constexpr Zet32s kEntropyOfShort = 1000;
constexpr Zet32s kEntropyOfAttack = 800;

bool longAllowed(const uint64_t (*energy)[kPartitionsShort], int count, Zet32s pe) {
    uint64_t totals[kWindows];
    for (int window = 0; window < kWindows; ++window) {
        totals[window] = 0;
        for (int b = 0; b < count; ++b) totals[window] += energy[window][b];
    }
    const auto [lowest, highest] = std::minmax({totals[0], totals[1], totals[2]});
    if (highest > 40 * lowest) return false;
    if (highest > 8 * lowest && pe > kEntropyOfAttack) return false;
    return pe <= kEntropyOfShort;
}

// The new granule's type; the pending granule may have to lead over to it.
BlockType nextType(bool isLong, BlockType& pending) {
    if (isLong) return pending == BlockType::kShort ? BlockType::kStop : BlockType::kNormal;
    if (pending == BlockType::kNormal)
        pending = BlockType::kStart;
    else if (pending == BlockType::kStop)
        pending = BlockType::kShort;
    return BlockType::kShort;
}

}  // namespace

void ownsSwitchBlockType_Psy_MP3(const PsyContext& context, const Zet32s* pe,
                                 ZetMP3GranuleSideInfo* sideInfo) {
    bool isLong = true;  // the channels switch together
    for (int channel = 0; channel < context.channels; ++channel) {
        isLong &=
            longAllowed(context.work.energyShort[channel], context.tables.numShort, pe[channel]);
    }
    for (int channel = 0; channel < context.channels; ++channel) {
        ZetMP3PsyChannelState& state = context.state.channel[channel];
        BlockType pending = typeOf(state);
        state.block_type = static_cast<Zet32s>(nextType(isLong, pending));
        sideInfo[channel].block_type = static_cast<Zet32s>(pending);
        sideInfo[channel].window_switching_flag = pending != BlockType::kNormal;
        sideInfo[channel].mixed_block_flag = 0;
    }
}

int ownsCalStereoMode_Psy_MP3(const Zet32s* const (&pe)[2], const ZetMP3GranuleSideInfo* sideInfo,
                              int granules) {
    int64_t leftRight = 0;
    int64_t midSide = 0;
    for (int granule = 0; granule < granules; ++granule) {
        const ZetMP3GranuleSideInfo* channels = sideInfo + 2 * granule;
        if (channels[0].block_type != channels[1].block_type) return 0;
        leftRight += int64_t{pe[granule][0]} + pe[granule][1];
        midSide += int64_t{pe[granule][2]} + pe[granule][3];
    }
    return leftRight >= midSide ? 1 : 0;
}

}  // namespace zetac::mp3
