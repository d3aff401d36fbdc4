// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/encode/bit_count.h"

#include <emmintrin.h>

#include <algorithm>

#include "mp3/encode/band_layout.h"
#include "tables/mp3/huffman_encoder.h"

namespace zetac::mp3 {
namespace {

constexpr int kMaxRegion0 = 16;  // bands, by the width of region0_count
constexpr int kMaxRegion1 = 8;
constexpr int kLargestCode = 15;

// What a run of pairs costs with each book, and how large its magnitudes are.
struct RunCost {
    __m128i low, high;  // sums of rows of kPairLengths, saturated
    int peak;

    static RunCost none() { return {_mm_setzero_si128(), _mm_setzero_si128(), 0}; }

    void add(const RunCost& other) {
        low = _mm_adds_epi16(low, other.low);
        high = _mm_adds_epi16(high, other.high);
        peak = std::max(peak, other.peak);
    }
    void addPair(unsigned row) {
        const auto* lengths = reinterpret_cast<const __m128i*>(tables::kPairLengths.values +
                                                               row * tables::kPairLanes);
        low = _mm_adds_epi16(low, _mm_loadu_si128(lengths));
        high = _mm_adds_epi16(high, _mm_loadu_si128(lengths + 1));
    }
};

RunCost costOf(const Zet16s* magnitudes, int count) {
    RunCost cost = RunCost::none();
    int peak = 0;
    for (int i = 0; i < count; i += 2) {
        const int x = magnitudes[i], y = magnitudes[i + 1];
        cost.addPair(
            static_cast<unsigned>(std::min(x, kLargestCode) * 16 + std::min(y, kLargestCode)));
        peak = std::max({peak, x, y});
    }
    cost.peak = peak;
    return cost;
}

int leastOf(__m128i x) {
    x = _mm_min_epi16(x, _mm_shuffle_epi32(x, _MM_SHUFFLE(1, 0, 3, 2)));
    x = _mm_min_epi16(x, _mm_shuffle_epi32(x, _MM_SHUFFLE(2, 3, 0, 1)));
    x = _mm_min_epi16(x, _mm_shufflelo_epi16(x, _MM_SHUFFLE(2, 3, 0, 1)));
    return _mm_extract_epi16(x, 0);
}

// The first of the eight tables from `first` on whose linbits hold the peak.
int tableWithLinbits(int first, int peak) {
    int table = first;
    while (peak - kLargestCode >= 1 << linbitsOf(table)) ++table;
    return table;
}

struct RegionCode {
    int bits, table;
};

RegionCode escapedCode(const RunCost& cost) {
    const int escapes = _mm_extract_epi16(cost.high, 7);
    const int table16 = tableWithLinbits(16, cost.peak);
    const int table24 = tableWithLinbits(24, cost.peak);
    const int bits16 = _mm_extract_epi16(cost.high, 5) + escapes * linbitsOf(table16);
    const int bits24 = _mm_extract_epi16(cost.high, 6) + escapes * linbitsOf(table24);
    return bits16 <= bits24 ? RegionCode{bits16, table16} : RegionCode{bits24, table24};
}

// The lanes of the upper books, where no magnitude is above 15, with the least linbits of tables 16
// and 24.
__m128i upperBooks(const RunCost& cost) {
    const __m128i linbits = _mm_setr_epi16(0, 0, 0, 0, 0, 1, 4, 0);
    const __m128i escapes = _mm_set1_epi16(static_cast<Zet16s>(_mm_extract_epi16(cost.high, 7)));
    const __m128i noBook = _mm_setr_epi16(0, 0, 0, 0, 0, 0, 0, 32767);
    return _mm_or_si128(_mm_adds_epi16(cost.high, _mm_mullo_epi16(escapes, linbits)), noBook);
}

// The number of bits with the best table.
int bitsOf(const RunCost& cost) {
    if (cost.peak == 0) return 0;
    if (cost.peak > kLargestCode) return escapedCode(cost).bits;
    return leastOf(_mm_min_epi16(cost.low, upperBooks(cost)));
}

int tableOf(const RunCost& cost) {
    if (cost.peak == 0) return 0;
    if (cost.peak > kLargestCode) return escapedCode(cost).table;
    alignas(16) Zet16s lanes[tables::kPairLanes];
    _mm_store_si128(reinterpret_cast<__m128i*>(lanes), cost.low);
    _mm_store_si128(reinterpret_cast<__m128i*>(lanes) + 1, upperBooks(cost));
    const Zet16s* best = std::min_element(lanes, lanes + tables::kPairBooks);
    return tables::kPairBookTable[best - lanes];
}

// The index of the last non-zero line plus 1, made even.
int endOfLines(const Zet16s* magnitudes) {
    int end = ZETAC_MP3_GRANULE_LEN;
    const __m128i zero = _mm_setzero_si128();
    while (end >= 8) {
        const __m128i eight =
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(magnitudes + end - 8));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(eight, zero)) != 0xffff) break;
        end -= 8;
    }
    while (end > 0 && (magnitudes[end - 1] | magnitudes[end - 2]) == 0) end -= 2;
    return end;
}

