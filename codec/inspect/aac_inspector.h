// What is in an AAC stream.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "aac/decoder.h"
#include "container/aac_stream.h"
#include "inspect/summary.h"

namespace zetac::codec {

class AacInspector {
  public:
    /** Takes note of a block that has been decoded, with or without a fault. */
    void add(const RawBlock& block, const DecodedFrame& decoded, AacDecoder& decoder);

    StreamSummary summary(const BlockStream& stream) const;

  private:
    StreamFormat format_;
    std::string layout_;
    int channels_ = 0;
    bool isDoubled_ = false;  // by SBR
    bool isProtected_ = false;
    unsigned tools_ = 0;
    uint64_t blocks_ = 0;
    uint64_t bytes_ = 0;  // of their data
};

}  // namespace zetac::codec
