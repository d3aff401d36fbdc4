// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "transform/dct_spec.h"

#include <algorithm>
#include <bit>

#include "core/constexpr_math.h"
#include "tables/transform/unit_circle.h"
#include "transform/dct_kernels.h"
#include "transform/fft_real.h"

namespace zetac::transform {
namespace {

struct Pieces {
    DctSpec* spec;
    Zet32f* twiddles;
    Zet32f* rows;
    Zet32fc* chirp;
    Zet32fc* rotations;
    Zet32fc* response;
};

Pieces layOut(core::Layout& layout, int len) {
    const int order = dctFftOrder(len);
    const uint64_t pairs = isPowerOfTwo(len) ? static_cast<uint64_t>(len) / 4 : 0;
    const uint64_t others = isPowerOfTwo(len) ? 0 : static_cast<uint64_t>(len);
    const uint64_t points = isPowerOfTwo(len) ? 0 : uint64_t{1} << order;
    Pieces pieces;
    pieces.spec = layout.take<DctSpec>();
    pieces.twiddles = layout.take<Zet32f>(fftTwiddleCount(order), kCacheLine);
    pieces.rows = layout.take<Zet32f>(kDctRows * pairs);
    pieces.chirp = layout.take<Zet32fc>(others);
    pieces.rotations = layout.take<Zet32fc>(others);
    pieces.response = layout.take<Zet32fc>(points);
    return pieces;
}

// Rows 2 and 3, or 4 and 5: the rotation of point k.
void fillRotation(Zet32f* cosine, Zet32f* sine, uint64_t k, int order, double norm) {
    const tables::Root root = tables::unitRoot(k, order + 2);
    *cosine = static_cast<Zet32f>(norm * root.re);
    *sine = static_cast<Zet32f>(-norm * root.im);
}

void fillRows(int len, Zet32f* rows) {
    const int order = std::countr_zero(static_cast<unsigned>(len));
    const int64_t pairs = realPairs(order);
    const auto norm = static_cast<double>(core::squareRoot(0.5L / len));
    fillRealTwiddles(order, rows);
    for (int64_t i = 0; i < pairs; ++i) {
        const auto k = static_cast<uint64_t>(i) + 1;
        const uint64_t mirror = static_cast<uint64_t>(len) / 2 - k;
        fillRotation(rows + 2 * pairs + i, rows + 3 * pairs + i, k, order, norm);
        fillRotation(rows + 4 * pairs + i, rows + 5 * pairs + i, mirror, order, norm);
    }
}

// norm * e^(-2 pi i index / (4 len)).
Zet32fc root(uint64_t index, int len, long double norm) {
    const uint64_t turn = 4 * static_cast<uint64_t>(len);
    const long double angle =
        2 * core::kPi * static_cast<long double>(index % turn) / static_cast<long double>(turn);
    return {static_cast<Zet32f>(norm * core::cosine(angle)),
            static_cast<Zet32f>(-norm * core::sine(angle))};
}

// The inverse takes half the norm but at coefficient 0, since each of the others counts twice, at k
// and at N - k.
void fillChirp(const DctParameters& parameters, Zet32fc* chirp, Zet32fc* rotations) {
    const int len = parameters.len;
    const long double norm =
        core::squareRoot((parameters.id == core::SpecId::kDctFwd32f ? 2.0L : 0.5L) / len);
    for (int i = 0; i < len; ++i) {
        const auto n = static_cast<uint64_t>(i);
        chirp[i] = root(2 * n * n, len, 1);
        rotations[i] = root(2 * n * n + n, len, i == 0 ? core::squareRoot(1.0L / len) : norm);
    }
}

void fillResponse(const FftPlan& plan, int len, const Zet32fc* chirp, Zet32fc* response,
                  Zet32f* work) {
    const int64_t points = int64_t{1} << plan.order;
    std::fill_n(response, points, Zet32fc{0, 0});
    for (int n = 0; n < len; ++n) {
        response[n] = {chirp[n].re, -chirp[n].im};
        if (n > 0) response[points - n] = response[n];
    }
    const Zet32f scale = 1 / static_cast<Zet32f>(points);
    core::select(kFftKernels).forward(plan, response, response, scale, work);
}

}  // namespace

int dctFftOrder(int len) {
    const auto value = static_cast<unsigned>(len);
    if (isPowerOfTwo(len)) return std::max(std::countr_zero(value) - 1, 0);
    return std::bit_width(2 * (static_cast<uint64_t>(value) - 1));  // 2 len - 1 points or more
}

DctSizes dctSizes(int len) {
    const int order = dctFftOrder(len);
    if (order > kMaxFftOrder) return {UINT64_MAX, 0, 0};
    core::Layout layout;
    layOut(layout, len);
    const uint64_t points = len == 1 ? 0 : uint64_t{2} << order;
    return {layout.size(), isPowerOfTwo(len) ? 0 : workBytes(fftWorkCount(order)),
            workBytes(points + fftWorkCount(order))};
}

DctSpec* makeDctSpec(const DctParameters& parameters, Zet8u* memory, Zet8u* init) {
    const int len = parameters.len;
    core::Layout layout(memory);
    const Pieces pieces = layOut(layout, len);
    *pieces.spec = {.header = {parameters.id, 0},
                    .len = len,
                    .bufSize = static_cast<int>(dctSizes(len).work),
                    .plan = makeFftPlan(dctFftOrder(len), pieces.twiddles),
                    .edge = static_cast<Zet32f>(core::squareRoot(1.0L / len)),
                    .rows = pieces.rows,
                    .chirp = pieces.chirp,
                    .rotations = pieces.rotations,
                    .response = pieces.response};
    if (isPowerOfTwo(len)) {
        fillRows(len, pieces.rows);
    } else {
        fillChirp(parameters, pieces.chirp, pieces.rotations);
        auto* work = init ? reinterpret_cast<Zet32f*>(core::alignUp(init, kCacheLine)) : nullptr;
        fillResponse(pieces.spec->plan, len, pieces.chirp, pieces.response, work);
    }
    return pieces.spec;
}

}  // namespace zetac::transform
