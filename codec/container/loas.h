// LOAS frames (ISO/IEC 14496-3, 1.7.2): AudioSyncStream() with AudioMuxElement(1).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "container/block_frames.h"
#include "container/latm.h"

namespace zetac::codec {

/** A syncword is short: the first frame must bring a configuration too. */
class LoasFrames : public BlockFrames {
  public:
    Answer isFrame(View view, bool isDue, const TagScanner& tags) const override;
    size_t open(View view) override;
    RawBlock next(View view, uint64_t position) override;
    bool finish(size_t bytesUsed, bool isGood) override;
    Answer isHeader(View view) const override;
    size_t behind() const override;

  private:
    /** Copies the element: it is read while the view may move. */
    void begin(View view);

    LatmReader latm_;
    bool isLocked_ = false;
    bool isGood_ = true;
    bool isFirst_ = true;
    Fault fault_;
    size_t frameBytes_ = 0;
    Zet8u element_[LoasHeader::kElementBytesMax] = {};
};

}  // namespace zetac::codec
