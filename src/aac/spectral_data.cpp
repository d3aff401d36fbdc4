// spectral_data() (ISO/IEC 14496-3, 4.4.2.7 and 4.6.3): the hottest loops of the stream readers.
// They are compiled per codebook, so that nothing about a book is asked inside a loop, and per
// width of the bit window.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <emmintrin.h>

#include <algorithm>

#include "aac/bit_window.h"
#include "aac/individual_channel_stream.h"
#include "tables/aac/codebooks.h"
#include "tables/aac/spectral_lookup.h"

namespace zetac::aac {
namespace {

using tables::SpectralEntry;

template <std::size_t numCodes>
constexpr int shortestCode(const tables::HuffmanCode (&book)[numCodes]) {
    int shortest = 32;
    for (const tables::HuffmanCode& code : book)
        shortest = std::min(shortest, static_cast<int>(code.length));
    return shortest;
}

// Bits of the shortest codeword by codebook number; 0 where the stream has no codewords.
constexpr int kShortestCode[16] = {0,
                                   shortestCode(tables::kSpectralBook1),
                                   shortestCode(tables::kSpectralBook2),
                                   shortestCode(tables::kSpectralBook3),
                                   shortestCode(tables::kSpectralBook4),
                                   shortestCode(tables::kSpectralBook5),
                                   shortestCode(tables::kSpectralBook6),
                                   shortestCode(tables::kSpectralBook7),
                                   shortestCode(tables::kSpectralBook8),
                                   shortestCode(tables::kSpectralBook9),
                                   shortestCode(tables::kSpectralBook10),
                                   shortestCode(tables::kSpectralBook11)};

constexpr int leastBits(int codebook, int lines) {
    return kShortestCode[codebook] * lines / (codebook < 5 ? 4 : 2);
}

// The leading ones of the longest escape sequence; one more is the end of the call.
constexpr int kEscapeOnesMax = 8;
// Bits of the shortest pair of book 11 that ends the call: codeword, two signs, and nine ones.
constexpr int kShortestBadPair =
    tables::kSpectralBook11[17 * 17 - 1].length + 2 + kEscapeOnesMax + 1;

template <int codebook>
struct Book {
    static constexpr tables::SpectralTupleShape kShape = tables::kSpectralTupleShape[codebook];
    static constexpr int kDimension = kShape.dimension;
    static constexpr bool kHasEscapes = codebook == zetAacEscapeCb;
    static constexpr int kLookupBits = tables::kSpectralLookupBits[codebook];
    // Lines of a step: a quadruple (at most 20 bits with its signs), two pairs (34), or one pair
    // that may have escapes (14). Every band is a multiple of 4 lines.
    static constexpr int kStep = kHasEscapes ? 2 : 4;
    static constexpr int kStepBits = kHasEscapes ? 14 : kDimension == 4 ? 20 : 34;
    static constexpr int kTupleBits = kStepBits * kDimension / kStep;
};

// Goes on from where the lookup table ends; rare.
template <int codebook>
[[gnu::noinline]] SpectralEntry walkTree(int node, uint32_t bits) {
    constexpr tables::SpectralTupleShape shape = Book<codebook>::kShape;
    constexpr int width = 12 / shape.dimension;
    const int16_t* tree = tables::_pCbParam_AAC[codebook].tree;
    int length = Book<codebook>::kLookupBits;
    for (; !(tree[node] & 1); ++length) node += bits << length >> 31 ? tree[node] / 2 : 1;
    tables::SpectralTuple tuple{};
    for (int i = 0; i < shape.dimension; ++i) {
        const uint32_t field = static_cast<uint32_t>(tree[node]) >> (2 + width * i);
        tuple.values[i] = static_cast<Zet32s>(field << (32 - width)) >> (32 - width);
    }
    return tables::makeSpectralEntry(shape, tuple, length);
}

template <int codebook, class Window>
inline SpectralEntry lookUp(const Window& window) {
    const uint32_t first = window.template first<Book<codebook>::kLookupBits>();
    const SpectralEntry entry = {tables::kSpectralLookup[codebook][first]};
    if (entry.continuesInTree()) [[unlikely]]
        return walkTree<codebook>(entry.treeNode(), window.top());
    return entry;
}

// By sign mask of a quadruple: for each value, 2 to the number of sign bits before its own.
struct SignPlaces {
    alignas(8) int16_t factor[16][4];
};
constexpr SignPlaces makeSignPlaces() {
    SignPlaces places{};
    for (int mask = 0; mask < 16; ++mask) {
        int before = 0;
        for (int i = 0; i < 4; ++i) {
            places.factor[mask][i] = static_cast<int16_t>(1 << before);
            before += mask >> (3 - i) & 1;
        }
    }
    return places;
}
constexpr SignPlaces kSignPlaces = makeSignPlaces();

// The four values of a quadruple at once: multiplications bring each value, and each sign bit, to
// the top of its lane. signs has the bits behind the codeword at the top of its lower half.
template <bool isUnsigned>
inline void storeQuad(SpectralEntry entry, uint32_t signs, Zet32s* line) {
    const __m128i toTop = _mm_setr_epi16(1, 1 << 4, 1 << 8, 1 << 12, 0, 0, 0, 0);
    const __m128i packed = _mm_cvtsi32_si128(static_cast<int>(entry.packed));
    __m128i values = _mm_mullo_epi16(_mm_shufflelo_epi16(packed, 0x55), toTop);
    if constexpr (isUnsigned) {
        const auto* places = reinterpret_cast<const __m128i*>(kSignPlaces.factor[entry.signMask()]);
        __m128i negative = _mm_shufflelo_epi16(_mm_cvtsi32_si128(static_cast<int>(signs)), 0);
        negative = _mm_srai_epi16(_mm_mullo_epi16(negative, _mm_loadl_epi64(places)), 15);
        values = _mm_srli_epi16(values, 12);
        values = _mm_sub_epi16(_mm_xor_si128(values, negative), negative);
        values = _mm_srai_epi32(_mm_unpacklo_epi16(values, values), 16);
    } else {
        values = _mm_srai_epi32(_mm_unpacklo_epi16(values, values), 28);
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(line), values);
}

// A sign bit belongs to each value that is not 0, so the second value's is the first or second bit.
inline void storeMagnitudePair(SpectralEntry entry, uint32_t signs, Zet32s* line) {
    const bool firstHasSign = entry.signMask() & 2;
    const Zet32s first = static_cast<Zet32s>(signs) >> 31;
    const Zet32s second = static_cast<Zet32s>(signs << firstHasSign) >> 31;
    line[0] = (entry.value<2>(0) ^ first) - first;
    line[1] = (entry.value<2>(1) ^ second) - second;
}

template <int codebook, class Window>
inline SpectralEntry readTuple(Window& window, Zet32s* line) {
    constexpr bool kIsUnsigned = Book<codebook>::kShape.isUnsigned();
    const SpectralEntry entry = lookUp<codebook>(window);
    const uint32_t signs = kIsUnsigned ? window.topAfter(entry.codeBits()) : 0;
    window.skip(entry.totalBits());
    if constexpr (Book<codebook>::kDimension == 4) {
        storeQuad<kIsUnsigned>(entry, signs >> 16, line);
    } else if constexpr (kIsUnsigned) {
        storeMagnitudePair(entry, signs, line);
    } else {
        line[0] = entry.value<2>(0);
        line[1] = entry.value<2>(1);
    }
    return entry;
}

// Replaces +-16 by the value of its escape sequence: N - 4 ones, a zero, and N bits that follow the
// leading one of the magnitude.
template <class Window>
bool readEscape(Window& window, Zet32s& value) {
    window.reload();
    const int ones = __builtin_clz(~window.top() | 1);
    if (ones > kEscapeOnesMax) {
        window.skip(kEscapeOnesMax + 1);
        return false;
    }
    const int bits = 4 + ones;
    window.skip(ones + 1);
    const auto magnitude = static_cast<Zet32s>(1U << bits | window.top() >> (32 - bits));
    window.skip(bits);
    value = value < 0 ? -magnitude : magnitude;
    return true;
}

template <class Window>
bool readEscapes(Window& window, Zet32s* line) {
    for (int i = 0; i < 2; ++i) {
        if ((line[i] == 16 || line[i] == -16) && !readEscape(window, line[i])) return false;
    }
    window.resume();
    return true;
}

template <int codebook, class Window>
inline bool readStep(Window& window, Zet32s* line) {
    using B = Book<codebook>;
    static_assert(Window::kBits >= B::kTupleBits);
    for (int i = 0; i < B::kStep; i += B::kDimension) {
        if (i == 0 || Window::kBits < B::kStepBits) window.refill();
        const SpectralEntry entry = readTuple<codebook>(window, line + i);
        if constexpr (B::kHasEscapes) {
            if (entry.hasEscape() && !readEscapes(window, line + i)) return false;
        }
    }
    return true;
}

template <int codebook, class Window>
inline bool readRun(BitReader& stream, Zet32s* line, const Zet32s* end) {
    Window window(stream);
    bool isValid = true;
    for (; line != end && isValid; line += Book<codebook>::kStep)
        isValid = readStep<codebook>(window, line);
    stream = window.position();
    return isValid;
}

// The lines of a section behind which the call consumes at least bitsBehind bits. A window that
// looks far ahead serves as long as the bits to come cover that.
template <int codebook>
bool readTuples(BitReader& stream, Zet32s* line, Zet32s* end, int bitsBehind) {
    using B = Book<codebook>;
    using Window = std::conditional_t<B::kHasEscapes, AheadWindow, WideWindow>;
    const int bitsToCome = leastBits(codebook, static_cast<int>(end - line)) + bitsBehind;
    const int spare = bitsToCome - Window::kBitsToCome;
    if (sizeof(void*) == 8 && spare >= 0 && line != end) {
        const ptrdiff_t steps = spare / leastBits(codebook, B::kStep) + 1;
        Zet32s* const runEnd = line + std::min<ptrdiff_t>(end - line, steps * B::kStep);
        if (!readRun<codebook, Window>(stream, line, runEnd)) return false;
        line = runEnd;
    }
    return line == end || readRun<codebook, NarrowWindow>(stream, line, end);
}

using TupleReader = bool (*)(BitReader&, Zet32s*, Zet32s*, int);
constexpr TupleReader kTupleReaders[12] = {
    nullptr,       readTuples<1>, readTuples<2>, readTuples<3>, readTuples<4>,  readTuples<5>,
    readTuples<6>, readTuples<7>, readTuples<8>, readTuples<9>, readTuples<10>, readTuples<11>};

ZetStatus readSection(BitReader& stream, int codebook, Zet32s* line, Zet32s* end, int bitsBehind) {
    if (codebook == zetAacReservedCb) return zetStsAacCodeBookErr;
    if (codebook == zetAacZeroCb || codebook > zetAacReservedCb) {
        std::fill(line, end, 0);
        return zetStsOk;
    }
    const bool isValid = kTupleReaders[codebook](stream, line, end, bitsBehind);
    return isValid ? zetStsOk : zetStsAacCoefValErr;
}

// The least bits that a call consumes behind each section, up to the end of the last section, to a
// section that cannot be read, or to a pair with an escape that is too long.
class BitsBehind {
  public:
    BitsBehind(const BandLayout& layout, const ZetAACChanInfo& info) {
        const int count = measureSections(layout, info);
        int behind = 0;
        for (int section = count - 1; section >= 0; --section) {
            const int bits = bits_[section] + behind;
            bits_[section] = behind;
            behind =
                info.sect_cb[section] == zetAacEscapeCb ? std::min(bits, kShortestBadPair) : bits;
        }
    }
    int operator[](int section) const { return bits_[section]; }

