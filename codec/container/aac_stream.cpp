// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/aac_stream.h"

#include <algorithm>
#include <cstring>

#include "container/tags.h"

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

}  // namespace

// --- ADTS ---------------------------------------------------------------------------------------

/** A header with the syncword and sane fields. */
std::optional<ZetAACADTSHeader> AdtsStream::headerAt(size_t position) const {
    if (position > data_.size() || data_.size() - position < kHeaderBytes) return std::nullopt;
    const Zet8u* p = data_.data() + position;
    if (p[0] != 0xFF || (p[1] & 0xF6) != 0xF0) return std::nullopt;
    ZetAACADTSHeader header{};
    auto* cursor = const_cast<Zet8u*>(p);
    zetsUnpackADTSFrameHeader_AAC(&cursor, &header);
    if (header.sampling_frequency_index > 12) return std::nullopt;
    if (static_cast<size_t>(header.frame_length) <= headerBytes(header)) return std::nullopt;
    return header;
}

/** A header that the next frame, a tag or the end of the data follow where it says. Where a frame
 *  is due it may also be cut off by the end of the data. */
bool AdtsStream::isConfirmed(size_t position, const ZetAACADTSHeader& header) const {
    const size_t next = position + static_cast<size_t>(header.frame_length);
    if (next >= data_.size()) return next == data_.size() || position == undamaged_;
    if (tagLength(data_, next) > 0) return true;
    return headerAt(next) && haveSameFixedHeader(&data_[position], &data_[next]);
}

bool AdtsStream::isLikeLast(size_t position) const {
    return isLocked_ && haveSameFixedHeader(&data_[lockedAt_], &data_[position]);
}

/** Whether a frame that ends here is followed by what may follow a frame. */
bool AdtsStream::isBoundary(size_t position) const {
    return position >= data_.size() || headerAt(position) || tagLength(data_, position) > 0;
}

/** Moves position_ to the next frame that can be believed: one that resembles the last one, or
 *  whose successor confirms it. */
bool AdtsStream::seek() {
    while (position_ < data_.size()) {
        // Behind foreign bytes only a sync is looked for, so tags count where a frame has ended.
        if (const size_t tag = tagLength(data_, position_); tag > 0) {
            if (undamaged_ == position_) undamaged_ += tag;
            position_ += tag;
            continue;
        }
        if (const auto header = headerAt(position_)) {
            if (isLikeLast(position_) || isConfirmed(position_, *header)) {
                header_ = *header;
                return true;
            }
        }
        const auto sync = std::find(data_.begin() + static_cast<ptrdiff_t>(position_) + 1,
                                    data_.end(), Zet8u{0xFF});
        position_ = static_cast<size_t>(sync - data_.begin());
    }
    return false;
}

std::unique_ptr<AdtsStream> AdtsStream::open(std::span<const Zet8u> data) {
    std::unique_ptr<AdtsStream> stream(new AdtsStream(data));
    if (!stream->seek()) return nullptr;
    // From here on a frame is known by its resemblance to this one, so that frames before it, with
    // foreign bytes in between, are found in a second look.
    stream->lockedAt_ = stream->start_ = stream->position_;
    stream->isLocked_ = true;
    stream->position_ = stream->undamaged_ = 0;
    return stream;
}

/** The raw_data_block_position words of a protected frame of several blocks, and its own CRC. */
void AdtsStream::readBlockPositions() {
    const Zet8u* words = data_.data() + frame_ + kHeaderBytes;
    const int positions = blocks_ - 1;
    headerCrc_.add({const_cast<Zet8u*>(words), 0}, static_cast<size_t>(positions) * 16, 0);
    blockOffsets_[0] = 0;
    for (int i = 0; i < positions; ++i) blockOffsets_[i + 1] = wordAt(words + 2 * i);
    if (headerCrc_.value() != wordAt(words + 2 * positions))
        frameFault_ = StreamFault::kCrcMismatch;
}

void AdtsStream::beginFrame() {
    frame_ = position_;
    firstBlock_ = block_ = frame_ + headerBytes(header_);
    blocks_ = header_.number_of_raw_data_blocks_in_frame + 1;
    index_ = 0;
    isFrameOpen_ = true;
    frameFault_ = Fault::kNone;
    lockedAt_ = frame_;
    headerCrc_ = Crc16();
    if (header_.protection_absent) return;
    headerCrc_.add({const_cast<Zet8u*>(&data_[frame_]), 0}, kHeaderBits, 0);
    if (blocks_ > 1) readBlockPositions();
}