// Takes quadruples of magnitudes 0 and 1 from the end down; returns where they begin.
int planCount1(const Zet16s* magnitudes, int end, HuffmanPlan& plan) {
    int start = end, bitsA = 0, bitsB = 0;
    for (; start >= 4; start -= 4) {
        const Zet16s* q = magnitudes + start - 4;
        if ((q[0] | q[1] | q[2] | q[3]) > 1) break;
        const int quad = 8 * q[0] + 4 * q[1] + 2 * q[2] + q[3];
        bitsA += tables::kQuadLengths[quad];
        bitsB += tables::kQuadLengths[16 + quad];
    }
    plan.count1Len = end - start;
    plan.count1table_select = bitsB < bitsA;
    plan.bits = std::min(bitsA, bitsB);
    return start;
}

// Window switching: two regions.
void planTwoRegions(const Zet16s* magnitudes, int end, int border, HuffmanPlan& plan) {
    const int first = std::min(border, end);
    const RunCost costs[2] = {costOf(magnitudes, first), costOf(magnitudes + first, end - first)};
    for (int region = 0; region < 2; ++region) {
        plan.bits += bitsOf(costs[region]);
        plan.table_select[region] = tableOf(costs[region]);
    }
}

// Three regions whose borders are band borders: for every end of region 1 the best end of region 0.
class RegionSplit {
  public:
    RegionSplit(const Zet16s* magnitudes, int end, const Zet16s* starts) {
        for (; starts[numBands_] < end; ++numBands_) {
            const int from = starts[numBands_];
            const int to = std::min<int>(starts[numBands_ + 1], end);
            bands_[numBands_] = costOf(magnitudes + from, to - from);
        }
    }

    void plan(HuffmanPlan& plan) {
        const int bits = search();
        plan.bits += bits;
        plan.region0_count = end0_ - 1;
        plan.region1_count = end1_ - end0_ - 1;
        plan.table_select[0] = tableOf(sum(0, end0_));
        plan.table_select[1] = tableOf(sum(end0_, end1_));
        plan.table_select[2] = tableOf(sum(end1_, kLongBands));
    }

  private:
    RunCost sum(int from, int to) const {
        RunCost total = RunCost::none();
        for (int b = from; b < std::min(to, numBands_); ++b) total.add(bands_[b]);
        return total;
    }

    int search() {
        int upper[kLongBands + 2] = {};  // bits of region 2 from each band on
        RunCost suffix = RunCost::none();
        for (int b = numBands_ - 1; b >= 0; --b) {
            suffix.add(bands_[b]);
            upper[b] = bitsOf(suffix);
        }
        int least = upper[0] + 1;
        RunCost lower = RunCost::none();
        for (int end0 = 1; end0 <= std::min(kMaxRegion0, std::max(numBands_, 1)); ++end0) {
            if (end0 <= numBands_) lower.add(bands_[end0 - 1]);
            const int lowerBits = bitsOf(lower);
            RunCost middle = RunCost::none();
            for (int end1 = end0 + 1; end1 <= end0 + kMaxRegion1 && end1 <= kLongBands; ++end1) {
                if (end1 <= numBands_) middle.add(bands_[end1 - 1]);
                const int bits = lowerBits + bitsOf(middle) + upper[std::min(end1, numBands_)];
                if (bits < least) {
                    least = bits;
                    end0_ = end0;
                    end1_ = end1;
                }
                if (end1 >= numBands_) break;
            }
        }
        return least;
    }

    RunCost bands_[kLongBands];
    int numBands_ = 0;
    int end0_ = 1, end1_ = 2;
};

}  // namespace

HuffmanPlan planHuffman(const Zet16s* magnitudes, const Zet16s* longStarts, bool windowSwitching) {
    HuffmanPlan plan{};
    const int end = planCount1(magnitudes, endOfLines(magnitudes), plan);
    plan.big_values = end / 2;
    if (windowSwitching) {
        planTwoRegions(magnitudes, end, longStarts[kSwitchedRegion0Bands], plan);
    } else {
        RegionSplit(magnitudes, end, longStarts).plan(plan);
    }
    return plan;
}

}  // namespace zetac::mp3
