// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "reader/byte_source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace zetac::codec {
namespace {

class FileSource final : public ByteSource {
  public:
    explicit FileSource(int descriptor) : descriptor_(descriptor) {
        struct stat status {};
        if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
            length_ = static_cast<uint64_t>(status.st_size);
        }
    }
    ~FileSource() override { close(descriptor_); }
    FileSource(const FileSource&) = delete;
    FileSource(FileSource&&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    FileSource& operator=(FileSource&&) = delete;

    ptrdiff_t read(std::span<uint8_t> buffer) override {
        ssize_t count = 0;
        do {
            count = ::read(descriptor_, buffer.data(), buffer.size());
        } while (count < 0 && errno == EINTR);
        return count;
    }
    bool seek(uint64_t position) override {
        return length_ && lseek(descriptor_, static_cast<off_t>(position), SEEK_SET) >= 0;
    }
    std::optional<uint64_t> length() const override { return length_; }

  private:
    int descriptor_;
    std::optional<uint64_t> length_;
};

class MemorySource final : public ByteSource {
  public:
    explicit MemorySource(std::span<const uint8_t> data) : data_(data) {}

    ptrdiff_t read(std::span<uint8_t> buffer) override {
        const size_t count = std::min(buffer.size(), data_.size() - position_);
        std::copy_n(data_.begin() + static_cast<ptrdiff_t>(position_), count, buffer.begin());
        position_ += count;
        return static_cast<ptrdiff_t>(count);
    }
    bool seek(uint64_t position) override {
        if (position > data_.size()) return false;
        position_ = static_cast<size_t>(position);
        return true;
    }
    std::optional<uint64_t> length() const override { return data_.size(); }

  private:
    std::span<const uint8_t> data_;
    size_t position_ = 0;
};

class IoSource final : public ByteSource {
  public:
    explicit IoSource(const ZetacIo& io) : io_(io) {}
    ~IoSource() override {
        if (io_.close != nullptr) io_.close(io_.user);
    }
    IoSource(const IoSource&) = delete;
    IoSource(IoSource&&) = delete;
    IoSource& operator=(const IoSource&) = delete;
    IoSource& operator=(IoSource&&) = delete;

    ptrdiff_t read(std::span<uint8_t> buffer) override {
        return io_.read(io_.user, buffer.data(), buffer.size());
    }
    bool seek(uint64_t position) override {
        return io_.seek != nullptr && io_.seek(io_.user, position) == 0;
    }
    std::optional<uint64_t> length() const override {
        const int64_t bytes = io_.length != nullptr ? io_.length(io_.user) : -1;
        if (bytes < 0) return std::nullopt;
        return static_cast<uint64_t>(bytes);
    }

  private:
    ZetacIo io_;
};

}  // namespace

ptrdiff_t ByteSource::readFully(std::span<uint8_t> buffer) {
    size_t filled = 0;
    while (filled < buffer.size()) {
        const ptrdiff_t count = read(buffer.subspan(filled));
        if (count < 0) return count;
        if (count == 0) break;
        filled += static_cast<size_t>(count);
    }
    return static_cast<ptrdiff_t>(filled);
}

std::unique_ptr<ByteSource> openFile(const char* path) {
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return nullptr;
    return std::make_unique<FileSource>(descriptor);
}

std::unique_ptr<ByteSource> openMemory(std::span<const uint8_t> data) {
    return std::make_unique<MemorySource>(data);
}

std::unique_ptr<ByteSource> openIo(const ZetacIo& io) {
    return std::make_unique<IoSource>(io);
}

}  // namespace zetac::codec
