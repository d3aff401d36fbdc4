// The fixed-point QMF banks of SBR (ISO/IEC 14496-3, 4.6.18.4 and 4.6.18.8.2): states and slots.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "core/checks.h"
#include "core/spec.h"
#include "sbr/qmf_fixed_kernels.h"

namespace zetac::sbr {
namespace {

using core::SpecId;

constexpr uint32_t kStateAlignment = 16;
constexpr uint64_t kHeaderSize = 32;

// A state begins at the first multiple of 16 behind the caller's pointer: this header, then the
// delay line 32 bytes after its start. Packed, since both records have to fit into these 32 bytes
// with pointers of 8 bytes too.
struct [[gnu::packed, gnu::aligned(4)]] LineRecord {
    Zet32s* line;
    Zet32s position;
};
struct [[gnu::packed, gnu::aligned(4)]] StateHeader {
    SpecId id;
    LineRecord* record;
    Zet32s owned;
};
static_assert(sizeof(StateHeader) + sizeof(LineRecord) <= kHeaderSize);

constexpr int slotLength(SpecId bank) {
    if (bank == SpecId::kFixedQmfAnalysisHQ || bank == SpecId::kFixedQmfAnalysisLP) return 32;
    if (bank == SpecId::kFixedQmfSynthesisHQ || bank == SpecId::kFixedQmfSynthesisLP) return 128;
    return 64;
}
constexpr int lineLength(SpecId bank) {
    return kQmfSlots * slotLength(bank);
}

struct Pieces {
    StateHeader* header;
    Zet32s* line;
};

Pieces layOut(core::Layout& layout, SpecId bank) {
    auto* header = reinterpret_cast<StateHeader*>(layout.takeBytes(kHeaderSize));
    return {header, layout.take<Zet32s>(lineLength(bank))};
}

int stateSize(SpecId bank) {
    core::Layout layout(nullptr, kStateAlignment);
    layOut(layout, bank);
    return static_cast<int>(layout.size());
}

StateHeader* makeState(Zet8u* memory, SpecId bank) {
    core::Layout layout(memory, kStateAlignment);
    const auto [header, line] = layOut(layout, bank);
    auto* record = reinterpret_cast<LineRecord*>(header + 1);
    *header = {bank, record, 0};
    *record = {line, 0};
    std::fill_n(line, lineLength(bank), 0);
    return header;
}

StateHeader* headerIn(Zet8u* state) {
    return reinterpret_cast<StateHeader*>(core::alignUp(state, kStateAlignment));
}

template <SpecId bank>
ZetStatus getSize(int* size) {
    ZETAC_REQUIRE(size, zetStsNullPointer);
    *size = stateSize(bank);
    return zetStsOk;
}

template <SpecId bank>
ZetStatus init(Zet8u* state) {
    ZETAC_REQUIRE(state, zetStsNullPointer);
    makeState(state, bank);
    return zetStsOk;
}

template <SpecId bank>
ZetStatus initAlloc(Zet8u** state) {
    ZETAC_REQUIRE(state, zetStsNullPointer);
    StateHeader* header = nullptr;
    const ZetStatus status = core::allocateSpec(
        &header, stateSize(bank), [](Zet8u* memory) { return makeState(memory, bank); });
    if (status == zetStsOk) *state = reinterpret_cast<Zet8u*>(header);
    return status;
}

template <SpecId bank>
ZetStatus release(Zet8u* state) {
    ZETAC_REQUIRE(state, zetStsNullPointer);
    ZETAC_REQUIRE(core::hasId(headerIn(state), bank), zetStsSpecMismatch);
    core::freeIfOwned(headerIn(state));
    return zetStsOk;
}

// Position of the newest slot in a ring of slots of this bank's length. A synthesis state may serve
// the 64-band bank, in steps of 128 values modulo 1280, and the down bank, in steps of 64 modulo
// 640, by turns: the position that the other one left is then taken modulo 640, or down to a
// multiple of 128, so that a slot never reaches beyond the line.
template <SpecId bank>
int positionIn(const LineRecord& record) {
    constexpr int kLength = slotLength(bank);
    return record.position % lineLength(bank) / kLength * kLength;
}

// One slot: run(line, position), then the move to the next one.
template <SpecId bank, class Run>
void runSlot(StateHeader* header, Run run) {
    LineRecord& record = *header->record;
    const int position = positionIn<bank>(record);
    run(record.line, position);
    record.position = (position > 0 ? position : lineLength(bank)) - slotLength(bank);
}

template <SpecId bank, class Sample>
ZetStatus analyse(const Zet32s* src, Sample* dst, int kx, Zet8u* state,
                  void (*QmfFixedKernels::*kernel)(const Zet32s*, Sample*, Zet32s*, int)) {
    ZETAC_REQUIRE(core::allSet(src, dst, state), zetStsNullPointer);
    StateHeader* header = headerIn(state);
    ZETAC_REQUIRE(core::hasId(header, bank), zetStsSpecMismatch);
    ZETAC_REQUIRE(core::inRange(kx, 0, 32), zetStsBadSize);

    const QmfFixedKernels& kernels = core::select(kQmfFixedKernels);
    runSlot<bank>(header,
                  [&](Zet32s* line, int position) { (kernels.*kernel)(src, dst, line, position); });
    std::fill(dst + kx, dst + 32, Sample{});
    return zetStsOk;
}

// A down bank takes a state of the 64-band bank of its mode as well.
bool accepts(SpecId bank, const StateHeader* header) {
    const SpecId full = bank == SpecId::kFixedQmfDownHQ   ? SpecId::kFixedQmfSynthesisHQ
                        : bank == SpecId::kFixedQmfDownLP ? SpecId::kFixedQmfSynthesisLP
                                                          : bank;
    return core::hasId(header, bank) || core::hasId(header, full);
}

template <SpecId bank, class Sample>
ZetStatus synthesise(const Sample* src, Zet32s* dst, Zet8u* state,
                     void (*QmfFixedKernels::*kernel)(const Sample*, Zet32s*, Zet32s*, int)) {
    ZETAC_REQUIRE(core::allSet(src, dst, state), zetStsNullPointer);
    StateHeader* header = headerIn(state);
    ZETAC_REQUIRE(accepts(bank, header), zetStsSpecMismatch);

    const QmfFixedKernels& kernels = core::select(kQmfFixedKernels);
    runSlot<bank>(header,
                  [&](Zet32s* line, int position) { (kernels.*kernel)(src, dst, line, position); });
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::sbr

using namespace zetac::sbr;
using zetac::core::SpecId;

// The life cycle of a bank, by the endings of its names.
#define ZETAC_QMF_LIFE_CYCLE(filter, mode, bank)                \
    ZetStatus zets##filter##GetSize_##mode(int* pSize) {        \
        return getSize<bank>(pSize);                            \
    }                                                           \
    ZetStatus zets##filter##Init_##mode(Zet8u* pState) {        \
        return init<bank>(pState);                              \
    }                                                           \
    ZetStatus zets##filter##InitAlloc_##mode(Zet8u** ppState) { \
        return initAlloc<bank>(ppState);                        \
    }                                                           \
    ZetStatus zets##filter##Free_##mode(Zet8u* pState) {        \
        return release<bank>(pState);                           \
    }

