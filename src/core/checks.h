// Argument checks: one line each, in contract order, at the head of every exported function.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

// Returns status from the function when the condition does not hold.
#define ZETAC_REQUIRE(condition, status) \
    do {                                 \
        if (!(condition)) return status; \
    } while (false)

namespace zetac::core {

template <class... Pointers>
constexpr bool allSet(Pointers... pointers) {
    return ((pointers != nullptr) && ...);
}

constexpr bool inRange(int value, int low, int high) {
    return low <= value && value <= high;
}

// What a function returns that has done its work: on vectors that are not aligned it took longer.
template <class... Vectors>
ZetStatus alignmentStatus(Vectors... vectors) {
    const uintptr_t addresses = (reinterpret_cast<uintptr_t>(vectors) | ...);
    return addresses % 16 == 0 ? zetStsOk : zetStsMisaligned;
}

}  // namespace zetac::core
