// The bit reader of the Huffman data: a register of upcoming bits that one load at a time keeps
// full, so that several codewords are read from it without looking at memory.
//
// The number of bits to come is known, and not a byte beyond the one with the last of them is
// touched: the last few bytes are read from a copy with zeros behind it. A codeword that runs over
// the end is then misread, but never shortened to fit, so that the count of consumed bits tells.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <type_traits>

#include "core/bits.h"

namespace zetac::mp3 {

class HuffmanReader {
  public:
    using Word = std::conditional_t<sizeof(void*) == 8, uint64_t, uint32_t>;
    static constexpr uint32_t kWordBits = 8 * sizeof(Word);
    // What refill() guarantees.
    static constexpr uint32_t kHeldBits = kWordBits - 7;

    // Room for the copied end.
    using Tail = Zet8u[2 * sizeof(Word)];

    HuffmanReader(const Zet8u* byte, int offset, int numBits, Tail& tail)
        : source_{byte, byte + (static_cast<size_t>(numBits) + static_cast<size_t>(offset) + 7) / 8,
                  byte, -offset, tail} {
        refill();
        skip(static_cast<uint32_t>(offset));
    }

    void refill() {
        if (source_.end - source_.next < static_cast<ptrdiff_t>(sizeof(Word))) [[unlikely]]
            source_ = continueInTail(source_);
        word_ |= load(source_.next) >> held_;
        source_.next += (kWordBits - 1 - held_) >> 3;
        held_ |= kWordBits - 8;
    }

    // The next 1..25 bits.
    uint32_t peek(uint32_t count) const {
        return static_cast<uint32_t>(word_ >> (kWordBits - count));
    }
    // The bits to come, first at the top; those behind the first `count` of them.
    Word upcoming() const { return word_; }
    Word behind(uint32_t count) const { return word_ << count; }

    void skip(uint32_t count) {
        word_ <<= count;
        held_ -= count;
    }
    uint32_t get(uint32_t count) {
        const uint32_t value = peek(count);
        skip(count);
        return value;
    }

    // Bits read so far.
    int consumed() const {
        return source_.bitsBefore + static_cast<int>(source_.next - source_.begin) * 8 -
               static_cast<int>(held_);
    }

  private:
    struct Source {
        const Zet8u* next;
        const Zet8u* end;
        const Zet8u* begin;
        int bitsBefore;  // read before begin
        Zet8u* tail;
    };

    static Word load(const Zet8u* p) {
        Word word;
        std::memcpy(&word, p, sizeof word);
        if constexpr (std::endian::native == std::endian::big) return word;
        if constexpr (sizeof word == 8) return __builtin_bswap64(word);
        return __builtin_bswap32(static_cast<uint32_t>(word));
    }

    // Goes on in the copy of the end, and behind it with zeros for as long as it takes. By value,
    // so that the members of a reader can stay in registers.
    [[gnu::noinline, gnu::cold]] static Source continueInTail(Source from) {
        const int bits = from.bitsBefore + static_cast<int>(from.next - from.begin) * 8;
        const Zet8u* const zeros = from.tail + sizeof(Word);
        const Zet8u* const tailEnd = zeros + sizeof(Word);
        if (from.end == tailEnd) return {zeros, tailEnd, zeros, bits, from.tail};
        const auto rest = static_cast<size_t>(from.end - from.next);
        std::memset(from.tail, 0, sizeof(Tail));
        std::memcpy(from.tail, from.next, rest);
        return {from.tail, tailEnd, from.tail, bits, from.tail};
    }

    Source source_;
    Word word_ = 0;
    uint32_t held_ = 0;
};

}  // namespace zetac::mp3
