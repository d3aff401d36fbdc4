// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/file_data.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "base/bits.h"

namespace zetac::tool {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const {
        if (file != stdin) std::fclose(file);
    }
};

}  // namespace

FileData::FileData(const std::string& path) {
    constexpr size_t kChunk = size_t{1} << 20;
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) throw Failure("is a folder");
    std::unique_ptr<std::FILE, CloseFile> file(path == "-" ? stdin
                                                           : std::fopen(path.c_str(), "rb"));
    if (!file) throw Failure(std::string("cannot be opened: ") + std::strerror(errno));
    const auto expected = std::filesystem::file_size(path, ignored);
    size_t room = ignored ? kChunk : static_cast<size_t>(expected) + 1;
    for (;;) {
        storage_.resize(size_ + room);
        const size_t count = std::fread(storage_.data() + size_, 1, room, file.get());
        size_ += count;
        if (count < room) break;
        room = kChunk;
    }
    if (std::ferror(file.get())) throw Failure("cannot be read");
    storage_.resize(size_);
    storage_.resize(size_ + codec::kReadAhead);
    if (size_ == 0) throw Failure("is empty");
}

}  // namespace zetac::tool
