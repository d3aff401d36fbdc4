// The containers of AAC: they find the raw data blocks in a file that lies in memory.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "base/bits.h"
#include "base/crc.h"
#include "base/fault.h"
#include "container/raw_block.h"

namespace zetac::codec {

/** Yields the blocks of a stream: call next(), decode the block, tell with finish() how far it
 *  reached, and so on. Blocks lie behind one another without any length in ADIF files and in ADTS
 *  frames of several blocks, so the next one can only be found from what the last one used. */
class BlockStream {
  public:
    BlockStream() = default;
    BlockStream(const BlockStream&) = delete;
    BlockStream(BlockStream&&) = delete;
    BlockStream& operator=(const BlockStream&) = delete;
    BlockStream& operator=(BlockStream&&) = delete;
    virtual ~BlockStream() = default;

    virtual bool next(RawBlock& block) = 0;

    /** @param bytesUsed  bytes of the last block
     *  @param isGood     whether it was decoded without a fault */
    virtual void finish(size_t bytesUsed, bool isGood) = 0;

    /** "ADTS" or "ADIF". */
    virtual const char* name() const = 0;

    /** Bytes before the last block, or after the last one of all, that belong to no frame and to no
     *  known tag. */
    size_t skippedBytes() const { return skipped_; }
    /** Where they stand. */
    size_t skippedPosition() const { return skippedAt_; }

    /** Position of the first frame that is beyond doubt. */
    size_t start() const { return start_; }

  protected:
    void skip(size_t from, size_t to) {
        skipped_ = to > from ? to - from : 0;
        skippedAt_ = from;
    }
    size_t start_ = 0;

  private:
    size_t skipped_ = 0;
    size_t skippedAt_ = 0;
};

/** ADTS frames (ISO/IEC 13818-7, 6.2), with ID3, APE or foreign bytes in between. */
class AdtsStream : public BlockStream {
  public:
    /** Nothing when the data hold no ADTS frame.
     *  @param data  with kReadAhead readable bytes behind it */
    static std::unique_ptr<AdtsStream> open(std::span<const Zet8u> data);

    bool next(RawBlock& block) override;
    void finish(size_t bytesUsed, bool isGood) override;
    const char* name() const override { return "ADTS"; }

  private:
    explicit AdtsStream(std::span<const Zet8u> data) : data_(data) {}

    std::optional<ZetAACADTSHeader> headerAt(size_t position) const;
    bool isConfirmed(size_t position, const ZetAACADTSHeader& header) const;
    bool isLikeLast(size_t position) const;
    bool isBoundary(size_t position) const;
    bool seek();
    void beginFrame();
    void readBlockPositions();
    size_t blockEnd() const;
    void finishFrame(size_t bytesUsed, bool isGood);

    std::span<const Zet8u> data_;
    size_t position_ = 0;    // where the next frame is looked for
    size_t undamaged_ = 0;   // bytes before it are accounted for
    size_t lockedAt_ = 0;    // a frame that was believed: others must resemble it
    bool isLocked_ = false;  // lockedAt_ counts

    ZetAACADTSHeader header_{};  // of the current frame
    size_t frame_ = 0;           // its position
    size_t firstBlock_ = 0;      // position of its first block
    size_t block_ = 0;           // position of the current block
    int blocks_ = 0;             // in the frame
    int index_ = 0;              // of the current block
    bool isFrameOpen_ = false;
    Fault frameFault_ = Fault::kNone;
    size_t blockOffsets_[4] = {};  // from firstBlock_; protected frames of several blocks only
    Crc16 headerCrc_;
};

/** An ADIF file (ISO/IEC 13818-7, 6.2): one header and raw data blocks to the end. Behind a damaged
 *  block nothing can be found any more. */
class AdifStream : public BlockStream {
  public:
    /** Nothing when the data do not start with an ADIF header.
     *  @param data  with kReadAhead readable bytes behind it */
    static std::unique_ptr<AdifStream> open(std::span<const Zet8u> data);

    bool next(RawBlock& block) override;
    void finish(size_t bytesUsed, bool isGood) override;
    const char* name() const override { return "ADIF"; }

    const ZetAACADIFHeader& header() const { return header_; }
    const ZetAACPrgCfgElt& programConfig() const { return programConfigs_.front(); }

  private:
    explicit AdifStream(std::span<const Zet8u> data) : data_(data) {}

    std::span<const Zet8u> data_;
    size_t position_ = 0;
    size_t lost_ = 0;  // where a damaged block ended the stream, if that happened
    ZetAACADIFHeader header_{};
    std::vector<ZetAACPrgCfgElt> programConfigs_;
};

/** The stream in these bytes, or nothing when they are not AAC.
 *  @param data  with kReadAhead readable bytes behind it; must outlive the stream */
std::unique_ptr<BlockStream> openStream(std::span<const Zet8u> data);

}  // namespace zetac::codec
