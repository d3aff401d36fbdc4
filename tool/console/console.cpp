// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "console/console.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "console/text.h"

namespace zetac::tool {

Console::Console(bool isQuiet)
    : isQuiet_(isQuiet),
      showsProgress_(!isQuiet && isatty(STDERR_FILENO) != 0),
      lastDrawn_(std::chrono::steady_clock::now()) {}

Console::~Console() {
    erase();
}

void Console::error(const std::string& file, const std::string& text) {
    print(file, text);
}

void Console::note(const std::string& file, const std::string& text) {
    if (!isQuiet_) print(file, text);
}

void Console::print(const std::string& file, const std::string& text) {
    const std::lock_guard lock(mutex_);
    erase();
    const std::string line = (file == "-" ? "standard input" : file) + ": " + text;
    std::fprintf(stderr, "zetac: %s\n", shownOn(STDERR_FILENO, line).c_str());
}

void Console::expect(uint64_t bytes) {
    const std::lock_guard lock(mutex_);
    expected_ += bytes;
}

void Console::advance(uint64_t bytes) {
    if (!showsProgress_) return;
    const std::lock_guard lock(mutex_);
    done_ += bytes;
    const auto now = std::chrono::steady_clock::now();
    if (now - lastDrawn_ < std::chrono::milliseconds(100)) return;
    lastDrawn_ = now;
    draw();
}

void Console::draw() {
    constexpr int kWidth = 40;
    const double part =
        expected_ == 0 ? 0
                       : std::min(1.0, static_cast<double>(done_) / static_cast<double>(expected_));
    const std::string bar(static_cast<size_t>(part * kWidth), '#');
    std::fprintf(stderr, "\r[%-*s] %3.0f %%", kWidth, bar.c_str(), part * 100);
    std::fflush(stderr);
    isDrawn_ = true;
}

void Console::erase() {
    if (isDrawn_) std::fputs("\r\033[K", stderr);
    isDrawn_ = false;
}

}  // namespace zetac::tool
