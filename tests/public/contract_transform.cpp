// Contract rows of the FFTs and the DCTs.
#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr int kOrder = 9;  // the smallest with a work buffer in every family
constexpr int kLen = 1 << kOrder;
constexpr size_t kBytes = (kLen + 2) * sizeof(Zet32fc);
constexpr size_t kSpecBytes = 65536;

const Data kInt = data(sizeof(int));
const Data kSpecPointer = data(sizeof(void*));
const Data kNoData = Data{{}, true};

// A copy of the front of a structure, which refers to the rest of the original.
struct Front {
    alignas(16) Zet32s id;
    Zet8u rest[188];
};

template <class Spec>
Record<Front> frontOf(const Spec* spec) {
    Front front;
    std::memcpy(&front, spec, sizeof front);
    return record(front);
}

void refuseOtherIds(Row& row, int id) {
    row.field<Front>("id", &Front::id).oneOf("id", {id}, zetStsSpecMismatch);
}

// Memory for the structures, as long as the program lives.
Zet8u* specMemory() {
    static std::deque<std::vector<Zet8u>> blocks;
    return blocks.emplace_back(kSpecBytes).data();
}

// The rows make many valid calls: what they allocate has to go.
template <auto initAlloc, auto free, class Spec>
ZetStatus fftAllocAndFree(Spec** ppSpec, int order, int flag, int hint) {
    const ZetStatus status = initAlloc(ppSpec, order, flag, hint);
    if (status == zetStsOk) free(*ppSpec);
    return status;
}
template <auto initAlloc, auto free, class Spec>
ZetStatus dctAllocAndFree(Spec** ppSpec, int len, int hint) {
    const ZetStatus status = initAlloc(ppSpec, len, hint);
    if (status == zetStsOk) free(*ppSpec);
    return status;
}

void checkParameters(Row& row) {
    row.range("order", 0, 30, zetStsFftOrderErr).oneOf("flag", {1, 2, 4, 8}, zetStsFftFlagErr);
}

const Value kOrderValue = value("order", kOrder);
const Value kFlag = value("flag", zetFftNoDiv);
const Value kHint = value("hint", zetAlgHintNone);

template <class Spec>
Record<Front> fftFront(ZetStatus (*init)(Spec**, int, int, int, Zet8u*, Zet8u*)) {
    Spec* spec = nullptr;
    init(&spec, kOrder, zetFftNoDiv, zetAlgHintNone, specMemory(), nullptr);
    return frontOf(spec);
}

template <class Spec>
void addFreeAndBufSizeRows(Table& table, const Record<Front>& front, const char* freeName,
                           ZetStatus (*free)(Spec*), const char* bufSizeName,
                           ZetStatus (*getBufSize)(const Spec*, int*)) {
    refuseOtherIds(table.add(freeName, free, front), front.value.id);
    refuseOtherIds(table.add(bufSizeName, getBufSize, front, kInt), front.value.id);
}

