// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/tags.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace zetac::codec {
namespace {

constexpr size_t kId3v1Bytes = 128;
constexpr size_t kId3v2HeaderBytes = 10;
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

size_t id3v1Length(std::span<const Zet8u> data) {
    return data.size() >= kId3v1Bytes && startsWith(data, "TAG") ? kId3v1Bytes : 0;
}

Tag tagAt(std::span<const Zet8u> data, size_t position) {
    if (position >= data.size()) return {};
    const auto rest = data.subspan(position);
    Tag tag{"ID3v2", id3v2Length(rest)};
    if (tag.bytes == 0) tag = {"APE", apeLength(rest)};
    if (tag.bytes == 0) tag = {"ID3v1", id3v1Length(rest)};
    tag.bytes = std::min(tag.bytes, rest.size());
    return tag;
}

Tag trailingTag(std::span<const Zet8u> data) {
    Tag tag{"APE", trailingApeLength(data)};
    if (tag.bytes == 0 && data.size() >= kId3v1Bytes) {
        tag = {"ID3v1", id3v1Length(data.last(kId3v1Bytes))};
    }
    tag.bytes = std::min(tag.bytes, data.size());
    return tag;
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
    const auto front = static_cast<ptrdiff_t>(tags.size());
    auto rest = data.subspan(start);
    for (Tag tag; (tag = trailingTag(rest)).bytes > 0;) {
        tags.insert(tags.begin() + front, tag);
        rest = rest.first(rest.size() - tag.bytes);
    }
    return tags;
}

}  // namespace zetac::codec
