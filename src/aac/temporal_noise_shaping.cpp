// Temporal noise shaping (ISO/IEC 14496-3, 4.6.9).
//
// Both directions predict a line from the lines before it on the decoder's side, round the
// prediction to Q3 and subtract or add it. Since they round the same integer sum, the encoder's
// filter undoes the decoder's exactly, and the decoder's the encoder's, as long as nothing
// saturates.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <bit>
#include <cstdlib>

#include "aac/band_walk.h"
#include "core/fixed_point.h"
#include "tables/aac/tns.h"

namespace zetac::aac {
namespace {

constexpr int kMaxOrder = 12;

// What the window length decides.
struct TnsLimits {
    int windows;
    int filters;
    int order;
};
constexpr TnsLimits kLongLimits = {1, 3, 12};
constexpr TnsLimits kShortLimits = {kShortWindows, 1, 7};

const TnsLimits& tnsLimits(int winLen) {
    return winLen == kLongLen ? kLongLimits : kShortLimits;
}

struct TnsArgs {
    const ZetAACTnsInfo* info;
    const Zet8s* coef;
    int maxSfb;
    int samplingFreqIndex;
    int winLen;
};

ZetStatus checkTns(const TnsArgs& args) {
    if (const ZetStatus status = checkWindowLength(args.winLen)) return status;
    ZETAC_REQUIRE(core::inRange(args.samplingFreqIndex, 0, 11), zetStsAacSmpRateIdxErr);
    const int limit = std::min(ZETAC_AAC_SFB_MAX, bandCount(args.samplingFreqIndex, args.winLen));
    ZETAC_REQUIRE(core::inRange(args.maxSfb, 0, limit), zetStsAacMaxSfbErr);
    return zetStsOk;
}

ZetStatus checkTnsFilter(const ZetAACTnsInfo& info, int filter, int maxOrder, int numBands) {
    ZETAC_REQUIRE(core::inRange(info.length[filter], 0, numBands), zetStsAacTnsLengthErr);
    ZETAC_REQUIRE(core::inRange(info.order[filter], 0, maxOrder), zetStsAacTnsOrderErr);
    const int maxDirection = info.order[filter] > 0 ? 1 : 0;
    ZETAC_REQUIRE(core::inRange(info.direction[filter], 0, maxDirection), zetStsAacTnsDirectionErr);
    ZETAC_REQUIRE(core::inRange(info.coef_compress[filter], 0, 1), zetStsAacTnsCoefCompressErr);
    return zetStsOk;
}

ZetStatus checkTnsFilters(const TnsArgs& args) {
    const ZetAACTnsInfo& info = *args.info;
    const TnsLimits& limits = tnsLimits(args.winLen);
    const int numBands = bandCount(args.samplingFreqIndex, args.winLen);
    int filter = 0;
    for (int window = 0; window < limits.windows; ++window) {
        const int numFilters = info.n_filt[window];
        ZETAC_REQUIRE(core::inRange(numFilters, 0, limits.filters), zetStsAacTnsNumFiltErr);
        if (numFilters == 0) continue;
        ZETAC_REQUIRE(core::inRange(info.coef_res[window], 3, 4), zetStsAacTnsCoefResErr);
        for (const int end = filter + numFilters; filter < end; ++filter) {
            if (const ZetStatus status = checkTnsFilter(info, filter, limits.order, numBands))
                return status;
        }
    }
    return zetStsOk;
}

// A predictor in direct form: line n is expected to be -sum of a(i) * line(n - i), i = 1..order.
// The fractional bits are as many as keep the sum of all |a(i)| below 2^31, so that 64 bits hold
// the sum of products with any lines. Unused coefficients are 0.
struct Predictor {
    Zet32s coef[kMaxOrder];  // a(1), a(2), ...
    int order;
    int fractionBits;
};

// k in Q31 times a value of less than 62 bits.
int64_t mulQ31Wide(int64_t value, Zet32s k) {
    const int64_t high = (value >> 32) * k;
    const int64_t low = static_cast<int64_t>(value & 0xffffffff) * k;
    return 2 * high + (low >> 31);
}

// Reflection to direct form. The coefficients of order 12 stay below 2^12; Q40 leaves the error of
// the recursion far below that of the final format.
constexpr int kDirectBits = 40;

void makeDirectForm(const Zet8s* coef, int order, int coefRes, int64_t* a) {
    const int32_t* reflection = tables::kTnsReflection[coefRes - 3];
    for (int m = 0; m < order; ++m) {
        const Zet32s k = reflection[(coef[m] + 8) & 15];
        int64_t next[kMaxOrder];
        for (int i = 0; i < m; ++i) next[i] = a[i] + mulQ31Wide(a[m - 1 - i], k);
        std::copy_n(next, m, a);
        a[m] = int64_t{k} * (1 << (kDirectBits - 31));
    }
}

// Rounds the direct form to the format of a predictor.
Predictor makePredictor(const Zet8s* coef, int order, int coefRes) {
    int64_t a[kMaxOrder] = {};
    makeDirectForm(coef, order, coefRes, a);
    uint64_t sum = 0;
    for (const int64_t value : a) sum += static_cast<uint64_t>(value < 0 ? -value : value);
    // One bit more than the sum needs, for the rounding of the coefficients.
    const int sumBits = 64 - std::countl_zero(sum);
    const int shift = std::max(sumBits, kDirectBits) - 30;
    Predictor predictor = {.coef = {}, .order = order, .fractionBits = kDirectBits - shift};
    for (int i = 0; i < order; ++i)
        predictor.coef[i] = static_cast<Zet32s>((a[i] + (int64_t{1} << (shift - 1))) >> shift);
    return predictor;
}

// The sum of a(i) * line(n - i), i = first..order, for the line at *line, ready to be shifted.
template <int first, int order>
inline int64_t predict(const Predictor& predictor, const Zet32s* line) {
    int64_t sum = int64_t{1} << (predictor.fractionBits - 1);
    for (int i = first; i <= order; ++i)
        sum += static_cast<int64_t>(predictor.coef[i - 1]) * line[-i];
    return sum;
}

// A branch that is hardly ever taken keeps the limits out of the recursion's critical path.
inline Zet32s saturateRarely(int64_t value) {
    const auto narrow = static_cast<Zet32s>(value);
    if (__builtin_expect(narrow == value, 1)) return narrow;
    return core::saturate32(value);
}

// The filters run in place over lines with zeros before them: y(n) = x(n) - sum of a(i) * y(n - i).
// What the line just done adds to the sum comes last, because the rest need not wait for it;
template <int order>
void runAllPole(Zet32s* line, int count, const Predictor& predictor) {
    const int64_t firstCoef = predictor.coef[0];
    Zet32s last = 0;
    for (int n = 0; n < count; ++n) {
        const int64_t sum = predict<2, order>(predictor, line + n) + firstCoef * last;
        line[n] = last = saturateRarely(line[n] - (sum >> predictor.fractionBits));
    }
}
// and y(n) = x(n) + sum of a(i) * x(n - i), from the end so that x is still there.
template <int order>
void runAllZero(Zet32s* line, int count, const Predictor& predictor) {
    for (int n = count - 1; n >= 0; --n) {
        const int64_t sum = predict<1, order>(predictor, line + n);
        line[n] = saturateRarely(line[n] + (sum >> predictor.fractionBits));
    }
}

// One kind of filter for orders up to 4, 8 and 12.
using Kernel = void (*)(Zet32s* line, int count, const Predictor& predictor);
using Kernels = Kernel[kMaxOrder / 4];
constexpr Kernels kAllPole = {runAllPole<4>, runAllPole<8>, runAllPole<12>};
constexpr Kernels kAllZero = {runAllZero<4>, runAllZero<8>, runAllZero<12>};

// Filters the lines first..first + count - 1 in the filter's direction, from a state of zero.
void filterLines(Zet32s* first, int count, bool downwards, const Predictor& predictor,
                 const Kernels& kernels) {
    Zet32s buffer[kMaxOrder + kLongLen];
    std::fill_n(buffer, kMaxOrder, 0);
    Zet32s* line = buffer + kMaxOrder;
    if (downwards)
        std::reverse_copy(first, first + count, line);
    else
        std::copy_n(first, count, line);
    kernels[(predictor.order - 1) / 4](line, count, predictor);
    if (downwards)
        std::reverse_copy(line, line + count, first);
    else
        std::copy_n(line, count, first);
}

// The filters of one window. The first covers the highest bands of the window, whether or not they
// are transmitted, and each later one those below; filter and coef move on to the next window.
void filterWindow(Zet32s* window, int numFilters, int coefRes, int& filter, const Zet8s*& coef,
                  const TnsArgs& args, const Kernels& kernels) {
    const int16_t* offset = bandOffsets(args.samplingFreqIndex, args.winLen);
    const int maxBands =
        tables::_pAACTnsMaxBandTable[args.samplingFreqIndex][args.winLen == kShortLen];
    const int limit = std::min(maxBands, args.maxSfb);
    int bottom = bandCount(args.samplingFreqIndex, args.winLen);
    for (const int last = filter + numFilters; filter < last; ++filter) {
        const int top = bottom;
        const int order = args.info->order[filter];
        bottom = std::max(top - args.info->length[filter], 0);
        const int start = offset[std::min(bottom, limit)];
        const int end = offset[std::min(top, limit)];
        if (order > 0 && start < end) {
            filterLines(window + start, end - start, args.info->direction[filter] != 0,
                        makePredictor(coef, order, coefRes), kernels);
        }
        coef += order;
    }
}

void filterSpectrum(Zet32s* spectrum, const TnsArgs& args, const Kernels& kernels) {
    int filter = 0;
    const Zet8s* coef = args.coef;
    for (int window = 0; window < tnsLimits(args.winLen).windows; ++window) {
        filterWindow(spectrum + window * args.winLen, args.info->n_filt[window],
                     args.info->coef_res[window], filter, coef, args, kernels);
    }
}

void decodeTns(Zet32s* spectrum, const TnsArgs& args) {
    filterSpectrum(spectrum, args, kAllPole);
}
void encodeTns(Zet32s* spectrum, const TnsArgs& args) {
    filterSpectrum(spectrum, args, kAllZero);
}

}  // namespace
}  // namespace zetac::aac

