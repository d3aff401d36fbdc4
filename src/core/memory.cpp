// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include <cstdlib>
#include <cstring>

void* (*i_malloc)(size_t size) = std::malloc;
void* (*i_calloc)(size_t count, size_t size) = std::calloc;
void* (*i_realloc)(void* block, size_t size) = std::realloc;
void (*i_free)(void* block) = std::free;

namespace zetac::core {
namespace {

constexpr uintptr_t kAlignment = 32;
constexpr uintptr_t kRoom = 4;  // below the aligned address, at least
constexpr size_t kOverhead = kAlignment + kRoom;

// The first aligned address with kRoom bytes below it. The word below it keeps the raw address.
// Where the room is less than a word, because the hook is content with less alignment than malloc,
// the byte below keeps the distance instead: there the word would end with the top byte of a
// user-space address, which is 0.
Zet8u* alignBlock(Zet8u* raw) {
    const auto address = reinterpret_cast<uintptr_t>(raw);
    const uintptr_t distance = ((address + kAlignment - 1 + kRoom) & -kAlignment) - address;
    Zet8u* block = raw + distance;
    if (distance < sizeof raw)
        block[-1] = static_cast<Zet8u>(distance);
    else
        std::memcpy(block - sizeof raw, &raw, sizeof raw);
    return block;
}

Zet8u* rawBlock(Zet8u* block) {
    if (sizeof block > kRoom && block[-1] != 0) return block - block[-1];
    Zet8u* raw;
    std::memcpy(&raw, block - sizeof raw, sizeof raw);
    return raw;
}

Zet8u* allocate(size_t size) {
    auto* raw = static_cast<Zet8u*>(i_malloc(size + kOverhead));
    return raw ? alignBlock(raw) : nullptr;
}

}  // namespace
}  // namespace zetac::core

Zet8u* zetsMalloc_8u(int len) {
    return len < 1 ? nullptr : zetac::core::allocate(static_cast<size_t>(len));
}

Zet32f* zetsMalloc_32f(int len) {
    if (len < 1) return nullptr;
    return reinterpret_cast<Zet32f*>(
        zetac::core::allocate(static_cast<size_t>(len) * sizeof(Zet32f)));
}

void zetsFree(void* ptr) {
    if (ptr) i_free(zetac::core::rawBlock(static_cast<Zet8u*>(ptr)));
}
