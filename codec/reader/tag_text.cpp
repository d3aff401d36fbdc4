// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "reader/tag_text.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <iterator>
#include <optional>

#include "reader/icy.h"

namespace zetac::codec {
namespace {

using Bytes = std::span<const uint8_t>;

constexpr size_t kHeaderBytes = 10;

/** Identifiers of text frames: three letters in ID3v2.2, four behind. */
struct FrameName {
    std::string_view id;
    std::string_view oldId;
    std::string_view name;
};
constexpr FrameName kFrameNames[] = {
    {"TIT2", "TT2", "title"},
    {"TPE1", "TP1", "artist"},
    {"TALB", "TAL", "album"},
    {"TPE2", "TP2", "album artist"},
    {"TCOM", "TCM", "composer"},
    {"TCON", "TCO", "genre"},
    {"TDRC", "TYE", "date"},
    {"TYER", "TYE", "date"},
    {"TRCK", "TRK", "track"},
    {"TPOS", "TPA", "disc"},
    {"TSSE", "TSS", "encoder settings"},
    {"TENC", "TEN", "encoded by"},
    {"TCOP", "TCR", "copyright"},
    {"TBPM", "TBP", "bpm"},
    {"TSRC", "TRC", "isrc"},
    {"TPUB", "TPB", "publisher"},
    {"TLAN", "TLA", "language"},
    {"TIT1", "TT1", "grouping"},
    {"TIT3", "TT3", "subtitle"},
    {"TPE3", "TP3", "conductor"},
};

/** Those that ID3v1 numbers from 0 on. */
constexpr std::string_view kGenres[] = {"Blues",
                                        "Classic Rock",
                                        "Country",
                                        "Dance",
                                        "Disco",
                                        "Funk",
                                        "Grunge",
                                        "Hip-Hop",
                                        "Jazz",
                                        "Metal",
                                        "New Age",
                                        "Oldies",
                                        "Other",
                                        "Pop",
                                        "R&B",
                                        "Rap",
                                        "Reggae",
                                        "Rock",
                                        "Techno",
                                        "Industrial",
                                        "Alternative",
                                        "Ska",
                                        "Death Metal",
                                        "Pranks",
                                        "Soundtrack",
                                        "Euro-Techno",
                                        "Ambient",
                                        "Trip-Hop",
                                        "Vocal",
                                        "Jazz+Funk",
                                        "Fusion",
                                        "Trance",
                                        "Classical",
                                        "Instrumental",
                                        "Acid",
                                        "House",
                                        "Game",
                                        "Sound Clip",
                                        "Gospel",
                                        "Noise",
                                        "Alternative Rock",
                                        "Bass",
                                        "Soul",
                                        "Punk",
                                        "Space",
                                        "Meditative",
                                        "Instrumental Pop",
                                        "Instrumental Rock",
                                        "Ethnic",
                                        "Gothic",
                                        "Darkwave",
                                        "Techno-Industrial",
                                        "Electronic",
                                        "Pop-Folk",
                                        "Eurodance",
                                        "Dream",
                                        "Southern Rock",
                                        "Comedy",
                                        "Cult",
                                        "Gangsta",
                                        "Top 40",
                                        "Christian Rap",
                                        "Pop/Funk",
                                        "Jungle",
                                        "Native US",
                                        "Cabaret",
                                        "New Wave",
                                        "Psychedelic",
                                        "Rave",
                                        "Showtunes",
                                        "Trailer",
                                        "Lo-Fi",
                                        "Tribal",
                                        "Acid Punk",
                                        "Acid Jazz",
                                        "Polka",
                                        "Retro",
                                        "Musical",
                                        "Rock & Roll",
                                        "Hard Rock"};

std::string_view textOf(Bytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string lowerCase(std::string_view text) {
    std::string out(text);
    std::ranges::transform(out, out.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

uint32_t bigEndian(Bytes bytes, int bits) {
    uint32_t value = 0;
    for (const uint8_t byte : bytes) value = value << bits | byte;
    return value;
}

/** Seven bits a byte, unless some byte has eight: then the writer did not know of that. */
size_t tagSize(Bytes bytes) {
    const bool isPlain = std::ranges::any_of(bytes, [](uint8_t byte) { return byte & 0x80; });
    return bigEndian(bytes, isPlain ? 8 : 7);
}

/** Takes out the zeros that keep a tag free of syncs (ID3v2.3, 5; 2.4, 6.1). */
std::vector<uint8_t> undoUnsynchronisation(Bytes bytes) {
    std::vector<uint8_t> out;
    out.reserve(bytes.size());
    for (size_t i = 0; i < bytes.size(); ++i) {
        out.push_back(bytes[i]);
        if (bytes[i] == 0xFF && i + 1 < bytes.size() && bytes[i + 1] == 0) ++i;
    }
    return out;
}

void appendCodePoint(std::string& out, uint32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | code >> 6);
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | code >> 12);
        out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | code >> 18);
        out += static_cast<char>(0x80 | (code >> 12 & 0x3F));
        out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

/** @param isBigEndian  where no byte-order mark says otherwise */
std::string utf16ToUtf8(Bytes bytes, bool isBigEndian) {
    constexpr uint32_t kReplacement = 0xFFFD;
    std::string out;
    uint32_t high = 0;  // surrogate that waits for its second half
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const uint32_t unit =
            isBigEndian ? bytes[i] << 8 | bytes[i + 1] : bytes[i + 1] << 8 | bytes[i];
        if (unit == 0xFEFF) continue;
        if (unit == 0xFFFE) {
            isBigEndian = !isBigEndian;
            continue;
        }
        const bool isLow = unit >= 0xDC00 && unit < 0xE000;
        if (high != 0)
            appendCodePoint(
                out, isLow ? 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00) : kReplacement);
        const bool wasPair = high != 0 && isLow;
        high = unit >= 0xD800 && unit < 0xDC00 ? unit : 0;
        if (high == 0 && !wasPair) appendCodePoint(out, isLow ? kReplacement : unit);
    }
    return out;
}

/** Text in the encoding that the byte in front of a frame's text names (ID3v2.4, 4). */
std::string decodeText(uint8_t encoding, Bytes bytes) {
    switch (encoding) {
        case 0:
            return toUtf8(textOf(bytes));
        case 1:
            return utf16ToUtf8(bytes, false);
        case 2:
            return utf16ToUtf8(bytes, true);
        default:
            return std::string(textOf(bytes));
    }
}

/** Ends the text at its padding, and writes several texts as one. */
std::string joinTexts(std::string text) {
    while (!text.empty() && (text.back() == '\0' || text.back() == ' ')) text.pop_back();
    for (size_t at = 0; (at = text.find('\0', at)) != std::string::npos;) text.replace(at, 1, "; ");
    return text;
}

/** Splits a text in two behind the first zero of its encoding. */
std::pair<Bytes, Bytes> splitAtZero(uint8_t encoding, Bytes bytes) {
    const bool isWide = encoding == 1 || encoding == 2;
    const size_t unit = isWide ? 2 : 1;
    for (size_t i = 0; i + unit <= bytes.size(); i += unit) {
        if (bytes[i] == 0 && (!isWide || bytes[i + 1] == 0)) {
            return {bytes.first(i), bytes.subspan(i + unit)};
        }
    }
    return {bytes, {}};
}

/** "(17)", "17" and "(17)Rock" name a genre of ID3v1. */
std::string genreName(const std::string& text) {
    const bool isBracketed = !text.empty() && text[0] == '(';
    const char* start = text.c_str() + (isBracketed ? 1 : 0);
    char* end = nullptr;
    const unsigned long number = std::strtoul(start, &end, 10);
    if (end == start || number >= std::size(kGenres)) return text;
    if (isBracketed && *end == ')' && end[1] != '\0') return end + 1;
    const bool isAlone = isBracketed ? *end == ')' : *end == '\0';
    return isAlone ? std::string(kGenres[number]) : text;
}

void addText(TagTexts& texts, std::string_view id, uint8_t encoding, Bytes body) {
    const auto* known = std::ranges::find_if(
        kFrameNames, [&](const FrameName& name) { return id == name.id || id == name.oldId; });
    const std::string value = joinTexts(decodeText(encoding, body));
    if (known == std::end(kFrameNames)) {
        texts.add(lowerCase(id), value);
    } else {
        texts.add(known->name, known->name == "genre" ? genreName(value) : value);
    }
}

/** One frame of ID3v2 (2.4, 4): texts, texts with a name, comments. */
void addFrame(TagTexts& texts, std::string_view id, Bytes body) {
    if (body.empty()) return;
    const uint8_t encoding = body[0];
    Bytes rest = body.subspan(1);
    if (id == "TXXX" || id == "TXX") {
        const auto [name, value] = splitAtZero(encoding, rest);
        texts.add(lowerCase(joinTexts(decodeText(encoding, name))),
                  joinTexts(decodeText(encoding, value)));
    } else if (id == "COMM" || id == "COM") {
        constexpr size_t kLanguageBytes = 3;
        if (rest.size() < kLanguageBytes) return;
        const auto [name, value] = splitAtZero(encoding, rest.subspan(kLanguageBytes));
        const std::string described = joinTexts(decodeText(encoding, name));
        texts.add(described.empty() ? "comment" : "comment " + lowerCase(described),
                  joinTexts(decodeText(encoding, value)));
    } else if (id[0] == 'T') {
        addText(texts, id, encoding, rest);
    }
}

/** Body of a frame without what its flags add; nothing when it is compressed or encrypted. */
std::optional<std::vector<uint8_t>> plainBody(int version, unsigned flags, Bytes body) {
    if (version < 3) return std::vector<uint8_t>(body.begin(), body.end());
    const unsigned hidden = version == 3 ? 0xC0 : 0x0C;
    const unsigned grouped = version == 3 ? 0x20 : 0x40;
    if (flags & hidden) return std::nullopt;
    size_t extra = flags & grouped ? 1 : 0;
    if (version == 4 && flags & 0x01) extra += 4;  // the length before unsynchronisation
    if (extra > body.size()) return std::nullopt;
    body = body.subspan(extra);
    if (version == 4 && flags & 0x02) return undoUnsynchronisation(body);
    return std::vector<uint8_t>(body.begin(), body.end());
}

void readFrames(int version, Bytes bytes, TagTexts& texts) {
    const size_t idBytes = version == 2 ? 3 : 4;
    const size_t headBytes = version == 2 ? 6 : 10;
    while (bytes.size() > headBytes && bytes[0] != 0) {
        const Bytes sizeField = bytes.subspan(idBytes, idBytes);
        const size_t size = version == 4 ? tagSize(sizeField) : bigEndian(sizeField, 8);
        const unsigned flags = version == 2 ? 0 : bytes[headBytes - 1];
        const std::string_view id = textOf(bytes.first(idBytes));
        bytes = bytes.subspan(headBytes);
        if (size > bytes.size()) return;
        if (const auto body = plainBody(version, flags, bytes.first(size))) {
            addFrame(texts, id, *body);
        }
        bytes = bytes.subspan(size);
    }
}

}  // namespace

