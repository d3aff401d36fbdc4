// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/tag_scanner.h"

#include <algorithm>
#include <cctype>

namespace zetac::codec {
namespace {

constexpr uint64_t kId3v1Bytes = 128;
constexpr uint64_t kEnhancedId3v1Bytes = 227;  // "TAG+", ahead of an ID3v1 tag
constexpr uint64_t kId3v2HeaderBytes = 10;
constexpr uint64_t kApeHeaderBytes = 32;
constexpr uint32_t kApeHasHeader = 0x80000000u;
constexpr uint32_t kApeIsHeader = 0x20000000u;
constexpr uint32_t kApeItemsMax = 65536;
constexpr std::string_view kApeStart = "APETAGEX";
constexpr std::string_view kLyricsStart = "LYRICSBEGIN";
constexpr uint64_t kRiffBytes = 12;

uint32_t littleEndian32(const Zet8u* p) {
    return p[0] | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16 |
           static_cast<uint32_t>(p[3]) << 24;
}

bool isPrintable(Zet8u c) {
    return c >= 0x20 && c < 0x7F;
}

using Part = TagPiece::Part;

/** What a text at the start of a view and this many bytes tell. */
template <class Length>
TagPiece tagOf(TagKind kind, Part part, View view, std::string_view text, size_t bytes,
               Length length) {
    TagPiece tag{view.startsWith(text), kind, part};
    if (tag.answer != Answer::kYes) return tag;
    if (view.awaits(bytes)) return {Answer::kUnknown};
    if (!view.has(bytes)) return {};
    tag.bytes = length(view.bytes.data());
    return tag.bytes > 0 ? tag : TagPiece{};
}

/** The same where the text tells all. */
TagPiece tagOf(TagKind kind, Part part, View view, std::string_view text, size_t bytes) {
    return tagOf(kind, part, view, text, bytes, [bytes](const Zet8u*) { return bytes; });
}

/** The size of an ID3v2 tag has seven bits a byte; a flag announces a footer as long as the header.
 *  @return bytes of the tag, or 0 */
uint64_t id3v2Bytes(const Zet8u* tag) {
    uint64_t size = 0;
    for (int i = 6; i < 10; ++i) {
        if (tag[i] & 0x80) return 0;
        size = size << 7 | tag[i];
    }
    if (tag[3] == 0xFF || tag[4] == 0xFF) return 0;
    return size + (tag[5] & 0x10 ? 2 * kId3v2HeaderBytes : kId3v2HeaderBytes);
}

TagPiece id3v1At(View view) {
    const TagPiece enhanced = tagOf(
        TagKind::kId3v1, Part::kWhole, view, "TAG+", kEnhancedId3v1Bytes + 3, [](const Zet8u* p) {
            const bool isAhead = std::equal(p, p + 3, p + kEnhancedId3v1Bytes);
            return isAhead ? kEnhancedId3v1Bytes : 0;
        });
    if (enhanced.answer != Answer::kNo) return enhanced;
    return tagOf(TagKind::kId3v1, Part::kWhole, view, "TAG", kId3v1Bytes);
}

TagPiece apeHeaderAt(View view) {
    return tagOf(TagKind::kApe, Part::kStart, view, kApeStart, kApeHeaderBytes, [](const Zet8u* p) {
        return littleEndian32(p + 20) & kApeIsHeader ? kApeHeaderBytes : 0;
    });
}

/** A field of version 2, with a name of three letters and a length of five digits; or the end of
 *  such a tag; or the whole text of version 1, which is short. */
TagPiece lyricsAt(View view) {
    constexpr size_t kFieldHeader = 8;
    constexpr size_t kEndBytes = 6 + 9;  // a length of six digits and "LYRICS200"
    constexpr size_t kTextMax = 5100;
    constexpr std::string_view kTextEnd = "LYRICSEND";
    if (view.awaits(kEndBytes)) return {Answer::kUnknown};
    if (!view.has(kEndBytes)) return {};
    const auto isDigit = [](Zet8u c) { return std::isdigit(c) != 0; };
    const auto isUpper = [](Zet8u c) { return std::isupper(c) != 0; };
    const Zet8u* p = view.bytes.data();
    if (std::all_of(p, p + 6, isDigit) && view.from(6).startsWith("LYRICS200") == Answer::kYes) {
        return {Answer::kYes, TagKind::kLyrics3, Part::kEnd, kEndBytes};
    }
    if (std::all_of(p, p + 3, isUpper) && std::all_of(p + 3, p + kFieldHeader, isDigit)) {
        uint64_t length = 0;
        for (size_t i = 3; i < kFieldHeader; ++i) length = length * 10 + (p[i] - '0');
        return {Answer::kYes, TagKind::kLyrics3, Part::kMiddle, kFieldHeader + length};
    }
    const auto text = view.bytes.first(std::min(view.size(), kTextMax + kTextEnd.size()));
    const auto end = std::search(text.begin(), text.end(), kTextEnd.begin(), kTextEnd.end());
    if (end == text.end())
        return {view.awaits(kTextMax + kTextEnd.size()) ? Answer::kUnknown : Answer::kNo};
    return {Answer::kYes, TagKind::kLyrics3, Part::kEnd,
            static_cast<uint64_t>(end - text.begin()) + kTextEnd.size()};
}

}  // namespace

const char* nameOf(TagKind kind) {
    static constexpr const char* kNames[kTagKinds] = {"ID3v2", "APE", "ID3v1", "Lyrics3", "RIFF"};
    return kNames[static_cast<int>(kind)];
}

TagPiece TagScanner::at(View view) const {
    if (view.size() == 0) return {};
    TagPiece tag;
    if (ape_.items > 0) tag = apeItemAt(view);
    if (tag.answer == Answer::kNo && isInLyrics_) tag = lyricsAt(view);
    if (tag.answer != Answer::kNo) return tag;
    switch (view[0]) {
        case 'I':
            tag = tagOf(TagKind::kId3v2, Part::kWhole, view, "ID3", kId3v2HeaderBytes, id3v2Bytes);
            break;
        case 'A':
            tag = apeHeaderAt(view);
            break;
        case 'T':
            tag = id3v1At(view);
            break;
        case 'L':
            tag = tagOf(TagKind::kLyrics3, Part::kStart, view, kLyricsStart, kLyricsStart.size());
            break;
        case 'R':
            tag = tagOf(TagKind::kRiff, Part::kStart, view, "RIFF", kRiffBytes, [](const Zet8u* p) {
                const std::string_view form(reinterpret_cast<const char*>(p) + 8, 4);
                return form == "WAVE" || form == "RMP3" ? kRiffBytes : 0;
            });
            break;
        default:
            break;
    }
    return tag.answer == Answer::kNo && isInRiff_ ? chunkAt(view) : tag;
}

/** An item: the length of its value, flags, a printable key that ends with a zero, the value. The
 *  footer stands where an item would. */
TagPiece TagScanner::apeItemAt(View view) const {
    constexpr size_t kItemHeader = 8;
    constexpr size_t kKeyMax = 255;
    const TagPiece footer = tagOf(TagKind::kApe, Part::kEnd, view, kApeStart, kApeHeaderBytes);
    if (footer.answer != Answer::kNo) return footer;
    if (view.awaits(kItemHeader)) return {Answer::kUnknown};
    if (!view.has(kItemHeader) || littleEndian32(&view[0]) > ape_.bytes) return {};
    size_t end = kItemHeader;
    while (end < view.size() && end <= kItemHeader + kKeyMax && isPrintable(view[end])) ++end;
    if (view.awaits(end + 1)) return {Answer::kUnknown};
    if (!view.has(end + 1) || view[end] != 0 || end < kItemHeader + 2) return {};
    return {Answer::kYes, TagKind::kApe, Part::kMiddle, end + 1 + littleEndian32(&view[0])};
}

/** The header of the data, or another chunk as a whole, with the byte that fills up the one before
 *  it. */
TagPiece TagScanner::chunkAt(View view) const {
    constexpr uint32_t kChunkMax = uint32_t{1} << 24;  // larger sizes are damage
    constexpr size_t kChunkHeader = 8;
    const size_t start = view[0] == 0;
    if (start == 1 && view.size() == 1 && view.isFinal) {
        return {Answer::kYes, TagKind::kRiff, Part::kMiddle, 1};
    }
    if (view.awaits(start + kChunkHeader)) return {Answer::kUnknown};
    if (!view.has(start + kChunkHeader)) return {};
    const Zet8u* chunk = view.bytes.data() + start;
    if (!std::all_of(chunk, chunk + 4, isPrintable)) return {};
    TagPiece tag{Answer::kYes, TagKind::kRiff, Part::kMiddle, start + kChunkHeader};
    if (view.from(start).startsWith("data") == Answer::kYes) return tag;
    const uint32_t size = littleEndian32(chunk + 4);
    tag.bytes += size + size % 2;
    return size <= kChunkMax ? tag : TagPiece{};
}

TagPiece TagScanner::amid(View view) {
    if (view.size() == 0) return {};
    if (view[0] == 'T') {
        const Answer answer = view.startsWith("TAG");
        if (answer != Answer::kYes || view.size() > kId3v1Bytes)
            return {answer == Answer::kUnknown ? answer : Answer::kNo};
        if (!view.isFinal) return {Answer::kUnknown};
        return tagOf(TagKind::kId3v1, Part::kWhole, view, "TAG", kId3v1Bytes);
    }
    TagPiece tag;
    if (view[0] == 'A') {
        tag = tagOf(TagKind::kApe, Part::kWhole, view, kApeStart, kApeHeaderBytes);
        if (tag.answer != Answer::kYes) return tag;
        const uint32_t size = littleEndian32(&view[12]);
        const uint32_t flags = littleEndian32(&view[20]);
        if (flags & kApeIsHeader) return apeHeaderAt(view);
        if (size < kApeHeaderBytes) return {};
        tag.before = size - (flags & kApeHasHeader ? 0 : kApeHeaderBytes);
    } else if (view[0] == '3') {
        tag = tagOf(TagKind::kId3v2, Part::kWhole, view, "3DI", kId3v2HeaderBytes,
                    [](const Zet8u* p) { return id3v2Bytes(p) > 0 ? kId3v2HeaderBytes : 0; });
        if (tag.answer == Answer::kYes)
            tag.before = id3v2Bytes(view.bytes.data()) - kId3v2HeaderBytes;
    }
    return tag;
}

void TagScanner::pass(View view, const TagPiece& tag) {
    kinds_ |= 1u << static_cast<int>(tag.kind);
    if (tag.kind == TagKind::kRiff) isInRiff_ = true;
    isInLyrics_ =
        tag.kind == TagKind::kLyrics3 && (tag.part == Part::kStart || tag.part == Part::kMiddle);
    if (tag.kind != TagKind::kApe || tag.part == Part::kEnd) {
        ape_ = {};
    } else if (tag.part == Part::kStart) {
        ape_ = {std::min(littleEndian32(&view[16]), kApeItemsMax) + 1, littleEndian32(&view[12])};
    } else {
        ape_.bytes -= std::min(ape_.bytes, static_cast<uint32_t>(tag.bytes));
        --ape_.items;
    }
}

}  // namespace zetac::codec
