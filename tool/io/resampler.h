// Sampling-rate conversion by libsoxr, in builds that have it.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <memory>
#include <span>
#include <vector>

namespace zetac::tool {

/** Input and output begin at the same time. Methods throw Failure. */
class Resampler {
  public:
    /** Fails in builds without libsoxr. */
    Resampler(int from, int to, int channels);
    ~Resampler();
    Resampler(const Resampler&) = delete;
    Resampler(Resampler&&) = delete;
    Resampler& operator=(const Resampler&) = delete;
    Resampler& operator=(Resampler&&) = delete;

    /** Takes samples, interleaved, as many as it can, off the front of the input; an empty input is
     *  the end. Fills the output with what can be made of all so far.
     *  @return samples per channel in the output */
    size_t process(std::span<const float>& input, std::span<float> output);

  private:
    struct Soxr;
    std::unique_ptr<Soxr> soxr_;
};

}  // namespace zetac::tool
