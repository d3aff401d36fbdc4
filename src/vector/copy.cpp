// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <emmintrin.h>
#include <zetac.h>

#include <cstring>

#include "core/checks.h"

namespace zetac::vector {
namespace {

using core::allSet;

constexpr size_t kVectorCopyBytes = 8192;     // by 16-byte vectors from here on
constexpr size_t kPrefetchCopyBytes = 16384;  // and with software prefetch from here on
constexpr size_t kBlock = sizeof(__m128i);
constexpr size_t kLine = 64;
constexpr uintptr_t kPrefetchAhead = 512;

inline void copyBlock(const Zet8u* src, Zet8u* dst) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst),
                     _mm_loadu_si128(reinterpret_cast<const __m128i*>(src)));
}

// Fetches behind the end do no harm, but such pointers must not be formed.
inline void prefetch(const Zet8u* src) {
    _mm_prefetch(reinterpret_cast<const char*>(reinterpret_cast<uintptr_t>(src) + kPrefetchAhead),
                 _MM_HINT_T0);
}

// Whole lines to aligned addresses; unaligned blocks that overlap them cover the two ends.
template <bool kPrefetch>
void copyVector(const Zet8u* src, Zet8u* dst, size_t size) {
    copyBlock(src, dst);
    size_t i = -reinterpret_cast<uintptr_t>(dst) % kBlock;
    for (; i <= size - kLine; i += kLine) {
        if constexpr (kPrefetch) prefetch(src + i);
        for (size_t block = 0; block < kLine; block += kBlock)
            copyBlock(src + i + block, dst + i + block);
    }
    for (; i <= size - kBlock; i += kBlock) copyBlock(src + i, dst + i);
    copyBlock(src + size - kBlock, dst + size - kBlock);
}

// Between regions that do not overlap, of any alignment.
void copy(const void* src, void* dst, size_t size) {
    const auto* from = static_cast<const Zet8u*>(src);
    auto* to = static_cast<Zet8u*>(dst);
    if (size >= kPrefetchCopyBytes)
        copyVector<true>(from, to, size);
    else if (size >= kVectorCopyBytes)
        copyVector<false>(from, to, size);
    else
        std::memcpy(to, from, size);
}

template <class T>
ZetStatus checkedCopy(const T* pSrc, T* pDst, int len) {
    ZETAC_REQUIRE(allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    copy(pSrc, pDst, static_cast<size_t>(len) * sizeof(T));
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::vector

using namespace zetac::vector;

ZetStatus zetsCopy_8u(const Zet8u* pSrc, Zet8u* pDst, int len) {
    return checkedCopy(pSrc, pDst, len);
}
ZetStatus zetsCopy_32s(const Zet32s* pSrc, Zet32s* pDst, int len) {
    return checkedCopy(pSrc, pDst, len);
}
ZetStatus zetsCopy_32f(const Zet32f* pSrc, Zet32f* pDst, int len) {
    return checkedCopy(pSrc, pDst, len);
}

ZetStatus zetsMove_8u(const Zet8u* pSrc, Zet8u* pDst, int len) {
    ZETAC_REQUIRE(allSet(pSrc, pDst), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    std::memmove(pDst, pSrc, static_cast<size_t>(len));
    return zetStsOk;
}
