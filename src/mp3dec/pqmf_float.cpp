// The polyphase filter banks in single precision (ISO/IEC 11172-3, C.1.3 and 2.4.3.5). Every sum
// has a fixed order and runs over vectors of independent outputs, so that all builds give the same
// bits.
#include <algorithm>
#include <cstddef>

#include "core/checks.h"
#include "core/spec.h"
#include "tables/mp3_pqmf_float.h"

namespace zetac::mp3 {
namespace {

constexpr int kBands = 32;
constexpr int kSlots = 16;
constexpr int kSpecSize = 2091;  // told in both word sizes
constexpr uint32_t kSpecAlignment = 16;

struct BankState {
    core::SpecId id;
    Zet32s offset;  // of the next slot, analysis and synthesis alike
    Zet32s owned;
    Zet32f* history;  // [kSlots][kBands]

    Zet32f* slot(int age) const { return history + (offset + age) % kSlots * kBands; }
    void stepBack() { offset = (offset + kSlots - 1) % kSlots; }
};
constexpr size_t kHistoryBytes = kSlots * kBands * sizeof(Zet32f);
static_assert(sizeof(BankState) + kHistoryBytes + kSpecAlignment - 1 <= kSpecSize);

template <class Spec>
constexpr core::SpecId kId{};
template <>
constexpr core::SpecId kId<ZetsAnalysisFilterSpec_PQMF_MP3_32f> = core::SpecId::kPqmfAnalysis;
template <>
constexpr core::SpecId kId<ZetsSynthesisFilterSpec_PQMF_MP3_32f> = core::SpecId::kPqmfSynthesis;

// The record begins at the first boundary behind the caller's pointer.
template <class Spec>
BankState* stateIn(Spec* spec) {
    return reinterpret_cast<BankState*>(
        core::alignUp(reinterpret_cast<Zet8u*>(spec), kSpecAlignment));
}

template <class Spec>
bool isBank(Spec* spec) {
    return core::hasId(stateIn(spec), kId<Spec>);
}

ZetStatus getSize(int* size) {
    ZETAC_REQUIRE(size, zetStsNullPointer);
    *size = kSpecSize;
    return zetStsOk;
}

// The history lies right behind the record: on the next boundary it would not fit into the size.
BankState* layOut(Zet8u* memory, core::SpecId id) {
    core::Layout layout(memory, kSpecAlignment);
    auto* state = layout.take<BankState>();
    *state = {id, kSlots - 1, 0, layout.take<Zet32f>(kSlots * kBands, alignof(BankState))};
    std::fill_n(state->history, kSlots * kBands, 0.0f);
    return state;
}

template <class Spec>
ZetStatus init(Spec** spec, Zet8u* memory) {
    ZETAC_REQUIRE(core::allSet(spec, memory), zetStsNullPointer);
    *spec = reinterpret_cast<Spec*>(layOut(memory, kId<Spec>));
    return zetStsOk;
}

template <class Spec>
ZetStatus initAlloc(Spec** spec) {
    ZETAC_REQUIRE(spec, zetStsNullPointer);
    BankState* state = nullptr;
    const ZetStatus status = core::allocateSpec(
        &state, kSpecSize, [](Zet8u* memory) { return layOut(memory, kId<Spec>); });
    if (status == zetStsOk) *spec = reinterpret_cast<Spec*>(state);
    return status;
}

template <class Spec>
ZetStatus release(Spec* spec) {
    ZETAC_REQUIRE(spec, zetStsNullPointer);
    ZETAC_REQUIRE(isBank(spec), zetStsSpecMismatch);
    core::freeIfOwned(stateIn(spec));
    return zetStsOk;
}

template <int kHalf>
constexpr const tables::OddCosines<kHalf>& oddCosines() {
    if constexpr (kHalf == 16) return tables::kOddCosines16;
    if constexpr (kHalf == 8) return tables::kOddCosines8;
    if constexpr (kHalf == 4) return tables::kOddCosines4;
    if constexpr (kHalf == 2) return tables::kOddCosines2;
    if constexpr (kHalf == 1) return tables::kOddCosines1;
}

// The product of the odd half of a DCT, whose matrix is symmetric.
template <int kHalf>
inline void multiplyOddCosines(const Zet32f* x, Zet32f* sums) {
    const auto& cosines = oddCosines<kHalf>().values;
    for (int p = 0; p < kHalf; ++p) sums[p] = x[0] * cosines[0][p];
    for (int k = 1; k < kHalf; ++k) {
        for (int p = 0; p < kHalf; ++p) sums[p] += x[k] * cosines[k][p];
    }
}

// out[m] = sum of x[k] cos(pi / (2 kPoints) m (2k + 1)).
template <int kPoints>
inline void sDctFwd_Pow2(const Zet32f* x, Zet32f* out) {
    constexpr int kHalf = kPoints / 2;
    if constexpr (kPoints == 1) {
        out[0] = x[0];
    } else {
        Zet32f sums[kHalf], differences[kHalf], even[kHalf], odd[kHalf];
        for (int k = 0; k < kHalf; ++k) {
            sums[k] = x[k] + x[kPoints - 1 - k];
            differences[k] = x[k] - x[kPoints - 1 - k];
        }
        sDctFwd_Pow2<kHalf>(sums, even);
        multiplyOddCosines<kHalf>(differences, odd);
        for (int p = 0; p < kHalf; ++p) {
            out[2 * p] = even[p];
            out[2 * p + 1] = odd[p];
        }
    }
}

// out[k] = sum of x[m] cos(pi / (2 kPoints) m (2k + 1)).
template <int kPoints>
inline void sDctInv_Pow2(const Zet32f* x, Zet32f* out) {
    constexpr int kHalf = kPoints / 2;
    if constexpr (kPoints == 1) {
        out[0] = x[0];
    } else {
        Zet32f evenInputs[kHalf], oddInputs[kHalf], even[kHalf], odd[kHalf];
        for (int p = 0; p < kHalf; ++p) {
            evenInputs[p] = x[2 * p];
            oddInputs[p] = x[2 * p + 1];
        }
        sDctInv_Pow2<kHalf>(evenInputs, even);
        multiplyOddCosines<kHalf>(oddInputs, odd);
        for (int k = 0; k < kHalf; ++k) {
            out[k] = even[k] + odd[k];
            out[kPoints - 1 - k] = even[k] - odd[k];
        }
    }
}

// Analysis. The slot of age a holds the samples X[32 a] .. X[32 a + 31], the newest first.

void insertSamples(const Zet32f* src, int stride, Zet32f* slot) {
    for (int q = 0; q < kBands; ++q) slot[q] = src[stride * (kBands - 1 - q)] * 0x1p-15f;
}

// Y[i] = sum of C[i + 64 j] X[i + 64 j], folded about i = 16: the cosines of the matrix are even
// about it, and odd about 48.
void windowAnalysis(const BankState& state, Zet32f (&folded)[kBands]) {
    const Zet32f* window = tables::kAnalysisWindow.values;
    Zet32f y[2 * kBands] = {};
    for (int age = 0; age < kSlots; ++age) {
        const Zet32f* x = state.slot(age);
        Zet32f* sums = y + age % 2 * kBands;
        for (int q = 0; q < kBands; ++q) sums[q] += window[age * kBands + q] * x[q];
    }
    folded[0] = y[16];
    for (int m = 1; m <= 16; ++m) folded[m] = y[16 + m] + y[16 - m];
    for (int m = 17; m < kBands; ++m) folded[m] = y[16 + m] - y[80 - m];
}

void analyze(BankState& state, const Zet32f* src, Zet32f* dst, int stride) {
    insertSamples(src, stride, state.slot(0));
    Zet32f folded[kBands];
    windowAnalysis(state, folded);
    state.stepBack();
    sDctInv_Pow2<kBands>(folded, dst);
}

// Synthesis. With T the DCT of a slot, its low part holds T[0..15] and its high part T[16], T[31],
// T[30] .. T[17]: lane r = 1..15 has T[r] and T[32 - r], from which the outputs 16 - r and 16 + r
// are made.

void _sDCTFwd32_MP3_32f(const Zet32f* src, Zet32f* slot) {
    Zet32f t[kBands];
    sDctFwd_Pow2<kBands>(src, t);
    std::copy_n(t, 16, slot);
    slot[16] = t[16];
    for (int r = 1; r < 16; ++r) slot[16 + r] = t[32 - r];
}

void windowSynthesis(const BankState& state, Zet32f (&out)[kBands]) {
    const auto& window = tables::kSynthesisLanes;
    Zet32f minus[16] = {};
    Zet32f plus[16] = {};
    Zet32f edge = 0;
    for (int i = 0; i < 8; ++i) {
        const Zet32f* high = state.slot(2 * i) + 16;
        const Zet32f* low = state.slot(2 * i + 1);
        for (int r = 0; r < 16; ++r) {
            minus[r] += high[r] * window.minusHigh[i][r] + low[r] * window.minusLow[i][r];
            plus[r] += high[r] * window.plusHigh[i][r] + low[r] * window.plusLow[i][r];
        }
        edge += low[16] * window.edge[i];
    }
    for (int r = 0; r < 16; ++r) out[16 - r] = minus[r];
    for (int r = 1; r < 16; ++r) out[16 + r] = plus[r];
    out[0] = plus[0] + edge;
}

void synthesize(BankState& state, const Zet32f* src, Zet32f* dst, int stride) {
    _sDCTFwd32_MP3_32f(src, state.slot(0));
    Zet32f out[kBands];
    windowSynthesis(state, out);
    state.stepBack();
    for (int j = 0; j < kBands; ++j) dst[j * stride] = out[j];
}

template <class Spec>
ZetStatus filter(void (*run)(BankState&, const Zet32f*, Zet32f*, int), const Zet32f* src,
                 Zet32f* dst, Spec* spec, int mode) {
    ZETAC_REQUIRE(core::allSet(src, dst, spec), zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(mode, 1, 2), zetStsBadArg);
    ZETAC_REQUIRE(isBank(spec), zetStsSpecMismatch);
    run(*stateIn(spec), src, dst, mode);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac::mp3;

ZetStatus zetsAnalysisFilterGetSize_PQMF_MP3_32f(int* pSize) {
    return getSize(pSize);
}
ZetStatus zetsSynthesisFilterGetSize_PQMF_MP3_32f(int* pSize) {
    return getSize(pSize);
}

ZetStatus zetsAnalysisFilterInit_PQMF_MP3_32f(ZetsAnalysisFilterSpec_PQMF_MP3_32f** ppSpec,
                                              Zet8u* pMem) {
    return init(ppSpec, pMem);
}
ZetStatus zetsSynthesisFilterInit_PQMF_MP3_32f(ZetsSynthesisFilterSpec_PQMF_MP3_32f** ppSpec,
                                               Zet8u* pMem) {
    return init(ppSpec, pMem);
}

ZetStatus zetsAnalysisFilterInitAlloc_PQMF_MP3_32f(ZetsAnalysisFilterSpec_PQMF_MP3_32f** ppSpec) {
    return initAlloc(ppSpec);
}
ZetStatus zetsSynthesisFilterInitAlloc_PQMF_MP3_32f(ZetsSynthesisFilterSpec_PQMF_MP3_32f** ppSpec) {
    return initAlloc(ppSpec);
}

ZetStatus zetsAnalysisFilterFree_PQMF_MP3_32f(ZetsAnalysisFilterSpec_PQMF_MP3_32f* pSpec) {
    return release(pSpec);
}
ZetStatus zetsSynthesisFilterFree_PQMF_MP3_32f(ZetsSynthesisFilterSpec_PQMF_MP3_32f* pSpec) {
    return release(pSpec);
}

ZetStatus zetsAnalysisFilter_PQMF_MP3_32f(const Zet32f* pSrc, Zet32f* pDst,
                                          ZetsAnalysisFilterSpec_PQMF_MP3_32f* pSpec, int mode) {
    return filter(analyze, pSrc, pDst, pSpec, mode);
}
ZetStatus zetsSynthesisFilter_PQMF_MP3_32f(const Zet32f* pSrc, Zet32f* pDst,
                                           ZetsSynthesisFilterSpec_PQMF_MP3_32f* pSpec, int mode) {
    return filter(synthesize, pSrc, pDst, pSpec, mode);
}
