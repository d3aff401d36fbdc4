// The samples of a frame, of any type, interleaved or in planes.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <vector>

#include "base/pcm.h"

namespace zetac::codec {

struct PcmFormat {
    SampleFormat samples = SampleFormat::kS16;
    bool isPlanar = false;
};

class PcmOutput {
  public:
    explicit PcmOutput(const PcmFormat& format) : format_(format) {}

    /** Makes room for frames up to this size. */
    void reserve(int channels, int samples);
    /** Begins a frame. */
    void begin(int channels, int samples) {
        channels_ = channels;
        samples_ = samples;
    }

    /** Where a channel is put together; interleave() brings it to where it belongs. */
    PcmPlane plane(int channel);
    void interleave();

    template <class Sample>
    Sample* planeAs(int channel) {
        return reinterpret_cast<Sample*>(planes()) + channel * samples_;
    }

    /** Where the first sample of a channel belongs; the next ones are stride() apart. */
    template <class Sample>
    Sample* place(int channel) {
        return reinterpret_cast<Sample*>(result()) + channel * (format_.isPlanar ? samples_ : 1);
    }
    int stride() const { return format_.isPlanar ? 1 : channels_; }

    const PcmFormat& format() const { return format_; }
    int channels() const { return channels_; }
    int samples() const { return samples_; }
    /** The samples of a channel, or all of them where they are interleaved. */
    const void* data(int channel) const;

    /** Bytes of memory behind this object. */
    size_t allocatedBytes() const { return memory_.size() * sizeof(Block); }

  private:
    struct alignas(64) Block {
        Zet8u bytes[64];
    };

    size_t sampleBytes() const { return format_.samples == SampleFormat::kS16 ? 2 : 4; }
    size_t planeBytes() const { return static_cast<size_t>(samples_) * sampleBytes(); }
    bool isInPlace() const { return format_.isPlanar || channels_ == 1; }
    Zet8u* planes() { return memory_.front().bytes; }
    Zet8u* result() { return memory_[isInPlace() ? 0 : resultAt_].bytes; }
    template <class Sample>
    const Sample** planesOf(const Sample* (&planes)[8]);

    PcmFormat format_;
    int channels_ = 0;
    int samples_ = 0;
    std::vector<Block> memory_;  // planes and, behind them, interleaved samples
    size_t resultAt_ = 0;        // in blocks
};

}  // namespace zetac::codec
