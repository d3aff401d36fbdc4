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

/** The frame has a bit rate at which the tag fits into it, and the own one where that does. */
Mp3InfoWriter::Mp3InfoWriter(const Mp3Format& format, int mode, int quality, int bitRateIndex)
    : format_(format),
      quality_(quality),
      constantKilobits_(mp3BitRate(format, bitRateIndex) / 1000),
      tagOffset_(kHeaderBytes + mp3SideInfoBytes(true, mode == 3)) {
    header_.ID = header_.layer = header_.protection_bit = header_.original_copy = 1;
    header_.sampling_frequency = format.samplingFrequency;
    header_.mode = mode;
    header_.bitrate_index = std::max(bitRateIndex, 1);
    while (mp3FrameBytes(format, mp3BitRate(format, header_.bitrate_index)) <
           tagOffset_ + kTagBytes)
        ++header_.bitrate_index;
}

void Mp3InfoWriter::addBytes(std::span<const Zet8u> bytes) {
    musicCrc_ = crcOf(musicCrc_, bytes);
}

std::vector<Zet8u> Mp3InfoWriter::frame(size_t samples, size_t decoded) const {
    std::vector<Zet8u> frame(mp3FrameBytes(format_, mp3BitRate(format_, header_.bitrate_index)));
    Zet8u* cursor = frame.data();
    zetsPackFrameHeader_MP3(&header_, &cursor);
    putTag(frame, samples, decoded);
    return frame;
}

/** Where in 256ths of the stream a percentage of its time begins. */
Zet8u Mp3InfoWriter::seekPoint(size_t percent, size_t streamBytes) const {
    if (starts_.empty()) return 0;
    const size_t tag = streamBytes - bytes_;
    const size_t position = tag + starts_[percent * starts_.size() / kSeekPoints];
    return static_cast<Zet8u>(std::min<size_t>(255, position * 256 / streamBytes));
}

void Mp3InfoWriter::putTag(std::span<Zet8u> frame, size_t samples, size_t decoded) const {
    constexpr uint64_t kHasAll = 15;  // frames, bytes, seek table, quality
    constexpr int kConstantMethod = 1, kVariableMethod = 4;
    const bool isVariable = quality_ >= 0;
    const size_t streamBytes = frame.size() + bytes_;
    const size_t delay = 481 + ZETAC_MP3_GRANULE_LEN - kDecoderDelay;
    const size_t padding = decoded > samples + delay ? decoded - samples - delay : 0;
    Cursor tag(&frame[tagOffset_]);
    tag.text(isVariable ? "Xing" : "Info", 4);
    tag.put(kHasAll, 4);
    tag.put(starts_.size(), 4);
    tag.put(streamBytes, 4);
    for (size_t i = 0; i < kSeekPoints; ++i) tag.put(seekPoint(i, streamBytes), 1);
    tag.put(isVariable ? static_cast<uint64_t>(100 - 10 * quality_) : 50, 4);
    tag.text(kEncoder, kEncoderBytes);
    tag.put(isVariable ? kVariableMethod : kConstantMethod, 1);
    tag.pass(1 + 4 + 2 + 2 + 1);  // lowpass, peak, gains, flags: unknown
    tag.put(static_cast<uint64_t>(std::min(255, isVariable ? 32 : constantKilobits_)), 1);
    tag.put(delay << 12 | padding, 3);
    tag.pass(1 + 1 + 2);  // noise shaping, gain, preset: unknown
    tag.put(streamBytes, 4);
    tag.put(musicCrc_, 2);
    const auto before = static_cast<size_t>(tag.at() - frame.data());
    tag.put(crcOf(0, frame.first(before)), 2);
}

}  // namespace zetac::codec
