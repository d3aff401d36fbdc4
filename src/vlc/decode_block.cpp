// Decodes blocks of values with escapes.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <bit>

#include "core/bits.h"
#include "core/checks.h"
#include "vlc/escapes.h"
#include "vlc/spec.h"

namespace zetac::vlc {
namespace {

using core::BitReader;

struct Leaf {
    uint32_t entry;
    uint32_t length;  // of the whole codeword
};

// The first bits of a window, which may be 0.
uint32_t firstBits(uint32_t window, uint32_t count) {
    return window >> 1 >> (31 - count);
}

// Finds the next codeword without reading it. The stream is looked at again only where more bits of
// the codeword are known to come, which keeps within the slack.
Leaf lookUp(const BitReader& stream, const DecodeSpec& spec) {
    constexpr uint32_t kPeekedBits = 25;
    uint32_t window = stream.peek();
    uint32_t left = kPeekedBits;
    uint32_t bits = static_cast<uint32_t>(spec.firstBits);
    uint32_t length = 0;
    uint32_t entry = spec.table[firstBits(window, bits)];
    while (!(entry & 1)) {
        length += bits;
        left -= bits;
        window <<= bits;
        const uint16_t* subtable = spec.table + (entry >> 1);
        bits = subtable[0];
        if (bits > left) {
            BitReader ahead = stream;
            ahead.skip(length);
            window = ahead.peek();
            left = kPeekedBits;
        }
        entry = subtable[1 + firstBits(window, bits)];
    }
    const uint32_t lastBits = entry >> 1 & ((1U << spec.lengthBits) - 1);
    return {entry, length + lastBits};
}

// The values of a leaf in the forms of table entries.
struct SignedPair {
    static constexpr int kCount = 2;
    static void unpack(uint32_t entry, const DecodeSpec& spec, Zet32s* value) {
        const int low = 1 + spec.lengthBits;
        value[0] = static_cast<int16_t>(entry) >> (low + kPairForm);
        value[1] = static_cast<Zet32s>(entry >> low & 0xff) - 128;
    }
};
struct SignedSingle {
    static constexpr int kCount = 1;
    static void unpack(uint32_t entry, const DecodeSpec& spec, Zet32s* value) {
        value[0] = static_cast<int16_t>(entry) >> (1 + spec.lengthBits);
    }
};
struct MagnitudePair {
    static constexpr int kCount = 2;
    static void unpack(uint32_t entry, const DecodeSpec& spec, Zet32s* value) {
        const uint32_t values = entry >> (1 + spec.lengthBits);
        value[0] = static_cast<Zet32s>(values >> spec.valueForm);
        value[1] = static_cast<Zet32s>(values & ((1U << spec.valueForm) - 1));
    }
};
struct MagnitudeSingle {
    static constexpr int kCount = 1;
    static void unpack(uint32_t entry, const DecodeSpec& spec, Zet32s* value) {
        value[0] = static_cast<Zet32s>(entry >> (1 + spec.lengthBits));
    }
};

// Reads the sign of a value, behind the bits that extend its magnitude.
Zet32s readExtended(BitReader& stream, Zet32s value, int escLen) {
    Zet32s magnitude = magnitudeOf(value);
    if (magnitude == 0) return 0;
    const bool isEscape = magnitude == kMp3Escape;
    const Zet32s bits = stream.getField(static_cast<uint32_t>(isEscape ? escLen + 1 : 1));
    magnitude = std::min(magnitude + (bits >> 1), kLargestValue);
    return bits & 1 ? -magnitude : magnitude;
}

// Behind the codeword of signed values, in the MP3 style. From the first escape on, what the
// codeword says of signs is not true: these bits are read anew.
template <int count>
struct Mp3Signed {
    int escLen;

    bool read(BitReader& stream, uint32_t length, Zet32s* value) const {
        int first = 0;
        while (first < count && magnitudeOf(value[first]) != kMp3Escape) ++first;
        uint32_t signs = 0;
        for (int i = first; i < count; ++i) signs += value[i] != 0;
        stream.skip(length - std::min(length, signs));
        for (int i = first; i < count; ++i) value[i] = readExtended(stream, value[i], escLen);
        return true;
    }
};

template <int count>
struct Mp3Unsigned {
    int escLen;