ZETAC_QMF_LIFE_CYCLE(AnalysisFilter, SBRHQ_32s32sc, SpecId::kFixedQmfAnalysisHQ)
ZETAC_QMF_LIFE_CYCLE(AnalysisFilter, SBRLP_32s, SpecId::kFixedQmfAnalysisLP)
ZETAC_QMF_LIFE_CYCLE(SynthesisFilter, SBRHQ_32sc32s, SpecId::kFixedQmfSynthesisHQ)
ZETAC_QMF_LIFE_CYCLE(SynthesisFilter, SBRLP_32s, SpecId::kFixedQmfSynthesisLP)
ZETAC_QMF_LIFE_CYCLE(SynthesisDownFilter, SBRHQ_32sc32s, SpecId::kFixedQmfDownHQ)
ZETAC_QMF_LIFE_CYCLE(SynthesisDownFilter, SBRLP_32s, SpecId::kFixedQmfDownLP)

ZetStatus zetsAnalysisFilter_SBRHQ_32s32sc(const Zet32s* pSrc, Zet32sc* pDst, int kx,
                                           Zet8u* pState) {
    return analyse<SpecId::kFixedQmfAnalysisHQ>(pSrc, pDst, kx, pState,
                                                &QmfFixedKernels::analysisHQ);
}

ZetStatus zetsAnalysisFilter_SBRLP_32s(const Zet32s* pSrc, Zet32s* pDst, int kx, Zet8u* pState) {
    return analyse<SpecId::kFixedQmfAnalysisLP>(pSrc, pDst, kx, pState,
                                                &QmfFixedKernels::analysisLP);
}

ZetStatus zetsSynthesisFilter_SBRHQ_32sc32s(const Zet32sc* pSrc, Zet32s* pDst, Zet8u* pState) {
    return synthesise<SpecId::kFixedQmfSynthesisHQ>(pSrc, pDst, pState,
                                                    &QmfFixedKernels::synthesisHQ);
}

ZetStatus zetsSynthesisFilter_SBRLP_32s(const Zet32s* pSrc, Zet32s* pDst, Zet8u* pState) {
    return synthesise<SpecId::kFixedQmfSynthesisLP>(pSrc, pDst, pState,
                                                    &QmfFixedKernels::synthesisLP);
}

ZetStatus zetsSynthesisDownFilter_SBRHQ_32sc32s(const Zet32sc* pSrc, Zet32s* pDst, Zet8u* pState) {
    return synthesise<SpecId::kFixedQmfDownHQ>(pSrc, pDst, pState,
                                               &QmfFixedKernels::synthesisDownHQ);
}

ZetStatus zetsSynthesisDownFilter_SBRLP_32s(const Zet32s* pSrc, Zet32s* pDst, Zet8u* pState) {
    return synthesise<SpecId::kFixedQmfDownLP>(pSrc, pDst, pState,
                                               &QmfFixedKernels::synthesisDownLP);
}
