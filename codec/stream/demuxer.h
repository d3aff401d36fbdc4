// Finds out what kind of stream the bytes are, and takes it apart into what the codecs decode.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <optional>

#include "base/window.h"
#include "container/adif.h"
#include "container/adts.h"
#include "container/info_tag.h"
#include "container/loas.h"
#include "container/mpeg_frames.h"
#include "container/tag_scanner.h"

namespace zetac::codec {

enum class Codec { kUnknown, kAac, kMp3 };
enum class Container { kNone, kPackets, kAdts, kAdif, kLoas, kMpeg };

/** Bytes that belong to no frame and to no known tag. */
struct Foreign {
    uint64_t position = 0;
    uint64_t bytes = 0;
};

/** Takes bytes in pieces of any size. Every decision waits for the bytes that it depends on, so
 * what comes out does not depend on the pieces. Blocks of AAC lie behind one another without any
 * length in ADIF streams and in ADTS frames of several blocks: the next one can only be found from
 * what the last one used. */
class Demuxer {
  public:
    enum class Step { kUnit, kNeedInput, kEnd, kNoStream };

    /** Bytes in which the first frame must be found. */
    static constexpr uint64_t kSearchBytes = uint64_t{1} << 20;

    explicit Demuxer(Codec expected = Codec::kUnknown) : expected_(expected) {}

    /** Takes bytes as far as there is room.
     *  @return how many */
    size_t feed(std::span<const Zet8u> bytes) { return window_.feed(bytes); }
    /** No others will come. */
    void finish() { window_.finish(); }

    /** Looks for the next block or frame; done() or postpone() must come before the next call. */
    Step next();
    Container container() const { return container_; }
    bool isAac() const { return container_ != Container::kMpeg; }
    const RawBlock& block() const { return block_; }
    const Mp3Frame& frame() const { return frame_; }
    /** Before the last unit, or after the last one of all. */
    const Foreign& foreign() const { return foreign_; }

    /** @param bytesUsed  of the block
     *  @param isGood     whether it was decoded without a fault */
    void done(size_t bytesUsed, bool isGood);
    /** The block is open and goes on beyond its data. */
    void postpone();

    /** Forgets the input at hand, but not what the stream is. */
    void reset(uint64_t position);

    void expect(Codec codec) { expected_ = codec; }

    /** Takes a packet, of which all bytes are here, in place of the input at hand. */
    View hold(std::span<const Zet8u> packet, uint64_t position);

    const std::optional<Mp3InfoTag>& infoTag() const { return infoTag_; }
    const ZetAACADIFHeader& adifHeader() const { return adif_.fields(); }
    /** A bit for each TagKind that was passed over. */
    unsigned tagKinds() const { return tags_.kinds(); }

  private:
    enum class State { kSearching, kInFrame, kBehindFrame };

    std::optional<Step> search();
    void passTag(View view, const TagPiece& tag);
    Answer isFrame(View view);
    Answer isFirstFrame(View view);
    Answer adopt(Container container, Answer answer);
    std::optional<Step> moveOn(View view);
    bool isCandidate(Zet8u byte) const;
    std::optional<Step> take(View view);
    std::optional<Step> takeOpenBlock(View view);
    std::optional<Step> takeMpegFrame(View view);
    void openFrame(View view);
    bool leaveFrame();
    Step end();
    bool isDue() const { return window_.position() == accountedTo_; }
    void account(uint64_t to);

    Codec expected_;
    Container container_ = Container::kNone;
    State state_ = State::kSearching;
    ByteWindow window_;
    TagScanner tags_;
    uint64_t accountedTo_ = 0;  // bytes before are of frames or tags, or counted as foreign
    Foreign pending_;           // since the last unit
    Foreign foreign_;

    AdtsFrames adts_;
    LoasFrames loas_;
    BlockFrames* frames_ = nullptr;  // either of them
    size_t frameBytes_ = 0;          // of the open frame, as its header has them
    size_t audioBytes_ = 0;          // as many of them as there are
    RawBlock block_;

    AdifHeader adif_;
    bool hasAdifHeader_ = false;
    bool isLost_ = false;  // behind a damaged block of ADIF
    size_t retryAt_ = 0;   // bytes that an open block waits for

    MpegFrames mpeg_;
    bool hasMpegFrame_ = false;
    std::optional<Mp3InfoTag> infoTag_;
    Mp3Frame frame_;
};

}  // namespace zetac::codec
