// Contract rows of the fixed-point QMF banks of SBR and of the fixed-point tools beside them.
#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr size_t kStateBytes = 5168;  // of the largest bank, at a boundary

struct alignas(16) StateImage {
    Zet32s identifier;
    Zet8u rest[kStateBytes - sizeof(Zet32s)];
};

// Once initialised, a state may be copied as long as the original stays where it is.
Record<StateImage> stateOf(ZetStatus (*init)(Zet8u*)) {
    static std::deque<StateImage> originals;
    StateImage& original = originals.emplace_back();
    init(reinterpret_cast<Zet8u*>(&original));
    return record(original);
}

template <ZetStatus (*kInitAlloc)(Zet8u**), ZetStatus (*kFree)(Zet8u*)>
ZetStatus allocateAndFree(Zet8u** state) {
    const ZetStatus status = kInitAlloc(state);
    if (status == zetStsOk) kFree(*state);
    return status;
}

Row& accepting(Row& row, std::vector<int> identifiers) {
    return row.field<StateImage>("identifier", &StateImage::identifier)
        .oneOf("identifier", std::move(identifiers), zetStsSpecMismatch);
}

#define ADD_LIFE(filter, mode, identifier)                                                       \
    table.add("zets" #filter "GetSize_" #mode, zets##filter##GetSize_##mode, data(sizeof(int))); \
    table.add("zets" #filter "Init_" #mode, zets##filter##Init_##mode, data(kStateBytes));       \
    table.add("zets" #filter "InitAlloc_" #mode,                                                 \
              allocateAndFree<zets##filter##InitAlloc_##mode, zets##filter##Free_##mode>,        \
              data(sizeof(void*)));                                                              \
    accepting(table.add("zets" #filter "Free_" #mode, zets##filter##Free_##mode,                 \
                        stateOf(zets##filter##Init_##mode)),                                     \
              {identifier})

const Data kSamples = data(64 * sizeof(Zet32sc));

void addBankRows(Table& table) {
    ADD_LIFE(AnalysisFilter, SBRHQ_32s32sc, 0x434D4161);
    ADD_LIFE(AnalysisFilter, SBRLP_32s, 0x434D4162);
    ADD_LIFE(SynthesisFilter, SBRHQ_32sc32s, 0x434D4163);
    ADD_LIFE(SynthesisFilter, SBRLP_32s, 0x434D4164);
    ADD_LIFE(SynthesisDownFilter, SBRHQ_32sc32s, 0x434D4165);
    ADD_LIFE(SynthesisDownFilter, SBRLP_32s, 0x434D4166);

    accepting(table.ZETAC_ROW(zetsAnalysisFilter_SBRHQ_32s32sc, kSamples, kSamples, value("kx", 20),
                              stateOf(zetsAnalysisFilterInit_SBRHQ_32s32sc)),
              {0x434D4161})
        .range("kx", 0, 32, zetStsBadSize);
    accepting(table.ZETAC_ROW(zetsAnalysisFilter_SBRLP_32s, kSamples, kSamples, value("kx", 20),
                              stateOf(zetsAnalysisFilterInit_SBRLP_32s)),
              {0x434D4162})
        .range("kx", 0, 32, zetStsBadSize);
    accepting(table.ZETAC_ROW(zetsSynthesisFilter_SBRHQ_32sc32s, kSamples, kSamples,
                              stateOf(zetsSynthesisFilterInit_SBRHQ_32sc32s)),
              {0x434D4163});
    accepting(table.ZETAC_ROW(zetsSynthesisFilter_SBRLP_32s, kSamples, kSamples,
                              stateOf(zetsSynthesisFilterInit_SBRLP_32s)),
              {0x434D4164});
    accepting(table.ZETAC_ROW(zetsSynthesisDownFilter_SBRHQ_32sc32s, kSamples, kSamples,
                              stateOf(zetsSynthesisDownFilterInit_SBRHQ_32sc32s)),
              {0x434D4165, 0x434D4163});
    accepting(table.ZETAC_ROW(zetsSynthesisDownFilter_SBRLP_32s, kSamples, kSamples,
                              stateOf(zetsSynthesisDownFilterInit_SBRLP_32s)),
              {0x434D4166, 0x434D4164});
}

}  // namespace

void addSbrFixedRows(Table& table) {
    addBankRows(table);
    const Channels rows = channels("rows", 6, 4 * sizeof(Zet32sc));
    table
        .ZETAC_ROW(zetsPredictOneCoef_SBRHQ_32sc_D2L, rows, data(sizeof(Zet32sc)),
                   data(sizeof(Zet32sc)), value("band", 3), value("numSlots", 4))
        .atLeast("band", 0, zetStsBadSize);
    table
        .ZETAC_ROW(zetsPredictOneCoef_SBRLP_32s_D2L, rows, data(sizeof(Zet32s)),
                   data(sizeof(Zet32s)), value("band", 3), value("numSlots", 4))
        .atLeast("band", 0, zetStsBadSize);
    table
        .ZETAC_ROW(zetsInvWrap_32s_Sf, data(32), data(32), value("len", 8), value("position", 0),
                   value("scaleFactor", 1))
        .atLeast("len", 1, zetStsBadSize)
        .range("position", 0, 7, zetStsBadSize)
        .range("scaleFactor", -31, 31, zetStsBadArg);
}

}  // namespace zetac::test
