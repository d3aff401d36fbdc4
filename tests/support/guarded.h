// A buffer of a chosen alignment between canaries.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace zetac::test {

inline constexpr size_t kGuard = 64;

// count elements that start alignment bytes behind a 64-byte boundary. The guards hold bytes that
// differ from their neighbours, so that a shifted write is seen as well as a stray one.
template <class T>
class Guarded {
  public:
    explicit Guarded(size_t count, size_t alignment = 0)
        : size_(count * sizeof(T)), bytes_(size_ + 4 * kGuard) {
        const auto address = reinterpret_cast<uintptr_t>(bytes_.data()) + kGuard;
        start_ = bytes_.data() + kGuard + (-address % kGuard) + alignment;
        for (size_t i = 0; i < bytes_.size(); ++i) bytes_[i] = canary(i);
    }
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;

    T* data() { return reinterpret_cast<T*>(start_); }
    uint8_t* bytes() { return start_; }
    size_t size() const { return size_; }
    T operator[](size_t i) const {
        T value;
        std::memcpy(&value, start_ + i * sizeof(T), sizeof(T));
        return value;
    }

    // True while nothing outside the elements has changed.
    bool intact() const {
        const size_t first = static_cast<size_t>(start_ - bytes_.data());
        for (size_t i = 0; i < bytes_.size(); ++i)
            if ((i < first || i >= first + size_) && bytes_[i] != canary(i)) return false;
        return true;
    }

  private:
    static uint8_t canary(size_t i) { return static_cast<uint8_t>(i * 37 + 101); }

    size_t size_;
    std::vector<uint8_t> bytes_;
    uint8_t* start_;
};

}  // namespace zetac::test
