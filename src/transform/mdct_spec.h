// The spec structures of the MDCTs and their life; the three families differ in the type of their
// twiddles and FFTs, and in the sizes that follow.
#pragma once

#include <zetac.h>

#include <algorithm>
#include <bit>

#include "core/spec.h"
#include "transform/fft_spec.h"

namespace zetac::transform {

// N/4 points are transformed. Where the structure is owned, it, its table and the FFT are three
// blocks of the heap.
template <class TwiddleType, class FftType>
struct MdctSpec {
    using Twiddle = TwiddleType;
    using Fft = FftType;

    core::SpecId id;
    Zet32s length;
    Zet32s bufSize;
    Zet32s fftOrder;
    Zet32s owned;
    Twiddle* table;
    Fft* fft;  // null for the lengths 12 and 36
};

}  // namespace zetac::transform

struct ZetsMDCTFwdSpec_32f : zetac::transform::MdctSpec<Zet32f, ZetsFFTSpec_C_32fc> {};
struct ZetsMDCTInvSpec_32f : zetac::transform::MdctSpec<Zet32f, ZetsFFTSpec_C_32fc> {};
struct ZetsMDCTFwdSpec_16s : zetac::transform::MdctSpec<Zet16s, ZetsFFTSpec_C_16sc> {};

namespace zetac::transform {

constexpr bool hasFft(int len) {
    return isPowerOfTwo(len) && len >= 32;
}
constexpr int mdctFftOrder(int len) {
    return std::countr_zero(static_cast<unsigned>(len)) - 2;
}

// What a family needs: its identifier, its lengths, the bytes of work of one call given those of
// the FFT, what GetSize adds to them, and its twiddles.
template <class Spec>
struct MdctFamily;

void fillMdctForward(int len, Zet32f* table);
void fillMdctInverse(int len, Zet32f* table);
void ownFillSinCosBuf_16s(int len, Zet16s* table);

struct FloatingMdctFamily {
    static constexpr uint64_t kExtraWork = 64;
    static constexpr bool allows(int len) { return hasFft(len) || len == 12 || len == 36; }
    static constexpr uint64_t work(uint64_t len, uint64_t fftWork) {
        return fftWork + 4 * len + core::kSpecAlignment;
    }
};
template <>
struct MdctFamily<ZetsMDCTFwdSpec_32f> : FloatingMdctFamily {
    static constexpr core::SpecId kId = core::SpecId::kMdctFwd32f;
    static void fill(int len, Zet32f* table) { fillMdctForward(len, table); }
};
template <>
struct MdctFamily<ZetsMDCTInvSpec_32f> : FloatingMdctFamily {
    static constexpr core::SpecId kId = core::SpecId::kMdctInv32f;
    static void fill(int len, Zet32f* table) { fillMdctInverse(len, table); }
};
template <>
struct MdctFamily<ZetsMDCTFwdSpec_16s> {
    static constexpr core::SpecId kId = core::SpecId::kMdctFwd16s;
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
    spec->id = MdctFamily<Spec>::kId;
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

}  // namespace zetac::transform
