// Contract rows of the MDCTs and the block FIR filter.
#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr int kLen = 64;
const Value kLength = value("len", kLen);
const Data kInt = data(sizeof(int)), kSpecPointer = data(sizeof(void*));
const Data kNoData = Data{{}, true};

const std::string kLengths16 = "len not min -32 0 1 8 12 16 24 31 33 36 48 0x4001 max BadSize";
const std::string kLengths = "len not min -32 0 1 8 16 24 31 33 48 0x4001 max BadSize";

// What all families have besides transforms and Init, and the front of a structure for these.
#define ADD_LIFE(direction, type, lengths)                                                        \
    const auto front = frontOf<ZetsMDCT##direction##Spec_##type>([](auto** ppSpec) {              \
        zetsMDCT##direction##Init_##type(ppSpec, kLen, lastingMemory(), lastingMemory());         \
    });                                                                                           \
    table.ZETAC_ROW(zetsMDCT##direction##GetSize_##type, kLength, kInt, kInt, kInt)               \
        .checks(lengths);                                                                         \
    table                                                                                         \
        .ZETAC_ALLOC_ROW(zetsMDCT##direction##InitAlloc_##type, zetsMDCT##direction##Free_##type, \
                         kSpecPointer, kLength)                                                   \
        .checks(lengths);                                                                         \
    table.ZETAC_ROW(zetsMDCT##direction##Free_##type, front).checks(isOf(front));                 \
    table.ZETAC_ROW(zetsMDCT##direction##GetBufSize_##type, front, kInt).checks(isOf(front))

// The structure is looked at before the data.
#define ADD_FLOATING(direction)                                                                 \
    {                                                                                           \
        ADD_LIFE(direction, 32f, kLengths);                                                     \
        table                                                                                   \
            .ZETAC_ROW(zetsMDCT##direction##Init_32f, late("ppSpec"), kLength, late("memory"),  \
                       late("init"))                                                            \
            .checks(kLengths + "; ppSpec set; memory set; init set");                           \
        table                                                                                   \
            .ZETAC_ROW(zetsMDCT##direction##Init_32f, late("ppSpec"), value("len", 12),         \
                       late("memory"), kNoData)                                                 \
            .checks(kLengths + "; ppSpec set; memory set")                                      \
            .labelled("block");                                                                 \
        for (const Data& buffer : {optionalData(4096), kNoData}) {                              \
            const char* label = buffer.bytes.empty() ? "null" : "buffer";                       \
            table.ZETAC_ROW(zetsMDCT##direction##_32f, late("src"), late("dst"), front, buffer) \
                .checks(isOf(front) + "; src set; dst set")                                     \
                .labelled(label);                                                               \
            table.ZETAC_ROW(zetsMDCT##direction##_32f_I, late("src"), front, buffer)            \
                .checks(isOf(front) + "; src set")                                              \
                .labelled(label);                                                               \
        }                                                                                       \
    }

void add16BitRows(Table& table) {
    ADD_LIFE(Fwd, 16s, kLengths16);
    table.ZETAC_ROW(zetsMDCTFwdInit_16s, kSpecPointer, kLength, data(4096), data(1))
        .checks(kLengths16);
    table
        .ZETAC_ROW(zetsMDCTFwd_16s_Sfs, lateData("src", 2 * kLen), lateData("dst", kLen), front,
                   value("scaleFactor", 3), optionalData(4096))
        .checks(isOf(front) + "; src set; dst set");
}

constexpr int kTaps = sizeof(Front);  // enough to fill the front of a structure
const std::vector<Zet32f> kManyTaps(kTaps);

// Where the structure is valid, frees another one, since the row holds only a copy of its front.
ZetStatus freeAnother(ZetsFIRBlockSpec_32f* spec) {
    if (!spec || std::memcmp(spec, "\x3a\0\0\0", 4) != 0) return zetsFIRBlockFree_32f(spec);
    zetsFIRBlockInitAlloc_32f(&spec, kManyTaps.data(), kTaps);
    return zetsFIRBlockFree_32f(spec);
}

void addFirBlockRows(Table& table) {
    const Data samples = data(kLen * sizeof(Zet32f)), line = data(kTaps * sizeof(Zet32f));
    table
        .ZETAC_ALLOC_ROW(zetsFIRBlockInitAlloc_32f, zetsFIRBlockFree_32f, kSpecPointer,
                         data(8 * sizeof(Zet32f)), value("tapsLen", 8))
        .checks("tapsLen not min -1 0 FirLengthErr");
    static ZetsFIRBlockSpec_32f* filter = nullptr;
    static const std::shared_ptr<void> owner(nullptr, [](void*) { zetsFIRBlockFree_32f(filter); });
    const auto front = frontOf<ZetsFIRBlockSpec_32f>([](ZetsFIRBlockSpec_32f** ppSpec) {
        zetsFIRBlockInitAlloc_32f(&filter, kManyTaps.data(), kTaps);
        *ppSpec = filter;
    });
    table.add("zetsFIRBlockFree_32f", freeAnother, front).checks(isOf(front));
    table
        .ZETAC_ROW(zetsFIRBlockOne_32f, samples, samples, kLength, front, line, valueAt("index", 0))
        .checks(isOf(front) + "; len not min -1 0 FirLengthErr")
        .range("index", 0, kTaps - 1, zetStsFirLengthErr);
}

}  // namespace

void addMdctRows(Table& table) {
    const auto late = [](const char* name) { return lateData(name, 4096); };
    ADD_FLOATING(Fwd)
    ADD_FLOATING(Inv)
    add16BitRows(table);
    addFirBlockRows(table);
}

}  // namespace zetac::test