void TagTexts::add(std::string_view name, std::string value) {
    if (name.empty() || value.empty()) return;
    const bool isThere =
        std::ranges::any_of(entries_, [&](const Entry& entry) { return entry.name == name; });
    if (!isThere) entries_.push_back({std::string(name), std::move(value)});
}

void TagTexts::set(std::string_view name, const std::string& value) {
    const auto entry = std::ranges::find_if(
        entries_, [&](const Entry& candidate) { return candidate.name == name; });
    if (entry == entries_.end()) {
        add(name, value);
    } else {
        entry->value = value;
    }
}

void readId3v2(std::span<const uint8_t> tag, TagTexts& texts) {
    if (tag.size() < kHeaderBytes) return;
    const int version = tag[3];
    const unsigned flags = tag[5];
    if (version < 2 || version > 4) return;
    std::vector<uint8_t> body(tag.begin() + kHeaderBytes, tag.end());
    if (version < 4 && flags & 0x80) body = undoUnsynchronisation(body);
    Bytes frames = body;
    if (version > 2 && flags & 0x40 && frames.size() >= 4) {  // an extended header
        const size_t size =
            version == 3 ? bigEndian(frames.first(4), 8) + 4 : tagSize(frames.first(4));
        frames = frames.subspan(std::min(size, frames.size()));
    }
    readFrames(version, frames, texts);
}

