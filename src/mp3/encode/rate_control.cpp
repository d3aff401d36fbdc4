// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/encode/rate_control.h"

#include <algorithm>
#include <climits>

namespace zetac::mp3 {
namespace {

// Fractions of the budget that count as met: what is left goes to the reservoir.
constexpr int kToleranceShift = 7;
constexpr int kMostTrials = 24;

// A frame that needs twice the mean for noise at the thresholds gets a quarter more than the mean,
// one that needs half of it a quarter less; and three eighths of what the reservoir holds beyond
// five eighths of its capacity. With these the fullness of the reservoir is a running mean of the
// needs over about three frames, so that a frame gets more when it needs more than its
// predecessors.
constexpr Zet32f kNeedShare = 0.25f;
constexpr Zet32f kReservoirShare = 0.375f;
constexpr Zet32f kReservoirTarget = 0.625f;

int roundDown8(int bits) {
    return bits & ~7;
}

int budgetFor(int need, const FrameBudget& frame) {
    const auto mean = static_cast<Zet32f>(frame.meanBits);
    const Zet32f ratio = static_cast<Zet32f>(std::max(need, 1)) / std::max(mean, 1.0f);
    const Zet32f demand = std::clamp(roughLog2(ratio), -1.0f, 1.0f);
    const Zet32f excess =
        static_cast<Zet32f>(frame.held) - kReservoirTarget * static_cast<Zet32f>(frame.capacity);
    const int wanted =
        static_cast<int>(mean * (1 + kNeedShare * demand) + kReservoirShare * excess);
    const int most = frame.meanBits + frame.held;
    return std::clamp(wanted, std::clamp(most - frame.capacity, 0, most), most);
}

// Where a line through both trials meets the middle of what counts as met.
int between(const Trial& tooFine, const Trial& fits, int budget) {
    const int target = budget - (budget >> (kToleranceShift + 1));
    return tooFine.level +
           (fits.level - tooFine.level) * (tooFine.bits - target) / (tooFine.bits - fits.bits + 1);
}

}  // namespace

// One trial at a level. A granule that needs more than 4095 gets coarser.
Trial FrameCoder::codeAll(int level) {
    Trial sum = {level, 0, 0};
    GranuleCode* const trial = codes_[1 - best_];
    for (int record = 0; record < numRecords(); ++record) {
        const int first = record - numChannels_;  // granule 0 of the channel
        const bool mayShare =
            first >= 0 && !granules_[first].isShort() && !granules_[record].isShort();
        for (;;) {
            granules_[record].code(std::max(level, floor_[record]),
                                   mayShare ? &trial[first] : nullptr, trial[record]);
            const int excess = trial[record].info.part2_3_length - kMaxPart23Bits;
            if (excess <= 0) break;
            const int levels = kLevelsPerOctave * excess / (trial[record].nonZero + 1);
            floor_[record] =
                std::max(level, floor_[record]) + 1 + std::min(levels, kLevelsPerOctave);
        }
        sum.bits += trial[record].info.part2_3_length;
        sum.nonZero += trial[record].nonZero;
    }
    return sum;
}

// Half a bit per doubling of the noise for each line that is not 0, by and large; towards finer
// levels more and more lines are not.
int FrameCoder::nextLevel(const Trial& last, int budget) const {
    const int excess = last.bits - budget;
    const int lines = excess > 0 ? last.nonZero : (last.nonZero + numLines()) / 2;
    return last.level + 2 * kLevelsPerOctave * excess / (lines + 16) + (excess > 0 ? 1 : 0);
}

// Finds the level whose bits come closest to the budget from below, from a first trial on.
int FrameCoder::fit(Trial last, int budget) {
    Trial tooFine = {kFinestLevel - 1, INT_MAX, 0};
    Trial fits = {kCoarsestLevel + 1, -1, 0};
    for (int trial = 0; trial < kMostTrials; ++trial) {
        if (last.bits <= budget) {
            keep();
            fits = last;
            if (budget - last.bits <= budget >> kToleranceShift) break;
        } else {
            tooFine = last;
        }
        if (fits.level - tooFine.level <= 1) break;
        int level = nextLevel(last, budget);
        if (tooFine.level >= kFinestLevel && fits.level <= kCoarsestLevel)
            level =
                trial % 3 == 2 ? (tooFine.level + fits.level) / 2 : between(tooFine, fits, budget);
        last = codeAll(std::clamp(level, tooFine.level + 1, fits.level - 1));
    }
    if (fits.bits < 0) codeSilence();
    return std::max(fits.bits, 0);
}

void FrameCoder::codeSilence() {
    for (int record = 0; record < numRecords(); ++record)
        granules_[record].codeSilence(codes_[best_][record]);
}

// Distributes stuffing bits from the last granule on; returns those that found no room.
int FrameCoder::stuff(int bits) {
    for (int record = numRecords() - 1; record >= 0; --record) {
        const int room = kMaxPart23Bits - codes_[best_][record].info.part2_3_length;
        stuffing_[record] = std::min(bits, room);
        bits -= stuffing_[record];
    }
    return bits;
}

int FrameCoder::code(const FrameBudget& budget) {
    for (int& floor : floor_) floor = kFinestLevel;
    const int available = budget.meanBits + budget.held;
    const Trial first = codeAll(0);
    const int need = first.bits;
    if (budget.isVariable) {
        const int most = roundDown8(available);
        const bool fitsAtOnce = need <= most;
        if (fitsAtOnce) keep();
        const int bits = fitsAtOnce ? need : fit(first, most);
        stuff(-bits & 7);
        return budget.held;
    }
    const int bits = fit(first, budgetFor(need, budget));
    const int left = std::min(roundDown8(available - bits), roundDown8(budget.capacity));
    stuff(available - bits - left);
    return left;
}

}  // namespace zetac::mp3
