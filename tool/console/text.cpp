// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "console/text.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace zetac::tool {
namespace {

unsigned byteAt(std::string_view text, size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
}

/** Bytes of the character that stands in front (RFC 3629), or 0 when it is not to be shown: control
 *  characters, those of two bytes included, and what is no UTF-8. */
size_t shownCharacter(std::string_view text) {
    const unsigned first = byteAt(text, 0), second = byteAt(text, 1);
    if (first < 0x80) return first >= 0x20 && first != 0x7F ? 1 : 0;
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || (first == 0xC2 && second < 0xA0)) return 0;
    if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F)) return 0;
    if ((first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F)) return 0;
    for (size_t i = 1; i < length; ++i)
        if ((byteAt(text, i) & 0xC0) != 0x80) return 0;
    return length;
}

/** Damerau's and Levenshtein's distance of two words: optimal string alignment. */
size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::vector<size_t>> cost(a.size() + 1, std::vector<size_t>(b.size() + 1));
    for (size_t i = 0; i <= a.size(); ++i) {
        for (size_t k = 0; k <= b.size(); ++k) {
            if (i == 0 || k == 0) {
                cost[i][k] = i + k;
                continue;
            }
            const size_t change = cost[i - 1][k - 1] + (a[i - 1] != b[k - 1]);
            cost[i][k] = std::min({change, cost[i - 1][k] + 1, cost[i][k - 1] + 1});
            const bool isSwap = i > 1 && k > 1 && a[i - 1] == b[k - 2] && a[i - 2] == b[k - 1];
            if (isSwap) cost[i][k] = std::min(cost[i][k], cost[i - 2][k - 2] + 1);
        }
    }
    return cost[a.size()][b.size()];
}

}  // namespace

std::string escaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const size_t length = shownCharacter(text);
        if (length > 0) {
            result += text.substr(0, length);
        } else if (text[0] == '\n') {
            result += "\\n";
        } else {
            char code[8];
            std::snprintf(code, sizeof code, "\\x%02x", byteAt(text, 0));
            result += code;
        }
        text.remove_prefix(std::max<size_t>(length, 1));
    }
    return result;
}

std::string shownOn(int descriptor, std::string_view text) {
    return isatty(descriptor) ? escaped(text) : std::string(text);
}

std::string join(std::span<const std::string> parts, std::string_view separator) {
    std::string text;
    for (const std::string& part : parts) {
        if (!text.empty()) text += separator;
        text += part;
    }
    return text;
}

std::string enumerated(std::span<const std::string> parts) {
    if (parts.size() < 2) return join(parts, "");
    return join(parts.first(parts.size() - 1), ", ") + " and " + parts.back();
}

std::string nearest(std::string_view word, std::span<const std::string> words) {
    const std::string* best = nullptr;
    size_t least = word.size() / 3 + 1;
    for (const std::string& candidate : words) {
        const size_t changes = distance(word, candidate);
        if (changes >= least) continue;
        least = changes;
        best = &candidate;
    }
    return best ? *best : "";
}

}  // namespace zetac::tool
