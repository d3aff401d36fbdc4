// What `zetac info` says of a file, in words and for programs.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace zetac::tool {

/** What is wrong with a file. */
struct Damage {
    uint64_t frames = 0;
    size_t firstPosition = 0;
    std::string firstFault;
    uint64_t foreignBytes = 0;

    void add(size_t position, std::string fault);
};

class Report {
  public:
    bool isDamaged() const { return isDamaged_; }

    /** A line for people. */
    void line(std::string label, std::string text);

    /** Members of the JSON object. */
    void member(const char* name, const std::string& text);
    void member(const char* name, const char* text) { member(name, std::string(text)); }
    void member(const char* name, const std::vector<std::string>& texts);
    void member(const char* name, double value);
    void member(const char* name, uint64_t value);
    void member(const char* name, int value) { member(name, static_cast<uint64_t>(value)); }
    void member(const char* name, bool value);

    /** Lines and members. */
    void add(const Damage& damage);

    std::string text() const;
    std::string json() const;

  private:
    bool isDamaged_ = false;
    std::vector<std::pair<std::string, std::string>> lines_;
    std::vector<std::string> members_;
};

/** "a, b, c". */
std::string join(const std::vector<std::string>& parts, const char* separator);

/** The names of the bits that are set. */
std::vector<std::string> pick(unsigned bits, std::initializer_list<const char*> names);

/** @param data  with kReadAhead readable bytes behind it */
void reportAac(std::span<const Zet8u> data, Report& report);
void reportMp3(std::span<const Zet8u> data, Report& report);

}  // namespace zetac::tool
