// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/tags.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace zetac::codec {
namespace {

constexpr size_t kId3v1Bytes = 128;
constexpr size_t kEnhancedBytes = 227;  // of "TAG+"
constexpr size_t kId3v2HeaderBytes = 10;
constexpr char kLyricsBegin[] = "LYRICSBEGIN";
constexpr char kLyricsEnd[] = "LYRICS200";
constexpr size_t kLyricsDigits = 6;
constexpr size_t kLyricsBytesMax = 16384;  // that a walk looks through; at the end the digits count
constexpr size_t kApeHeaderBytes = 32;
constexpr uint32_t kApeHasHeader = 0x80000000u;
constexpr uint32_t kApeIsHeader = 0x20000000u;

bool startsWith(std::span<const Zet8u> data, const char* text) {
    const size_t length = std::strlen(text);
    return data.size() >= length && std::memcmp(data.data(), text, length) == 0;
}

uint32_t littleEndian32(const Zet8u* p) {
    return p[0] | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16 |
           static_cast<uint32_t>(p[3]) << 24;
}

/** The size field has seven bits a byte; a flag announces a footer as long as the header. */
size_t id3v2Length(std::span<const Zet8u> tag) {
    if (tag.size() < kId3v2HeaderBytes || !startsWith(tag, "ID3")) return 0;
    if (tag[3] == 0xFF || tag[4] == 0xFF) return 0;
    size_t size = 0;
    for (size_t i = 6; i < 10; ++i) {
        if (tag[i] & 0x80) return 0;
        size = size << 7 | tag[i];
    }
    return size + (tag[5] & 0x10 ? 2 * kId3v2HeaderBytes : kId3v2HeaderBytes);
}

/** An appended ID3v2.4 tag ends with its footer. */
size_t trailingId3v2Length(std::span<const Zet8u> data) {
    if (data.size() < 2 * kId3v2HeaderBytes) return 0;
    const auto footer = data.last(kId3v2HeaderBytes);
    if (!startsWith(footer, "3DI")) return 0;
    size_t size = 0;
    for (size_t i = 6; i < kId3v2HeaderBytes; ++i) size = size << 7 | (footer[i] & 0x7F);
    return size + 2 * kId3v2HeaderBytes;
}

/** An APE tag that starts with its header; the size field counts all but that. */
size_t apeLength(std::span<const Zet8u> tag) {
    if (tag.size() < kApeHeaderBytes || !startsWith(tag, "APETAGEX")) return 0;
    if (!(littleEndian32(&tag[20]) & kApeIsHeader)) return 0;
    return kApeHeaderBytes + littleEndian32(&tag[12]);
}

/** An APE tag that ends with its footer at the end of the data. */
size_t trailingApeLength(std::span<const Zet8u> data) {
    if (data.size() < kApeHeaderBytes) return 0;
    const auto footer = data.last(kApeHeaderBytes);
    const uint32_t flags = littleEndian32(&footer[20]);
    if (!startsWith(footer, "APETAGEX") || (flags & kApeIsHeader)) return 0;
    const size_t size = littleEndian32(&footer[12]);
    return size + (flags & kApeHasHeader ? kApeHeaderBytes : 0);
}

/** "TAG+" stands in front of "TAG". */
size_t id3v1Length(std::span<const Zet8u> data) {
    if (data.size() >= kEnhancedBytes && startsWith(data, "TAG+")) return kEnhancedBytes;
    return data.size() >= kId3v1Bytes && startsWith(data, "TAG") ? kId3v1Bytes : 0;
}

size_t trailingId3v1Length(std::span<const Zet8u> data) {
    if (data.size() < kId3v1Bytes || id3v1Length(data.last(kId3v1Bytes)) == 0) return 0;
    constexpr size_t kBoth = kEnhancedBytes + kId3v1Bytes;
    return data.size() >= kBoth && startsWith(data.last(kBoth), "TAG+") ? kBoth : kId3v1Bytes;
}

/** Lyrics3: from "LYRICSBEGIN" to "LYRICS200", with six digits of length in front of that. */
size_t lyricsLength(std::span<const Zet8u> tag) {
    if (!startsWith(tag, kLyricsBegin)) return 0;
    tag = tag.first(std::min(tag.size(), kLyricsBytesMax));
    const auto end = std::search(tag.begin(), tag.end(), kLyricsEnd, std::end(kLyricsEnd) - 1);
    return end == tag.end() ? 0
                            : static_cast<size_t>(end - tag.begin()) + std::size(kLyricsEnd) - 1;
}

size_t trailingLyricsLength(std::span<const Zet8u> data) {
    constexpr size_t kEndBytes = kLyricsDigits + std::size(kLyricsEnd) - 1;
    if (data.size() < kEndBytes) return 0;
    const auto end = data.last(kEndBytes);
    if (!startsWith(end.subspan(kLyricsDigits), kLyricsEnd)) return 0;
    size_t size = 0;
    for (const Zet8u digit : end.first(kLyricsDigits)) {
        if (digit < '0' || digit > '9') return 0;
        size = size * 10 + digit - '0';
    }
    return size + kEndBytes;
}

/** MPEG audio in a RIFF file: its chunks up to the sound. */
size_t riffLength(std::span<const Zet8u> data) {
    constexpr size_t kFrontBytes = 12;
    constexpr size_t kChunkBytes = 8;
    if (!startsWith(data, "RIFF") || data.size() < kFrontBytes ||
        !startsWith(data.subspan(8), "WAVE")) {
        return 0;
    }
    size_t at = kFrontBytes;
    while (data.size() - at >= kChunkBytes) {
        const size_t size = littleEndian32(&data[at + 4]);
        if (startsWith(data.subspan(at), "data")) return at + kChunkBytes;
        if (size > data.size() - at - kChunkBytes) return 0;
        at += kChunkBytes + size + size % 2;
        if (at > data.size()) return 0;
    }
    return 0;
}

/** A tag that claims more than there is hides nothing: it is none. Only ID3v2, whose header says
 *  enough, may be cut off at the end. */
Tag tagAt(std::span<const Zet8u> data, size_t position) {
    if (position >= data.size()) return {};
    const auto rest = data.subspan(position);
    Tag tag{"ID3v2", std::min(id3v2Length(rest), rest.size())};
    if (tag.bytes == 0) tag = {"APE", apeLength(rest)};
    if (tag.bytes == 0) tag = {"ID3v1", id3v1Length(rest)};
    if (tag.bytes == 0) tag = {"Lyrics3", lyricsLength(rest)};
    if (tag.bytes == 0) tag = {"RIFF", riffLength(rest)};
    return tag.bytes <= rest.size() ? tag : Tag{};
}

Tag trailingTag(std::span<const Zet8u> data) {
    Tag tag{"APE", trailingApeLength(data)};
    if (tag.bytes == 0) tag = {"ID3v1", trailingId3v1Length(data)};
    if (tag.bytes == 0) tag = {"Lyrics3", trailingLyricsLength(data)};
    if (tag.bytes == 0) tag = {"ID3v2", trailingId3v2Length(data)};
    return tag.bytes <= data.size() ? tag : Tag{};
}

}  // namespace

size_t tagLength(std::span<const Zet8u> data, size_t position) {
    return tagAt(data, position).bytes;
}

size_t trailingTagLength(std::span<const Zet8u> data) {
    size_t total = 0;
    while (const size_t length = trailingTag(data.first(data.size() - total)).bytes) {
        total += length;
    }
    return total;
}

std::vector<Tag> outerTags(std::span<const Zet8u> data) {
    std::vector<Tag> tags;
    size_t start = 0;
    for (Tag tag; (tag = tagAt(data, start)).bytes > 0; start += tag.bytes) tags.push_back(tag);
    std::vector<Tag> trailing;  // the last one first
    auto rest = data.subspan(start);
    for (Tag tag; (tag = trailingTag(rest)).bytes > 0;) {
        trailing.push_back(tag);
        rest = rest.first(rest.size() - tag.bytes);
    }
    tags.insert(tags.end(), trailing.rbegin(), trailing.rend());
    return tags;
}

}  // namespace zetac::codec
