// The spec structures of the MDCTs; the three families differ in the type of their twiddles and
// FFTs.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

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

struct ZetsMDCTFwdSpec_32f
    : zetac::core::SpecOf<zetac::transform::MdctSpec<Zet32f, ZetsFFTSpec_C_32fc>,
                          zetac::core::SpecId::kMdctFwd32f> {};
struct ZetsMDCTInvSpec_32f
    : zetac::core::SpecOf<zetac::transform::MdctSpec<Zet32f, ZetsFFTSpec_C_32fc>,
                          zetac::core::SpecId::kMdctInv32f> {};
struct ZetsMDCTFwdSpec_16s
    : zetac::core::SpecOf<zetac::transform::MdctSpec<Zet16s, ZetsFFTSpec_C_16sc>,
                          zetac::core::SpecId::kMdctFwd16s> {};

namespace zetac::transform {

constexpr bool hasFft(int len) {
    return isPowerOfTwo(len) && len >= 32;
}
constexpr int mdctFftOrder(int len) {
    return std::countr_zero(static_cast<unsigned>(len)) - 2;
}

// The twiddles of a transform of len values.
void fillMdctForward(int len, Zet32f* table);
void fillMdctInverse(int len, Zet32f* table);
void ownFillSinCosBuf_16s(int len, Zet16s* table);

}  // namespace zetac::transform
