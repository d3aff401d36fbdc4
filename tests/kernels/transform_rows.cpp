// The kernels of the transforms and of the block FIR filter.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "core/spec.h"
#include "kernels/kernel_rows.h"
#include "transform/dct_kernels.h"
#include "transform/fft_kernels.h"
#include "transform/fft_real.h"
#include "transform/fir_block_kernels.h"
#include "transform/mdct_kernels.h"
#include "transform/mdct_spec.h"

namespace zetac::transform {
namespace {

using test::KernelMemory;

constexpr int kOrders = 15;  // 0..14

Zet32fc* points(Zet32f* values) {
    return reinterpret_cast<Zet32fc*>(values);
}

FftPlan planOf(KernelMemory& memory, int order) {
    return makeFftPlan(order, memory.work(fftTwiddleCount(order)));
}

// Beyond the variants of random points there are some of zeros, denormals and overflows.
constexpr Zet32f kSpecials[] = {-0.0f, 1e-40f, 3e38f};
constexpr int kSpecialOrders = 11;
constexpr int kFftVariants = kOrders + 3 * kSpecialOrders;

struct FftCase {
    FftCase(KernelMemory& memory, int variant)
        : order(variant < kOrders ? variant : (variant - kOrders) % kSpecialOrders),
          count(size_t{2} << order),
          plan(planOf(memory, order)),
          src(memory.singles(count)),
          dst(memory.zeros<Zet32f>(count)),
          work(memory.work(2 * fftWorkCount(order))) {
        if (variant < kOrders) return;
        const Zet32f special = kSpecials[(variant - kOrders) / kSpecialOrders];
        for (size_t i = 0; i < count; ++i) src[i] = i % 3 ? -0.0f : special;
    }
    // Which NaN a sum is may depend on the order of its operands.
    void replaceNan() const {
        for (size_t i = 0; i < count; ++i) dst[i] = dst[i] != dst[i] ? 99 : dst[i];
    }

    int order;
    size_t count;
    FftPlan plan;
    Zet32f* src;
    Zet32f* dst;
    Zet32f* work;
};

auto transforming(void (*FftKernels::*kernel)(const FftPlan&, const Zet32fc*, Zet32fc*, Zet32f,
                                              Zet32f*)) {
    return [=](KernelMemory& memory, int variant) {
        return [=, c = FftCase(memory, variant)](const FftKernels& kernels) {
            (kernels.*kernel)(c.plan, points(c.src), points(c.dst), 0.3f, c.work);
            c.replaceNan();
        };
    };
}

auto pairing(void (*FftKernels::*kernel)(const Zet32fc*, Zet32fc*, const Zet32f*, int)) {
    return [=](KernelMemory& memory, int order) {
        Zet32f* twiddles = memory.work(realTwiddleCount(order));
        fillRealTwiddles(order, twiddles);
        Zet32fc* values = points(memory.singles(size_t{1} << order));
        return
            [=](const FftKernels& kernels) { (kernels.*kernel)(values, values, twiddles, order); };
    };
}

const test::KernelRows kFft(kFftKernels,
                            {{"fftForward", kFftVariants, transforming(&FftKernels::forward)},
                             {"fftInverse", kFftVariants, transforming(&FftKernels::inverse)},
                             {"fftForwardSplit", kFftVariants,
                              [](KernelMemory& memory, int variant) {
                                  return [c = FftCase(memory, variant)](const FftKernels& kernels) {
                                      const size_t half = c.count / 2;
                                      kernels.forwardSplit(c.plan, c.src, c.src + half, c.dst,
                                                           c.dst + half, 0.3f, c.work);
                                      c.replaceNan();
                                  };
                              }},
                             {"fftPairForward", kOrders, pairing(&FftKernels::pairForward)},
                             {"fftPairInverse", kOrders, pairing(&FftKernels::pairInverse)}});

auto reordering(void (*DctKernels::*kernel)(const Zet32f*, Zet32f*, int)) {
    return [=](KernelMemory& memory, int variant) {
        const int order = variant + 2;
        const Zet32f* src = memory.singles(size_t{1} << order);
        Zet32f* dst = memory.zeros<Zet32f>(size_t{1} << order);
        return [=](const DctKernels& kernels) { (kernels.*kernel)(src, dst, order); };
    };
}
auto rotating(void (*DctKernels::*kernel)(const Zet32f*, Zet32f*, const Zet32f*, int)) {
    return [=](KernelMemory& memory, int variant) {
        const int order = variant + 2;
        const Zet32f* src = memory.singles(size_t{1} << order);
        const Zet32f* rows = memory.singles(size_t{kDctRows} << variant);
        Zet32f* dst = memory.zeros<Zet32f>(size_t{1} << order);
        return [=](const DctKernels& kernels) { (kernels.*kernel)(src, dst, rows, order); };
    };
}

const test::KernelRows kDct(kDctKernels,
                            {{"dctReorder", kOrders - 2, reordering(&DctKernels::reorder)},
                             {"dctRestore", kOrders - 2, reordering(&DctKernels::restore)},
                             {"dctToCosines", kOrders - 2, rotating(&DctKernels::toCosines)},
                             {"dctToPoints", kOrders - 2, rotating(&DctKernels::toPoints)}});

auto mdct(void (*MdctKernels::*kernel)(const FftPlan&, MdctTwiddles, const Zet32f*, Zet32f*,
                                       Zet32f*)) {
    return [=](KernelMemory& memory, int variant) {
        const int order = variant + 3;
        const size_t len = size_t{4} << order;
        const FftPlan plan = planOf(memory, order);
        const Zet32f* table = memory.singles(len / 2);
        const Zet32f* src = memory.singles(len);
        Zet32f* dst = memory.zeros<Zet32f>(len);
        Zet32f* work = memory.work(len);
        return [=](const MdctKernels& kernels) {
            (kernels.*kernel)(plan, {table, table + len / 4}, src, dst, work);
        };
    };
}

const test::KernelRows kMdct(kMdctKernels, {{"mdctForward", 13, mdct(&MdctKernels::forward)},
                                            {"mdctInverse", 13, mdct(&MdctKernels::inverse)}});

// Sums beyond count are of no interest.
const test::KernelRows kFir(kFirBlockKernels,
                            {{"firAccumulate", 100, [](KernelMemory& memory, int variant) {
                                  constexpr int kTaps[] = {1, 5, 64, 256};
                                  const int numTaps = kTaps[variant % 4];
                                  const int count =
                                      std::min(1 + variant / 4 * (variant / 4 + 3) / 2, 256);
                                  const int padded = core::roundUp(count, kFirBlockGroup);
                                  const Zet32f* window =
                                      memory.singles(static_cast<size_t>(numTaps - 1 + padded));
                                  const Zet32f* taps = memory.singles(static_cast<size_t>(numTaps));
                                  Zet32f* sums = memory.work(static_cast<size_t>(padded));
                                  Zet32f* dst = memory.singles(static_cast<size_t>(count));
                                  return [=](const FirBlockKernels& kernels) {
                                      std::copy_n(dst, count, sums);
                                      kernels.accumulate(window, taps, numTaps, sums, count);
                                      std::copy_n(sums, count, dst);
                                  };
                              }}});

}  // namespace
}  // namespace zetac::transform
