// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/decoder.h"

#include <algorithm>

namespace zetac::codec {

SbrDecoder::SbrDecoder(bool isPair, int sampleRate, const SbrBankOptions& options)
    : parser_(isPair, sampleRate), high_{}, output_{} {
    for (int i = 0; i < parser_.channels(); ++i) channels_[i].banks = SbrBanks::make(options);
}

size_t SbrDecoder::stateBytes() const {
    size_t bytes = sizeof *this;
    for (int i = 0; i < parser_.channels(); ++i) bytes += channels_[i].banks->bytes();
    return bytes;
}

void SbrDecoder::decode(int channel, const Zet32s* core, const PcmPlane& pcm) {
    ChannelState& state = channels_[channel];
    const SbrFrequencyTables& tables = parser_.tables();
    SbrSplit split{state.overhang, state.range, {}};
    if (parser_.isActive()) split.now = {tables.kx(), tables.high.end()};
    state.banks->analyse(core, split.now.kx);
    takeOverhang(state, output_);
    state.range = split.now;
    state.overhang = 0;
    if (parser_.isActive()) {
        makeHighBand(state, parser_.channel(channel), split.slot);
    } else {
        state.generator = {};
        state.adjuster = {};
    }
    state.banks->synthesise(output_, split, pcm);
}

/** @param first  slot before which the last frame's envelopes reach */
void SbrDecoder::makeHighBand(ChannelState& state, const SbrChannel& channel, int first) {
    const SbrFrequencyTables& tables = parser_.tables();
    const auto [lowest, highest] = tables.sources();
    LowPrediction prediction = {};
    const uint32_t predicted = state.generator.begin(tables, channel);
    if (predicted != 0) state.banks->predict(predicted, prediction);
    const LowBand& low = state.banks->low(lowest, highest);
    state.generator.generate(low, prediction, tables, channel, high_);
    // Where the envelopes of two frames do not meet, nothing is heard.
    for (int slot = first; slot < 2 * channel.grid.border[0]; ++slot) {
        std::fill_n(output_.re[slot] + tables.kx(), tables.count(), 0.F);
        std::fill_n(output_.im[slot] + tables.kx(), tables.count(), 0.F);
    }
    state.adjuster.adjust(parser_.header(), tables, channel, parser_.isReset(), high_, first,
                          output_);
    state.overhang = 2 * channel.grid.end() - kSbrSlots;
    keepOverhang(output_, state);
}

void SbrDecoder::takeOverhang(const ChannelState& state, OutputBand& output) {
    const auto [kx, end] = state.range;
    for (int i = 0; i < state.overhang; ++i) {
        std::copy_n(state.re[i], end - kx, output.re[i] + kx);
        std::copy_n(state.im[i], end - kx, output.im[i] + kx);
    }
}

void SbrDecoder::keepOverhang(const OutputBand& output, ChannelState& state) {
    const auto [kx, end] = state.range;
    for (int i = 0; i < state.overhang; ++i) {
        std::copy_n(output.re[kSbrSlots + i] + kx, end - kx, state.re[i]);
        std::copy_n(output.im[kSbrSlots + i] + kx, end - kx, state.im[i]);
    }
}

}  // namespace zetac::codec