void readId3v1(std::span<const uint8_t> tag, TagTexts& texts) {
    const auto field = [&](size_t at, size_t count) {
        return joinTexts(toUtf8(
            textOf(tag.subspan(at, count)).substr(0, textOf(tag.subspan(at, count)).find('\0'))));
    };
    texts.add("title", field(3, 30));
    texts.add("artist", field(33, 30));
    texts.add("album", field(63, 30));
    texts.add("date", field(93, 4));
    texts.add("comment", field(97, 30));
    if (tag[125] == 0 && tag[126] != 0) texts.add("track", std::to_string(tag[126]));
    if (tag[127] < std::size(kGenres)) texts.add("genre", std::string(kGenres[tag[127]]));
}

/** Length and flags, little-endian; the name up to a zero; the value. */
void readApeItems(std::span<const uint8_t> items, TagTexts& texts) {
    constexpr size_t kItemHead = 8;
    while (items.size() > kItemHead) {
        const size_t size =
            items[0] | items[1] << 8 | items[2] << 16 | static_cast<size_t>(items[3]) << 24;
        const bool isText = (items[4] & 0x06) == 0;
        items = items.subspan(kItemHead);
        const size_t nameEnd = textOf(items).find('\0');
        if (nameEnd == std::string_view::npos || size > items.size() - nameEnd - 1) return;
        std::string name = lowerCase(textOf(items.first(nameEnd)));
        if (name == "year") name = "date";
        if (isText)
            texts.add(name, joinTexts(std::string(textOf(items.subspan(nameEnd + 1, size)))));
        items = items.subspan(nameEnd + 1 + size);
    }
}

}  // namespace zetac::codec
