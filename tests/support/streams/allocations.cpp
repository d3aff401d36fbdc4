// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/streams/allocations.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace zetac::test {
namespace {

std::atomic<size_t> count{0};
std::atomic<size_t> limit{SIZE_MAX};

void* allocate(size_t size, size_t alignment) {
    if (count.fetch_add(1) >= limit.load()) throw std::bad_alloc();
    const size_t blocks = (size + alignment - 1) / alignment + (size == 0);
    void* memory = std::aligned_alloc(alignment, blocks * alignment);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

}  // namespace

size_t allocationCount() {
    return count.load();
}

FailingAllocations::FailingAllocations(size_t after) {
    limit = count.load() + after;
}

FailingAllocations::~FailingAllocations() {
    limit = SIZE_MAX;
}

}  // namespace zetac::test

// The forms for arrays call these; those that return null do so in the standard library, but not
// under the address sanitizer.
void* operator new(size_t size) {
    return zetac::test::allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__);
}
void* operator new(size_t size, std::align_val_t alignment) {
    return zetac::test::allocate(size, static_cast<size_t>(alignment));
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new(size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    try {
        return operator new(size, alignment);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t, std::align_val_t) noexcept {
    std::free(memory);
}
