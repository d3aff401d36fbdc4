// The one bit reader of the library.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <bit>
#include <cstring>

namespace zetac::core {

// The four bytes at p as a big-endian word: the unit that every reader loads, and the reason for
// the three bytes of slack behind a stream.
inline uint32_t loadBigEndian32(const Zet8u* p) {
    uint32_t word;
    std::memcpy(&word, p, sizeof word);
    return std::endian::native == std::endian::little ? __builtin_bswap32(word) : word;
}

// The two pointers that make up a byte position.
inline bool isSet(Zet8u* const* ppStream) {
    return ppStream != nullptr && *ppStream != nullptr;
}

inline bool isBitOffset(const int* pOffset) {
    return *pOffset >= 0 && *pOffset <= 7;
}

// A position in a bit stream, kept in registers while a function reads; store() hands it back.
class BitReader {
  public:
    BitReader(Zet8u* const* ppStream, const int* pOffset)
        : byte_(*ppStream), offset_(static_cast<uint32_t>(*pOffset)) {}
    explicit BitReader(Zet8u* const* ppStream) : byte_(*ppStream), offset_(0) {}
    BitReader(const Zet8u* byte, uint32_t offset) : byte_(byte), offset_(offset) {}

    // The next 25 bits or more, first bit in the top position.
    uint32_t peek() const { return loadBigEndian32(byte_) << offset_; }

    void skip(uint32_t count) {
        offset_ += count;
        byte_ += offset_ >> 3;
        offset_ &= 7;
    }

    // Reads 1..25 bits as an unsigned number.
    uint32_t get(uint32_t count) {
        const uint32_t value = peek() >> (32 - count);
        skip(count);
        return value;
    }
    // The same as a field of a record.
    Zet32s getField(uint32_t count) { return static_cast<Zet32s>(get(count)); }

    void byteAlign() {
        byte_ += offset_ != 0;
        offset_ = 0;
    }

    const Zet8u* byte() const { return byte_; }
    uint32_t offset() const { return offset_; }

    void store(Zet8u** ppStream, int* pOffset) const {
        *ppStream = const_cast<Zet8u*>(byte_);
        *pOffset = static_cast<int>(offset_);
    }
    void store(Zet8u** ppStream) const { *ppStream = const_cast<Zet8u*>(byte_); }

  private:
    const Zet8u* byte_;
    uint32_t offset_;
};

}  // namespace zetac::core
