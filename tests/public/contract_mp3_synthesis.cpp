// Contract rows of the Layer III synthesis and of the floating filter banks.
#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr size_t kGranule = ZETAC_MP3_GRANULE_LEN * sizeof(Zet32s);
constexpr size_t kSpecBytes = 2091;

void addFixedPointRows(Table& table) {
    table
        .add("zetsMDCTInv_MP3_32s", zetsMDCTInv_MP3_32s, data(kGranule), data(kGranule),
             data(kGranule), value("nonZeroBound", 100), valueAt("prevNumOfImdct", 3),
             value("blockType", 1), value("mixedBlock", 1))
        .range("nonZeroBound", 0, 576, zetStsBadArg)
        .range("blockType", 0, 3, zetStsBadArg)
        .range("mixedBlock", 0, 1, zetStsBadArg)
        .range("prevNumOfImdct", 0, 32, zetStsBadArg);
    // No checks at all.
    table.add("zetsMDCTInvWindow_MP3_32s", zetsMDCTInvWindow_MP3_32s,
              optionalData(18 * sizeof(Zet32s)), optionalData(36 * sizeof(Zet32s)),
              value("blockType", 0));
    table
        .add("zetsSynthPQMF_MP3_32s16s", zetsSynthPQMF_MP3_32s16s, data(32 * sizeof(Zet32s)),
             data(64 * sizeof(Zet16s)), data(ZETAC_MP3_V_BUFFER_LEN * sizeof(Zet32s)),
             valueAt("vOffset", 3), value("nChannels", 1))
        .range("nChannels", 1, 2, zetStsBadArg)
        .range("vOffset", 0, 15, zetStsBadArg);
}

// A filter bank's state: its identifier, and whatever follows.
struct alignas(16) SpecImage {
    Zet32s identifier;
    Zet8u rest[kSpecBytes - sizeof(Zet32s)];
};

// Once initialised, a state may be copied as long as the original stays where it is.
template <class Spec>
SpecImage imageOf(ZetStatus (*init)(Spec**, Zet8u*)) {
    static SpecImage original;
    Spec* spec;
    init(&spec, reinterpret_cast<Zet8u*>(&original));
    return original;
}

template <class Spec, ZetStatus (*kInitAlloc)(Spec**), ZetStatus (*kFree)(Spec*)>
ZetStatus allocateAndFree(Spec** spec) {
    const ZetStatus status = kInitAlloc(spec);
    if (status == zetStsOk) kFree(*spec);
    return status;
}

template <class Spec, class Free, class Filter>
void addSpecRows(Table& table, ZetStatus (*init)(Spec**, Zet8u*), const char* freeName, Free free,
                 const char* filterName, Filter filter, int identifier) {
    const auto spec = record(imageOf(init));
    const auto identified = [identifier](Row& row) {
        row.field<SpecImage>("identifier", &SpecImage::identifier)
            .oneOf("identifier", {identifier}, zetStsSpecMismatch);
    };
    identified(table.add(freeName, free, spec));
    identified(table
                   .add(filterName, filter, data(64 * sizeof(Zet32f), 0), data(64 * sizeof(Zet32f)),
                        spec, value("mode", 2))
                   .range("mode", 1, 2, zetStsBadArg));
}

void addFloatingRows(Table& table) {
    table.add("zetsAnalysisFilterGetSize_PQMF_MP3_32f", zetsAnalysisFilterGetSize_PQMF_MP3_32f,
              data(sizeof(int)));
    table.add("zetsSynthesisFilterGetSize_PQMF_MP3_32f", zetsSynthesisFilterGetSize_PQMF_MP3_32f,
              data(sizeof(int)));
    table.add("zetsAnalysisFilterInit_PQMF_MP3_32f", zetsAnalysisFilterInit_PQMF_MP3_32f,
              data(sizeof(void*)), data(kSpecBytes));
    table.add("zetsSynthesisFilterInit_PQMF_MP3_32f", zetsSynthesisFilterInit_PQMF_MP3_32f,
              data(sizeof(void*)), data(kSpecBytes));
    table.add("zetsAnalysisFilterInitAlloc_PQMF_MP3_32f",
              allocateAndFree<ZetsAnalysisFilterSpec_PQMF_MP3_32f,
                              zetsAnalysisFilterInitAlloc_PQMF_MP3_32f,
                              zetsAnalysisFilterFree_PQMF_MP3_32f>,
              data(sizeof(void*)));
    table.add("zetsSynthesisFilterInitAlloc_PQMF_MP3_32f",
              allocateAndFree<ZetsSynthesisFilterSpec_PQMF_MP3_32f,
                              zetsSynthesisFilterInitAlloc_PQMF_MP3_32f,
                              zetsSynthesisFilterFree_PQMF_MP3_32f>,
              data(sizeof(void*)));
    addSpecRows(table, zetsAnalysisFilterInit_PQMF_MP3_32f, "zetsAnalysisFilterFree_PQMF_MP3_32f",
                zetsAnalysisFilterFree_PQMF_MP3_32f, "zetsAnalysisFilter_PQMF_MP3_32f",
                zetsAnalysisFilter_PQMF_MP3_32f, 0x434D4168);
    addSpecRows(table, zetsSynthesisFilterInit_PQMF_MP3_32f, "zetsSynthesisFilterFree_PQMF_MP3_32f",
                zetsSynthesisFilterFree_PQMF_MP3_32f, "zetsSynthesisFilter_PQMF_MP3_32f",
                zetsSynthesisFilter_PQMF_MP3_32f, 0x434D4167);
}

}  // namespace

void addMp3SynthesisRows(Table& table) {
    addFixedPointRows(table);
    addFloatingRows(table);
}

}  // namespace zetac::test
