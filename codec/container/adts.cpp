// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/adts.h"

#include <algorithm>

namespace zetac::codec {
namespace {

constexpr size_t kHeaderBytes = 7;
constexpr size_t kCrcBytes = 2;
constexpr size_t kPositionBytes = 2;  // of a raw_data_block_position
constexpr size_t kHeaderBits = 56;    // of the header under the error check

unsigned wordAt(const Zet8u* p) {
    return static_cast<unsigned>(p[0]) << 8 | p[1];
}

/** Bytes of a frame before its first block. */
size_t headerBytes(const ZetAACADTSHeader& h) {
    if (h.protection_absent) return kHeaderBytes;
    const auto positions = static_cast<size_t>(h.number_of_raw_data_blocks_in_frame);
    return kHeaderBytes + positions * kPositionBytes + kCrcBytes;
}

/** adts_fixed_header() except home, original_copy and private_bit, which encoders may toggle. */
bool haveSameFixedHeader(const Zet8u* a, const Zet8u* b) {
    return a[0] == b[0] && a[1] == b[1] && (a[2] & 0xFD) == (b[2] & 0xFD) &&
           (a[3] & 0xC0) == (b[3] & 0xC0);
}

bool hasSync(View view) {
    return view[0] == 0xFF && (view.size() < 2 || (view[1] & 0xF6) == 0xF0);
}

/** A header with the syncword and sane fields. */
std::optional<ZetAACADTSHeader> headerAt(View view) {
    if (!view.has(kHeaderBytes) || !hasSync(view)) return std::nullopt;
    ZetAACADTSHeader header{};
    auto* cursor = const_cast<Zet8u*>(view.bytes.data());
    zetsUnpackADTSFrameHeader_AAC(&cursor, &header);
    if (header.sampling_frequency_index > 12) return std::nullopt;
    if (static_cast<size_t>(header.frame_length) <= headerBytes(header)) return std::nullopt;
    return header;
}

/** Whether a frame is followed by one like it, a tag or the end of the data. Where one is due it
 *  may also be cut off by the end of the data. */
Answer isConfirmed(View view, size_t length, bool isDue, const TagScanner& tags) {
    if (view.awaits(length + 1)) return Answer::kUnknown;
    if (view.size() <= length) return view.size() == length || isDue ? Answer::kYes : Answer::kNo;
    const View next = view.from(length);
    if (const Answer answer = tags.at(next).answer; answer != Answer::kNo) return answer;
    if (hasSync(next) && next.awaits(kHeaderBytes)) return Answer::kUnknown;
    const bool isLike = headerAt(next) && haveSameFixedHeader(&view[0], &next[0]);
    return isLike ? Answer::kYes : Answer::kNo;
}

}  // namespace

int StreamFormat::sampleRate() const {
    static constexpr int kRates[] = {96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                     22050, 16000, 12000, 11025, 8000,  7350};
    if (explicitRate > 0) return explicitRate;
    const auto index = static_cast<size_t>(samplingFrequencyIndex);
    return index < std::size(kRates) ? kRates[index] : 0;
}

StreamFormat StreamFormat::of(const AudioSpecificConfig& config) {
    StreamFormat format;
    format.profile = config.objectType - 1;
    format.samplingFrequencyIndex = config.samplingFrequencyIndex;
    format.channelConfiguration = config.channelConfiguration;
    if (format.sampleRate() != config.samplingFrequency) {
        format.explicitRate = config.samplingFrequency;
    }
    format.sbr = config.sbr;
    format.parametricStereo = config.parametricStereo;
    format.isSbrDownsampled = config.extensionFrequency == config.samplingFrequency;
    return format;
}

Answer AdtsFrames::isHeader(View view) const {
    if (view.size() == 0 || !hasSync(view)) return Answer::kNo;
    if (view.awaits(kHeaderBytes)) return Answer::kUnknown;
    return headerAt(view) ? Answer::kYes : Answer::kNo;
}

Answer AdtsFrames::isFrame(View view, bool isDue, const TagScanner& tags) const {
    if (const Answer answer = isHeader(view); answer != Answer::kYes) return answer;
    const auto length = static_cast<size_t>(headerAt(view)->frame_length);
    const bool isLikeLast = haveSameFixedHeader(last_, &view[0]);
    if (!isLikeLast) return isConfirmed(view, length, isDue, tags);
    return view.awaits(length) ? Answer::kUnknown : Answer::kYes;
}

size_t AdtsFrames::open(View view) {
    header_ = *headerAt(view);
    std::copy_n(view.bytes.data(), sizeof last_, last_);
    firstBlock_ = block_ = headerBytes(header_);
    blocks_ = header_.number_of_raw_data_blocks_in_frame + 1;
    index_ = 0;
    isGood_ = true;
    fault_ = Fault::kNone;
    headerCrc_ = Crc16();
    if (!header_.protection_absent) {
        headerCrc_.add({const_cast<Zet8u*>(&view[0]), 0}, kHeaderBits, 0);
        if (blocks_ > 1) readBlockPositions(view);
    }
    return static_cast<size_t>(header_.frame_length);
}

/** The raw_data_block_position words of a protected frame of several blocks, and its own CRC. */
void AdtsFrames::readBlockPositions(View view) {
    const Zet8u* words = view.bytes.data() + kHeaderBytes;
    const int positions = blocks_ - 1;
    headerCrc_.add({const_cast<Zet8u*>(words), 0}, static_cast<size_t>(positions) * 16, 0);
    blockOffsets_[0] = 0;
    for (int i = 0; i < positions; ++i) blockOffsets_[i + 1] = wordAt(words + 2 * i);
    if (headerCrc_.value() != wordAt(words + 2 * positions)) fault_ = StreamFault::kCrcMismatch;
}

/** Where the current block ends at the latest. */
size_t AdtsFrames::blockEnd(View view) const {
    auto end = static_cast<size_t>(header_.frame_length);
    if (!header_.protection_absent && blocks_ > 1) {
        if (index_ + 1 < blocks_) end = std::min(end, firstBlock_ + blockOffsets_[index_ + 1]);
        end -= kCrcBytes;
    }
    return std::clamp(end, block_, std::max(block_, view.size()));
}

RawBlock AdtsFrames::next(View view, uint64_t position) {
    block_ = std::min(block_, view.size());
    const size_t end = blockEnd(view);
    RawBlock block;
    block.data = view.bytes.subspan(block_, end - block_);
    block.isFirst = index_ == 0;
    block.position = position + (block.isFirst ? 0 : block_);
    block.bytesAround = block.isFirst ? static_cast<uint32_t>(firstBlock_) : 0;
    block.isBounded = index_ + 1 == blocks_ || !header_.protection_absent;
    block.format = {header_.id ? 2 : 4, header_.profile, header_.sampling_frequency_index,
                    header_.channel_configuration};
    block.fault = fault_;
    block.isProtected = !header_.protection_absent;
    if (block.isProtected) {
        block.crc = blocks_ > 1 ? Crc16() : headerCrc_;
        block.expectedCrc = blocks_ > 1 ? wordAt(view.bytes.data() + end)
                                        : static_cast<unsigned>(header_.crc_check);
    }
    return block;
}

bool AdtsFrames::finish(size_t bytesUsed, bool isGood) {
    isGood_ = isGood;
    if (header_.protection_absent || index_ + 1 == blocks_) {
        block_ += bytesUsed;
        if (!isGood) fault_ = StreamFault::kPrecedingBlock;
    } else {
        block_ = firstBlock_ + blockOffsets_[index_ + 1];
    }
    return ++index_ < blocks_;
}

size_t AdtsFrames::behind() const {
    return isGood_ && !failed(fault_) ? block_ : 1;
}

}  // namespace zetac::codec
