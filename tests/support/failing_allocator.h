// Allocation hooks that count blocks and let one chosen request fail.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstdlib>

namespace zetac::test {

class FailingAllocator {
  public:
    // Requests are numbered from 0; -1 lets all pass.
    explicit FailingAllocator(int failing) {
        requests_ = 0;
        live_ = 0;
        failing_ = failing;
        i_malloc = [](size_t size) -> void* {
            if (requests_++ == failing_) return nullptr;
            ++live_;
            return std::malloc(size);
        };
        i_free = [](void* block) {
            --live_;
            std::free(block);
        };
    }
    ~FailingAllocator() {
        i_malloc = savedMalloc_;
        i_free = savedFree_;
    }
    FailingAllocator(const FailingAllocator&) = delete;
    FailingAllocator& operator=(const FailingAllocator&) = delete;

    int requests() const { return requests_; }
    int live() const { return live_; }

  private:
    static inline int requests_, live_, failing_;
    decltype(i_malloc) savedMalloc_ = i_malloc;
    decltype(i_free) savedFree_ = i_free;
};

}  // namespace zetac::test
