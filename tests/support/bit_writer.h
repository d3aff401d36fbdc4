// Writes a bit stream, most significant bit first, for tests that build streams field by field.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace zetac::test {

class BitWriter {
  public:
    struct Field {
        int64_t value;
        int bits;
    };

    BitWriter() = default;
    BitWriter(std::initializer_list<Field> fields) {
        for (const Field& field : fields) append(static_cast<uint32_t>(field.value), field.bits);
    }
    // bits 0..64; those above the 32 of the value are zeros.
    BitWriter& append(uint32_t value, int bits) {
        for (int i = bits - 1; i >= 0; --i) {
            if (size_ % 8 == 0) bytes_.push_back(0);
            bytes_.back() |= static_cast<uint8_t>((uint64_t{value} >> i & 1) << (7 - size_ % 8));
            ++size_;
        }
        return *this;
    }
    // The same value several times.
    BitWriter& repeat(int count, uint32_t value, int bits) {
        for (int i = 0; i < count; ++i) append(value, bits);
        return *this;
    }
    BitWriter& append(const BitWriter& other) {
        for (size_t i = 0; i < other.size_; ++i) append(other.bytes_[i / 8] >> (7 - i % 8) & 1U, 1);
        return *this;
    }
    BitWriter& flip(size_t bit) {
        bytes_[bit / 8] ^= static_cast<uint8_t>(0x80 >> bit % 8);
        return *this;
    }
    BitWriter first(size_t bits) const {
        BitWriter result = *this;
        result.bytes_.erase(result.bytes_.begin() + static_cast<ptrdiff_t>((bits + 7) / 8),
                            result.bytes_.end());
        if (bits % 8 != 0) result.bytes_.back() &= static_cast<uint8_t>(0xff00 >> bits % 8);
        result.size_ = bits;
        return result;
    }
    BitWriter& align() { return append(0, static_cast<int>(-size_ & 7)); }

    size_t size() const { return size_; }  // bits
    std::vector<uint8_t> bytes(size_t slack = 4096) const {
        std::vector<uint8_t> result = bytes_;
        result.insert(result.end(), slack, 0);
        return result;
    }

  private:
    std::vector<uint8_t> bytes_;
    size_t size_ = 0;
};

}  // namespace zetac::test
