// The life of the MDCT structures.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "transform/mdct_spec.h"

#include <algorithm>

#include "core/checks.h"

namespace zetac::transform {
namespace {

// What a family needs: its lengths, the bytes of work of one call given those of
// the FFT, what GetSize adds to them, and its twiddles.
template <class Spec>
struct MdctFamily;

struct FloatingMdctFamily {
    static constexpr uint64_t kExtraWork = 64;
    static constexpr bool allows(int len) { return hasFft(len) || len == 12 || len == 36; }
    static constexpr uint64_t work(uint64_t len, uint64_t fftWork) {
        return fftWork + 4 * len + core::kSpecAlignment;
    }
};
template <>
struct MdctFamily<ZetsMDCTFwdSpec_32f> : FloatingMdctFamily {
    static void fill(int len, Zet32f* table) { fillMdctForward(len, table); }
};
template <>
struct MdctFamily<ZetsMDCTInvSpec_32f> : FloatingMdctFamily {
    static void fill(int len, Zet32f* table) { fillMdctInverse(len, table); }
};
template <>
struct MdctFamily<ZetsMDCTFwdSpec_16s> {
    static constexpr uint64_t kExtraWork = 0;
    static constexpr bool allows(int len) { return hasFft(len); }
    static constexpr uint64_t work(uint64_t len, uint64_t fftWork) {
        return std::max(4 * len, fftWork) + len + core::kSpecAlignment;
    }
    static void fill(int len, Zet16s* table) { ownFillSinCosBuf_16s(len, table); }
};

struct MdctSizes {
    uint64_t spec;
    uint64_t init;
    uint64_t work;
};

// What a structure, its alignment and that of its table may take beside the table and the FFT.
constexpr uint64_t mdctSlack(int len) {
    return hasFft(len) ? 124 : 92;
}

constexpr uint64_t tableCount(int len) {
    return static_cast<uint64_t>(len) / 2;
}

// A structure, its table and the memory of the FFT. The lengths without an FFT have their table
// right behind the structure: on the next boundary it would not fit into their slack.
template <class Spec>
struct MdctPieces {
    using Twiddle = typename Spec::Twiddle;

    MdctPieces(Zet8u* memory, int len) {
        core::Layout layout(memory);
        spec = layout.take<Spec>();
        table = layout.take<Twiddle>(tableCount(len),
                                     hasFft(len) ? core::kSpecAlignment : alignof(void*));
        fft = layout.takeBytes(0);
    }

    Spec* spec;
    Twiddle* table;
    Zet8u* fft;
};

template <class Spec>
ZetStatus mdctSizes(int len, MdctSizes* sizes) {
    int fftSpec = 0;
    int fftInit = 0;
    int fftWork = 0;
    if (hasFft(len)) {
        const ZetStatus status = getFftSize<typename Spec::Fft>(mdctFftOrder(len), zetFftNoDiv,
                                                                &fftSpec, &fftInit, &fftWork);
        if (status != zetStsOk) return status;
    }
    sizes->spec = fftSpec + tableCount(len) * sizeof(typename Spec::Twiddle) + mdctSlack(len);
    sizes->init = fftInit;
    sizes->work = MdctFamily<Spec>::work(len, fftWork);
    const bool fit =
        core::fitsInt(sizes->spec) && core::fitsInt(sizes->work + MdctFamily<Spec>::kExtraWork);
    return fit ? zetStsOk : zetStsNoMemory;
}

template <class Spec>
ZetStatus getMdctSize(int len, int* specSize, int* sizeInit, int* bufSize) {
    MdctSizes sizes;
    const ZetStatus status = mdctSizes<Spec>(len, &sizes);
    if (status != zetStsOk) return status;
    *specSize = static_cast<int>(sizes.spec);
    *sizeInit = static_cast<int>(sizes.init);
    *bufSize = static_cast<int>(sizes.work + MdctFamily<Spec>::kExtraWork);
    return zetStsOk;
}

template <class Spec>
void fillMdctSpec(Spec* spec, int len, const MdctSizes& sizes, typename Spec::Twiddle* table,
                  typename Spec::Fft* fft) {
    spec->id = Spec::kId;
    spec->length = len;
    spec->bufSize = static_cast<int>(sizes.work);
    spec->fftOrder = hasFft(len) ? mdctFftOrder(len) : 0;
    spec->table = table;
    spec->fft = fft;
    MdctFamily<Spec>::fill(len, table);
}

template <class Spec>
ZetStatus initMdct(Spec** result, int len, Zet8u* memory) {
    MdctSizes sizes;
    ZetStatus status = mdctSizes<Spec>(len, &sizes);
    if (status != zetStsOk) return status;
    const MdctPieces<Spec> pieces(memory, len);
    typename Spec::Fft* fft = nullptr;
    if (hasFft(len)) status = initFft(&fft, mdctFftOrder(len), zetFftNoDiv, pieces.fft);
    if (status != zetStsOk) return status;
    pieces.spec->owned = 0;
    fillMdctSpec(pieces.spec, len, sizes, pieces.table, fft);
    *result = pieces.spec;
    return zetStsOk;
}

template <class Spec>
void releaseMdct(Spec* spec) {
    zetsFree(spec->table);
    if (spec->fft) core::freeSpec(spec->fft);
    zetsFree(spec);
}

template <class Spec>
ZetStatus allocateMdct(Spec** result, int len) {
    MdctSizes sizes;
    ZetStatus status = mdctSizes<Spec>(len, &sizes);
    if (status != zetStsOk) return status;
    auto* spec = reinterpret_cast<Spec*>(zetsMalloc_8u(sizeof(Spec)));
    if (!spec) return zetStsNoMemory;
    const uint64_t tableBytes = tableCount(len) * sizeof(typename Spec::Twiddle);
    spec->table =
        reinterpret_cast<typename Spec::Twiddle*>(zetsMalloc_8u(static_cast<int>(tableBytes)));
    spec->fft = nullptr;
    if (!spec->table)
        status = zetStsNoMemory;
    else if (hasFft(len))
        status = allocateFft(&spec->fft, mdctFftOrder(len), zetFftNoDiv);
    if (status != zetStsOk) {
        releaseMdct(spec);
        return status;
    }
    spec->owned = 1;
    fillMdctSpec(spec, len, sizes, spec->table, spec->fft);
    *result = spec;
    return zetStsOk;
}

template <class Spec>
void freeMdct(Spec* spec) {
    spec->id = core::SpecId::kFreed;
    if (spec->owned) releaseMdct(spec);
}

// The length decides which pointers Init needs.
ZetStatus checkInit(int len, const void* ppSpec, const void* pMemSpec, const void* pMemInit) {
    ZETAC_REQUIRE(FloatingMdctFamily::allows(len), zetStsBadSize);
    ZETAC_REQUIRE(core::allSet(ppSpec, pMemSpec), zetStsNullPointer);
    ZETAC_REQUIRE(!hasFft(len) || pMemInit, zetStsNullPointer);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::transform

using namespace zetac;
using namespace zetac::transform;

// What all three families have, by direction and type.
#define ZETAC_MDCT_LIFE(direction, type)                                                         \
    ZetStatus zetsMDCT##direction##InitAlloc_##type(ZetsMDCT##direction##Spec_##type** ppSpec,   \
                                                    int len) {                                   \
        ZETAC_REQUIRE(core::allSet(ppSpec), zetStsNullPointer);                                  \
        ZETAC_REQUIRE(MdctFamily<ZetsMDCT##direction##Spec_##type>::allows(len), zetStsBadSize); \
        return allocateMdct(ppSpec, len);                                                        \
    }                                                                                            \
    ZetStatus zetsMDCT##direction##Free_##type(ZetsMDCT##direction##Spec_##type* pSpec) {        \
        ZETAC_REQUIRE(core::allSet(pSpec), zetStsNullPointer);                                   \
        ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);                                  \
        freeMdct(pSpec);                                                                         \
        return zetStsOk;                                                                         \
    }                                                                                            \
    ZetStatus zetsMDCT##direction##GetBufSize_##type(                                            \
        const ZetsMDCT##direction##Spec_##type* pSpec, int* pSize) {                             \
        ZETAC_REQUIRE(core::allSet(pSpec, pSize), zetStsNullPointer);                            \
        ZETAC_REQUIRE(core::isSpec(pSpec), zetStsSpecMismatch);                                  \
        *pSize = pSpec->bufSize;                                                                 \
        return zetStsOk;                                                                         \
    }

