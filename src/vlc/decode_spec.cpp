// Builds decoding specs.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <bit>
#include <bitset>

#include "core/checks.h"
#include "vlc/code_list.h"
#include "vlc/spec.h"

namespace zetac::vlc {
namespace {

constexpr int kEntryBits = 16;
constexpr int kLevelBitsMax = 8;
constexpr int kLengthBitsMax = 4;          // more than kLevelBitsMax needs
constexpr uint64_t kEntriesMax = 1 << 15;  // what an inner entry can index

constexpr int unsignedBits(int value) {
    return std::bit_width(static_cast<unsigned>(value));
}
constexpr int signedBits(int value) {
    return 1 + unsignedBits(value < 0 ? ~value : value);
}

bool isPairForm(int form) {
    return form == zetVLCPairs || form == zetVLCUTuples;
}
bool isUnsignedForm(int form) {
    return form == zetVLCUTuples || form == zetVLCUSingles;
}

// Where the entries of a table have their fields.
struct EntryFormat {
    int valueForm;
    int valueBits;   // of all values together
    int lengthBits;  // below 0: the values do not fit

    uint32_t leaf(Zet32s x, Zet32s y, int length) const {
        uint32_t values = static_cast<uint32_t>(x);
        if (valueForm == kPairForm)
            values = static_cast<uint32_t>(x) << 8 | static_cast<uint32_t>(y + 128);
        else if (valueForm != kSingleForm)
            values = static_cast<uint32_t>(x) << valueForm | static_cast<uint32_t>(y);
        return values << (1 + lengthBits) | static_cast<uint32_t>(length) << 1 | 1;
    }
    int longestLeaf() const { return (1 << lengthBits) - 1; }
};

// Bits for every first or second value of the list.
int fieldBits(const CodeList& list, int which, bool isUnsigned) {
    int bits = 1;
    for (const ZetVLCCode& code : list) {
        const int value = code.value[which];
        if (isUnsigned && value < 0) return kEntryBits;
        bits = std::max(bits, isUnsigned ? unsignedBits(value) : signedBits(value));
    }
    return bits;
}

EntryFormat entryFormat(const CodeList& list, int form) {
    const bool isUnsigned = isUnsignedForm(form);
    EntryFormat format = {kSingleForm, fieldBits(list, 0, isUnsigned), 0};
    if (isPairForm(form)) {
        const int second = fieldBits(list, 1, isUnsigned);
        if (isUnsigned) {
            format.valueForm = std::max(format.valueBits, second);
            format.valueBits = 2 * format.valueForm;
        } else {
            format.valueForm = kPairForm;
            format.valueBits = second > 8 ? kEntryBits : format.valueBits + 8;
        }
    }
    format.lengthBits = std::min(kEntryBits - 1 - format.valueBits, kLengthBitsMax);
    return format;
}

// A node of the code tree: what the codewords below it begin with.
struct Prefix {
    uint64_t bits;
    int length;

    bool begins(const ZetVLCCode& code) const {
        return code.length >= length && codeword(code) >> (code.length - length) == bits;
    }
    Prefix extended(uint32_t tail, int tailBits) const {
        return {bits << tailBits | tail, length + tailBits};
    }
};

// Writes the levels of a table depth first, or only counts their entries when it has no memory.
class TableWriter {
  public:
    TableWriter(const CodeList& list, const EntryFormat& format, uint16_t* table = nullptr)
        : list_(list), format_(format), table_(table) {}

    // Returns the bits of the first level.
    int write() {
        const Prefix root = {0, 0};
        const int bits = levelBits(root);
        size_ = uint64_t{1} << bits;
        unused_ = static_cast<uint32_t>(size_);
        appendUnused();
        writeLevel(root, bits, 0);
        return bits;
    }
    uint64_t size() const { return size_; }

  private:
    // A level ends at the next codeword that is too long for the length field of its leaf; such a
    // codeword gets a sub-table of 0 bits.
    int levelBits(Prefix prefix) const {
        int longest = 0;
        int end = kLevelBitsMax;
        for (const ZetVLCCode& code : list_) {
            if (!prefix.begins(code)) continue;
            const int rest = code.length - prefix.length;
            longest = std::max(longest, rest);
            if (rest > format_.longestLeaf()) end = std::min(end, rest);
        }
        return std::min(end, longest);
    }

    void writeLevel(Prefix prefix, int bits, uint64_t start) {
        std::bitset<1 << kLevelBitsMax> hasSubtable;
        put(start, 1 << bits, unused_ << 1);
        for (const ZetVLCCode& code : list_) {
            if (!prefix.begins(code)) continue;
            const int rest = code.length - prefix.length;
            const uint64_t tail = codeword(code) & ((uint64_t{1} << rest) - 1);
            if (rest <= std::min(bits, format_.longestLeaf())) {
                const int free = bits - rest;
                put(start + (tail << free), 1 << free,
                    format_.leaf(code.value[0], code.value[1], rest));
                continue;
            }
            const auto slot = static_cast<uint32_t>(tail >> (rest - bits));
            if (hasSubtable[slot]) continue;
            hasSubtable[slot] = true;
            put(start + slot, 1, static_cast<uint32_t>(size_) << 1);
            appendSubtable(prefix.extended(slot, bits));
        }
    }

