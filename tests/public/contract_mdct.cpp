// Contract rows of the MDCTs and the block FIR filter.
#include <new>

#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr int kLen = 64;
const Value kLength = value("len", kLen);
const std::vector<int> kRefusedBy16 = {INT_MIN, -32, 0,  1,  8,  12,         16,
                                       24,      31,  33, 36, 48, 0x4000 + 1, INT_MAX};

std::vector<int> refusedByFloating() {
    std::vector<int> lengths = kRefusedBy16;
    std::erase_if(lengths, [](int len) { return len == 12 || len == 36; });
    return lengths;
}

// A copy of the front of a structure, which refers to the rest of the original. Identifiers of
// other families, and of freed structures, have to be refused.
struct SpecFront {
    alignas(16) Zet32s id;
    Zet8u rest[188];
};

std::vector<int> otherIds(int id) {
    std::vector<int> ids = {0, 1, 4, 6, 21, 55, 56, 57, 58, 59, -1};
    std::erase(ids, id);
    return ids;
}

void refuseOtherIds(Row& row, int id) {
    row.field<SpecFront>("id", &SpecFront::id).refuses("id", otherIds(id), zetStsSpecMismatch);
}

template <class Spec>
Record<SpecFront> frontOf(const Spec* spec) {
    SpecFront front;
    std::memcpy(&front, spec, sizeof front);
    return record(front);
}

// A structure in memory that lives as long as the program, unlike one of InitAlloc not to be
// released: a copy of it can be freed.
template <class Spec, class GetSize, class Init>
Record<SpecFront> makeFront(GetSize getSize, Init init) {
    static std::vector<Zet8u> memory;
    int specSize, initSize, bufSize;
    getSize(kLen, &specSize, &initSize, &bufSize);
    memory.resize(specSize + sizeof(SpecFront));
    static Zet8u initMemory[1];
    Spec* spec = nullptr;
    init(&spec, kLen, memory.data(), initMemory);
    return frontOf(spec);
}

// The rows make many valid calls: what they allocate has to go.
template <auto initAlloc, auto free, class Spec>
ZetStatus allocateAndFree(Spec** ppSpec, int len) {
    const ZetStatus status = initAlloc(ppSpec, len);
    if (status == zetStsOk) free(*ppSpec);
    return status;
}

const Data kSpecPointer = data(sizeof(void*));

void addGetSizeRow(Table& table, const char* name, ZetStatus (*function)(int, int*, int*, int*),
                   const std::vector<int>& refused) {
    table.add(name, function, kLength, data(4), data(4), data(4))
        .refuses("len", refused, zetStsBadSize);
}

template <class Spec>
void addFloatingInitRows(Table& table, const char* name,
                         ZetStatus (*function)(Spec**, int, Zet8u*, Zet8u*)) {
    const auto late = [](const char* argument, size_t bytes) { return lateData(argument, bytes); };
    table
        .add(name, function, late("ppSpec", sizeof(void*)), kLength, late("pMemSpec", 4096),
             late("pMemInit", 1))
        .refuses("len", refusedByFloating(), zetStsBadSize)
        .pointerSet("ppSpec")
        .pointerSet("pMemSpec")
        .pointerSet("pMemInit");
    table
        .add(name, function, late("ppSpec", sizeof(void*)), value("len", 12),
             late("pMemSpec", 4096), Data{{}, true})
        .refuses("len", refusedByFloating(), zetStsBadSize)
        .pointerSet("ppSpec")
        .pointerSet("pMemSpec")
        .labelled("block");
}

template <class Spec>
void addFreeAndBufSizeRows(Table& table, const char* freeName, ZetStatus (*free)(Spec*),
                           const char* bufSizeName, ZetStatus (*getBufSize)(const Spec*, int*),
                           const Record<SpecFront>& front) {
    refuseOtherIds(table.add(freeName, free, front), front.value.id);
    refuseOtherIds(table.add(bufSizeName, getBufSize, front, data(4)), front.value.id);
}

// The structure is looked at before the data.
template <class Spec>
void addTransformRows(Table& table, const char* name,
                      ZetStatus (*function)(const Zet32f*, Zet32f*, const Spec*, Zet8u*),
                      const char* inPlaceName, ZetStatus (*inPlace)(Zet32f*, const Spec*, Zet8u*),
                      const Record<SpecFront>& front) {
    const size_t bytes = kLen * sizeof(Zet32f);
    for (const Data& buffer : {optionalData(4096), Data{{}, true}}) {
        const char* label = buffer.bytes.empty() ? "null" : "buffer";
        Row& row = table.add(name, function, lateData("pSrc", bytes), lateData("pDst", bytes),
                             front, buffer);
        refuseOtherIds(row, front.value.id);
        row.pointerSet("pSrc").pointerSet("pDst").labelled(label);
        Row& rowInPlace =
            table.add(inPlaceName, inPlace, lateData("pSrcDst", bytes), front, buffer);
        refuseOtherIds(rowInPlace, front.value.id);
        rowInPlace.pointerSet("pSrcDst").labelled(label);
    }
}

void addForwardRows(Table& table) {
    using Spec = ZetsMDCTFwdSpec_32f;
    addGetSizeRow(table, "zetsMDCTFwdGetSize_32f", zetsMDCTFwdGetSize_32f, refusedByFloating());
    addFloatingInitRows(table, "zetsMDCTFwdInit_32f", zetsMDCTFwdInit_32f);
    table
        .add("zetsMDCTFwdInitAlloc_32f",
             allocateAndFree<zetsMDCTFwdInitAlloc_32f, zetsMDCTFwdFree_32f, Spec>, kSpecPointer,
             kLength)
        .refuses("len", refusedByFloating(), zetStsBadSize);
    const auto front = makeFront<Spec>(zetsMDCTFwdGetSize_32f, zetsMDCTFwdInit_32f);
    addFreeAndBufSizeRows(table, "zetsMDCTFwdFree_32f", zetsMDCTFwdFree_32f,
                          "zetsMDCTFwdGetBufSize_32f", zetsMDCTFwdGetBufSize_32f, front);
    addTransformRows(table, "zetsMDCTFwd_32f", zetsMDCTFwd_32f, "zetsMDCTFwd_32f_I",
                     zetsMDCTFwd_32f_I, front);
}

