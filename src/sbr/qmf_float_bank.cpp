// The life of the floating QMF banks. A block of memory holds the transform's state, the bank's and
// its delay line, one behind the other.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/qmf_float_bank.h"

#include <algorithm>

#include "core/checks.h"

namespace zetac::sbr {
namespace {

struct Sizes {
    int spec;
    int init;
    int work;
};

// The transforms that the banks run, through their public interface.
template <class TransformSpec, auto getFftSize, auto initFft, int order>
struct Fft {
    using Spec = TransformSpec;
    static ZetStatus getSize(Sizes* sizes) {
        return getFftSize(order, zetFftNoDiv, zetAlgHintAccurate, &sizes->spec, &sizes->init,
                          &sizes->work);
    }
    static ZetStatus init(Spec** spec, Zet8u* memory, Zet8u* memInit) {
        return initFft(spec, order, zetFftNoDiv, zetAlgHintAccurate, memory, memInit);
    }
};
template <class TransformSpec, auto getDctSize, auto initDct, int len, ZetHintAlgorithm hint>
struct Dct {
    using Spec = TransformSpec;
    static ZetStatus getSize(Sizes* sizes) {
        return getDctSize(len, hint, &sizes->spec, &sizes->init, &sizes->work);
    }
    static ZetStatus init(Spec** spec, Zet8u* memory, Zet8u* memInit) {
        return initDct(spec, len, hint, memory, memInit);
    }
};
using FftOfParts = Fft<ZetsFFTSpec_C_32f, zetsFFTGetSize_C_32f, zetsFFTInit_C_32f, 5>;
template <int order>
using FftOfPairs = Fft<ZetsFFTSpec_C_32fc, zetsFFTGetSize_C_32fc, zetsFFTInit_C_32fc, order>;
using InverseDct =
    Dct<ZetsDCTInvSpec_32f, zetsDCTInvGetSize_32f, zetsDCTInvInit_32f, 32, zetAlgHintAccurate>;
template <int len>
using ForwardDct =
    Dct<ZetsDCTFwdSpec_32f, zetsDCTFwdGetSize_32f, zetsDCTFwdInit_32f, len, zetAlgHintFast>;

// A bank's transform, its delay line and the room for it, in values.
template <class BankTransform, int count, int room = count>
struct Bank {
    using Transform = BankTransform;
    static constexpr int kCount = count;
    static constexpr int kRoom = room;
};
using AnalysisReal = Bank<InverseDct, 320>;
using AnalysisComplex = Bank<FftOfParts, 320>;
using SynthesisReal = Bank<ForwardDct<64>, 1281, 1284>;
using SynthesisComplex = Bank<FftOfPairs<5>, 1280>;
using DownReal = Bank<ForwardDct<32>, 640>;
using DownComplex = Bank<FftOfPairs<6>, 640>;

struct Pieces {
    Zet8u* transform;
    Zet8u* spec;
    Zet32f* line;
};

template <class Bank>
Pieces layOut(core::Layout& layout, const Sizes& sizes) {
    Zet8u* transform = layout.takeBytes(sizes.spec);
    Zet8u* spec = layout.takeBytes(kQmfSpecRoom);
    return {transform, spec, layout.take<Zet32f>(Bank::kRoom)};
}

template <class Bank>
ZetStatus getSize(int* spec, int* init, int* work) {
    ZETAC_REQUIRE(core::allSet(spec, init, work), zetStsNullPointer);
    Sizes sizes;
    const ZetStatus status = Bank::Transform::getSize(&sizes);
    ZETAC_REQUIRE(status == zetStsOk, status);
    core::Layout layout(nullptr, kQmfAlignment);
    layOut<Bank>(layout, sizes);
    *spec = static_cast<int>(layout.size());
    *init = sizes.init + 4;
    *work = sizes.work + 4;
    return zetStsOk;
}

template <class Bank, class Spec>
ZetStatus init(Spec** result, Zet8u* memory, Zet8u* memInit) {
    ZETAC_REQUIRE(core::allSet(result, memory, memInit), zetStsNullPointer);
    Sizes sizes;
    ZetStatus status = Bank::Transform::getSize(&sizes);
    ZETAC_REQUIRE(status == zetStsOk, status);
    core::Layout layout(memory, kQmfAlignment);
    const Pieces pieces = layOut<Bank>(layout, sizes);
    typename Bank::Transform::Spec* transform = nullptr;
    status = Bank::Transform::init(&transform, pieces.transform, memInit);
    ZETAC_REQUIRE(status == zetStsOk, status);
    auto* spec = reinterpret_cast<Spec*>(pieces.spec);
    static_cast<QmfSpec&>(*spec) = {Spec::kId, pieces.line, 0, transform};
    std::fill_n(pieces.line, Bank::kCount, 0.0f);
    *result = spec;
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::sbr

using namespace zetac::sbr;

// The life of a bank, by the endings of its names.
#define ZETAC_QMF_LIFE(filter, type, bank)                                                       \
    ZetStatus zets##filter##GetSize_SBR_##type(int* pSizeSpec, int* pSizeInit, int* pSizeWork) { \
        return getSize<bank>(pSizeSpec, pSizeInit, pSizeWork);                                   \
    }                                                                                            \
    ZetStatus zets##filter##Init_SBR_##type(Zets##filter##Spec_SBR_##type** ppSpec,              \
                                            Zet8u* pMemSpec, Zet8u* pMemInit) {                  \
        return init<bank>(ppSpec, pMemSpec, pMemInit);                                           \
    }

ZETAC_QMF_LIFE(AnalysisFilter, RToR_32f, AnalysisReal)
ZETAC_QMF_LIFE(AnalysisFilter, RToC_32f, AnalysisComplex)
ZETAC_QMF_LIFE(AnalysisFilter, RToC_32f32fc, AnalysisComplex)
ZETAC_QMF_LIFE(SynthesisFilter, RToR_32f, SynthesisReal)
ZETAC_QMF_LIFE(SynthesisFilter, CToR_32f, SynthesisComplex)
ZETAC_QMF_LIFE(SynthesisFilter, CToR_32fc32f, SynthesisComplex)
ZETAC_QMF_LIFE(SynthesisDownFilter, RToR_32f, DownReal)
ZETAC_QMF_LIFE(SynthesisDownFilter, CToR_32f, DownComplex)
ZETAC_QMF_LIFE(SynthesisDownFilter, CToR_32fc32f, DownComplex)
