// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "inspect/report.h"

#include <cstdio>

namespace zetac::tool {
namespace {

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
            result += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char code[8];
            std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
            result += code;
        } else {
            result += c;
        }
    }
    return result + '"';
}

std::string named(const char* name, const std::string& value) {
    return quoted(name).append(": ").append(value);
}

}  // namespace

std::string join(const std::vector<std::string>& parts, const char* separator) {
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
    return text;
}

std::vector<std::string> pick(unsigned bits, std::initializer_list<const char*> names) {
    std::vector<std::string> picked;
    for (const char* name : names) {
        if (bits & 1) picked.emplace_back(name);
        bits >>= 1;
    }
    return picked;
}

void Damage::add(size_t position, std::string fault) {
    if (frames++ > 0) return;
    firstPosition = position;
    firstFault = std::move(fault);
}

void Report::line(std::string label, std::string text) {
    lines_.emplace_back(std::move(label), std::move(text));
}

void Report::member(const char* name, const std::string& text) {
    members_.push_back(named(name, quoted(text)));
}

void Report::member(const char* name, const std::vector<std::string>& texts) {
    std::vector<std::string> values;
    values.reserve(texts.size());
    for (const std::string& text : texts) values.push_back(quoted(text));
    members_.push_back(named(name, std::string("[").append(join(values, ", ")).append("]")));
}

void Report::member(const char* name, double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.6f", value);
    members_.push_back(named(name, text));
}

void Report::member(const char* name, uint64_t value) {
    members_.push_back(named(name, std::to_string(value)));
}

void Report::member(const char* name, bool value) {
    members_.push_back(named(name, value ? "true" : "false"));
}

void Report::add(const Damage& damage) {
    isDamaged_ = damage.frames > 0 || damage.foreignBytes > 0;
    if (damage.frames > 0) {
        line("damage", std::to_string(damage.frames) + " frames, the first at byte " +
                           std::to_string(damage.firstPosition) + ": " + damage.firstFault);
    }
    if (damage.foreignBytes > 0) {
        line("foreign bytes", std::to_string(damage.foreignBytes) + " outside of any frame");
    }
    member("damaged_frames", damage.frames);
    member("foreign_bytes", damage.foreignBytes);
}

std::string Report::text() const {
    std::string result;
    for (const auto& [label, text] : lines_) {
        char padded[32];
        std::snprintf(padded, sizeof padded, "  %-14s", label.c_str());
        result += padded + text + '\n';
    }
    return result;
}

std::string Report::json() const {
    return std::string("{").append(join(members_, ", ")).append("}");
}

}  // namespace zetac::tool
