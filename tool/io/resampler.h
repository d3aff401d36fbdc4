// Sampling-rate conversion by libsoxr, in builds that have it.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <memory>
#include <vector>

namespace zetac::tool {

class Resampler {
  public:
    /** Throws Failure in builds without libsoxr. */
    Resampler(int from, int to, int channels);
    ~Resampler();
    Resampler(const Resampler&) = delete;
    Resampler(Resampler&&) = delete;
    Resampler& operator=(const Resampler&) = delete;
    Resampler& operator=(Resampler&&) = delete;

    /** Takes samples, interleaved, and gives those that can be made of all so far; at the end, the
     *  rest. Input and output begin at the same time. */
    std::vector<float> process(const std::vector<float>& samples, bool isEnd);

  private:
    struct Soxr;
    std::unique_ptr<Soxr> soxr_;
};

}  // namespace zetac::tool
