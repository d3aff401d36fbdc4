// A file that appears complete or not at all.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <span>
#include <string>

namespace zetac::tool {

/** A temporary file; commit() gives it its name, or sends it to standard output. Without commit()
 *  nothing remains. Methods throw Failure. */
class OutputFile {
  public:
    /** @param path  "-" for standard output */
    explicit OutputFile(std::string path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile(OutputFile&&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    OutputFile& operator=(OutputFile&&) = delete;

    /** To write to; open for reading as well. */
    int descriptor() const { return descriptor_; }
    void write(std::span<const Zet8u> bytes);
    /** Writes over the first bytes. */
    void rewriteStart(std::span<const Zet8u> bytes);
    void commit();

  private:
    void sendToStandardOutput();

    std::string path_;
    std::string temporary_;  // name; empty for a file without one
    int descriptor_ = -1;
};

/** Throws Failure with the reason that errno has. */
[[noreturn]] void failBecause(const std::string& what);

}  // namespace zetac::tool
