// Contract rows of the FFTs and the DCTs.
#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr int kOrder = 9;  // the smallest with a work buffer in every family
constexpr int kLen = 1 << kOrder;

const Data kInt = data(sizeof(int)), kSpecPointer = data(sizeof(void*));
const Data kArray = data((kLen + 2) * sizeof(Zet32fc), 0), kMemory = data(65536);
const Value kOrderValue = value("order", kOrder), kFlag = value("flag", zetFftNoDiv);
const Value kHint = value("hint", zetAlgHintNone), kScale = value("scaleFactor", 4);
const std::string kParameters = "order 0..30 FftOrderErr; flag in 1 2 4 8 FftFlagErr";

#define ADD_FFT_LIFE(family)                                                               \
    const auto front = frontOf<ZetsFFTSpec_##family>([](auto** ppSpec) {                   \
        zetsFFTInit_##family(ppSpec, kOrder, zetFftNoDiv, zetAlgHintNone, lastingMemory(), \
                             nullptr);                                                     \
    });                                                                                    \
    table.ZETAC_ROW(zetsFFTGetSize_##family, kOrderValue, kFlag, kHint, kInt, kInt, kInt)  \
        .checks(kParameters);                                                              \
    table                                                                                  \
        .ZETAC_ROW(zetsFFTInit_##family, kSpecPointer, kOrderValue, kFlag, kHint, kMemory, \
                   optionalData(1))                                                        \
        .checks(kParameters);                                                              \
    table                                                                                  \
        .ZETAC_ALLOC_ROW(zetsFFTInitAlloc_##family, zetsFFTFree_##family, kSpecPointer,    \
                         kOrderValue, kFlag, kHint)                                        \
        .checks(kParameters);                                                              \
    table.ZETAC_ROW(zetsFFTFree_##family, front).checks(isOf(front));                      \
    table.ZETAC_ROW(zetsFFTGetBufSize_##family, front, kInt).checks(isOf(front))

// One row with a work buffer, one without. given are the arguments in front of it.
template <class Function, class... Given>
void addTransform(Table& table, const char* name, Function function, const Record<Front>& front,
                  const Given&... given) {
    for (const Data& buffer : {optionalData(65536), Data{{}, true}}) {
        Row& row = table.add(name, function, given..., buffer);
        row.checks(isOf(front)).labelled(buffer.bytes.empty() ? "null" : "buffer");
    }
}

#define ADD(function, ...) addTransform(table, #function, function, front, __VA_ARGS__)

#define ADD_DCT(direction)                                                                        \
    {                                                                                             \
        const Value len = value("len", kLen);                                                     \
        const auto front = frontOf<ZetsDCT##direction##Spec_32f>([](auto** ppSpec) {              \
            zetsDCT##direction##Init_32f(ppSpec, kLen, zetAlgHintNone, lastingMemory(), nullptr); \
        });                                                                                       \
        table.ZETAC_ROW(zetsDCT##direction##GetSize_32f, len, kHint, kInt, kInt, kInt)            \
            .checks("len >= 1 BadSize");                                                          \
        table                                                                                     \
            .ZETAC_ROW(zetsDCT##direction##Init_32f, kSpecPointer, len, kHint, kMemory,           \
                       Data{{}, true})                                                            \
            .checks("len >= 1 BadSize");                                                          \
        table                                                                                     \
            .ZETAC_ROW(zetsDCT##direction##Init_32f, kSpecPointer, value("len", 100), kHint,      \
                       kMemory, optionalData(65536))                                              \
            .checks("len >= 1 BadSize")                                                           \
            .labelled("chirp");                                                                   \
        table                                                                                     \
            .ZETAC_ALLOC_ROW(zetsDCT##direction##InitAlloc_32f, zetsDCT##direction##Free_32f,     \
                             kSpecPointer, len, kHint)                                            \
            .checks("len >= 1 BadSize");                                                          \
        table.ZETAC_ROW(zetsDCT##direction##Free_32f, front).checks(isOf(front));                 \
        table.ZETAC_ROW(zetsDCT##direction##GetBufSize_32f, front, kInt).checks(isOf(front));     \
        ADD(zetsDCT##direction##_32f, kArray, kArray, front);                                     \
        ADD(zetsDCT##direction##_32f_I, kArray, front);                                           \
    }

void addComplexRows(Table& table) {
    {
        ADD_FFT_LIFE(C_32fc);
        ADD(zetsFFTFwd_CToC_32fc, kArray, kArray, front),
            ADD(zetsFFTInv_CToC_32fc, kArray, kArray, front);
        ADD(zetsFFTFwd_CToC_32fc_I, kArray, front), ADD(zetsFFTInv_CToC_32fc_I, kArray, front);
    }
    {
        ADD_FFT_LIFE(C_32f);
        ADD(zetsFFTFwd_CToC_32f, kArray, kArray, kArray, kArray, front);
        ADD(zetsFFTInv_CToC_32f, kArray, kArray, kArray, kArray, front);
        ADD(zetsFFTFwd_CToC_32f_I, kArray, kArray, front),
            ADD(zetsFFTInv_CToC_32f_I, kArray, kArray, front);
    }
    {
        ADD_FFT_LIFE(C_16sc);
        ADD(zetsFFTFwd_CToC_16sc_Sfs, kArray, kArray, front, kScale),
            ADD(zetsFFTInv_CToC_16sc_Sfs, kArray, kArray, front, kScale);
        ADD(zetsFFTFwd_CToC_16sc_ISfs, kArray, front, kScale),
            ADD(zetsFFTInv_CToC_16sc_ISfs, kArray, front, kScale);
    }
}

void addRealRows(Table& table) {
    ADD_FFT_LIFE(R_32f);
    ADD(zetsFFTFwd_RToCCS_32f, kArray, kArray, front), ADD(zetsFFTFwd_RToCCS_32f_I, kArray, front);
    ADD(zetsFFTFwd_RToPack_32f, kArray, kArray, front),
        ADD(zetsFFTFwd_RToPack_32f_I, kArray, front);
    ADD(zetsFFTFwd_RToPerm_32f, kArray, kArray, front),
        ADD(zetsFFTFwd_RToPerm_32f_I, kArray, front);
    ADD(zetsFFTInv_CCSToR_32f, kArray, kArray, front), ADD(zetsFFTInv_CCSToR_32f_I, kArray, front);
    ADD(zetsFFTInv_PackToR_32f, kArray, kArray, front),
        ADD(zetsFFTInv_PackToR_32f_I, kArray, front);
    ADD(zetsFFTInv_PermToR_32f, kArray, kArray, front),
        ADD(zetsFFTInv_PermToR_32f_I, kArray, front);
}

}  // namespace

void addFftRows(Table& table) {
    addComplexRows(table);
    addRealRows(table);
    ADD_DCT(Fwd)
    ADD_DCT(Inv)
}

}  // namespace zetac::test
