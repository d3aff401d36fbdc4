// The two spec structures in memory. They start at the first 32-byte boundary at or behind the
// caller's pointer, which every call rounds up anew. Fields follow one another at their natural
// alignment, pointers in the size of the machine; docs/design.md has the offsets.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "core/spec.h"

// Table entries have 16 bits:
//   bit 0 set    a leaf: bits 1..lengthBits hold the bits that its codeword takes of this level,
//                the values stand above them (ValueForm)
//   bit 0 clear  the rest is the index of a sub-table: one entry with its number of bits, then its
//                level. A level of an inner entry is consumed whole.
// The first level stands at index 0, without a number of bits.
struct ZetsVLCDecodeSpec_1u16s {
    zetac::core::SpecHeader header;
    Zet32s firstBits;
    const uint16_t* table;
    Zet32s valueForm;
    Zet32s lengthBits;
};

// Both tables lie behind one another and are indexed by pair, see PairIndex. A length of 0 stands
// for a pair without codeword.
struct ZetsVLCEncodeSpec_16s1u {
    const Zet32s* lengths;  // 2^log2Size of them, then as many codewords
    Zet32s zeroOffset;
    Zet8u log2Size;
    Zet32s owned;  // as in SpecHeader
    zetac::core::SpecId id;

    const Zet32s* codes() const { return lengths + (size_t{1} << log2Size); }
};

namespace zetac::vlc {

using DecodeSpec = ZetsVLCDecodeSpec_1u16s;
using EncodeSpec = ZetsVLCEncodeSpec_16s1u;

// valueForm: one value in each codeword, which has all bits above the length.
inline constexpr Zet32s kSingleForm = 32;
// valueForm of signed pairs: the width of the second value's field, which holds it plus 128.
inline constexpr Zet32s kPairForm = 8;
// Otherwise, for pairs of magnitudes: the width of either field, the second value's lower.

// Where the encoding tables have a pair whose magnitudes are limited to kLargest.
template <int largest, int stride>
struct PairIndex {
    static constexpr int kLargest = largest;
    static constexpr int kZeroOffset = largest * stride;
    static constexpr int of(Zet32s x, Zet32s y, Zet32s zeroOffset = kZeroOffset) {
        return x * stride + y + zeroOffset + largest;
    }
};
using Mp3Index = PairIndex<15, 32>;
using AacIndex = PairIndex<16, 64>;

template <class Spec>
Spec* specAt(const void* pointer) {
    auto* bytes = static_cast<Zet8u*>(const_cast<void*>(pointer));
    return reinterpret_cast<Spec*>(core::alignUp(bytes));
}

inline bool isDecodeSpec(const void* pointer) {
    return core::hasId(&specAt<DecodeSpec>(pointer)->header.id, core::SpecId::kVlcDecode);
}
inline bool isEncodeSpec(const void* pointer) {
    return core::hasId(&specAt<EncodeSpec>(pointer)->id, core::SpecId::kVlcEncode);
}

}  // namespace zetac::vlc
