// The states of the floating QMF banks and what the banks have in common.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <type_traits>

#include "core/spec.h"
#include "sbr/qmf_float_kernels.h"

namespace zetac::sbr {

// Lies behind the state of its transform, the delay line behind it.
struct QmfSpec {
    core::SpecId id;
    Zet32f* line;
    mutable Zet32s position;
    const void* transform;

    DelayLine delayLine() const { return {line, &position}; }
};

template <core::SpecId id>
using QmfBank = core::SpecOf<QmfSpec, id>;

inline constexpr uint64_t kQmfSpecRoom = 32;
inline constexpr uint32_t kQmfAlignment = 16;
static_assert(sizeof(QmfSpec) <= kQmfSpecRoom);

}  // namespace zetac::sbr

struct ZetsAnalysisFilterSpec_SBR_RToR_32f
    : zetac::sbr::QmfBank<zetac::core::SpecId::kQmfAnalysisReal> {};
struct ZetsAnalysisFilterSpec_SBR_RToC_32f
    : zetac::sbr::QmfBank<zetac::core::SpecId::kQmfAnalysisParts> {};
struct ZetsAnalysisFilterSpec_SBR_RToC_32f32fc
    : zetac::sbr::QmfBank<zetac::core::SpecId::kQmfAnalysisPairs> {};
struct ZetsSynthesisFilterSpec_SBR_RToR_32f
    : zetac::sbr::QmfBank<zetac::core::SpecId::kQmfSynthesisReal> {};
struct ZetsSynthesisFilterSpec_SBR_CToR_32f
    : zetac::sbr::QmfBank<zetac::core::SpecId::kQmfSynthesisParts> {};
struct ZetsSynthesisFilterSpec_SBR_CToR_32fc32f
    : zetac::sbr::QmfBank<zetac::core::SpecId::kQmfSynthesisPairs> {};
struct ZetsSynthesisDownFilterSpec_SBR_RToR_32f
    : zetac::sbr::QmfBank<zetac::core::SpecId::kQmfDownReal> {};
struct ZetsSynthesisDownFilterSpec_SBR_CToR_32f
    : zetac::sbr::QmfBank<zetac::core::SpecId::kQmfDownParts> {};
struct ZetsSynthesisDownFilterSpec_SBR_CToR_32fc32f
    : zetac::sbr::QmfBank<zetac::core::SpecId::kQmfDownPairs> {};

namespace zetac::sbr {

// Rows of samples, alone or in pairs, as rows of singles.
template <class Value>
Value* singles(Value* row) {
    return row;
}
inline Zet32f* singles(Zet32fc* row) {
    return &row->re;
}
inline const Zet32f* singles(const Zet32fc* row) {
    return &row->re;
}

// A matrix, or the real and imaginary parts of one; im may be null.
template <class Row>
struct QmfMatrix {
    Row* const* re;
    Row* const* im;

    // The rows of a batch.
    auto rows(int first, int count) const {
        QmfRows<std::remove_pointer_t<decltype(singles(re[0]))>> result{};
        for (int i = 0; i < count; ++i) {
            result.re[i] = singles(re[first + i]);
            if (im) result.im[i] = singles(im[first + i]);
        }
        return result;
    }
};

// Slots of a call in runs of a kernel: run(kernels, first, count). The last ones take the level
// whose lanes they just fit in, rather than leave most of a wider vector idle.
template <class Run>
void forBatches(int numSlots, Run run) {
    const auto highest = static_cast<size_t>(core::currentLevel());
    for (int first = 0; first < numSlots;) {
        const int left = numSlots - first;
        size_t level = 0;
        while (level < highest && kQmfFloatKernels[level].lanes < left) ++level;
        const QmfFloatKernels& kernels = kQmfFloatKernels[level];
        const int count = left < kernels.lanes ? left : kernels.lanes;
        run(kernels, first, count);
        first += count;
    }
}

}  // namespace zetac::sbr
