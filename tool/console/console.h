// Lines and a progress bar on standard error, from any number of threads.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>

namespace zetac::tool {

/** Errors are always shown, notes unless the user wants quiet, and progress on a terminal only. */
class Console {
  public:
    explicit Console(bool isQuiet);
    ~Console();
    Console(const Console&) = delete;
    Console(Console&&) = delete;
    Console& operator=(const Console&) = delete;
    Console& operator=(Console&&) = delete;

    void error(const std::string& file, const std::string& text);
    void note(const std::string& file, const std::string& text);

    /** Announces work, in bytes of input. */
    void expect(uint64_t bytes);
    /** Reports work as done. */
    void advance(uint64_t bytes);

  private:
    void print(const std::string& file, const std::string& text);
    void draw();
    void erase();

    const bool isQuiet_;
    const bool showsProgress_;
    std::mutex mutex_;
    uint64_t expected_ = 0;
    uint64_t done_ = 0;
    bool isDrawn_ = false;
    std::chrono::steady_clock::time_point lastDrawn_;
};

}  // namespace zetac::tool
