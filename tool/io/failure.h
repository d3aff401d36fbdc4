// What stops the work on a file.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <exception>
#include <string>

namespace zetac::tool {

class Failure : public std::exception {
  public:
    /** Of the input that is worked on.
     *  @param text  the line for the user, without the file's name */
    explicit Failure(std::string text) : text_(std::move(text)) {}
    /** Of another file, such as the output. */
    Failure(std::string file, std::string text) : file_(std::move(file)), text_(std::move(text)) {}

    const char* what() const noexcept override { return text_.c_str(); }
    /** Empty: the input. */
    const std::string& file() const { return file_; }

  private:
    std::string file_;
    std::string text_;
};

}  // namespace zetac::tool
