// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "reader/outer_tags.h"

#include <algorithm>
#include <charconv>

namespace zetac::codec {
namespace {

// Texts stand in the first bytes of a tag, pictures may follow: more than this is not looked at.
constexpr size_t kTextBytesMax = size_t{1} << 20;
constexpr size_t kId3v2HeaderBytes = 10;
constexpr size_t kId3v1Bytes = 128;
constexpr size_t kEnhancedBytes = 227;  // "TAG+", in front of ID3v1
constexpr size_t kApeFooterBytes = 32;
constexpr size_t kLyricsEndBytes = 15;  // six digits and "LYRICS200"

bool hasText(std::span<const uint8_t> bytes, std::string_view text) {
    return bytes.size() >= text.size() && std::equal(text.begin(), text.end(), bytes.begin());
}

/** Bytes of the ID3v2 tag whose header this is; 0 when it is none. */
size_t id3v2Bytes(std::span<const uint8_t> header) {
    if (header.size() < kId3v2HeaderBytes || !hasText(header, "ID3")) return 0;
    size_t size = 0;
    for (size_t i = 6; i < kId3v2HeaderBytes; ++i) {
        if (header[i] & 0x80) return 0;
        size = size << 7 | header[i];
    }
    return size + (header[5] & 0x10 ? 2 * kId3v2HeaderBytes : kId3v2HeaderBytes);
}

uint64_t littleEndian32(const uint8_t* p) {
    return p[0] | static_cast<uint64_t>(p[1]) << 8 | static_cast<uint64_t>(p[2]) << 16 |
           static_cast<uint64_t>(p[3]) << 24;
}

/** Reads bytes of the source; fewer than asked for at its end. */
std::vector<uint8_t> bytesAt(ByteSource& source, uint64_t position, uint64_t count) {
    std::vector<uint8_t> bytes(static_cast<size_t>(std::min<uint64_t>(count, kTextBytesMax)));
    const ptrdiff_t read = source.seek(position) ? source.readFully(bytes) : 0;
    bytes.resize(static_cast<size_t>(std::max<ptrdiff_t>(read, 0)));
    return bytes;
}

/** The tag that ends at the end of a range of the source. */
class BackTag {
  public:
    BackTag(ByteSource& source, uint64_t from, uint64_t end)
        : source_(source), from_(from), end_(end) {}

    /** @return its bytes, 0 when there is none */
    uint64_t read(TagTexts& texts, std::vector<uint8_t>& id3v1) {
        if (last(kId3v1Bytes, "TAG")) return takeId3v1(id3v1);
        if (last(kApeFooterBytes, "APETAGEX")) return takeApe(texts);
        if (last(kLyricsEndBytes, {}) && hasText(std::span(end_bytes_).subspan(6), "LYRICS200")) {
            return takeLyrics();
        }
        if (last(kId3v2HeaderBytes, "3DI")) return takeId3v2(texts);
        return 0;
    }

  private:
    /** Reads the last bytes. @return whether they are there and begin with a text */
    bool last(size_t count, std::string_view text) {
        if (end_ - from_ < count) return false;
        end_bytes_ = bytesAt(source_, end_ - count, count);
        return end_bytes_.size() == count && hasText(end_bytes_, text);
    }

    uint64_t takeId3v1(std::vector<uint8_t>& id3v1) {
        id3v1 = end_bytes_;
        const uint64_t both = kEnhancedBytes + kId3v1Bytes;
        if (end_ - from_ < both) return kId3v1Bytes;
        return hasText(bytesAt(source_, end_ - both, 4), "TAG+") ? both : kId3v1Bytes;
    }

    uint64_t takeApe(TagTexts& texts) {
        const uint64_t size = littleEndian32(&end_bytes_[12]);
        const bool hasHeader = end_bytes_[23] & 0x80;
        const uint64_t all = size + (hasHeader ? kApeFooterBytes : 0);
        if (size < kApeFooterBytes || all > end_ - from_) return 0;
        readApeItems(bytesAt(source_, end_ - size, size - kApeFooterBytes), texts);
        return all;
    }

    uint64_t takeLyrics() {
        uint64_t size = 0;
        const auto* digits = reinterpret_cast<const char*>(end_bytes_.data());
        const auto result = std::from_chars(digits, digits + 6, size);
        const bool isWhole = result.ptr == digits + 6 && size + kLyricsEndBytes <= end_ - from_;
        return isWhole ? size + kLyricsEndBytes : 0;
    }

    uint64_t takeId3v2(TagTexts& texts) {
        uint64_t size = 0;
        for (size_t i = 6; i < kId3v2HeaderBytes; ++i) size = size << 7 | (end_bytes_[i] & 0x7F);
        const uint64_t all = size + 2 * kId3v2HeaderBytes;
        if (all > end_ - from_) return 0;
        readId3v2(bytesAt(source_, end_ - all, all - kId3v2HeaderBytes), texts);
        return all;
    }

    ByteSource& source_;
    uint64_t from_;
    uint64_t end_;
    std::vector<uint8_t> end_bytes_;
};

}  // namespace

bool takeFrontTags(Feed& feed, TagTexts& texts) {
    while (true) {
        if (!feed.require(kId3v2HeaderBytes)) return false;
        const size_t length = id3v2Bytes(feed.atHand());
        if (length == 0) return true;
        std::vector<uint8_t> tag;
        tag.reserve(std::min(length, kTextBytesMax));
        for (size_t left = length; left > 0;) {
            if (!feed.require(1)) return false;
            const auto piece = feed.atHand().first(std::min(left, feed.atHand().size()));
            if (piece.empty()) break;
            const size_t room = std::min(piece.size(), kTextBytesMax - tag.size());
            tag.insert(tag.end(), piece.begin(), piece.begin() + static_cast<ptrdiff_t>(room));
            left -= piece.size();
            feed.consume(piece.size());
        }
        readId3v2(tag, texts);
    }
}

uint64_t readBackTags(ByteSource& source, uint64_t from, TagTexts& texts) {
    constexpr int kTagsMax = 16;
    const uint64_t length = source.length().value_or(from);
    uint64_t end = length;
    std::vector<uint8_t> id3v1;
    for (int i = 0; i < kTagsMax && end > from; ++i) {
        const uint64_t bytes = BackTag(source, from, end).read(texts, id3v1);
        if (bytes == 0) break;
        end -= bytes;
    }
    if (!id3v1.empty()) readId3v1(id3v1, texts);
    return length - end;
}

}  // namespace zetac::codec
