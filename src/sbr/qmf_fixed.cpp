// The fixed-point QMF banks of SBR (ISO/IEC 14496-3, 4.6.18.4 and 4.6.18.8.2): states and slots.
#include <algorithm>
#include <cstring>

#include "core/checks.h"
#include "core/spec.h"
#include "sbr/qmf_fixed_kernels.h"

namespace zetac::sbr {
namespace {

constexpr int kStateAlignment = 16;
constexpr int kHeaderSize = 32;

// A state begins at the first multiple of 16 behind the caller's pointer: this header, then the
// delay line 32 bytes after its start. Packed, since both records have to fit into these 32 bytes
// with pointers of 8 bytes too.
struct [[gnu::packed, gnu::aligned(4)]] LineRecord {
    Zet32s* line;
    Zet32s position;
};
struct [[gnu::packed, gnu::aligned(4)]] StateHeader {
    uint32_t identifier;
    LineRecord* record;
    Zet32s owned;
};
static_assert(sizeof(StateHeader) + sizeof(LineRecord) <= kHeaderSize);

// The banks: identifier and bands of a slot of the line.
enum Bank : uint32_t {
    kAnalysisHQ = 0x434D4161,
    kAnalysisLP = 0x434D4162,
    kSynthesisHQ = 0x434D4163,
    kSynthesisLP = 0x434D4164,
    kSynthesisDownHQ = 0x434D4165,
    kSynthesisDownLP = 0x434D4166,
};

constexpr int slotLength(Bank bank) {
    if (bank == kAnalysisHQ || bank == kAnalysisLP) return 32;
    return bank == kSynthesisHQ || bank == kSynthesisLP ? 128 : 64;
}
constexpr int lineLength(Bank bank) {
    return kQmfSlots * slotLength(bank);
}
constexpr int stateSize(Bank bank) {
    return kStateAlignment - 1 + kHeaderSize + lineLength(bank) * static_cast<int>(sizeof(Zet32s));
}

StateHeader* headerIn(Zet8u* state) {
    return reinterpret_cast<StateHeader*>(core::alignUp(state, kStateAlignment));
}

void layOut(Zet8u* state, Bank bank, Zet32s owned) {
    Zet8u* block = core::alignUp(state, kStateAlignment);
    auto* header = reinterpret_cast<StateHeader*>(block);
    auto* record = reinterpret_cast<LineRecord*>(header + 1);
    auto* line = reinterpret_cast<Zet32s*>(block + kHeaderSize);
    *header = {bank, record, owned};
    *record = {line, 0};
    std::fill_n(line, lineLength(bank), 0);
}

template <Bank bank>
ZetStatus getSize(int* size) {
    ZETAC_REQUIRE(size, zetStsNullPointer);
    *size = stateSize(bank);
    return zetStsOk;
}

template <Bank bank>
ZetStatus init(Zet8u* state) {
    ZETAC_REQUIRE(state, zetStsNullPointer);
    layOut(state, bank, 0);
    return zetStsOk;
}

template <Bank bank>
ZetStatus initAlloc(Zet8u** state) {
    ZETAC_REQUIRE(state, zetStsNullPointer);
    Zet8u* memory = zetsMalloc_8u(stateSize(bank));
    ZETAC_REQUIRE(memory, zetStsNoMemory);
    layOut(memory, bank, 1);
    *state = memory;
    return zetStsOk;
}

template <Bank bank>
ZetStatus release(Zet8u* state) {
    ZETAC_REQUIRE(state, zetStsNullPointer);
    StateHeader* header = headerIn(state);
    ZETAC_REQUIRE(header->identifier == bank, zetStsSpecMismatch);
    if (header->owned != 1) return zetStsOk;
    header->identifier = 0;
    zetsFree(state);
    return zetStsOk;
}

// Position of the newest slot in a ring of slots of this bank's length. A synthesis state may serve
// the 64-band bank, in steps of 128 values modulo 1280, and the down bank, in steps of 64 modulo
// 640, by turns: the position that the other one left is then taken modulo 640, or down to a
// multiple of 128, so that a slot never reaches beyond the line.
template <Bank bank>
int positionIn(const LineRecord& record) {
    constexpr int kLength = slotLength(bank);
    return record.position % lineLength(bank) / kLength * kLength;
}

// One slot: run(line, position), then the move to the next one.
template <Bank bank, class Run>
void runSlot(StateHeader* header, Run run) {
    LineRecord& record = *header->record;
    const int position = positionIn<bank>(record);
    run(record.line, position);
    record.position = (position > 0 ? position : lineLength(bank)) - slotLength(bank);
}

template <Bank bank, class Sample>
ZetStatus analyse(const Zet32s* src, Sample* dst, int kx, Zet8u* state,
                  void (*QmfFixedKernels::*kernel)(const Zet32s*, Sample*, Zet32s*, int)) {
    ZETAC_REQUIRE(core::allSet(src, dst, state), zetStsNullPointer);
    StateHeader* header = headerIn(state);
    ZETAC_REQUIRE(header->identifier == bank, zetStsSpecMismatch);
    ZETAC_REQUIRE(core::inRange(kx, 0, 32), zetStsBadSize);

    const QmfFixedKernels& kernels = kQmfFixedKernels[static_cast<unsigned>(core::currentLevel())];
    runSlot<bank>(header,
                  [&](Zet32s* line, int position) { (kernels.*kernel)(src, dst, line, position); });
    std::fill(dst + kx, dst + 32, Sample{});
    return zetStsOk;
}

// A down bank takes a state of the 64-band bank of its mode as well.
constexpr bool accepts(Bank bank, uint32_t identifier) {
    if (bank == kSynthesisDownHQ && identifier == kSynthesisHQ) return true;
    if (bank == kSynthesisDownLP && identifier == kSynthesisLP) return true;
    return identifier == bank;
}

template <Bank bank, class Sample>
ZetStatus synthesise(const Sample* src, Zet32s* dst, Zet8u* state,
                     void (*QmfFixedKernels::*kernel)(const Sample*, Zet32s*, Zet32s*, int)) {
    ZETAC_REQUIRE(core::allSet(src, dst, state), zetStsNullPointer);
    StateHeader* header = headerIn(state);
    ZETAC_REQUIRE(accepts(bank, header->identifier), zetStsSpecMismatch);

    const QmfFixedKernels& kernels = kQmfFixedKernels[static_cast<unsigned>(core::currentLevel())];
    runSlot<bank>(header,
                  [&](Zet32s* line, int position) { (kernels.*kernel)(src, dst, line, position); });
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::sbr

using namespace zetac::sbr;

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

ZETAC_QMF_LIFE_CYCLE(AnalysisFilter, SBRHQ_32s32sc, kAnalysisHQ)
ZETAC_QMF_LIFE_CYCLE(AnalysisFilter, SBRLP_32s, kAnalysisLP)
ZETAC_QMF_LIFE_CYCLE(SynthesisFilter, SBRHQ_32sc32s, kSynthesisHQ)
ZETAC_QMF_LIFE_CYCLE(SynthesisFilter, SBRLP_32s, kSynthesisLP)
ZETAC_QMF_LIFE_CYCLE(SynthesisDownFilter, SBRHQ_32sc32s, kSynthesisDownHQ)
ZETAC_QMF_LIFE_CYCLE(SynthesisDownFilter, SBRLP_32s, kSynthesisDownLP)

ZetStatus zetsAnalysisFilter_SBRHQ_32s32sc(const Zet32s* pSrc, Zet32sc* pDst, int kx,
                                           Zet8u* pState) {
    return analyse<kAnalysisHQ>(pSrc, pDst, kx, pState, &QmfFixedKernels::analysisHQ);
}

ZetStatus zetsAnalysisFilter_SBRLP_32s(const Zet32s* pSrc, Zet32s* pDst, int kx, Zet8u* pState) {
    return analyse<kAnalysisLP>(pSrc, pDst, kx, pState, &QmfFixedKernels::analysisLP);
}

ZetStatus zetsSynthesisFilter_SBRHQ_32sc32s(const Zet32sc* pSrc, Zet32s* pDst, Zet8u* pState) {
    return synthesise<kSynthesisHQ>(pSrc, pDst, pState, &QmfFixedKernels::synthesisHQ);
}

ZetStatus zetsSynthesisFilter_SBRLP_32s(const Zet32s* pSrc, Zet32s* pDst, Zet8u* pState) {
    return synthesise<kSynthesisLP>(pSrc, pDst, pState, &QmfFixedKernels::synthesisLP);
}

ZetStatus zetsSynthesisDownFilter_SBRHQ_32sc32s(const Zet32sc* pSrc, Zet32s* pDst, Zet8u* pState) {
    return synthesise<kSynthesisDownHQ>(pSrc, pDst, pState, &QmfFixedKernels::synthesisDownHQ);
}

ZetStatus zetsSynthesisDownFilter_SBRLP_32s(const Zet32s* pSrc, Zet32s* pDst, Zet8u* pState) {
    return synthesise<kSynthesisDownLP>(pSrc, pDst, pState, &QmfFixedKernels::synthesisDownLP);
}