void addInverseRows(Table& table) {
    using Spec = ZetsMDCTInvSpec_32f;
    addGetSizeRow(table, "zetsMDCTInvGetSize_32f", zetsMDCTInvGetSize_32f, refusedByFloating());
    addFloatingInitRows(table, "zetsMDCTInvInit_32f", zetsMDCTInvInit_32f);
    table
        .add("zetsMDCTInvInitAlloc_32f",
             allocateAndFree<zetsMDCTInvInitAlloc_32f, zetsMDCTInvFree_32f, Spec>, kSpecPointer,
             kLength)
        .refuses("len", refusedByFloating(), zetStsBadSize);
    const auto front = makeFront<Spec>(zetsMDCTInvGetSize_32f, zetsMDCTInvInit_32f);
    addFreeAndBufSizeRows(table, "zetsMDCTInvFree_32f", zetsMDCTInvFree_32f,
                          "zetsMDCTInvGetBufSize_32f", zetsMDCTInvGetBufSize_32f, front);
    addTransformRows(table, "zetsMDCTInv_32f", zetsMDCTInv_32f, "zetsMDCTInv_32f_I",
                     zetsMDCTInv_32f_I, front);
}

void add16BitRows(Table& table) {
    using Spec = ZetsMDCTFwdSpec_16s;
    addGetSizeRow(table, "zetsMDCTFwdGetSize_16s", zetsMDCTFwdGetSize_16s, kRefusedBy16);
    table
        .add("zetsMDCTFwdInit_16s", zetsMDCTFwdInit_16s, kSpecPointer, kLength, data(4096), data(1))
        .refuses("len", kRefusedBy16, zetStsBadSize);
    table
        .add("zetsMDCTFwdInitAlloc_16s",
             allocateAndFree<zetsMDCTFwdInitAlloc_16s, zetsMDCTFwdFree_16s, Spec>, kSpecPointer,
             kLength)
        .refuses("len", kRefusedBy16, zetStsBadSize);
    const auto front = makeFront<Spec>(zetsMDCTFwdGetSize_16s, zetsMDCTFwdInit_16s);
    addFreeAndBufSizeRows(table, "zetsMDCTFwdFree_16s", zetsMDCTFwdFree_16s,
                          "zetsMDCTFwdGetBufSize_16s", zetsMDCTFwdGetBufSize_16s, front);
    Row& row =
        table.add("zetsMDCTFwd_16s_Sfs", zetsMDCTFwd_16s_Sfs, lateData("pSrc", 2 * kLen),
                  lateData("pDst", kLen), front, value("scaleFactor", 3), optionalData(4096));
    refuseOtherIds(row, front.value.id);
    row.pointerSet("pSrc").pointerSet("pDst");
}

constexpr int kTaps = 8;

ZetStatus allocateAndFreeFilter(ZetsFIRBlockSpec_32f** ppSpec, const Zet32f* taps, int tapsLen) {
    const ZetStatus status = zetsFIRBlockInitAlloc_32f(ppSpec, taps, tapsLen);
    if (status == zetStsOk) zetsFIRBlockFree_32f(*ppSpec);
    return status;
}

ZetsFIRBlockSpec_32f* makeFilter() {
    ZetsFIRBlockSpec_32f* spec = nullptr;
    const std::vector<Zet32f> taps(sizeof(SpecFront));  // enough for the front
    zetsFIRBlockInitAlloc_32f(&spec, taps.data(), static_cast<int>(taps.size()));
    return spec;
}

// Where the structure is valid, frees another one, since the row holds only a copy of its front.
ZetStatus freeAnother(ZetsFIRBlockSpec_32f* spec) {
    if (!spec || std::memcmp(spec, "\x3a\0\0\0", 4) != 0) return zetsFIRBlockFree_32f(spec);
    return zetsFIRBlockFree_32f(makeFilter());
}

void addFirBlockRows(Table& table) {
    table
        .add("zetsFIRBlockInitAlloc_32f", allocateAndFreeFilter, kSpecPointer,
             data(kTaps * sizeof(Zet32f)), value("tapsLen", kTaps))
        .refuses("tapsLen", {0, -1, INT_MIN}, zetStsFirLengthErr);
    static const std::shared_ptr<ZetsFIRBlockSpec_32f> filter(makeFilter(), zetsFIRBlockFree_32f);
    const auto front = frontOf(filter.get());
    refuseOtherIds(table.add("zetsFIRBlockFree_32f", freeAnother, front), front.value.id);
    const int lineLen = sizeof(SpecFront);
    const size_t bytes = kLen * sizeof(Zet32f);
    Row& row = table.add("zetsFIRBlockOne_32f", zetsFIRBlockOne_32f, data(bytes), data(bytes),
                         kLength, front, data(lineLen * sizeof(Zet32f)), valueAt("index", 0));
    refuseOtherIds(row, front.value.id);
    row.refuses("len", {0, -1, INT_MIN}, zetStsFirLengthErr)
        .range("index", 0, lineLen - 1, zetStsFirLengthErr);
}

}  // namespace

void addMdctRows(Table& table) {
    addForwardRows(table);
    addInverseRows(table);
    add16BitRows(table);
    addFirBlockRows(table);
}

}  // namespace zetac::test
