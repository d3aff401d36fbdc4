// A whole file in memory, with the room behind it that bit-stream readers need.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <span>
#include <string>
#include <vector>

namespace zetac::tool {

/** What stops the work on a file; what() is the line for the user, without the file's name. */
class Failure : public std::exception {
  public:
    explicit Failure(std::string text) : text_(std::move(text)) {}
    const char* what() const noexcept override { return text_.c_str(); }

  private:
    std::string text_;
};

class FileData {
  public:
    /** Reads a file, or standard input for "-". Throws Failure. */
    explicit FileData(const std::string& path);

    std::span<const Zet8u> bytes() const { return {storage_.data(), size_}; }

  private:
    std::vector<Zet8u> storage_;
    size_t size_ = 0;
};

}  // namespace zetac::tool
