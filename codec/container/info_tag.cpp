// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/info_tag.h"

#include <algorithm>
#include <cctype>
#include <cstring>

#include "container/mpeg_audio.h"

namespace zetac::codec {
namespace {

constexpr size_t kHeaderBytes = 4;
constexpr size_t kCrcBytes = 2;

// The Xing tag: name, flags, then what the flags announce, then the encoder's extension.
constexpr uint32_t kHasFrames = 1;
constexpr size_t kFieldBytes[] = {4, 4, 100, 4};  // frames, bytes, seek table, quality; by flag
constexpr size_t kEncoderBytes = 9;
constexpr size_t kGapsOffset = 21;  // in the extension: 12 bits of delay, 12 bits of padding
constexpr size_t kGapsBytes = 3;

// The VBRI tag stands 32 bytes behind the header, whatever the side information is.
constexpr size_t kVbriOffset = kHeaderBytes + 32;
constexpr size_t kVbriFramesOffset = 14;

uint32_t bigEndian32(const Zet8u* p) {
    return static_cast<uint32_t>(p[0]) << 24 | static_cast<uint32_t>(p[1]) << 16 |
           static_cast<uint32_t>(p[2]) << 8 | p[3];
}

bool hasText(std::span<const Zet8u> data, const char* text) {
    return data.size() >= 4 && std::memcmp(data.data(), text, 4) == 0;
}

/** What the encoder says of itself: printable, and starting with a letter. */
std::string encoderName(const Zet8u* text) {
    std::string name(text, text + kEncoderBytes);
    name.erase(std::ranges::find(name, '\0'), name.end());
    while (!name.empty() && name.back() == ' ') name.pop_back();
    const bool isText =
        std::ranges::all_of(name, [](char c) { return c >= 0x20 && c < 0x7F; }) && !name.empty();
    return isText && std::isalpha(static_cast<unsigned char>(name[0])) ? name : std::string();
}

void readExtension(std::span<const Zet8u> extension, Mp3InfoTag& tag) {
    if (extension.size() < kGapsOffset + kGapsBytes) return;
    tag.encoder = encoderName(extension.data());
    if (tag.encoder.empty()) return;
    const Zet8u* gaps = &extension[kGapsOffset];
    tag.delay = gaps[0] << 4 | gaps[1] >> 4;
    tag.padding = (gaps[1] & 0x0F) << 8 | gaps[2];
    tag.hasGaps = tag.delay != 0 || tag.padding != 0;
}

std::optional<Mp3InfoTag> readXing(std::span<const Zet8u> data) {
    if (data.size() < 8 || !(hasText(data, "Xing") || hasText(data, "Info"))) return std::nullopt;
    Mp3InfoTag tag;
    tag.name.assign(data.begin(), data.begin() + 4);
    const uint32_t flags = bigEndian32(&data[4]);
    size_t at = 8;
    if (flags & kHasFrames && data.size() >= at + 4) tag.frames = bigEndian32(&data[at]);
    for (size_t i = 0; i < std::size(kFieldBytes); ++i) at += flags >> i & 1 ? kFieldBytes[i] : 0;
    if (at < data.size()) readExtension(data.subspan(at), tag);
    return tag;
}

std::optional<Mp3InfoTag> readVbri(std::span<const Zet8u> data) {
    if (data.size() < kVbriFramesOffset + 4 || !hasText(data, "VBRI")) return std::nullopt;
    Mp3InfoTag tag;
    tag.name = "VBRI";
    tag.frames = bigEndian32(&data[kVbriFramesOffset]);
    return tag;
}

}  // namespace

/** Protected frames have the Xing tag behind the CRC or in its place. */
std::optional<Mp3InfoTag> readMp3InfoTag(std::span<const Zet8u> frame) {
    if (frame.size() < kHeaderBytes) return std::nullopt;
    const size_t side = kHeaderBytes + mp3SideInfoBytes(frame[1] & 0x08, frame[3] >> 6 == 3);
    const bool isProtected = (frame[1] & 1) == 0;
    for (const size_t at : {side, side + kCrcBytes}) {
        if (at > side && !isProtected) break;
        if (at > frame.size()) break;
        if (auto tag = readXing(frame.subspan(at))) return tag;
    }
    return frame.size() > kVbriOffset ? readVbri(frame.subspan(kVbriOffset)) : std::nullopt;
}

}  // namespace zetac::codec
