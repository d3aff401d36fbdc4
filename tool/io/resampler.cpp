// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/resampler.h"

#include <string>

#include "io/failure.h"

#ifdef ZETAC_HAS_SOXR

#include <soxr.h>

namespace zetac::tool {

struct Resampler::Soxr {
    soxr_t handle;
    size_t channels;
};

Resampler::Resampler(int from, int to, int channels) {
    const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
    soxr_error_t error = nullptr;
    soxr_t handle =
        soxr_create(from, to, static_cast<unsigned>(channels), &error, &io, &quality, nullptr);
    if (error) throw Failure(std::string("cannot be resampled: ") + soxr_strerror(error));
    soxr_ = std::make_unique<Soxr>(Soxr{handle, static_cast<size_t>(channels)});
}

Resampler::~Resampler() {
    if (soxr_) soxr_delete(soxr_->handle);
}

size_t Resampler::process(std::span<const float>& input, std::span<float> output) {
    const size_t channels = soxr_->channels;
    size_t taken = 0, made = 0;
    const soxr_error_t error =
        soxr_process(soxr_->handle, input.empty() ? nullptr : input.data(), input.size() / channels,
                     &taken, output.data(), output.size() / channels, &made);
    if (error) throw Failure(std::string("cannot be resampled: ") + soxr_strerror(error));
    input = input.subspan(taken * channels);
    return made;
}

}  // namespace zetac::tool

#else

namespace zetac::tool {

struct Resampler::Soxr {};

Resampler::Resampler(int from, int, int) {
    throw Failure("has a sampling rate of " + std::to_string(from) +
                  " Hz, and this build cannot change it to 32000, 44100 or 48000 Hz");
}

Resampler::~Resampler() = default;

size_t Resampler::process(std::span<const float>&, std::span<float>) {
    return 0;
}

}  // namespace zetac::tool

#endif
