// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/block.h"

#include <algorithm>
#include <cstring>

#include "aac/prediction.h"
#include "sbr/data.h"

namespace zetac::codec {
namespace {

constexpr int kProfileMain = 0;
constexpr int kProfileLowComplexity = 1;
constexpr int kProfileScalableSamplingRate = 2;

// What the error check covers of an element, in bits; 0 stands for all of it.
constexpr size_t kProtectedElement = 192;
constexpr size_t kProtectedSecondChannel = 128;
constexpr size_t kProtectedWhole = 0;

constexpr int kRatesMax = 12;  // sampling_frequency_index 0..11 have band tables

/** Codewords of the scalefactor book (ISO/IEC 14496-3, table 4.A.1) of 1, 2, ... 19 bits. The book
 *  is canonical: this is all that is needed to pass over a codeword. */
constexpr int kScalefactorCodeCounts[] = {1, 0, 1, 3, 2, 4, 3, 5, 4, 6, 6, 6, 5, 8, 4, 7, 3, 7, 46};

void skipScalefactorCode(BitCursor& cursor) {
    int first = 0;
    int code = 0;
    for (const int count : kScalefactorCodeCounts) {
        code = code << 1 | static_cast<int>(cursor.get(1));
        first <<= 1;
        if (code - first < count) return;
        first += count;
    }
}

}  // namespace

bool ChannelData::hasCodebook(ZetAACCodebook book) const {
    return std::memchr(codebook, book, static_cast<size_t>(bands())) != nullptr;
}

// --- The stream ---------------------------------------------------------------------------------

Fault BlockParser::open(const RawBlock& block) {
    format_ = block.format;
    if (format_.samplingFrequencyIndex >= kRatesMax) return AacFault::kUnsupportedRate;
    if (format_.profile == kProfileScalableSamplingRate) return AacFault::kUnsupportedProfile;
    if (format_.channelConfiguration != 0) {
        return adopt(ChannelLayout::fromConfiguration(format_.channelConfiguration));
    }
    if (!block.programConfig) return Fault::kNone;
    programTag_ = block.programConfig->element_instance_tag;
    return adopt(ChannelLayout::fromProgramConfig(*block.programConfig));
}

Fault BlockParser::adopt(const std::optional<ChannelLayout>& layout) {
    if (layout_) return layout_ == layout ? Fault::kNone : AacFault::kLayoutChanged;
    if (!layout) return AacFault::kUnsupportedLayout;
    layout_ = layout;
    channels_ = std::make_unique<ChannelData[]>(static_cast<size_t>(layout->channels()) + 1);
    return Fault::kNone;
}

size_t BlockParser::allocatedBytes() const {
    return layout_ ? sizeof(ChannelData) * (static_cast<size_t>(channels()) + 1) : 0;
}

/** The version may change from frame to frame: it decides the syntax only. */
Fault BlockParser::checkFormat(const RawBlock& block) const {
    StreamFormat expected = format_;
    expected.mpegVersion = block.format.mpegVersion;
    return block.format == expected ? Fault::kNone : StreamFault::kFormatChanged;
}

// --- One block ----------------------------------------------------------------------------------

Fault BlockParser::parse(const RawBlock& block) {
    bytesUsed_ = 0;
    elementCount_ = 0;
    lastAudio_ = nullptr;
    claimed_ = 0;
    hasSbr_ = hasCoupling_ = false;
    if (failed(block.fault)) return block.fault;
    if (const Fault fault = checkFormat(block); failed(fault)) return fault;

    block_ = &block;
    crc_ = block.crc;
    cursor_ = {const_cast<Zet8u*>(block.data.data()), 0};
    Fault fault = parseElements();
    // Whatever is wrong with bits behind the end, what is wrong first is that they are there.
    if (isBeyondEnd()) fault = StreamFault::kTruncated;
    cursor_.byteAlign();
    bytesUsed_ = static_cast<size_t>(cursor_.byte - block.data.data());
    return fault;
}

bool BlockParser::isBeyondEnd() const {
    return cursor_.bitsFrom(block_->data.data()) > block_->data.size() * 8;
}

Fault BlockParser::parseElements() {
    for (;;) {
        const auto id = static_cast<ElementId>(cursor_.get(3));
        if (id == ElementId::kEnd) break;
        if (const Fault fault = parseElement(id); failed(fault)) return fault;
        if (isBeyondEnd()) return StreamFault::kTruncated;
    }
    if (!layout_) return AacFault::kNoLayout;
    if (static_cast<int>(elementCount_) != layout_->elements()) return AacFault::kElementMissing;
    return verifyCrc();
}

Fault BlockParser::verifyCrc() const {
    if (!block_->isProtected || crc_.value() == block_->expectedCrc) return Fault::kNone;
    return StreamFault::kCrcMismatch;
}

/** Puts the bits from a cursor to here under the error check: all, or as many as the limit says,
 *  with zeros for what is missing. */
void BlockParser::protect(BitCursor from, size_t limit) {
    if (!block_->isProtected || isBeyondEnd()) return;
    const Zet8u* start = block_->data.data();
    const size_t length = cursor_.bitsFrom(start) - from.bitsFrom(start);
    crc_.add(from, limit == kProtectedWhole ? length : std::min(length, limit), limit);
}

Fault BlockParser::parseElement(ElementId id) {
    switch (id) {
        case ElementId::kCoupling:
            return parseCoupling();
        case ElementId::kData:
            return parseData();
        case ElementId::kProgram:
            return parseProgramConfig();
        case ElementId::kFill:
            return parseFill();
        default:
            return parseAudio(id);
    }
}

/** Finds the element's place in the layout. Elements of other programs have none: slot is -1. */
Fault BlockParser::claim(ElementId id, int tag, int& slot) {
    if (!layout_) return AacFault::kNoLayout;
    slot = layout_->find(id, tag, static_cast<int>(elementCount_));
    if (slot < 0) return programTag_ < 0 ? AacFault::kElementUnexpected : Fault::kNone;
    if (claimed_ >> slot & 1) return AacFault::kElementRepeated;
    claimed_ |= 1u << slot;
    return Fault::kNone;
}

Fault BlockParser::parseAudio(ElementId id) {
    const BitCursor start = cursor_;
    const int tag = static_cast<int>(cursor_.get(4));
    int slot = -1;
    Fault fault = claim(id, tag, slot);
    if (failed(fault)) return fault;

    AudioElement unused;
    AudioElement& element = slot < 0 ? unused : elements_[elementCount_++];
    lastAudio_ = slot < 0 ? nullptr : &element;
    element.sbr.bytes = 0;
    element.id = id;
    element.firstChannel = slot < 0 ? channels() : layout_->firstChannel(slot);
    ChannelData& first = channel(element.firstChannel);
    if (id == ElementId::kPair) {
        ChannelData& second = slot < 0 ? first : channel(element.firstChannel + 1);
        return parsePair(element.pair, start, first, second);
    }
    fault = parseChannel(first, first.ownIcs, 0);
    protect(start, kProtectedElement);
    return fault;
}

/** The readers of MPEG-2 know the low-complexity profile only. */
bool BlockParser::isMpeg2() const {
    return block_->format.mpegVersion == 2 && format_.profile == kProfileLowComplexity;
}

int BlockParser::predSfbMax() const {
    return format_.profile == kProfileMain ? predictionBands(format_.samplingFrequencyIndex) : 0;
}

Fault BlockParser::parsePair(ZetAACChanPairElt& pair, BitCursor start, ChannelData& left,
                             ChannelData& right) {
    const ZetStatus status =
        isMpeg2()
            ? zetsDecodeChanPairElt_AAC(&cursor_.byte, &cursor_.bit, &left.ownIcs, &pair, 0)
            : zetsDecodeChanPairElt_MP4_AAC(&cursor_.byte, &cursor_.bit, &left.ownIcs, &pair,
                                            mainHeader_.ltp, predSfbMax(), format_.profile + 1);
    if (status < 0) return faultOf(status);
    if (isBeyondEnd()) return StreamFault::kTruncated;
    ZetAACIcsInfo& rightIcs = pair.common_window ? left.ownIcs : right.ownIcs;
    Fault fault = parseChannel(left, left.ownIcs, pair.common_window);
    if (failed(fault)) return fault;
    const BitCursor second = cursor_;
    fault = parseChannel(right, rightIcs, pair.common_window, pair.common_window);
    protect(start, kProtectedElement);
    protect(second, kProtectedSecondChannel);
    return fault;
}

/** @param ltpIndex  where the readers leave the channel's LTP data: 1 for the second channel of a
 *                  common window, whose data stand with the first one's */
Fault BlockParser::parseChannel(ChannelData& channel, ZetAACIcsInfo& ics, int commonWindow,
                                int ltpIndex) {
    channel.info.pIcsInfo = &ics;
    channel.info.sampling_frequency_index = format_.samplingFrequencyIndex;
    channel.info.predSfbMax = predSfbMax();
    const ZetStatus status =
        isMpeg2() ? zetsNoiselessDecoder_LC_AAC(&cursor_.byte, &cursor_.bit, commonWindow,
                                                &channel.info, channel.scaleFactor,
                                                channel.spectrum, channel.codebook, channel.tnsCoef)
                  : zetsNoiselessDecode_MP4_AAC(&cursor_.byte, &cursor_.bit, &mainHeader_,
                                                channel.scaleFactor, channel.spectrum,
                                                channel.codebook, channel.tnsCoef, &channel.info, 0,
                                                0, commonWindow, 0, format_.profile + 1);
    if (status < 0) return faultOf(status);
    if (isBeyondEnd()) return StreamFault::kTruncated;
    channel.ltp = mainHeader_.ltp[ltpIndex];
    const bool isLowComplexity = format_.profile == kProfileLowComplexity;
    return isLowComplexity && ics.predictor_data_present ? AacFault::kPrediction : Fault::kNone;
}

// --- The elements without a channel of their own ------------------------------------------------

/** coupling_channel_element() (ISO/IEC 13818-7, 6.3): read, but not applied. */
Fault BlockParser::parseCoupling() {
    if (!layout_) return AacFault::kNoLayout;
    const BitCursor start = cursor_;
    cursor_.get(4);  // element_instance_tag
    const bool isIndependent = cursor_.get(1) != 0;
    int lists = static_cast<int>(cursor_.get(3)) + 1;
    for (int targets = lists; targets > 0; --targets) {
        const bool isPair = cursor_.get(1) != 0;
        cursor_.get(4);                              // cc_target_tag_select
        if (isPair && cursor_.get(2) == 3) ++lists;  // cc_l and cc_r: a list for each channel
    }
    cursor_.get(4);  // cc_domain, gain_element_sign, gain_element_scale
    ChannelData& channel = spare();
    const Fault fault = parseChannel(channel, channel.ownIcs, 0);
    if (failed(fault)) return fault;
    // The first list is not transmitted. The scalefactor codes are at most 19 bits long, so the 120
    // of a list stay within what may be read beyond the end.
    for (int list = 1; list < lists && !isBeyondEnd(); ++list) {
        if (isIndependent || cursor_.get(1)) {
            skipScalefactorCode(cursor_);  // common_gain_element
        } else {
            skipGainList(channel);
        }
    }
    protect(start, kProtectedElement);
    hasCoupling_ = true;
    lastAudio_ = nullptr;
    return Fault::kNone;
}

void BlockParser::skipGainList(const ChannelData& channel) {
    for (int band = 0; band < channel.bands(); ++band) {
        if (channel.codebook[band] != zetAacZeroCb) skipScalefactorCode(cursor_);
    }
}

Fault BlockParser::parseData() {
    const BitCursor start = cursor_;
    int tag = 0;
    int count = 0;
    Zet8u data[ZETAC_AAC_DATA_BYTES_MAX];
    const ZetStatus status =
        zetsDecodeDatStrElt_AAC(&cursor_.byte, &cursor_.bit, &tag, &count, data);
    protect(start, kProtectedWhole);
    return faultOf(status);
}

/** Takes the layout of the first program, or of a later element for the same program. */
Fault BlockParser::parseProgramConfig() {
    const BitCursor start = cursor_;
    ZetAACPrgCfgElt program{};
    const ZetStatus status = zetsDecodePrgCfgElt_AAC(&cursor_.byte, &cursor_.bit, &program);
    protect(start, kProtectedWhole);
    if (status < 0) return faultOf(status);
    if (isBeyondEnd()) return StreamFault::kTruncated;
    if (format_.channelConfiguration != 0) return Fault::kNone;
    if (programTag_ < 0) programTag_ = program.element_instance_tag;
    if (programTag_ != program.element_instance_tag) return Fault::kNone;
    return adopt(ChannelLayout::fromProgramConfig(program));
}

/** Fill elements are not under the error check. SBR data belong to the audio element before. */
Fault BlockParser::parseFill() {
    constexpr int kSbrData = 13;  // extension_type
    constexpr int kSbrDataCrc = 14;
    int count = 0;
    Zet8u data[ZETAC_AAC_FILL_BYTES_MAX];
    const ZetStatus status = zetsDecodeFillElt_AAC(&cursor_.byte, &cursor_.bit, &count, data);
    const int type = count > 0 ? data[0] >> 4 : 0;
    if (type != kSbrData && type != kSbrDataCrc) return faultOf(status);
    hasSbr_ = true;
    if (lastAudio_ && lastAudio_->sbr.bytes == 0) {
        lastAudio_->sbr.bytes = static_cast<size_t>(count);
        std::copy_n(data, count, lastAudio_->sbr.data);
    }
    return faultOf(status);
}

// --- HE-AAC -------------------------------------------------------------------------------------

namespace {

/** Whether a block among the first ones is what is looked for.
 *  @param isFound  asked of the parser after each good block */
template <class IsFound>
bool searchSbr(std::span<const Zet8u> data, IsFound isFound) {
    constexpr int kBlocksMax = 32;  // an encoder may take some frames to start SBR
    const auto stream = openStream(data);
    if (!stream) return false;
    BlockParser parser;
    RawBlock block;
    for (int i = 0; i < kBlocksMax && stream->next(block); ++i) {
        if (i == 0 && failed(parser.open(block))) return false;
        const Fault fault = parser.parse(block);
        stream->finish(parser.bytesUsed(), !failed(fault));
        if (!failed(fault) && parser.hasSbr() && isFound(parser)) return true;
    }
    return false;
}

}  // namespace

bool carriesSbr(std::span<const Zet8u> data) {
    return searchSbr(data, [](BlockParser&) { return true; });
}

bool carriesPs(std::span<const Zet8u> data) {
    std::optional<SbrParser> sbr;
    return searchSbr(data, [&](BlockParser& parser) {
        if (parser.channels() != 1) return false;
        if (!sbr) sbr.emplace(false, 2 * parser.format().sampleRate());
        sbr->parse(parser.elements()[0].sbr);
        return sbr->hasParametricStereo();
    });
}

}  // namespace zetac::codec