ZetStatus zetsDecodeTNS_AAC_32s_I(Zet32s* pSrcDst, const ZetAACTnsInfo* pTnsInfo,
                                  const Zet8s* pTnsCoef, int maxSfb, int samplingFreqIndex,
                                  int winLen) {
    using namespace zetac;
    const aac::TnsArgs args = {pTnsInfo, pTnsCoef, maxSfb, samplingFreqIndex, winLen};
    ZETAC_REQUIRE(core::allSet(pSrcDst, pTnsInfo, pTnsCoef), zetStsNullPointer);
    if (const ZetStatus status = aac::checkTns(args)) return status;
    if (const ZetStatus status = aac::checkTnsFilters(args)) return status;
    aac::decodeTns(pSrcDst, args);
    return zetStsOk;
}

ZetStatus zetsEncodeTNS_AAC_32s_I(Zet32s* pSrcDst, const ZetAACTnsInfo* pTnsInfo,
                                  const Zet8s* pTnsCoef, int maxSfb, int samplingFreqIndex,
                                  int winLen, int objectType) {
    using namespace zetac;
    const aac::TnsArgs args = {pTnsInfo, pTnsCoef, maxSfb, samplingFreqIndex, winLen};
    ZETAC_REQUIRE(core::allSet(pSrcDst, pTnsInfo, pTnsCoef), zetStsNullPointer);
    if (const ZetStatus status = aac::checkTns(args)) return status;
    ZETAC_REQUIRE(objectType == 1, zetStsAacObjTypeErr);
    if (const ZetStatus status = aac::checkTnsFilters(args)) return status;
    aac::encodeTns(pSrcDst, args);
    return zetStsOk;
}