#define ADD_FFT_LIFE(family)                                                                    \
    checkParameters(table.add("zetsFFTGetSize_" #family, zetsFFTGetSize_##family, kOrderValue,  \
                              kFlag, kHint, kInt, kInt, kInt));                                 \
    checkParameters(table.add("zetsFFTInit_" #family, zetsFFTInit_##family, kSpecPointer,       \
                              kOrderValue, kFlag, kHint, data(kSpecBytes), optionalData(1)));   \
    checkParameters(table.add(                                                                  \
        "zetsFFTInitAlloc_" #family,                                                            \
        fftAllocAndFree<zetsFFTInitAlloc_##family, zetsFFTFree_##family, ZetsFFTSpec_##family>, \
        kSpecPointer, kOrderValue, kFlag, kHint));                                              \
    const Record<Front> front = fftFront(zetsFFTInit_##family);                                 \
    addFreeAndBufSizeRows(table, front, "zetsFFTFree_" #family, zetsFFTFree_##family,           \
                          "zetsFFTGetBufSize_" #family, zetsFFTGetBufSize_##family)

// One row with a work buffer, one without. given are the arguments in front of the structure.
template <class Function, class... Given>
void addTransformRows(Table& table, const char* name, Function function, const Record<Front>& front,
                      const Given&... given) {
    for (const Data& buffer : {optionalData(65536), kNoData}) {
        Row& row = table.add(name, function, given..., front, buffer);
        refuseOtherIds(row, front.value.id);
        row.labelled(buffer.bytes.empty() ? "null" : "buffer");
    }
}
template <class Function, class... Given>
void addScaledRows(Table& table, const char* name, Function function, const Record<Front>& front,
                   const Given&... given) {
    for (const Data& buffer : {optionalData(65536), kNoData}) {
        Row& row = table.add(name, function, given..., front, value("scaleFactor", 4), buffer);
        refuseOtherIds(row, front.value.id);
        row.labelled(buffer.bytes.empty() ? "null" : "buffer");
    }
}

#define ADD(function, ...) addTransformRows(table, #function, function, front, __VA_ARGS__)
#define ADD_SCALED(function, ...) addScaledRows(table, #function, function, front, __VA_ARGS__)

const Data kArray = data(kBytes, 0);

void addPairRows(Table& table) {
    ADD_FFT_LIFE(C_32fc);
    ADD(zetsFFTFwd_CToC_32fc, kArray, kArray);
    ADD(zetsFFTInv_CToC_32fc, kArray, kArray);
    ADD(zetsFFTFwd_CToC_32fc_I, kArray);
    ADD(zetsFFTInv_CToC_32fc_I, kArray);
}

void addSplitRows(Table& table) {
    ADD_FFT_LIFE(C_32f);
    ADD(zetsFFTFwd_CToC_32f, kArray, kArray, kArray, kArray);
    ADD(zetsFFTInv_CToC_32f, kArray, kArray, kArray, kArray);
    ADD(zetsFFTFwd_CToC_32f_I, kArray, kArray);
    ADD(zetsFFTInv_CToC_32f_I, kArray, kArray);
}

void addIntegerRows(Table& table) {
    ADD_FFT_LIFE(C_16sc);
    ADD_SCALED(zetsFFTFwd_CToC_16sc_Sfs, kArray, kArray);
    ADD_SCALED(zetsFFTInv_CToC_16sc_Sfs, kArray, kArray);
    ADD_SCALED(zetsFFTFwd_CToC_16sc_ISfs, kArray);
    ADD_SCALED(zetsFFTInv_CToC_16sc_ISfs, kArray);
}

void addRealRows(Table& table) {
    ADD_FFT_LIFE(R_32f);
    ADD(zetsFFTFwd_RToCCS_32f, kArray, kArray);
    ADD(zetsFFTFwd_RToPack_32f, kArray, kArray);
    ADD(zetsFFTFwd_RToPerm_32f, kArray, kArray);
    ADD(zetsFFTInv_CCSToR_32f, kArray, kArray);
    ADD(zetsFFTInv_PackToR_32f, kArray, kArray);
    ADD(zetsFFTInv_PermToR_32f, kArray, kArray);
    ADD(zetsFFTFwd_RToCCS_32f_I, kArray);
    ADD(zetsFFTFwd_RToPack_32f_I, kArray);
    ADD(zetsFFTFwd_RToPerm_32f_I, kArray);
    ADD(zetsFFTInv_CCSToR_32f_I, kArray);
    ADD(zetsFFTInv_PackToR_32f_I, kArray);
    ADD(zetsFFTInv_PermToR_32f_I, kArray);
}

#define ADD_DCT(direction)                                                                     \
    const Value len = value("len", kLen);                                                      \
    const Value odd = value("len", 100);                                                       \
    table                                                                                      \
        .add("zetsDCT" #direction "GetSize_32f", zetsDCT##direction##GetSize_32f, len, kHint,  \
             kInt, kInt, kInt)                                                                 \
        .atLeast("len", 1, zetStsBadSize);                                                     \
    table                                                                                      \
        .add("zetsDCT" #direction "Init_32f", zetsDCT##direction##Init_32f, kSpecPointer, len, \
             kHint, data(kSpecBytes), kNoData)                                                 \
        .atLeast("len", 1, zetStsBadSize);                                                     \
    table                                                                                      \
        .add("zetsDCT" #direction "Init_32f", zetsDCT##direction##Init_32f, kSpecPointer, odd, \
             kHint, data(kSpecBytes), optionalData(65536))                                     \
        .atLeast("len", 1, zetStsBadSize)                                                      \
        .labelled("chirp");                                                                    \
    table                                                                                      \
        .add("zetsDCT" #direction "InitAlloc_32f",                                             \
             dctAllocAndFree<zetsDCT##direction##InitAlloc_32f, zetsDCT##direction##Free_32f,  \
                             ZetsDCT##direction##Spec_32f>,                                    \
             kSpecPointer, len, kHint)                                                         \
        .atLeast("len", 1, zetStsBadSize);                                                     \
    ZetsDCT##direction##Spec_32f* spec = nullptr;                                              \
    zetsDCT##direction##Init_32f(&spec, kLen, zetAlgHintNone, specMemory(), nullptr);          \
    const Record<Front> front = frontOf(spec);                                                 \
    addFreeAndBufSizeRows(table, front, "zetsDCT" #direction "Free_32f",                       \
                          zetsDCT##direction##Free_32f, "zetsDCT" #direction "GetBufSize_32f", \
                          zetsDCT##direction##GetBufSize_32f);                                 \
    ADD(zetsDCT##direction##_32f, kArray, kArray);                                             \
    ADD(zetsDCT##direction##_32f_I, kArray)

void addForwardDctRows(Table& table) {
    ADD_DCT(Fwd);
}
void addInverseDctRows(Table& table) {
    ADD_DCT(Inv);
}

}  // namespace

void addFftRows(Table& table) {
    addPairRows(table);
    addSplitRows(table);
    addIntegerRows(table);
    addRealRows(table);
    addForwardDctRows(table);
    addInverseDctRows(table);
}

}  // namespace zetac::test
