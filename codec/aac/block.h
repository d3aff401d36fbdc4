// Parses raw data blocks (ISO/IEC 13818-7, 6.3; 14496-3, 4.4.2.1) into records.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "aac/fault.h"
#include "base/bits.h"
#include "base/layout.h"
#include "container/aac_stream.h"
#include "sbr/bits.h"

namespace zetac::codec {

/** One individual_channel_stream(), as the library's readers leave it. */
struct ChannelData {
    alignas(64) Zet32s lines[ZETAC_AAC_FRAME_LEN];
    Zet32s* spectrum = lines;  // the decoder may swap buffers between channels
    Zet16s scaleFactor[ZETAC_AAC_GROUP_BANDS_MAX];
    Zet8u codebook[ZETAC_AAC_GROUP_BANDS_MAX];
    Zet8s tnsCoef[ZETAC_AAC_TNS_COEFS_MAX];
    ZetAACLtpInfo ltp;
    ZetAACIcsInfo ownIcs;
    ZetAACChanInfo info;  // info.pIcsInfo: ownIcs, or that of the left channel

    const ZetAACIcsInfo& ics() const { return *info.pIcsInfo; }
    int bands() const { return ics().num_window_groups * ics().max_sfb; }
    bool hasCodebook(ZetAACCodebook book) const;
};

/** A single channel, channel pair or LFE element of the layout. */
struct AudioElement {
    ElementId id;
    int firstChannel;
    ZetAACChanPairElt pair;  // pairs only
    SbrPayload sbr;          // of the fill element behind it, if that has any
};

/** Reads block after block of one stream. Everything is allocated when the layout becomes known;
 *  nothing is allocated after that. */
class BlockParser {
  public:
    /** Takes format and layout from the first block of a stream.
     *  @return a refusal if such a stream cannot be read */
    Fault open(const RawBlock& block);

    /** Reads one block. On a fault the records hold what was read up to there. */
    Fault parse(const RawBlock& block);

    /** Bytes of the last block up to its end or its fault. */
    size_t bytesUsed() const { return bytesUsed_; }

    const StreamFormat& format() const { return format_; }
    /** Nothing until a program config element came, if one must come. */
    const std::optional<ChannelLayout>& layout() const { return layout_; }
    int channels() const { return layout_ ? layout_->channels() : 0; }

    /** The audio elements of the last block in stream order. */
    std::span<AudioElement> elements() { return {elements_.data(), elementCount_}; }
    ChannelData& channel(int index) { return channels_[static_cast<size_t>(index)]; }
    /** A record that is free between blocks. */
    ChannelData& spare() { return channels_[static_cast<size_t>(channels())]; }

    /** What the last block carried besides its channels. */
    bool hasSbr() const { return hasSbr_; }
    bool hasCoupling() const { return hasCoupling_; }

    /** Bytes of state behind this object. */
    size_t allocatedBytes() const;

  private:
    Fault adopt(const std::optional<ChannelLayout>& layout);
    Fault checkFormat(const RawBlock& block) const;
    Fault parseElements();
    Fault parseElement(ElementId id);
    Fault parseAudio(ElementId id);
    int predSfbMax() const;
    Fault parsePair(ZetAACChanPairElt& pair, BitCursor start, ChannelData& left,
                    ChannelData& right);
    Fault parseChannel(ChannelData& channel, ZetAACIcsInfo& ics, int commonWindow,
                       int ltpIndex = 0);
    Fault parseCoupling();
    void skipGainList(const ChannelData& channel);
    Fault parseData();
    Fault parseProgramConfig();
    Fault parseFill();
    Fault claim(ElementId id, int tag, int& slot);
    Fault verifyCrc() const;
    bool isMpeg2() const;
    bool isBeyondEnd() const;
    void protect(BitCursor from, size_t limit);

    StreamFormat format_;
    std::optional<ChannelLayout> layout_;
    int programTag_ = -1;
    std::unique_ptr<ChannelData[]> channels_;  // one more than the layout has
    std::array<AudioElement, kChannelsMax> elements_;
    size_t elementCount_ = 0;
    AudioElement* lastAudio_ = nullptr;  // which SBR data would belong to
    unsigned claimed_ = 0;               // bit per element of the layout
    ZetAACMainHeader mainHeader_{};      // the MPEG-4 readers leave LTP data here

    const RawBlock* block_ = nullptr;
    BitCursor cursor_;
    Crc16 crc_;
    size_t bytesUsed_ = 0;
    bool hasSbr_ = false;
    bool hasCoupling_ = false;
};

/** Whether a stream is HE-AAC with implicit signalling: SBR data among its first blocks.
 *  @param data  with kReadAhead readable bytes behind it */
bool carriesSbr(std::span<const Zet8u> data);

/** Whether parametric stereo begins among the first blocks of such a stream. */
bool carriesPs(std::span<const Zet8u> data);

}  // namespace zetac::codec
