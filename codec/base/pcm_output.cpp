// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "base/pcm_output.h"

namespace zetac::codec {

void PcmOutput::reserve(int channels, int samples) {
    begin(channels, samples);
    const size_t bytes = static_cast<size_t>(channels) * planeBytes();
    resultAt_ = (bytes + sizeof(Block) - 1) / sizeof(Block);
    memory_.resize(isInPlace() ? resultAt_ : 2 * resultAt_);
}

PcmPlane PcmOutput::plane(int channel) {
    Zet8u* first = planes() + static_cast<size_t>(channel) * planeBytes();
    switch (format_.samples) {
        case SampleFormat::kS32:
            return PcmPlane(reinterpret_cast<Zet32s*>(first));
        case SampleFormat::kF32:
            return PcmPlane(reinterpret_cast<Zet32f*>(first));
        default:
            return PcmPlane(reinterpret_cast<Zet16s*>(first));
    }
}

template <class Sample>
const Sample** PcmOutput::planesOf(const Sample* (&planes)[8]) {
    for (int c = 0; c < channels_; ++c) {
        planes[c] = reinterpret_cast<const Sample*>(this->planes()) + c * samples_;
    }
    return planes;
}

void PcmOutput::interleave() {
    if (isInPlace()) return;
    if (format_.samples == SampleFormat::kS16) {
        const Zet16s* planes[8];
        zetsInterleave_16s(planesOf(planes), channels_, samples_, place<Zet16s>(0));
    } else if (format_.samples == SampleFormat::kF32) {
        const Zet32f* planes[8];
        zetsInterleave_32f(planesOf(planes), channels_, samples_, place<Zet32f>(0));
    } else {
        const Zet32s* planes[8];
        planesOf(planes);
        auto* to = place<Zet32s>(0);
        for (int i = 0; i < samples_; ++i) {
            for (int c = 0; c < channels_; ++c) *to++ = planes[c][i];
        }
    }
}

const void* PcmOutput::data(int channel) const {
    if (memory_.empty()) return nullptr;
    const Zet8u* first = memory_[isInPlace() ? 0 : resultAt_].bytes;
    return first + (format_.isPlanar ? static_cast<size_t>(channel) * planeBytes() : 0);
}

}  // namespace zetac::codec
