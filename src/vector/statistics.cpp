// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include <algorithm>
#include <cmath>

#include "core/checks.h"

namespace zetac::vector {
namespace {

using core::allSet;

struct Extremes {
    Zet16s min, max;
};

Extremes extremes(const Zet16s* src, int len) {
    Extremes found = {src[0], src[0]};
    for (int i = 1; i < len; ++i) {
        found.min = std::min(found.min, src[i]);
        found.max = std::max(found.max, src[i]);
    }
    return found;
}

struct Sums {
    long double x = 0, xx = 0;
};

// Four partial sums of single precision, so that four elements are taken at once.
Sums sumFast(const Zet32f* src, int len) {
    constexpr int kLanes = 4;
    Zet32f x[kLanes] = {}, xx[kLanes] = {};
    int i = 0;
    for (; i <= len - kLanes; i += kLanes)
        for (int lane = 0; lane < kLanes; ++lane) {
            x[lane] += src[i + lane];
            xx[lane] += src[i + lane] * src[i + lane];
        }
    for (int lane = 0; i < len; ++i, ++lane) {
        x[lane] += src[i];
        xx[lane] += src[i] * src[i];
    }
    return {(x[0] + x[2]) + (x[1] + x[3]), (xx[0] + xx[2]) + (xx[1] + xx[3])};
}

Sums sumAccurate(const Zet32f* src, int len) {
    Sums sums;
    for (int i = 0; i < len; ++i) {
        const long double x = src[i];
        sums.x += x;
        sums.xx += x * x;
    }
    return sums;
}

Zet32f standardDeviation(const Zet32f* src, int len, int hint) {
    const Sums sums = hint == zetAlgHintFast ? sumFast(src, len) : sumAccurate(src, len);
    const long double n = len;
    const long double difference = n * sums.xx - sums.x * sums.x;
    return difference < 0 ? 0.0f : static_cast<Zet32f>(std::sqrt(difference / (n * (n - 1))));
}

}  // namespace
}  // namespace zetac::vector

using namespace zetac::vector;

ZetStatus zetsMinMax_16s(const Zet16s* pSrc, int len, Zet16s* pMin, Zet16s* pMax) {
    ZETAC_REQUIRE(allSet(pSrc, pMin, pMax), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 1, zetStsBadSize);
    const Extremes found = extremes(pSrc, len);
    *pMin = found.min;
    *pMax = found.max;
    return zetStsOk;
}

ZetStatus zetsStdDev_32f(const Zet32f* pSrc, int len, Zet32f* pStdDev, int hint) {
    ZETAC_REQUIRE(allSet(pSrc, pStdDev), zetStsNullPointer);
    ZETAC_REQUIRE(len >= 2, zetStsBadSize);
    *pStdDev = standardDeviation(pSrc, len, hint);
    return zetStsOk;
}
