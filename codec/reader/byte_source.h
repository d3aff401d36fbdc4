// Where a reader's bytes come from: a file, a block of memory or the caller's functions.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac_codec.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace zetac::codec {

class ByteSource {
  public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource(ByteSource&&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    ByteSource& operator=(ByteSource&&) = delete;
    virtual ~ByteSource() = default;

    /** @return bytes read, 0 at the end, negative on an error */
    virtual ptrdiff_t read(std::span<uint8_t> buffer) = 0;
    /** @return false where that is impossible; the position is then what it was */
    virtual bool seek(uint64_t position) = 0;
    /** Nothing where the length is not known, as of pipes. */
    virtual std::optional<uint64_t> length() const = 0;

    /** Reads until the buffer is full or the end has come.
     *  @return bytes read, negative on an error */
    ptrdiff_t readFully(std::span<uint8_t> buffer);
};

/** @return null where the file cannot be opened; errno has the reason */
std::unique_ptr<ByteSource> openFile(const char* path);
std::unique_ptr<ByteSource> openMemory(std::span<const uint8_t> data);
std::unique_ptr<ByteSource> openIo(const ZetacIo& io);

}  // namespace zetac::codec
