// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/file_data.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "base/bits.h"
#include "io/descriptor.h"
#include "io/signals.h"

namespace zetac::tool {

FileData::FileData(const std::string& path) {
    constexpr size_t kChunk = size_t{1} << 20;
    const Descriptor opened(path == "-" ? -1 : open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const int file = path == "-" ? STDIN_FILENO : opened.get();
    struct stat status {};
    if (file < 0 || fstat(file, &status) != 0)
        throw Failure(std::string("cannot be opened: ") + std::strerror(errno));
    if (S_ISDIR(status.st_mode)) throw Failure("is a folder");
    const bool hasLength = S_ISREG(status.st_mode);
    if (hasLength &&
        static_cast<uint64_t>(status.st_size) >= storage_.max_size() - codec::kReadAhead)
        throw std::bad_alloc();  // in 32 bits
    size_t room = hasLength ? static_cast<size_t>(status.st_size) + 1 : kChunk;
    for (;;) {
        storage_.resize(size_ + room);
        const ssize_t count = read(file, storage_.data() + size_, room);
        if (count < 0 && errno != EINTR)
            throw Failure(std::string("cannot be read: ") + std::strerror(errno));
        stopIfInterrupted();
        if (count == 0) break;
        if (count > 0) size_ += static_cast<size_t>(count);
        room = kChunk;
        if (size_ > kEndlessBytesMax && !hasLength)
            throw Failure("has no end within 512 MiB, the most that is taken from a pipe");
    }
    storage_.resize(size_ + codec::kReadAhead);
    if (size_ == 0) throw Failure("is empty");
}

}  // namespace zetac::tool
