// Filling memory with a repeated word.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstddef>

namespace zetac::vector {

// From this size on, filled blocks go past the cache: they would displace more than they leave.
inline constexpr size_t kStreamingFillBytes = 20480;

// Repeats the four bytes of word over size bytes at dst, which may have any alignment. The size is
// a multiple of 4, unless the four bytes are equal.
void fill(void* dst, uint32_t word, size_t size);

template <class T>
void zero(T* dst, int len) {
    fill(dst, 0, static_cast<size_t>(len) * sizeof(T));
}

}  // namespace zetac::vector
