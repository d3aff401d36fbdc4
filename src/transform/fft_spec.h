// The spec structure of the FFTs and its life; the four families differ in types and sizes only.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "core/spec.h"
#include "transform/fft_kernels.h"

namespace zetac::transform {

inline constexpr uint32_t kCacheLine = 64;

constexpr bool isPowerOfTwo(int len) {
    return len > 0 && (len & (len - 1)) == 0;
}

struct FftSpec {
    core::SpecHeader header;
    int order;
    int bufSize;
    Zet32f forwardScale;
    Zet32f inverseScale;
    FftPlan plan;
    const Zet32f* realTwiddles;  // real FFT only
};

// What a family needs: whether its FFT is that of real values, and singles of work.
template <class Spec>
struct FftFamily;

}  // namespace zetac::transform

struct ZetsFFTSpec_C_32fc
    : zetac::core::SpecOf<zetac::transform::FftSpec, zetac::core::SpecId::kFftC32fc> {};
struct ZetsFFTSpec_C_32f
    : zetac::core::SpecOf<zetac::transform::FftSpec, zetac::core::SpecId::kFftC32f> {};
struct ZetsFFTSpec_C_16sc
    : zetac::core::SpecOf<zetac::transform::FftSpec, zetac::core::SpecId::kFftC16sc> {};
struct ZetsFFTSpec_R_32f
    : zetac::core::SpecOf<zetac::transform::FftSpec, zetac::core::SpecId::kFftR32f> {};

namespace zetac::transform {

template <>
struct FftFamily<ZetsFFTSpec_C_32fc> {
    static constexpr bool kReal = false;
    static constexpr uint64_t workCount(int order) { return fftWorkCount(order); }
};
template <>
struct FftFamily<ZetsFFTSpec_C_32f> {
    static constexpr bool kReal = false;
    static constexpr uint64_t workCount(int order) { return 2 * fftWorkCount(order); }
};
template <>
struct FftFamily<ZetsFFTSpec_C_16sc> {
    static constexpr bool kReal = false;
    // The points as singles as well.
    static constexpr uint64_t workCount(int order) {
        return (uint64_t{2} << order) + fftWorkCount(order);
    }
};
template <>
struct FftFamily<ZetsFFTSpec_R_32f> {
    static constexpr bool kReal = true;
    static constexpr uint64_t workCount(int order) {
        return order == 0 ? 0 : fftWorkCount(order - 1);
    }
};

constexpr bool isFftFlag(int flag) {
    return flag == zetFftDivFwdByN || flag == zetFftDivInvByN || flag == zetFftDivBySqrtN ||
           flag == zetFftNoDiv;
}

// Bytes of a work buffer of any alignment for count singles from a cache line on.
constexpr uint64_t workBytes(uint64_t count) {
    return count == 0 ? 0 : count * sizeof(Zet32f) + kCacheLine - 1;
}

// The work buffer of one call as singles; null if none is needed.
class FftWork : public core::WorkBuffer {
  public:
    using WorkBuffer::WorkBuffer;
    Zet32f* singles() const {
        return data() ? reinterpret_cast<Zet32f*>(core::alignUp(data(), kCacheLine)) : nullptr;
    }
};

struct FftParameters {
    core::SpecId id;
    bool real;
    int order;
    int flag;
    uint64_t work;  // bytes
};

struct FftSizes {
    uint64_t spec;
    uint64_t work;
    bool fit() const { return core::fitsInt(spec) && core::fitsInt(work); }
};

FftSizes fftSizes(const FftParameters& parameters);

// Lays a structure out in memory.
FftSpec* makeFftSpec(const FftParameters& parameters, Zet8u* memory);

template <class Spec>
FftParameters fftParameters(int order, int flag) {
    using Family = FftFamily<Spec>;
    return {Spec::kId, Family::kReal, order, flag, workBytes(Family::workCount(order))};
}

template <class Spec>
ZetStatus getFftSize(int order, int flag, int* specSize, int* sizeInit, int* bufSize) {
    const FftSizes sizes = fftSizes(fftParameters<Spec>(order, flag));
    if (!sizes.fit()) return zetStsNoMemory;
    *specSize = static_cast<int>(sizes.spec);
    *sizeInit = 0;
    *bufSize = static_cast<int>(sizes.work);
    return zetStsOk;
}

template <class Spec>
ZetStatus initFft(Spec** result, int order, int flag, Zet8u* memory) {
    const FftParameters parameters = fftParameters<Spec>(order, flag);
    if (!fftSizes(parameters).fit()) return zetStsNoMemory;
    *result = static_cast<Spec*>(makeFftSpec(parameters, memory));
    return zetStsOk;
}

template <class Spec>
ZetStatus allocateFft(Spec** result, int order, int flag) {
    const FftParameters parameters = fftParameters<Spec>(order, flag);
    const FftSizes sizes = fftSizes(parameters);
    if (!sizes.fit()) return zetStsNoMemory;
    return core::allocateSpec(result, static_cast<int>(sizes.spec), [&](Zet8u* memory) {
        return static_cast<Spec*>(makeFftSpec(parameters, memory));
    });
}

}  // namespace zetac::transform
