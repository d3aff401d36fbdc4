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
    size_t bytes = sizeof *this + (ps_ ? sizeof *ps_ : 0);
    for (int i = 0; i < parser_.channels(); ++i) bytes += channels_[i].banks->bytes();
    return bytes;
}

void SbrDecoder::decode(int channel, const Zet32s* core, const PcmPlane& pcm) {
    const SbrSplit split = makeBands(channel, core);
    channels_[channel].banks->synthesise(output_, split, pcm);
}

void SbrDecoder::beginStereo(bool isFirst) {
    ps_ = std::make_unique<PsDecoder>();
    channels_[0].banks->addSide();
    isMono_ = !isFirst;
}

void SbrDecoder::decodeStereo(const Zet32s* core, const PcmPlane& left, const PcmPlane& right) {
    SbrBanks& banks = *channels_[0].banks;
    const PsFrame& frame = parser_.parametricStereo();
    const SbrSplit split = makeBands(0, core);
    const LowBand& low = banks.low(0, kLowBands);
    if (isMono_) {
        ps_->listen(frame.is34, low, output_, split);
        banks.synthesise(ps_->left(), 1, right);
        banks.synthesise(ps_->left(), 0, left);
        banks.write(right);
    } else {
        ps_->decode(frame, low, output_, split);
        banks.synthesise(ps_->left(), 0, left);
        banks.synthesise(ps_->right(), 1, right);
    }
    isMono_ = false;
}

/** The subbands of a frame: the low band in the bank, the high band in the output. */
SbrSplit SbrDecoder::makeBands(int channel, const Zet32s* core) {
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
    return split;
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
                          firstSlot_, output_);
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
