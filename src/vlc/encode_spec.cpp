// Builds encoding specs.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <bit>

#include "core/checks.h"
#include "vlc/code_list.h"
#include "vlc/spec.h"

namespace zetac::vlc {
namespace {

constexpr int kPairsMax = (2 * AacIndex::kLargest + 1) * (2 * AacIndex::kLargest + 1);

// What a style of escapes makes of the tables.
struct PairTables {
    int largest;
    Zet32s zeroOffset;
    int (*index)(Zet32s x, Zet32s y, Zet32s zeroOffset);

    int log2Size() const {
        const int last = index(largest, largest, zeroOffset);
        return std::bit_width(static_cast<unsigned>(last));
    }
    int indexOf(const ZetVLCCode& code) const {
        return index(code.value[0], code.value[1], zeroOffset);
    }
    bool has(const ZetVLCCode& code) const {
        return core::inRange(code.value[0], -largest, largest) &&
               core::inRange(code.value[1], -largest, largest);
    }
};

template <class Index>
constexpr PairTables kPairTables = {Index::kLargest, Index::kZeroOffset, Index::of};

const PairTables& pairTables(int escStyle) {
    return escStyle == zetVLCEscMP3 ? kPairTables<Mp3Index> : kPairTables<AacIndex>;
}

struct EncodeLayout {
    EncodeSpec* spec;
    Zet32s* lengths;
};

EncodeLayout layOut(core::Layout& layout, const PairTables& tables) {
    auto* spec = layout.take<EncodeSpec>();
    return {spec, layout.take<Zet32s>(uint64_t{2} << tables.log2Size())};
}

int specSize(int escStyle) {
    core::Layout layout;
    layOut(layout, pairTables(escStyle));
    return static_cast<int>(layout.size());
}

EncodeSpec* initEncoding(const CodeList& list, int escStyle, Zet8u* memory) {
    const PairTables& tables = pairTables(escStyle);
    const int log2Size = tables.log2Size();
    core::Layout layout(memory);
    const auto [spec, lengths] = layOut(layout, tables);
    Zet32s* codes = lengths + (1 << log2Size);
    std::fill(lengths, codes + (1 << log2Size), 0);
    for (const ZetVLCCode& code : list) {
        lengths[tables.indexOf(code)] = code.length;
        codes[tables.indexOf(code)] = code.code;
    }
    *spec = {lengths, tables.zeroOffset, static_cast<Zet8u>(log2Size), 0, core::SpecId::kVlcEncode};
    return spec;
}

// The sign bits at the end of an escape codeword of the MP3 style move behind the extensions.
bool hasRoomForSigns(const ZetVLCCode& code) {
    const int largest = Mp3Index::kLargest;
    const auto [x, y] = code.value;
    const bool isEscape = x == largest || x == -largest || y == largest || y == -largest;
    return !isEscape || code.length > (x != 0) + (y != 0);
}

bool isPairRepeated(const CodeList& list) {
    for (const ZetVLCCode* code = list.begin(); code != list.end(); ++code)
        for (const ZetVLCCode* other = list.begin(); other != code; ++other)
            if (std::equal(code->value, code->value + 2, other->value)) return true;
    return false;
}

ZetStatus checkList(const CodeList& list, int escStyle) {
    ZETAC_REQUIRE(core::inRange(list.count, 1, kPairsMax), zetStsBadSize);
    ZETAC_REQUIRE(core::inRange(escStyle, zetVLCEscMP3, zetVLCEscAAC), zetStsBadArg);
    const PairTables& tables = pairTables(escStyle);
    ZETAC_REQUIRE(isPrefixCode(list), zetStsBadArg);
    ZETAC_REQUIRE(std::all_of(list.begin(), list.end(),
                              [&](const ZetVLCCode& code) { return tables.has(code); }),
                  zetStsOutOfRange);
    ZETAC_REQUIRE(!isPairRepeated(list), zetStsBadArg);
    ZETAC_REQUIRE(
        escStyle == zetVLCEscAAC || std::all_of(list.begin(), list.end(), hasRoomForSigns),
        zetStsBadArg);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::vlc

using namespace zetac;

ZetStatus zetsVLCEncodeGetSize_16s1u(int escStyle, int* pSize) {
    ZETAC_REQUIRE(core::allSet(pSize), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(escStyle, zetVLCEscMP3, zetVLCEscAAC), zetStsBadArg);
    *pSize = vlc::specSize(escStyle);
    return zetStsOk;
}

ZetStatus zetsVLCEncodeInit_16s1u(ZetsVLCEncodeSpec_16s1u** ppSpec, const ZetVLCCode* pCodes,
                                  int numCodes, int escStyle, Zet8u* pMem) {
    ZETAC_REQUIRE(core::allSet(ppSpec, pCodes, pMem), zetStsNullPointer);
    const vlc::CodeList list = {pCodes, numCodes};
    const ZetStatus status = vlc::checkList(list, escStyle);
    if (status != zetStsOk) return status;
    *ppSpec = vlc::initEncoding(list, escStyle, pMem);
    return zetStsOk;
}

ZetStatus zetsVLCEncodeInitAlloc_16s1u(ZetsVLCEncodeSpec_16s1u** ppSpec, const ZetVLCCode* pCodes,
                                       int numCodes, int escStyle) {
    ZETAC_REQUIRE(core::allSet(ppSpec, pCodes), zetStsNullPointer);
    const vlc::CodeList list = {pCodes, numCodes};
    const ZetStatus status = vlc::checkList(list, escStyle);
    if (status != zetStsOk) return status;
    return core::allocateSpec(ppSpec, vlc::specSize(escStyle), [&](Zet8u* memory) {
        return vlc::initEncoding(list, escStyle, memory);
    });
}

ZetStatus zetsVLCEncodeFree_16s1u(ZetsVLCEncodeSpec_16s1u* pSpec) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(vlc::isEncodeSpec(pSpec), zetStsSpecMismatch);
    core::freeSpec(vlc::specAt<vlc::EncodeSpec>(pSpec));
    return zetStsOk;
}