    void appendSubtable(Prefix prefix) {
        const int bits = levelBits(prefix);
        const uint64_t start = size_;
        size_ += 1 + (uint64_t{1} << bits);
        put(start, 1, static_cast<uint32_t>(bits));
        writeLevel(prefix, bits, start + 1);
    }

    // What bits lead to that begin no codeword: zeros, behind the whole level.
    void appendUnused() {
        put(size_, 1, 0);
        put(size_ + 1, 1, format_.leaf(0, 0, 0));
        size_ += 2;
    }

    void put(uint64_t index, int count, uint32_t entry) {
        if (table_) std::fill_n(table_ + index, count, static_cast<uint16_t>(entry));
    }

    const CodeList& list_;
    const EntryFormat& format_;
    uint16_t* table_;
    uint64_t size_ = 0;
    uint32_t unused_ = 0;
};

struct DecodeLayout {
    DecodeSpec* spec;
    uint16_t* table;
};

DecodeLayout layOut(core::Layout& layout, uint64_t tableSize) {
    auto* spec = layout.take<DecodeSpec>();
    return {spec, layout.take<uint16_t>(tableSize)};
}

struct Plan {
    EntryFormat format;
    uint64_t tableSize;
    int specSize;
};

ZetStatus planDecoding(const CodeList& list, int form, Plan& plan) {
    ZETAC_REQUIRE(core::inRange(list.count, 1, kEntriesMax), zetStsBadSize);
    ZETAC_REQUIRE(core::inRange(form, zetVLCPairs, zetVLCUSingles), zetStsBadArg);
    ZETAC_REQUIRE(isPrefixCode(list), zetStsBadArg);
    plan.format = entryFormat(list, form);
    ZETAC_REQUIRE(plan.format.lengthBits >= 0, zetStsOutOfRange);
    TableWriter writer(list, plan.format);
    writer.write();
    plan.tableSize = writer.size();
    ZETAC_REQUIRE(plan.tableSize <= kEntriesMax, zetStsBadSize);
    core::Layout layout;
    layOut(layout, plan.tableSize);
    plan.specSize = static_cast<int>(layout.size());
    return zetStsOk;
}

DecodeSpec* initDecoding(const CodeList& list, const Plan& plan, Zet8u* memory) {
    core::Layout layout(memory);
    const auto [spec, table] = layOut(layout, plan.tableSize);
    const int firstBits = TableWriter(list, plan.format, table).write();
    *spec = {{core::SpecId::kVlcDecode, 0},
             firstBits,
             table,
             plan.format.valueForm,
             plan.format.lengthBits};
    return spec;
}

}  // namespace
}  // namespace zetac::vlc

using namespace zetac;

ZetStatus zetsVLCDecodeGetSize_1u16s(const ZetVLCCode* pCodes, int numCodes, int form, int* pSize) {
    ZETAC_REQUIRE(core::allSet(pCodes, pSize), zetStsNullPointer);
    vlc::Plan plan;
    const ZetStatus status = vlc::planDecoding({pCodes, numCodes}, form, plan);
    if (status == zetStsOk) *pSize = plan.specSize;
    return status;
}

ZetStatus zetsVLCDecodeInit_1u16s(ZetsVLCDecodeSpec_1u16s** ppSpec, const ZetVLCCode* pCodes,
                                  int numCodes, int form, Zet8u* pMem) {
    ZETAC_REQUIRE(core::allSet(ppSpec, pCodes, pMem), zetStsNullPointer);
    const vlc::CodeList list = {pCodes, numCodes};
    vlc::Plan plan;
    const ZetStatus status = vlc::planDecoding(list, form, plan);
    if (status != zetStsOk) return status;
    *ppSpec = vlc::initDecoding(list, plan, pMem);
    return zetStsOk;
}

ZetStatus zetsVLCDecodeInitAlloc_1u16s(ZetsVLCDecodeSpec_1u16s** ppSpec, const ZetVLCCode* pCodes,
                                       int numCodes, int form) {
    ZETAC_REQUIRE(core::allSet(ppSpec, pCodes), zetStsNullPointer);
    const vlc::CodeList list = {pCodes, numCodes};
    vlc::Plan plan;
    const ZetStatus status = vlc::planDecoding(list, form, plan);
    if (status != zetStsOk) return status;
    return core::allocateSpec(ppSpec, plan.specSize,
                              [&](Zet8u* memory) { return vlc::initDecoding(list, plan, memory); });
}

ZetStatus zetsVLCDecodeFree_1u16s(ZetsVLCDecodeSpec_1u16s* pSpec) {
    ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);
    ZETAC_REQUIRE(vlc::isDecodeSpec(pSpec), zetStsSpecMismatch);
    core::freeSpec(vlc::specAt<vlc::DecodeSpec>(pSpec));
    return zetStsOk;
}
