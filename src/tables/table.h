// A constant table that a function can return, so that formulas fill it at compile time; in use it
// is as good as the bare array.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstddef>

namespace zetac::tables {

template <typename T, std::size_t size>
struct Table {
    T values[size];

    constexpr operator const T*() const { return values; }
    constexpr const T* begin() const { return values; }
    constexpr const T* end() const { return values + size; }
};

}  // namespace zetac::tables
