// ADTS frames (ISO/IEC 13818-7, 6.2).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <optional>

#include "container/block_frames.h"

namespace zetac::codec {

class AdtsFrames : public BlockFrames {
  public:
    Answer isFrame(View view, bool isDue, const TagScanner& tags) const override;
    size_t open(View view) override;
    RawBlock next(View view, uint64_t position) override;
    bool finish(size_t bytesUsed, bool isGood) override;
    Answer isHeader(View view) const override;
    size_t behind() const override;

  private:
    void readBlockPositions(View view);
    size_t blockEnd(View view) const;

    Zet8u last_[4] = {};  // of the frame that others must resemble; zeros: of none

    // The open frame; places count from its start.
    ZetAACADTSHeader header_{};
    size_t firstBlock_ = 0;
    size_t block_ = 0;
    int blocks_ = 0;
    int index_ = 0;  // of the current block
    bool isGood_ = true;
    Fault fault_;
    size_t blockOffsets_[4] = {};  // from firstBlock_; protected frames of several blocks only
    Crc16 headerCrc_;
};

}  // namespace zetac::codec