    bool read(BitReader& stream, uint32_t length, Zet32s* value) const {
        stream.skip(length);
        for (int i = 0; i < count; ++i) value[i] = readExtended(stream, value[i], escLen);
        return true;
    }
};

// Replaces 16 or -16 by what the escape sequence says.
bool readEscapeSequence(BitReader& stream, Zet32s& value) {
    const int ones = std::countl_one(stream.peek());
    if (ones > kAacPrefixMax) {
        stream.skip(kAacPrefixMax + 1);
        return false;
    }
    stream.skip(static_cast<uint32_t>(ones + 1));
    const int bits = ones + kAacEscapeBits;
    const Zet32s magnitude = 1 << bits | stream.getField(static_cast<uint32_t>(bits));
    value = value < 0 ? -magnitude : magnitude;
    return true;
}

template <int count>
bool readEscapeSequences(BitReader& stream, Zet32s* value) {
    for (int i = 0; i < count; ++i)
        if (magnitudeOf(value[i]) == kAacEscape && !readEscapeSequence(stream, value[i]))
            return false;
    return true;
}

template <int count>
struct AacSigned {
    static bool read(BitReader& stream, uint32_t length, Zet32s* value) {
        stream.skip(length);
        return readEscapeSequences<count>(stream, value);
    }
};

template <int count>
struct AacUnsigned {
    static bool read(BitReader& stream, uint32_t length, Zet32s* value) {
        stream.skip(length);
        for (int i = 0; i < count; ++i)
            if (value[i] != 0 && stream.get(1)) value[i] = -value[i];
        return readEscapeSequences<count>(stream, value);
    }
};

template <class Form, class Tail>
ZetStatus decodeCodewords(BitReader& stream, Zet16s* data, int len, const DecodeSpec& spec,
                          const Tail& tail) {
    const int end = len & ~1;
    for (int i = 0; i < end; i += Form::kCount) {
        const Leaf leaf = lookUp(stream, spec);
        Zet32s value[Form::kCount];
        Form::unpack(leaf.entry, spec, value);
        if (!tail.read(stream, leaf.length, value)) return zetStsBadEscapeCode;
        for (int k = 0; k < Form::kCount; ++k) data[i + k] = static_cast<Zet16s>(value[k]);
    }
    return zetStsOk;
}

// Decodes in the form that the spec has.
template <class Pair, class Single, template <int> class Tail, class... TailArguments>
ZetStatus decodeBlock(Zet8u** ppStream, int* pBitOffset, Zet16s* data, int len, const void* vlcSpec,
                      TailArguments... tailArguments) {
    const DecodeSpec& spec = *specAt<DecodeSpec>(vlcSpec);
    BitReader stream(ppStream, pBitOffset);
    const ZetStatus status =
        spec.valueForm == kSingleForm
            ? decodeCodewords<Single>(stream, data, len, spec, Tail<1>{tailArguments...})
            : decodeCodewords<Pair>(stream, data, len, spec, Tail<2>{tailArguments...});
    stream.store(ppStream, pBitOffset);
    return status;
}

ZetStatus checkArguments(Zet8u* const* ppStream, const int* pBitOffset, const Zet16s* pData,
                         const void* pVLCSpec) {
    ZETAC_REQUIRE(core::isSet(ppStream) && core::allSet(pBitOffset, pData, pVLCSpec),
                  zetStsNullPointer);
    ZETAC_REQUIRE(core::isBitOffset(pBitOffset), zetStsBadBitOffset);
    ZETAC_REQUIRE(isDecodeSpec(pVLCSpec), zetStsSpecMismatch);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::vlc

using namespace zetac;

ZetStatus zetsVLCDecodeEscBlock_MP3_1u16s(Zet8u** ppStream, int* pBitOffset, int escLen,
                                          Zet16s* pData, int len, const void* pVLCSpec) {
    const ZetStatus status = vlc::checkArguments(ppStream, pBitOffset, pData, pVLCSpec);
    if (status != zetStsOk) return status;
    return vlc::decodeBlock<vlc::SignedPair, vlc::SignedSingle, vlc::Mp3Signed>(
        ppStream, pBitOffset, pData, len, pVLCSpec, vlc::extensionBits(escLen));
}

ZetStatus zetsVLCDecodeEscBlock_AAC_1u16s(Zet8u** ppStream, int* pBitOffset, Zet16s* pData, int len,
                                          const void* pVLCSpec) {
    const ZetStatus status = vlc::checkArguments(ppStream, pBitOffset, pData, pVLCSpec);
    if (status != zetStsOk) return status;
    return vlc::decodeBlock<vlc::SignedPair, vlc::SignedSingle, vlc::AacSigned>(
        ppStream, pBitOffset, pData, len, pVLCSpec);
}

ZetStatus zetsVLCDecodeUTupleEscBlock_MP3_1u16s(Zet8u** ppStream, int* pBitOffset, int escLen,
                                                Zet16s* pData, int len, const void* pVLCSpec) {
    const ZetStatus status = vlc::checkArguments(ppStream, pBitOffset, pData, pVLCSpec);
    if (status != zetStsOk) return status;
    return vlc::decodeBlock<vlc::MagnitudePair, vlc::MagnitudeSingle, vlc::Mp3Unsigned>(
        ppStream, pBitOffset, pData, len, pVLCSpec, vlc::extensionBits(escLen));
}

ZetStatus zetsVLCDecodeUTupleEscBlock_AAC_1u16s(Zet8u** ppStream, int* pBitOffset, Zet16s* pData,
                                                int len, const void* pVLCSpec) {
    const ZetStatus status = vlc::checkArguments(ppStream, pBitOffset, pData, pVLCSpec);
    if (status != zetStsOk) return status;
    return vlc::decodeBlock<vlc::MagnitudePair, vlc::MagnitudeSingle, vlc::AacUnsigned>(
        ppStream, pBitOffset, pData, len, pVLCSpec);
}
