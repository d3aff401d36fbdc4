// A byte buffer that ends at a page without access: reading one byte too far ends the test.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <sys/mman.h>
#include <unistd.h>
#include <zetac.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "support/bit_writer.h"

namespace zetac::test {

class GuardedStream {
  public:
    explicit GuardedStream(const std::vector<uint8_t>& bytes)
        : page_(static_cast<size_t>(sysconf(_SC_PAGESIZE))),
          room_((bytes.size() + page_ - 1) / page_ * page_),
          base_(static_cast<uint8_t*>(mmap(nullptr, room_ + page_, PROT_READ | PROT_WRITE,
                                           MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))),
          data_(base_ + room_ - bytes.size()) {
        mprotect(base_ + room_, page_, PROT_NONE);
        std::copy(bytes.begin(), bytes.end(), data_);
    }
    GuardedStream(const GuardedStream&) = delete;
    GuardedStream& operator=(const GuardedStream&) = delete;
    ~GuardedStream() { munmap(base_, room_ + page_); }

    uint8_t* data() const { return data_; }

  private:
    size_t page_;
    size_t room_;
    uint8_t* base_;
    uint8_t* data_;
};

// A reader's position on data that begin `start` bits into their first byte, with the bytes behind
// them that a reader may look at.
class StreamPosition {
  public:
    explicit StreamPosition(const BitWriter& data, int start = 0,
                            size_t slack = ZETAC_BIT_STREAM_SLACK)
        : stream_(BitWriter{{0x55, start}}.append(data).bytes(slack)),
          byte_(stream_.data()),
          start_(start),
          offset_(start) {}

    Zet8u** ppByte() { return &byte_; }
    int* pOffset() { return &offset_; }
    size_t consumed() const {  // bits
        return static_cast<size_t>((byte_ - stream_.data()) * 8 + offset_ - start_);
    }

  private:
    GuardedStream stream_;
    Zet8u* byte_;
    int start_, offset_;
};

}  // namespace zetac::test
