// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "vector/fill.h"

#include <emmintrin.h>

#include <bit>
#include <cstring>

#include "core/checks.h"

namespace zetac::vector {
namespace {

constexpr size_t kBlock = sizeof(__m128i);

__m128i repeat(uint32_t word) {
    return _mm_set1_epi32(static_cast<int>(word));
}

// The last block may overlap the one before: sizes that are multiples of 4 keep the words in phase.
void fillOrdinary(Zet8u* dst, uint32_t word, size_t size) {
    const __m128i pattern = repeat(word);
    if (size < kBlock) {
        std::memcpy(dst, &pattern, size);
        return;
    }
    for (size_t i = 0; i < size - kBlock; i += kBlock)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), pattern);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + size - kBlock), pattern);
}

// Non-temporal stores need aligned blocks. The ends are filled by ordinary ones that overlap them;
// between the ends the word is rotated to its phase at the first aligned address.
void fillStreaming(Zet8u* dst, uint32_t word, size_t size) {
    const size_t head = -reinterpret_cast<uintptr_t>(dst) % kBlock;
    const __m128i pattern = repeat(std::rotr(word, static_cast<int>(head % 4 * 8)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), repeat(word));
    for (size_t i = head; i <= size - kBlock; i += kBlock)
        _mm_stream_si128(reinterpret_cast<__m128i*>(dst + i), pattern);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + size - kBlock), repeat(word));
    _mm_sfence();
}

}  // namespace

void fill(void* dst, uint32_t word, size_t size) {
    auto* bytes = static_cast<Zet8u*>(dst);
    if (size >= kStreamingFillBytes)
        fillStreaming(bytes, word, size);
    else if (word == 0)
        std::memset(bytes, 0, size);
    else
        fillOrdinary(bytes, word, size);
}

namespace {

template <class T>
ZetStatus checkedZero(T* pDst, int len) {
    ZETAC_REQUIRE(pDst, zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    zero(pDst, len);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::vector

using namespace zetac::vector;

ZetStatus zetsZero_8u(Zet8u* pDst, int len) {
    return checkedZero(pDst, len);
}
ZetStatus zetsZero_16s(Zet16s* pDst, int len) {
    return checkedZero(pDst, len);
}
ZetStatus zetsZero_32s(Zet32s* pDst, int len) {
    return checkedZero(pDst, len);
}
ZetStatus zetsZero_32f(Zet32f* pDst, int len) {
    return checkedZero(pDst, len);
}
ZetStatus zetsZero_16sc(Zet16sc* pDst, int len) {
    return checkedZero(pDst, len);
}
ZetStatus zetsZero_32sc(Zet32sc* pDst, int len) {
    return checkedZero(pDst, len);
}
ZetStatus zetsZero_32fc(Zet32fc* pDst, int len) {
    return checkedZero(pDst, len);
}

ZetStatus zetsSet_32s(Zet32s value, Zet32s* pDst, int len) {
    ZETAC_REQUIRE(pDst, zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    fill(pDst, static_cast<uint32_t>(value), static_cast<size_t>(len) * sizeof value);
    return zetStsOk;
}
