// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/info_tag_writer.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace zetac::codec {
namespace {

constexpr size_t kHeaderBytes = 4;
constexpr size_t kTagBytes = 156;
constexpr size_t kSeekPoints = 100;
constexpr int kHighestBitRate = 14;
constexpr size_t kDecoderDelay = 529;  // that every decoder has, and which the tag leaves out
// Nine characters. The first four name the layout of the fields that follow: libavformat and
// GStreamer trust the delays only where they stand. The others name the encoder.
constexpr char kEncoder[] = "LAMEZetac";
constexpr size_t kEncoderBytes = 9;

/** x^16 + x^15 + x^2 + 1, lowest bit first, from 0. */
uint16_t crcOf(uint16_t crc, std::span<const Zet8u> bytes) {
    static constexpr auto kTable = [] {
        std::array<uint16_t, 256> table{};
        for (unsigned i = 0; i < 256; ++i) {
            unsigned value = i;
            for (int bit = 0; bit < 8; ++bit) value = value & 1 ? value >> 1 ^ 0xA001 : value >> 1;
            table[i] = static_cast<uint16_t>(value);
        }
        return table;
    }();
    for (const Zet8u byte : bytes)
        crc = static_cast<uint16_t>(crc >> 8 ^ kTable[(crc ^ byte) & 0xFF]);
    return crc;
}

uint64_t limited32(uint64_t value) {
    return std::min<uint64_t>(value, UINT32_MAX);
}

/** Big-endian numbers one after another. */
class Cursor {
  public:
    explicit Cursor(Zet8u* at) : at_(at) {}
    void put(uint64_t value, int bytes) {
        for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
            *at_++ = static_cast<Zet8u>(value >> shift);
    }
    void text(const char* characters, size_t count) { at_ = std::copy_n(characters, count, at_); }
    void pass(size_t count) { at_ += count; }
    Zet8u* at() const { return at_; }

  private:
    Zet8u* at_;
};

}  // namespace

// --- Seek table ---------------------------------------------------------------------------------

void Mp3SeekTable::add(uint64_t start) {
    if (frames_ % step_ == 0) {
        if (frames_ / step_ == kEntries) {
            for (size_t i = 0; i < kEntries / 2; ++i) starts_[i] = starts_[2 * i];
            step_ *= 2;
        }
        starts_[frames_ / step_] = start;
    }
    ++frames_;
}

uint64_t Mp3SeekTable::startOf(uint64_t frame, uint64_t end) const {
    const uint64_t entry = frame / step_;
    const uint64_t next = std::min((entry + 1) * step_, frames_);
    const uint64_t begin = starts_[entry], follower = next < frames_ ? starts_[entry + 1] : end;
    return begin + (follower - begin) * (frame % step_) / (next - entry * step_);
}

// --- Information frame --------------------------------------------------------------------------

Mp3InfoWriter::Mp3InfoWriter(const Mp3Format& format, const ZetMP3Header& header)
    : format_(format),
      header_(header),
      tagOffset_(kHeaderBytes + mp3SideInfoBytes(format.version == 1, header.mode == 3)) {
    header_.protection_bit = 1;  // readers look for the tag behind the side information
    header_.mode_extension = 0;
    if (header_.bitrate_index > kHighestBitRate) header_.bitrate_index = 1;
    while (frameBytes() < tagOffset_ + kTagBytes) ++header_.bitrate_index;
}

void Mp3InfoWriter::add(std::span<const Zet8u> frame) {
    seekTable_.add(bytes_);
    bytes_ += frame.size();
    musicCrc_ = crcOf(musicCrc_, frame);
}

size_t Mp3InfoWriter::frameBytes() const {
    return mp3FrameBytes(format_, mp3BitRate(format_, header_.bitrate_index));
}

void Mp3InfoWriter::write(std::span<Zet8u> frame, const Mp3StreamFacts& facts) const {
    std::ranges::fill(frame, Zet8u{0});
    packMp3Header(format_, header_, frame.data());
    putTag(frame, facts);
}

/** Where in 256ths of the stream a percentage of its time begins. */
Zet8u Mp3InfoWriter::seekPoint(uint64_t percent, uint64_t streamBytes) const {
    if (seekTable_.frames() == 0) return 0;
    const uint64_t start = seekTable_.startOf(percent * seekTable_.frames() / kSeekPoints, bytes_);
    return static_cast<Zet8u>(
        std::min<uint64_t>(255, (streamBytes - bytes_ + start) * 256 / streamBytes));
}

void Mp3InfoWriter::putTag(std::span<Zet8u> frame, const Mp3StreamFacts& facts) const {
    constexpr uint64_t kHasAll = 15;  // frames, bytes, seek table, quality
    constexpr int kConstantMethod = 1, kAverageMethod = 2, kVariableMethod = 4;
    const bool isVariable = facts.quality >= 0;
    const bool isConstant = !isVariable && !facts.isAverage;
    const uint64_t streamBytes = frame.size() + bytes_;
    const uint64_t delay = 481 + ZETAC_MP3_GRANULE_LEN - kDecoderDelay;
    const uint64_t behind = facts.samples + delay;
    const uint64_t padding = facts.decoded > behind ? facts.decoded - behind : 0;
    Cursor tag(&frame[tagOffset_]);
    tag.text(isConstant ? "Info" : "Xing", 4);
    tag.put(kHasAll, 4);
    tag.put(limited32(seekTable_.frames()), 4);
    tag.put(limited32(streamBytes), 4);
    for (size_t i = 0; i < kSeekPoints; ++i) tag.put(seekPoint(i, streamBytes), 1);
    tag.put(isVariable ? static_cast<uint64_t>(100 - 10 * facts.quality) : 50, 4);
    tag.text(kEncoder, kEncoderBytes);
    tag.put(isVariable ? kVariableMethod : isConstant ? kConstantMethod : kAverageMethod, 1);
    tag.put(static_cast<uint64_t>(facts.lowpass / 100), 1);
    tag.pass(4 + 2 + 2 + 1);  // peak, gains, flags: unknown
    tag.put(static_cast<uint64_t>(std::min(255, facts.kilobits)), 1);
    tag.put(delay << 12 | padding, 3);
    tag.pass(1 + 1 + 2);  // noise shaping, gain, preset: unknown
    tag.put(limited32(streamBytes), 4);
    tag.put(musicCrc_, 2);
    const auto before = static_cast<size_t>(tag.at() - frame.data());
    tag.put(crcOf(0, frame.first(before)), 2);
}

}  // namespace zetac::codec