  private:
    // The least bits of each section; returns how many can be read.
    int measureSections(const BandLayout& layout, const ZetAACChanInfo& info) {
        int section = 0;
        for (int g = 0; g < layout.numGroups; ++g) {
            int first = 0;
            for (int i = 0; i < info.num_sec[g]; ++i, ++section) {
                const int codebook = info.sect_cb[section];
                const int sectEnd = info.sect_end[section];
                bits_[section] = 0;
                if (sectEnd > layout.numSwb || codebook == zetAacReservedCb) return section;
                const int end = layout.swbOffset[sectEnd];
                bits_[section] = leastBits(codebook, (end - first) * layout.groupLength[g]);
                first = end;
            }
        }
        return section;
    }

    int bits_[ZETAC_AAC_GROUP_BANDS_MAX];
};

}  // namespace

ZetStatus readSpectralData(BitReader& stream, const BandLayout& layout, const ZetAACChanInfo& info,
                           Zet32s* spectrum) {
    Zet32s* const frameEnd = spectrum + ZETAC_AAC_FRAME_LEN;
    const BitsBehind bitsBehind(layout, info);
    int section = 0;
    for (int g = 0; g < layout.numGroups; ++g) {
        const int windows = layout.groupLength[g];
        Zet32s* line = spectrum;
        for (int i = 0; i < info.num_sec[g]; ++i, ++section) {
            const int codebook = info.sect_cb[section];
            const int sectEnd = info.sect_end[section];
            if (sectEnd > layout.numSwb) return zetStsOutOfRange;
            Zet32s* end = spectrum + layout.swbOffset[sectEnd] * windows;
            const ZetStatus status = readSection(stream, codebook, line, end, bitsBehind[section]);
            if (status != zetStsOk) return status;
            line = end;
        }
        spectrum += windows * layout.windowLength;
        std::fill(line, spectrum, 0);
    }
    std::fill(spectrum, frameEnd, 0);
    return zetStsOk;
}

}  // namespace zetac::aac
