// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/aac/windows.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

template <int half>
constexpr Table<std::int32_t, half> makeSineWindow() {
    Table<std::int32_t, half> window{};
    for (int n = 0; n < half; ++n) {
        window.values[n] =
            core::toFixedPoint<std::int32_t>(core::sine(core::kPi * (n + 0.5L) / (2 * half)), 31);
    }
    return window;
}

// The Kaiser kernel I0(pi alpha sqrt(1 - r^2)), r = (p - half/2) / (half/2), for p = 0..half; its
// constant divisor cancels in the window.
template <int half>
constexpr Table<long double, half + 1> makeKaiserKernel(int alpha) {
    Table<long double, half + 1> kernel{};
    for (int p = 0; p <= half / 2; ++p) {
        const long double r = 1 - 2.0L * p / half;
        const long double scale = core::kPi * alpha;
        kernel.values[p] = core::besselI0OfSquare(scale * scale * (1 - r * r));
        kernel.values[half - p] = kernel.values[p];
    }
    return kernel;
}

template <int half>
constexpr Table<std::int32_t, half> makeKbdWindow(int alpha) {
    const auto kernel = makeKaiserKernel<half>(alpha);
    long double total = 0;
    for (const long double w : kernel) total += w;
    Table<std::int32_t, half> window{};
    long double sum = 0;
    for (int n = 0; n < half; ++n) {
        sum += kernel.values[n];
        window.values[n] = core::toFixedPoint<std::int32_t>(core::squareRoot(sum / total), 31);
    }
    return window;
}

}  // namespace

constexpr Table<std::int32_t, 128> pWinSINShort = makeSineWindow<128>();
constexpr Table<std::int32_t, 1024> pWinSINLong = makeSineWindow<1024>();
constexpr Table<std::int32_t, 128> pWinKBDShort = makeKbdWindow<128>(6);
constexpr Table<std::int32_t, 1024> pWinKBDLong = makeKbdWindow<1024>(4);

}  // namespace zetac::tables