/** Where the current block ends at the latest. */
size_t AdtsStream::blockEnd() const {
    size_t end = frame_ + static_cast<size_t>(header_.frame_length);
    if (!header_.protection_absent && blocks_ > 1) {
        if (index_ + 1 < blocks_) end = std::min(end, firstBlock_ + blockOffsets_[index_ + 1]);
        end -= kCrcBytes;
    }
    return std::clamp(end, block_, std::max(block_, data_.size()));
}

bool AdtsStream::next(RawBlock& block) {
    skip(0, 0);
    if (!isFrameOpen_) {
        const bool found = seek();
        skip(undamaged_, position_);
        undamaged_ = std::max(undamaged_, position_);
        if (!found) return false;
        beginFrame();
    }
    block_ = std::min(block_, data_.size());
    block.data = data_.subspan(block_, blockEnd() - block_);
    block.position = block_;
    block.format = {header_.id ? 2 : 4, header_.profile, header_.sampling_frequency_index,
                    header_.channel_configuration};
    block.programConfig = nullptr;
    block.fault = frameFault_;
    block.isProtected = !header_.protection_absent;
    if (block.isProtected) {
        block.crc = blocks_ > 1 ? Crc16() : headerCrc_;
        block.expectedCrc = blocks_ > 1 ? wordAt(data_.data() + blockEnd())
                                        : static_cast<unsigned>(header_.crc_check);
    }
    return true;
}

/** Looks for the next frame where this one ends. When nothing is there, its length is not to be
 *  trusted: then the search starts behind what a good block used, or inside a bad frame. */
void AdtsStream::finishFrame(size_t bytesUsed, bool isGood) {
    const size_t end = frame_ + static_cast<size_t>(header_.frame_length);
    isFrameOpen_ = false;
    undamaged_ = std::min(end, data_.size());
    if (end <= data_.size() && isBoundary(end)) {
        position_ = end;
    } else {
        position_ = isGood ? std::min(block_ + bytesUsed, data_.size()) : frame_ + 1;
    }
}

void AdtsStream::finish(size_t bytesUsed, bool isGood) {
    if (++index_ == blocks_) {
        finishFrame(bytesUsed, isGood && !failed(frameFault_));
        return;
    }
    if (!header_.protection_absent) {
        block_ = firstBlock_ + blockOffsets_[index_];
        return;
    }
    block_ += bytesUsed;
    if (!isGood) frameFault_ = StreamFault::kPrecedingBlock;
}

// --- ADIF ---------------------------------------------------------------------------------------

std::unique_ptr<AdifStream> AdifStream::open(std::span<const Zet8u> data) {
    constexpr int kProgramsMax = 16;
    size_t start = 0;
    while (const size_t tag = tagLength(data, start)) start += tag;
    if (data.size() - start < 4 || std::memcmp(&data[start], "ADIF", 4) != 0) return nullptr;
    std::unique_ptr<AdifStream> stream(new AdifStream(data));
    stream->start_ = start;
    stream->programConfigs_.resize(kProgramsMax);
    auto* cursor = const_cast<Zet8u*>(&data[start]);
    const ZetStatus status = zetsUnpackADIFHeader_AAC(&cursor, &stream->header_,
                                                      stream->programConfigs_.data(), kProgramsMax);
    stream->position_ = static_cast<size_t>(cursor - data.data());
    if (status < 0 || stream->position_ > data.size()) return nullptr;
    stream->programConfigs_.resize(
        static_cast<size_t>(stream->header_.num_program_config_elements));
    return stream;
}

bool AdifStream::next(RawBlock& block) {
    skip(0, 0);
    if (lost_ > 0) skip(lost_, data_.size());
    if (lost_ > 0 || position_ >= data_.size()) return false;
    const ZetAACPrgCfgElt& program = programConfigs_.front();
    block = RawBlock{};
    block.data = data_.subspan(position_);
    block.position = position_;
    block.format = {4, program.object_type, program.sampling_frequency_index, 0};
    block.programConfig = &program;
    return true;
}

void AdifStream::finish(size_t bytesUsed, bool isGood) {
    position_ += bytesUsed;
    if (!isGood) lost_ = std::min(position_, data_.size());
}

// --- Either -------------------------------------------------------------------------------------

std::unique_ptr<BlockStream> openStream(std::span<const Zet8u> data) {
    const auto audio = data.first(data.size() - trailingTagLength(data));
    if (auto adif = AdifStream::open(audio)) return adif;
    return AdtsStream::open(audio);
}

}  // namespace zetac::codec
