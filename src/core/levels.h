// Instruction-set levels. A kernel that pays for it is compiled once per level, each time in a
// namespace of its own, and lands in a constant table indexed by Level. Level 0 is the reference;
// the others give the same bits.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <array>

namespace zetac::core {

enum class Level { kBaseline, kSse41, kAvx2, kAvx512 };
inline constexpr int kNumLevels = 4;

// The highest level that this processor runs.
inline Level currentLevel() {
    if (__builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512bw"))
        return Level::kAvx512;
    if (__builtin_cpu_supports("avx2")) return Level::kAvx2;
    if (__builtin_cpu_supports("sse4.1")) return Level::kSse41;
    return Level::kBaseline;
}

template <class Kernel>
using LevelTable = std::array<Kernel, kNumLevels>;

// The kernel for this processor. Called once per exported call, never inside a loop.
template <class Kernel>
inline const Kernel& select(const LevelTable<Kernel>& table) {
    return table[static_cast<unsigned>(currentLevel())];
}

}  // namespace zetac::core

// Brackets around an include of kernel source: what stands between is compiled for one level.
// Functions from outside keep their own target and are still inlined, since theirs is a subset.
#define ZETAC_PRAGMA(text) _Pragma(#text)
#if defined(__clang__)
#define ZETAC_TARGET_BEGIN(features) \
    ZETAC_PRAGMA(clang attribute push(__attribute__((target(features))), apply_to = function))
#define ZETAC_TARGET_END ZETAC_PRAGMA(clang attribute pop)
#else
#define ZETAC_TARGET_BEGIN(features) \
    ZETAC_PRAGMA(GCC push_options)   \
    ZETAC_PRAGMA(GCC target(features))
#define ZETAC_TARGET_END ZETAC_PRAGMA(GCC pop_options)
#endif

// For the small operations that kernels are made of, lambdas included: they must end up in the code
// of the level that uses them.
#define ZETAC_INLINE __attribute__((always_inline))
