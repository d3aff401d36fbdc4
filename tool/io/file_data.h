// A whole file in memory, with the room behind it that bit-stream readers need.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <span>
#include <string>
#include <vector>

#include "io/failure.h"

namespace zetac::tool {

class FileData {
  public:
    /** Most bytes of a pipe or a device, which may have no end. */
    static constexpr size_t kEndlessBytesMax = size_t{1} << 29;

    /** Reads a file, or standard input for "-". Throws Failure. */
    explicit FileData(const std::string& path);

    std::span<const Zet8u> bytes() const { return {storage_.data(), size_}; }

  private:
    std::vector<Zet8u> storage_;
    size_t size_ = 0;
};

}  // namespace zetac::tool
