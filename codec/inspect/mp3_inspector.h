// What is in an MPEG audio stream.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <span>

#include "inspect/summary.h"
#include "mp3/decoder.h"

namespace zetac::codec {

class Mp3Inspector {
  public:
    /** Takes note of a frame that has been decoded, with or without a fault. */
    void add(const Mp3Frame& frame, const Mp3DecodedFrame& decoded, const Mp3Decoder& decoder);

    /** @param data  of the stream, for its tags */
    StreamSummary summary(const Mp3Stream& stream, std::span<const Zet8u> data) const;

  private:
    std::string bitRateMode() const;

    Mp3Format format_;
    uint64_t frames_ = 0;
    uint64_t bytes_ = 0;
    int lowestRate_ = 0;  // bit/s; 0 in free format
    int highestRate_ = 0;
    int channels_ = 0;    // of the first frame
    unsigned modes_ = 0;  // bit per mode
    unsigned tools_ = 0;
    bool isProtected_ = false;
};

}  // namespace zetac::codec
