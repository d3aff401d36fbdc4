// Contract rows of the floating SBR tools.
#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr int kSlots = 5;  // more than a vector of slots
constexpr size_t kBandBytes = 64 * sizeof(Zet32fc);
constexpr size_t kSampleBytes = kSlots * 64 * sizeof(Zet32f);

const Data kInt = data(sizeof(int));
const Data kWindow = data(640 * sizeof(Zet32f));
const Data kSamples = lateData("later", kSampleBytes);
const Channels kRows = lateChannels("later", kSlots, kBandBytes);
const Data kWork = data(4096);
const Data kLateWork = lateData("later", 4096);
const Value kNumSlots = value("numSlots", kSlots);
const Value kOffset = value("offset", 0);
const Value kKx = value("kx", 7);

template <class Spec>
Record<Front> stateOf(ZetStatus (*init)(Spec**, Zet8u*, Zet8u*)) {
    return frontOf<Spec>([init](Spec** ppSpec) { init(ppSpec, lastingMemory(), lastingMemory()); });
}

Row& checkId(Row& row, int id) {
    return row.field<Front>("id", &Front::id).oneOf("id", {id}, zetStsSpecMismatch);
}

#define ADD_LIFE(bank, types)                                                                     \
    table.ZETAC_ROW(zets##bank##FilterGetSize_SBR_##types, kInt, kInt, kInt);                     \
    table.ZETAC_ROW(zets##bank##FilterInit_SBR_##types, data(sizeof(void*)), data(16384), kWork); \
    const auto state = stateOf(zets##bank##FilterInit_SBR_##types)

void addAnalysisRows(Table& table) {
    {
        ADD_LIFE(Analysis, RToR_32f);
        checkId(table.ZETAC_ROW(zetsAnalysisFilter_SBR_RToR_32f_D2L, kSamples, kRows, kWindow,
                                kNumSlots, kOffset, kKx, state, kLateWork),
                0x434D4158)
            .pointerSet("later")
            .range("kx", 0, 32, zetStsBadSize);
    }
    {
        ADD_LIFE(Analysis, RToC_32f);
        checkId(table.ZETAC_ROW(zetsAnalysisFilter_SBR_RToC_32f_D2L, kSamples, kRows, kRows,
                                kWindow, kNumSlots, kOffset, kKx, state, kWork),
                0x434D4157)
            .range("kx", 0, 32, zetStsBadSize)
            .pointerSet("later");
    }
    {
        ADD_LIFE(Analysis, RToC_32f32fc);
        checkId(table.ZETAC_ROW(zetsAnalysisFilter_SBR_RToC_32f32fc_D2L, kSamples, kRows, kWindow,
                                kNumSlots, kOffset, kKx, state, kWork),
                0x434D4156)
            .range("kx", 0, 32, zetStsBadSize)
            .pointerSet("later");
    }
}

#define ADD_SYNTHESIS(bank, types, identifier, ...)                                             \
    {                                                                                           \
        ADD_LIFE(bank, types);                                                                  \
        checkId(table.ZETAC_ROW(zets##bank##Filter_SBR_##types##_D2L, __VA_ARGS__), identifier) \
            .pointerSet("later");                                                               \
    }

void addSynthesisRows(Table& table) {
    ADD_SYNTHESIS(Synthesis, RToR_32f, 0x434D415B, kRows, kSamples, kWindow, kNumSlots, state,
                  kLateWork)
    ADD_SYNTHESIS(Synthesis, CToR_32f, 0x434D415A, kRows, kRows, kSamples, kWindow, kNumSlots,
                  state, kWork)
    ADD_SYNTHESIS(Synthesis, CToR_32fc32f, 0x434D4159, kRows, kSamples, kWindow, kNumSlots, state,
                  kWork)
    ADD_SYNTHESIS(SynthesisDown, RToR_32f, 0x434D415E, kRows, kSamples, kWindow, kNumSlots, state,
                  kLateWork)
    ADD_SYNTHESIS(SynthesisDown, CToR_32f, 0x434D415D, kRows, kRows, kSamples, kWindow, kNumSlots,
                  state, kWork)
    ADD_SYNTHESIS(SynthesisDown, CToR_32fc32f, 0x434D415C, kRows, kSamples, kWindow, kNumSlots,
                  state, kWork)
}

void addDetectionRows(Table& table) {
    const Channels rows = channels("rows", kSlots + 2, kBandBytes);
    const Data bands = data(kBandBytes);
    const Data matrix = data((kSlots + 2) * kBandBytes, 0);
    const Value len = value("len", 9);
    table.ZETAC_ROW(zetsPredictCoef_SBR_R_32f_D2L, rows, bands, bands, len, kNumSlots);
    table.ZETAC_ROW(zetsPredictCoef_SBR_C_32f_D2L, rows, rows, bands, bands, bands, bands, len,
                    kNumSlots);
    table.ZETAC_ROW(zetsPredictCoef_SBR_C_32fc_D2L, rows, bands, bands, len, kNumSlots);
    table
        .ZETAC_ROW(zetsDetectTransient_SBR_32f, matrix, bands, bands, kInt, len, kNumSlots,
                   value("threshold", 1), value("floor", 1))
        .atLeast("len", 1, zetStsBadSize)
        .atLeast("numSlots", 1, zetStsBadSize);
    table.ZETAC_ROW(zetsEstimateTNR_SBR_32f, matrix, matrix, bands, len, kNumSlots)
        .atLeast("len", 1, zetStsBadSize)
        .atLeast("numSlots", 1, zetStsBadSize);
}

// The row makes many valid calls: what they allocate has to go.
ZetStatus allocateAndFree(Zet8u** ppState) {
    const ZetStatus status = zetsAnalysisFilterEncInitAlloc_SBR_32f(ppState);
    if (status == zetStsOk) zetsAnalysisFilterEncFree_SBR_32f(*ppState);
    return status;
}

void addEncoderRows(Table& table) {
    const auto state = stateOf<Zet8u>([](Zet8u** spec, Zet8u* memory, Zet8u* memInit) {
        *spec = memory;
        return zetsAnalysisFilterEncInit_SBR_32f(memory, memInit);
    });
    table.ZETAC_ROW(zetsAnalysisFilterEncGetSize_SBR_32f, kInt, kInt);
    table.ZETAC_ROW(zetsAnalysisFilterEncInit_SBR_32f, data(16384), kWork);
    table.add("zetsAnalysisFilterEncInitAlloc_SBR_32f", allocateAndFree, data(sizeof(void*)));
    checkId(table.ZETAC_ROW(zetsAnalysisFilterEncFree_SBR_32f, state), 0x434D416A);
    checkId(table.ZETAC_ROW(zetsAnalysisFilterEnc_SBR_32f32fc, kWindow, data(kBandBytes), state),
            0x434D416A);
}

}  // namespace

void addSbrFloatRows(Table& table) {
    addAnalysisRows(table);
    addSynthesisRows(table);
    addDetectionRows(table);
    addEncoderRows(table);
}

}  // namespace zetac::test
