// The bytes of a stream at hand: a window of bounded length that moves along.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "base/bits.h"

namespace zetac::codec {

/** Whether something is so. What depends on bytes that are still to come is unknown, so that no
 *  answer depends on how the input was divided. */
enum class Answer { kNo, kYes, kUnknown };

/** The bytes from a place on, with kReadAhead readable ones behind them. */
struct View {
    std::span<const Zet8u> bytes;
    bool isFinal = false;  // no others will follow

    size_t size() const { return bytes.size(); }
    const Zet8u& operator[](size_t i) const { return bytes[i]; }
    bool has(size_t count) const { return bytes.size() >= count; }
    /** Whether the bytes up to here are not all there, but may be some day. */
    bool awaits(size_t count) const { return !has(count) && !isFinal; }
    /** What begins further on; nothing behind the end. */
    View from(size_t offset) const {
        return {bytes.subspan(offset < size() ? offset : size()), isFinal};
    }
    Answer startsWith(std::string_view text) const {
        const size_t count = text.size() < size() ? text.size() : size();
        if (std::memcmp(bytes.data(), text.data(), count) != 0) return Answer::kNo;
        if (count == text.size()) return Answer::kYes;
        return isFinal ? Answer::kNo : Answer::kUnknown;
    }
};

class ByteWindow {
  public:
    /** More than anything that looks ahead needs to decide. */
    static constexpr size_t kCapacity = 32768;

    /** Takes bytes as far as there is room.
     *  @return how many */
    size_t feed(std::span<const Zet8u> bytes);
    /** No others will come. */
    void finish() { isFinal_ = true; }
    /** Empties the window; the next byte has this position. */
    void reset(uint64_t position);

    /** Of the first byte at hand. */
    uint64_t position() const { return position_; }
    /** A full window can learn nothing more: it is as good as final. */
    View view() const {
        const size_t size = end_ - begin_;
        return {{buffer_ + begin_, size}, isFinal_ || size == kCapacity};
    }
    bool isFinal() const { return isFinal_; }

    /** Moves on, also over bytes that are still to come. */
    void skip(uint64_t count);

  private:
    Zet8u buffer_[kCapacity + kReadAhead] = {};
    size_t begin_ = 0;
    size_t end_ = 0;
    uint64_t position_ = 0;
    uint64_t skipped_ = 0;  // bytes to come that are passed over
    bool isFinal_ = false;
};

}  // namespace zetac::codec