ZETAC_MDCT_LIFE(Fwd, 32f)
ZETAC_MDCT_LIFE(Inv, 32f)
ZETAC_MDCT_LIFE(Fwd, 16s)

ZetStatus zetsMDCTInvGetSize_32f(int len, int* pSpecSize, int* pSizeInit, int* pBufSize) {
    ZETAC_REQUIRE(core::allSet(pSpecSize, pSizeInit, pBufSize), zetStsNullPointer);
    ZETAC_REQUIRE(FloatingMdctFamily::allows(len), zetStsBadSize);
    return getMdctSize<ZetsMDCTInvSpec_32f>(len, pSpecSize, pSizeInit, pBufSize);
}

ZetStatus zetsMDCTFwdGetSize_32f(int len, int* pSpecSize, int* pSizeInit, int* pBufSize) {
    return zetsMDCTInvGetSize_32f(len, pSpecSize, pSizeInit, pBufSize);
}

ZetStatus zetsMDCTFwdInit_32f(ZetsMDCTFwdSpec_32f** ppSpec, int len, Zet8u* pMemSpec,
                              Zet8u* pMemInit) {
    const ZetStatus status = checkInit(len, ppSpec, pMemSpec, pMemInit);
    return status == zetStsOk ? initMdct(ppSpec, len, pMemSpec) : status;
}

ZetStatus zetsMDCTInvInit_32f(ZetsMDCTInvSpec_32f** ppSpec, int len, Zet8u* pMemSpec,
                              Zet8u* pMemInit) {
    const ZetStatus status = checkInit(len, ppSpec, pMemSpec, pMemInit);
    return status == zetStsOk ? initMdct(ppSpec, len, pMemSpec) : status;
}

ZetStatus zetsMDCTFwdGetSize_16s(int len, int* pSpecSize, int* pSizeInit, int* pBufSize) {
    ZETAC_REQUIRE(core::allSet(pSpecSize, pSizeInit, pBufSize), zetStsNullPointer);
    ZETAC_REQUIRE(hasFft(len), zetStsBadSize);
    return getMdctSize<ZetsMDCTFwdSpec_16s>(len, pSpecSize, pSizeInit, pBufSize);
}

ZetStatus zetsMDCTFwdInit_16s(ZetsMDCTFwdSpec_16s** ppSpec, int len, Zet8u* pMemSpec,
                              Zet8u* pMemInit) {
    ZETAC_REQUIRE(core::allSet(ppSpec, pMemSpec, pMemInit), zetStsNullPointer);
    ZETAC_REQUIRE(hasFft(len), zetStsBadSize);
    return initMdct(ppSpec, len, pMemSpec);
}
