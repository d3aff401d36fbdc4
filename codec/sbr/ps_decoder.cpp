// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/ps_decoder.h"

#include <algorithm>
#include <cstring>

namespace zetac::codec {

void PsDecoder::decode(const PsFrame& frame, const LowBand& low, const OutputBand& high,
                       const SbrSplit& split) {
    listen(frame.is34, low, high, split);
    mixer_.mix(frame, columns_, left_, right_);
    joinParts(is34_, left_);
    joinParts(is34_, right_);
}

void PsDecoder::listen(bool is34, const LowBand& low, const OutputBand& high,
                       const SbrSplit& split) {
    const int end = std::max({kLowBands, split.before.end, split.now.end});
    const int columns = PsBands::paddedTo4(std::max(end, end_));
    if (is34 != is34_) forgetHistory();
    if (columns < columns_) right_ = {};
    is34_ = is34;
    columns_ = columns;
    end_ = end;
    join(low, high, split);
    analysis_.split(low, is34_, left_.hybrid);
    decorrelator_.decorrelate(bands(), columns_, left_, right_);
    keepHistory();
}

void PsDecoder::join(const LowBand& low, const OutputBand& high, const SbrSplit& split) {
    for (int i = 0; i < kSbrSlots; ++i) {
        const auto [kx, end] = split.at(i);
        const int row = i + kPsLongDelay;
        const auto joinPart = [kx = kx, end = end](const float* from, const float* above,
                                                   float* to) {
            std::copy_n(from, kx, to);
            std::copy(above + kx, above + end, to + kx);
            std::fill(to + end, to + kQmfBands, 0.F);
        };
        joinPart(low.re[i + kSbrDelay], high.re[i], left_.whole.re[row]);
        joinPart(low.im[i + kSbrDelay], high.im[i], left_.whole.im[row]);
    }
}

void PsDecoder::keepHistory() {
    PsWholeBand& whole = left_.whole;
    PsHybridBand& hybrid = left_.hybrid;
    std::memcpy(whole.re, whole.re + kSbrSlots, kPsLongDelay * sizeof *whole.re);
    std::memcpy(whole.im, whole.im + kSbrSlots, kPsLongDelay * sizeof *whole.im);
    std::memcpy(hybrid.re, hybrid.re + kSbrSlots, kPsAllPassDelay * sizeof *hybrid.re);
    std::memcpy(hybrid.im, hybrid.im + kSbrSlots, kPsAllPassDelay * sizeof *hybrid.im);
}

/** The parts of another configuration have no history. */
void PsDecoder::forgetHistory() {
    decorrelator_.reset();
    left_ = {};
    right_ = {};
}

}  // namespace zetac::codec
