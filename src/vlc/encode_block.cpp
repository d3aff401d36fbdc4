// Encodes blocks of pairs with escapes, and counts their bits.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <bit>

#include "core/bit_writer.h"
#include "core/bits.h"
#include "core/checks.h"
#include "vlc/escapes.h"
#include "vlc/spec.h"

namespace zetac::vlc {
namespace {

using core::BitWriter;

struct Codeword {
    uint32_t code;
    int length;
};

// Of length 0 where the tables have none; that is also said of pairs which a spec made for the
// other style has no room for.
template <class Index>
Codeword codewordOf(const EncodeSpec& spec, const Zet16s* value) {
    constexpr Zet32s largest = Index::kLargest;
    const auto index = static_cast<uint32_t>(
        Index::of(std::clamp<Zet32s>(value[0], -largest, largest),
                  std::clamp<Zet32s>(value[1], -largest, largest), spec.zeroOffset));
    if (index >> spec.log2Size != 0) return {0, 0};
    return {static_cast<uint32_t>(spec.codes()[index]), spec.lengths[index]};
}

// The MP3 style: an extension stands between the codeword and its value's sign, so that the sign
// bits from the first escape on leave the codeword.
struct Mp3Style {
    using Index = Mp3Index;
    int escLen;

    static bool isEscape(Zet32s value) { return magnitudeOf(value) >= kMp3Escape; }
    int escapeBits(Zet32s value) const { return isEscape(value) ? escLen : 0; }

    void write(BitWriter& stream, Codeword word, const Zet16s* value) const {
        const int first = isEscape(value[0]) ? 0 : isEscape(value[1]) ? 1 : 2;
        int signs = 0;
        for (int i = first; i < 2; ++i) signs += value[i] != 0;
        signs = std::min(signs, word.length);
        stream.put(word.code >> signs, word.length - signs);
        for (int i = first; i < 2; ++i) writeExtended(stream, value[i]);
    }

  private:
    void writeExtended(BitWriter& stream, Zet32s value) const {
        if (value == 0) return;
        if (isEscape(value)) {
            const Zet32s largest = (1 << escLen) - 1;
            const Zet32s extension = std::min(magnitudeOf(value) - kMp3Escape, largest);
            stream.put(static_cast<uint32_t>(extension), escLen);
        }
        stream.put(value < 0, 1);
    }
};

// The AAC style: escape sequences follow the codeword, which keeps its signs.
struct AacStyle {
    using Index = AacIndex;

    static int leadingBit(Zet32s value) {
        return std::bit_width(static_cast<uint32_t>(magnitudeOf(value))) - 1;
    }
    static int escapeBits(Zet32s value) {
        return magnitudeOf(value) < kAacEscape ? 0 : 2 * leadingBit(value) - kAacEscapeBits + 1;
    }

    static void write(BitWriter& stream, Codeword word, const Zet16s* value) {
        stream.put(word.code, word.length);
        for (int i = 0; i < 2; ++i)
            if (magnitudeOf(value[i]) >= kAacEscape) writeEscapeSequence(stream, value[i]);
    }

  private:
    static void writeEscapeSequence(BitWriter& stream, Zet32s value) {
        const int bits = leadingBit(value);
        const int ones = bits - kAacEscapeBits;
        // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): ones is 0 or more
        stream.put((2U << ones) - 2, ones + 1);
        stream.put(static_cast<uint32_t>(magnitudeOf(value)) - (1U << bits), bits);
    }
};

template <class Style>
void encodeBlock(const Zet16s* data, int len, Zet8u** ppStream, int* pBitOffset,
                 const void* vlcSpec, const Style& style) {
    if (len < 2) return;
    const EncodeSpec& spec = *specAt<EncodeSpec>(vlcSpec);
    BitWriter stream(ppStream, pBitOffset);
    for (int i = 0; i < (len & ~1); i += 2) {
        const Codeword word = codewordOf<typename Style::Index>(spec, data + i);
        if (word.length > 0) style.write(stream, word, data + i);
    }
    stream.store(ppStream, pBitOffset);
}

template <class Style>
int countBits(const Zet16s* data, int len, const void* vlcSpec, const Style& style) {
    const EncodeSpec& spec = *specAt<EncodeSpec>(vlcSpec);
    uint32_t bits = 0;
    for (int i = 0; i < (len & ~1); i += 2) {
        const Codeword word = codewordOf<typename Style::Index>(spec, data + i);
        if (word.length == 0) continue;
        bits += static_cast<uint32_t>(word.length + style.escapeBits(data[i]) +
                                      style.escapeBits(data[i + 1]));
    }
    return static_cast<int>(bits);
}

ZetStatus checkEncoding(const Zet16s* pInputData, Zet8u* const* ppStream, const int* pBitOffset,
                        const void* pVLCSpec) {
    ZETAC_REQUIRE(core::isSet(ppStream) && core::allSet(pInputData, pBitOffset, pVLCSpec),
                  zetStsNullPointer);
    ZETAC_REQUIRE(core::isBitOffset(pBitOffset), zetStsBadBitOffset);
    ZETAC_REQUIRE(isEncodeSpec(pVLCSpec), zetStsSpecMismatch);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::vlc

using namespace zetac;

ZetStatus zetsVLCEncodeEscBlock_MP3_16s1u(const Zet16s* pInputData, int len, int escLen,
                                          Zet8u** ppStream, int* pBitOffset, const void* pVLCSpec) {
    const ZetStatus status = vlc::checkEncoding(pInputData, ppStream, pBitOffset, pVLCSpec);
    if (status != zetStsOk) return status;
    vlc::encodeBlock(pInputData, len, ppStream, pBitOffset, pVLCSpec,
                     vlc::Mp3Style{vlc::extensionBits(escLen)});
    return zetStsOk;
}

ZetStatus zetsVLCEncodeEscBlock_AAC_16s1u(const Zet16s* pInputData, int len, Zet8u** ppStream,
                                          int* pBitOffset, const void* pVLCSpec) {
    const ZetStatus status = vlc::checkEncoding(pInputData, ppStream, pBitOffset, pVLCSpec);
    if (status != zetStsOk) return status;
    vlc::encodeBlock(pInputData, len, ppStream, pBitOffset, pVLCSpec, vlc::AacStyle{});
    return zetStsOk;
}

ZetStatus zetsVLCCountEscBits_MP3_16s32s(const Zet16s* pInputData, int len, int escLen,
                                         int* pCountBits, const void* pVLCSpec) {
    ZETAC_REQUIRE(core::allSet(pInputData, pCountBits, pVLCSpec), zetStsNullPointer);
    ZETAC_REQUIRE(vlc::isEncodeSpec(pVLCSpec), zetStsSpecMismatch);
    *pCountBits =
        vlc::countBits(pInputData, len, pVLCSpec, vlc::Mp3Style{vlc::extensionBits(escLen)});
    return zetStsOk;
}

ZetStatus zetsVLCCountEscBits_AAC_16s32s(const Zet16s* pInputData, int len, int* pCountBits,
                                         const void* pVLCSpec) {
    ZETAC_REQUIRE(core::allSet(pInputData, pCountBits, pVLCSpec), zetStsNullPointer);
    ZETAC_REQUIRE(vlc::isEncodeSpec(pVLCSpec), zetStsSpecMismatch);
    *pCountBits = vlc::countBits(pInputData, len, pVLCSpec, vlc::AacStyle{});
    return zetStsOk;
}
