// The one bit writer of the library: most significant bit first.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <bit>
#include <cstring>

namespace zetac::core {

// A position in a bit stream while a function writes; store() hands it back. The bits before the
// position are kept, and no byte behind the last bit is touched.
class BitWriter {
  public:
    // What becomes of the bits behind the position in its byte: they are 0, or what is written
    // is or-ed into them.
    enum class Behind { kCleared, kJoined };

    BitWriter(Zet8u* const* ppStream, const int* pOffset, Behind behind = Behind::kCleared)
        : first_(*ppStream),
          byte_(first_),
          pending_(*pOffset),
          bits_(pending_ ? *byte_ >> (8 - pending_) : 0),
          joined_(behind == Behind::kJoined && pending_ ? *byte_ & (0xff >> pending_) : 0) {}
    // A writer that begins with a byte.
    explicit BitWriter(Zet8u* const* ppStream) : first_(*ppStream), byte_(first_) {}

    // Writes the lowest count bits of value, which has no others, 0..32.
    void put(uint32_t value, int count) {
        bits_ = bits_ << count | value;
        pending_ += count;
        if (pending_ < 32) return;
        pending_ -= 32;
        const auto word = static_cast<uint32_t>(bits_ >> pending_);
        storeBigEndian32(byte_, word);
        byte_ += 4;
    }

    // Bits from the start of the first byte on.
    int position() const { return static_cast<int>(8 * (byte_ - first_)) + pending_; }

    void store(Zet8u** ppStream, int* pOffset) {
        for (; pending_ >= 8; pending_ -= 8) *byte_++ = static_cast<Zet8u>(bits_ >> (pending_ - 8));
        if (pending_) *byte_ = static_cast<Zet8u>(bits_ << (8 - pending_));
        if (joined_) *first_ = static_cast<Zet8u>(*first_ | joined_);
        *ppStream = byte_;
        *pOffset = pending_;
    }
    void store(Zet8u** ppStream) {
        int offset;
        store(ppStream, &offset);
    }

  private:
    static void storeBigEndian32(Zet8u* p, uint32_t word) {
        if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap32(word);
        std::memcpy(p, &word, sizeof word);
    }

    Zet8u* first_;
    Zet8u* byte_;
    int pending_ = 0;  // bits that wait for their word to fill up, the lowest of bits_
    uint64_t bits_ = 0;
    int joined_ = 0;
};

}  // namespace zetac::core
