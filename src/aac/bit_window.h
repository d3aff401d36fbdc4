// The next bits of a stream in a register, for the readers of long runs of codewords: refill()
// before each step, then the codewords of the step by top() and skip(). What makes a step longer
// comes between reload(), for 25 bits at once, and resume(). A window looks ahead, so it may serve
// a step only where the call goes on to consume kBitsToCome bits from its beginning: then no load
// is further than ZETAC_BIT_STREAM_SLACK bytes beyond the last bit that the call consumes.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "aac/bit_stream.h"

namespace zetac::aac {

inline uint64_t loadBigEndian64(const Zet8u* p) {
    uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
}

// Loads the four bytes at the current position, which is right wherever a bit is still to come.
class NarrowWindow {
  public:
    static constexpr int kBits = 25;  // after refill()

    explicit NarrowWindow(const BitReader& stream) : stream_(stream), bits_(0) {}

    void refill() { bits_ = stream_.peek(); }
    void reload() { refill(); }
    void resume() {}
    uint32_t top() const { return bits_; }
    template <int count>
    uint32_t first() const {
        return bits_ >> (32 - count);
    }
    uint32_t topAfter(int count) const { return bits_ << count; }
    void skip(int count) {
        bits_ <<= count;
        stream_.skip(static_cast<uint32_t>(count));
    }
    BitReader position() const { return stream_; }

  private:
    BitReader stream_;
    uint32_t bits_;
};

// Loads the five bytes at the current position into a 64-bit register, a step ahead of their use:
// the bits of a step were loaded before the last one, so that no load waits for a codeword.
class AheadWindow {
  public:
    // At least 33 bits were loaded at the beginning of the last step, which took 14 at most.
    static constexpr int kBits = 33 - 14;
    // A step takes at least 4 bits. With 9 more the call reaches into the second of five bytes.
    static constexpr int kBitsToCome = 4 + 9;

    explicit AheadWindow(const BitReader& stream) : stream_(stream) { reload(); }

    void refill() { next_ = load(); }
    void reload() { bits_ = next_ = load(); }
    void resume() { reload(); }
    uint32_t top() const { return static_cast<uint32_t>(bits_ >> 32); }
    template <int count>
    uint32_t first() const {
        return static_cast<uint32_t>(bits_ >> (64 - count));
    }
    uint32_t topAfter(int count) const { return static_cast<uint32_t>(bits_ << count >> 32); }
    void skip(int count) {
        bits_ = next_ <<= count;
        stream_.skip(static_cast<uint32_t>(count));
    }
    BitReader position() const { return stream_; }

  private:
    uint64_t load() const {
        const uint64_t word = core::loadBigEndian32(stream_.byte());
        return (word << 8 | stream_.byte()[4]) << (24 + stream_.offset());
    }

    BitReader stream_;
    uint64_t bits_;  // the next bits at the top
    uint64_t next_;  // the same, with more of them behind refill()
};

// Appends whole bytes to a 64-bit register: the load does not wait for the codewords before it.
class WideWindow {
  public:
    static constexpr int kBits = 56;  // after refill()
    // A refill finds at most 62 bits in the register, since one bit at least went since the last,
    // and loads the 64 bits behind them. The last of its bytes is within the slack where the
    // stream goes on for 62 bits + 64 - 24 of slack - 7 of the last byte.
    static constexpr int kBitsToCome = 62 + 64 - 24 - 7;

    explicit WideWindow(const BitReader& stream) : next_(stream.byte()), bits_(0), count_(0) {
        if (stream.offset() == 0) return;
        bits_ = static_cast<uint64_t>(*next_++) << (56 + stream.offset());
        count_ = 8 - stream.offset();
    }

    void refill() {
        bits_ |= loadBigEndian64(next_) >> count_;
        next_ += (63 - count_) >> 3;
        count_ |= 56;
    }
    uint32_t top() const { return static_cast<uint32_t>(bits_ >> 32); }
    template <int count>
    uint32_t first() const {
        return static_cast<uint32_t>(bits_ >> (64 - count));
    }
    uint32_t topAfter(int count) const { return static_cast<uint32_t>(bits_ << count >> 32); }
    void skip(int count) {
        bits_ <<= count;
        count_ -= static_cast<uint32_t>(count);
    }
    BitReader position() const { return BitReader(next_ - (count_ + 7) / 8, -count_ & 7); }

  private:
    const Zet8u* next_;  // the first byte that is not in the register as a whole
    uint64_t bits_;      // the next count_ bits at the top; below them bits of *next_ or 0
    uint32_t count_;
};

}  // namespace zetac::aac
