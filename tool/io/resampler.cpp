// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/resampler.h"

#include <string>

#include "io/file_data.h"

#ifdef ZETAC_HAS_SOXR

#include <soxr.h>

namespace zetac::tool {

struct Resampler::Soxr {
    soxr_t handle;
    double ratio;
    size_t channels;
};

Resampler::Resampler(int from, int to, int channels) {
    const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
    soxr_error_t error = nullptr;
    soxr_t handle =
        soxr_create(from, to, static_cast<unsigned>(channels), &error, &io, &quality, nullptr);
    if (error) throw Failure(std::string("cannot be resampled: ") + soxr_strerror(error));
    soxr_ = std::make_unique<Soxr>(
        Soxr{handle, static_cast<double>(to) / from, static_cast<size_t>(channels)});
}

Resampler::~Resampler() {
    if (soxr_) soxr_delete(soxr_->handle);
}

std::vector<float> Resampler::process(const std::vector<float>& samples, bool isEnd) {
    constexpr size_t kRoom = 4096;
    std::vector<float> result;
    const float* source = samples.data();
    size_t left = samples.size() / soxr_->channels;
    for (;;) {
        const size_t room = static_cast<size_t>(static_cast<double>(left) * soxr_->ratio) + kRoom;
        const size_t before = result.size();
        result.resize(before + room * soxr_->channels);
        size_t taken = 0, made = 0;
        const soxr_error_t error = soxr_process(soxr_->handle, left > 0 ? source : nullptr, left,
                                                &taken, &result[before], room, &made);
        if (error) throw Failure(std::string("cannot be resampled: ") + soxr_strerror(error));
        result.resize(before + made * soxr_->channels);
        source += taken * soxr_->channels;
        left -= taken;
        if (left == 0 && (!isEnd || made < room)) return result;
    }
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

std::vector<float> Resampler::process(const std::vector<float>& samples, bool) {
    return samples;
}

}  // namespace zetac::tool

#endif
