// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "reader/icy.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace zetac::codec {
namespace {

constexpr std::string_view kStarts[] = {"ICY ", "HTTP/1."};
constexpr size_t kMetadataUnit = 16;  // bytes that one step of the length byte counts

std::string_view textOf(std::span<const uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/** Value of a header line whose name this is, in any case; nothing for another line. */
std::optional<std::string_view> valueOf(std::string_view line, std::string_view name) {
    if (line.size() <= name.size() || line[name.size()] != ':') return std::nullopt;
    const bool isEqual = std::equal(name.begin(), name.end(), line.begin(), [](char a, char b) {
        return a == std::tolower(static_cast<unsigned char>(b));
    });
    if (!isEqual) return std::nullopt;
    std::string_view value = line.substr(name.size() + 1);
    while (!value.empty() && value.front() == ' ') value.remove_prefix(1);
    return value;
}

/** Bytes of the UTF-8 character at the front; 0 when there is none. */
size_t utf8Length(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) return 1;
    const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || length > text.size()) return 0;
    const auto isTail = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    return std::all_of(text.begin() + 1, text.begin() + static_cast<ptrdiff_t>(length), isTail)
               ? length
               : 0;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const size_t length = utf8Length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

}  // namespace

std::string latin1ToUtf8(std::string_view text) {
    std::string out;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x80) {
            out += c;
        } else {
            out += static_cast<char>(0xC0 | code >> 6);
            out += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return out;
}

std::string toUtf8(std::string_view text) {
    return isUtf8(text) ? std::string(text) : latin1ToUtf8(text);
}

bool mayBeIcyResponse(std::span<const uint8_t> start) {
    return std::any_of(std::begin(kStarts), std::end(kStarts), [&](std::string_view text) {
        return textOf(start).substr(0, text.size()) == text;
    });
}

std::optional<IcyResponse> readIcyResponse(std::span<const uint8_t> start) {
    if (!mayBeIcyResponse(start)) return std::nullopt;
    IcyResponse response;
    std::string_view rest = textOf(start);
    while (true) {
        const size_t end = rest.find('\n');
        if (end == std::string_view::npos) return std::nullopt;
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end + 1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.empty()) break;
        if (const auto interval = valueOf(line, "icy-metaint")) {
            response.interval =
                static_cast<uint32_t>(std::strtoul(std::string(*interval).c_str(), nullptr, 10));
        } else if (const auto name = valueOf(line, "icy-name")) {
            response.name = toUtf8(*name);
        } else if (const auto genre = valueOf(line, "icy-genre")) {
            response.genre = toUtf8(*genre);
        }
    }
    response.bytes = start.size() - rest.size();
    return response;
}

size_t IcyFilter::filter(std::span<uint8_t> piece) {
    if (interval_ == 0) return piece.size();
    size_t out = 0;
    for (size_t in = 0; in < piece.size();) {
        if (untilBlock_ == 0) {
            take(piece[in++]);
            continue;
        }
        const size_t count = std::min<size_t>(untilBlock_, piece.size() - in);
        std::memmove(&piece[out], &piece[in], count);
        untilBlock_ -= static_cast<uint32_t>(count);
        in += count;
        out += count;
    }
    return out;
}

/** A length byte, then the text, padded with zeros: StreamTitle='...';StreamUrl='...'; */
void IcyFilter::take(uint8_t byte) {
    if (blockLeft_ == 0) {
        blockLeft_ = byte * kMetadataUnit;
        block_.clear();
    } else {
        block_ += static_cast<char>(byte);
        --blockLeft_;
    }
    if (blockLeft_ > 0) return;
    untilBlock_ = interval_;
    constexpr std::string_view kTitle = "StreamTitle='";
    const size_t start = block_.find(kTitle);
    if (start == std::string::npos) return;
    const size_t end = block_.find("';", start + kTitle.size());
    title_ = toUtf8(std::string_view(block_).substr(
        start + kTitle.size(), end == std::string::npos ? end : end - start - kTitle.size()));
}

}  // namespace zetac::codec
