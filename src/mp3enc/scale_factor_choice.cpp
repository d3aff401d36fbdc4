#include "mp3enc/scale_factor_choice.h"

#include <algorithm>
#include <climits>

#include "tables/mp3_scale_factor_lengths.h"

namespace zetac::mp3enc {
namespace {

constexpr int kMaxScaleFactor[2] = {15, 7};  // of slen1 and slen2
constexpr int kSubblockSteps = 8;            // quarter steps of a subblock_gain
constexpr int kMaxSubblockGain = 7;
constexpr int kGroupStart[kScfsiGroups] = {0, 6, 11, 16};
constexpr int kGroupBands[kScfsiGroups] = {6, 5, 5, 5};

constexpr int kBit = 16;            // of costs
constexpr int kOverflow = 1 << 20;  // of magnitudes
constexpr int kNoisePenalty = 8;    // a quarter step too coarse counts as that many too fine

constexpr int floorShift(int a, int shift) {
    return a >> shift;
}
constexpr int ceilShift(int a, int shift) {
    return -(-a >> shift);
}

// The steps of one choice of scalefac_scale, preflag and gain.
class Candidate {
  public:
    Candidate(const BandLayout& layout, const BandDemand* demands, const Zet16s* granule0,
              int scale, bool preflag)
        : layout_(layout),
          demands_(demands),
          granule0_(granule0),
          shift_(1 + scale),
          preflag_(preflag) {}

    // The highest gain that leaves all bands in the reach of their scale factors. Short windows
    // have their subblock gains below it; long bands of a mixed block may have to do with what
    // their scale factors reach, so that no magnitude of a window is cut.
    int highestGain() {
        findBases();
        int highest = INT_MIN, least = INT_MIN;
        for (int c = 0; c < kClasses; ++c) {
            if (base_[c] == INT_MAX) continue;
            highest = std::max(highest, base_[c]);
            least = std::max(least, lowest_[c]);
        }
        if (base_[kLongClass] == INT_MAX) return highest;
        return std::max(std::min(highest, inReach_[kLongClass]), least);
    }

    // Lower gains repeat the choices with scale factors one higher; in a mixed block they serve the
    // long bands without.
    int gainsToTry(int highest) const {
        if (base_[kLongClass] == INT_MAX) return kSubblockSteps;
        const int least = *std::max_element(lowest_, lowest_ + kClasses);
        const int steps =
            layout_.hasShort ? highest - base_[kLongClass] + kSubblockSteps : 1 << shift_;
        return std::min(steps, highest - least + 1);
    }

    // Returns the cost of what the candidate adds to the demands, scale factors included.
    int evaluate(int gain, StepChoice& choice) {
        choice.gain = gain;
        choice.preflag = preflag_;
        choice.scalefac_scale = shift_ - 1;
        int base[kClasses];
        base[kLongClass] = gain;
        for (int w = 0; w < kWindows; ++w) {
            const int excess = base_[w] == INT_MAX ? 0 : std::max(gain - base_[w], 0);
            choice.subblock_gain[w] =
                std::min((excess + kSubblockSteps - 1) / kSubblockSteps, kMaxSubblockGain);
            base[w] = gain - kSubblockSteps * choice.subblock_gain[w];
            if (base[w] < lowest_[w] && choice.subblock_gain[w] > 0) {
                --choice.subblock_gain[w];
                base[w] += kSubblockSteps;
            }
        }
        for (int b = 0; b < layout_.count; ++b) assign(b, base[layout_.bands[b].stepClass], choice);
        return layout_.hasShort ? costOfShort(choice) : costOfLong(choice);
    }

  private:
    int pretabOf(const Band& band) const { return preflag_ ? band.pretab : 0; }

    // For each class the lowest base that the magnitudes allow, INT_MIN where it codes nothing; the
    // highest one that brings all scale factors in reach; and that one but no more than is of use
    // to some band, INT_MAX where it codes nothing.
    void findBases() {
        for (int c = 0; c < kClasses; ++c) {
            lowest_[c] = base_[c] = INT_MIN;
            inReach_[c] = INT_MAX;
        }
        for (int b = 0; b < layout_.count; ++b) {
            const Band& band = layout_.bands[b];
            const BandDemand& demand = demands_[b];
            if (!demand.isCoded) continue;
            const int c = band.stepClass, fixed = pretabOf(band);
            lowest_[c] = std::max(lowest_[c], demand.finest + (fixed << shift_));
            if (band.scaleFactor == kNoScaleFactor) continue;
            const int most = kMaxScaleFactor[band.upper];
            base_[c] = std::max(base_[c], demand.step + (fixed << shift_));
            inReach_[c] = std::min(inReach_[c], demand.step + ((most + fixed) << shift_));
        }
        for (int c = 0; c < kClasses; ++c) {
            if (lowest_[c] == INT_MIN) {
                base_[c] = INT_MAX;
            } else if (base_[c] == INT_MIN) {
                base_[c] = topStep(c);
            } else {
                base_[c] = std::max(std::min(base_[c], inReach_[c]), lowest_[c]);
            }
        }
    }

    // The uppermost band has no scale factor. Only the gain could serve it, at the cost of all
    // others; so it asks for nothing unless it is alone.
    int topStep(int stepClass) const {
        const int window = stepClass == kLongClass ? kWindows - 1 : stepClass;
        return demands_[layout_.count - kWindows + window].step;
    }

    // The scale factor of band b, and the step that results.
    void assign(int b, int base, StepChoice& choice) const {
        const Band& band = layout_.bands[b];
        const BandDemand& demand = demands_[b];
        int factor = 0;
        if (demand.isCoded && band.scaleFactor != kNoScaleFactor) {
            const int fixed = pretabOf(band);
            const int wanted = ceilShift(base - demand.step, shift_) - fixed;
            const int most = floorShift(base - demand.finest, shift_) - fixed;
            factor = std::clamp(std::min(wanted, most), 0, kMaxScaleFactor[band.upper]);
        }
        choice.scaleFactors[b] = static_cast<Zet16s>(factor);
        choice.steps[b] = stepOf(band, base, factor);
    }

    int stepOf(const Band& band, int base, int factor) const {
        const bool hasFactor = band.scaleFactor != kNoScaleFactor;
        return base - (hasFactor ? (factor + pretabOf(band)) << shift_ : 0);
    }

    int costOfBand(int b, int step) const {
        const BandDemand& demand = demands_[b];
        if (!demand.isCoded) return 0;
        const int tooFine = demand.step - step;
        if (step < demand.finest) return kOverflow;
        if (tooFine >= 0) return demand.weight * tooFine;
        const bool hasFactor = layout_.bands[b].scaleFactor != kNoScaleFactor;
        return hasFactor ? -kNoisePenalty * demand.weight * tooFine : 0;
    }

    int costOfShort(const StepChoice& choice) const {
        int cost = 0, highest[2] = {};
        for (int b = 0; b < layout_.count; ++b) {
            cost += costOfBand(b, choice.steps[b]);
            int& top = highest[layout_.bands[b].upper];
            top = std::max<int>(top, choice.scaleFactors[b]);
        }
        return cost + kBit * (layout_.numLower * bitsOfScaleFactor(highest[0]) +
                              layout_.numUpper * bitsOfScaleFactor(highest[1]));
    }

    // A group of long bands with its own scale factors, or with those of granule 0.
    struct Group {
        int ownCost = 0, ownBits = 0;
        int reuseCost = 0;
        bool canReuse = true;
    };

    Group groupOf(int group, const StepChoice& choice) const {
        Group result;
        result.canReuse = granule0_ != nullptr;
        int highest = 0;
        const int first = kGroupStart[group];
        for (int b = first; b < first + kGroupBands[group]; ++b) {
            const Band& band = layout_.bands[b];
            highest = std::max<int>(highest, choice.scaleFactors[b]);
            result.ownCost += costOfBand(b, choice.steps[b]);
            if (!result.canReuse) continue;
            const int step = stepOf(band, choice.gain, granule0_[band.scaleFactor]);
            if (demands_[b].isCoded && (step > demands_[b].step || step < demands_[b].finest))
                result.canReuse = false;
            result.reuseCost += costOfBand(b, step);
        }
        result.ownBits = bitsOfScaleFactor(highest);
        return result;
    }

    // The two groups of a length: which of them should take over granule 0's.
    int costOfLong(StepChoice& choice) const {
        int cost = 0;
        for (int half = 0; half < 2; ++half) {
            const Group groups[2] = {groupOf(2 * half, choice), groupOf(2 * half + 1, choice)};
            int least = INT_MAX, best = 0;
            for (int reuse = 0; reuse < 4; ++reuse) {
                const int total = costOfPair(groups, kGroupBands + 2 * half, reuse);
                if (total < least) {
                    least = total;
                    best = reuse;
                }
            }
            cost += least;
            choice.reuses[2 * half] = best & 1;
            choice.reuses[2 * half + 1] = best >> 1;
        }
        return cost + costOfBand(layout_.count - 1, choice.steps[layout_.count - 1]);
    }

    static int costOfPair(const Group (&groups)[2], const int* bands, int reuse) {
        int cost = 0, factors = 0, bits = 0;
        for (int i = 0; i < 2; ++i) {
            const Group& group = groups[i];
            if (reuse >> i & 1) {
                if (!group.canReuse) return INT_MAX;
                cost += group.reuseCost;
            } else {
                cost += group.ownCost;
                factors += bands[i];
                bits = std::max(bits, group.ownBits);
            }
        }
        return cost + kBit * factors * bits;
    }

    const BandLayout& layout_;
    const BandDemand* demands_;
    const Zet16s* granule0_;
    int shift_;  // a scale factor counts 2^shift quarter steps
    bool preflag_;
    int base_[kClasses];  // highest
    int inReach_[kClasses];
    int lowest_[kClasses];
};

// Puts granule 0's scale factors where they are reused.
void applyReuse(const BandLayout& layout, const Zet16s* granule0, StepChoice& choice) {
    if (layout.hasShort || granule0 == nullptr) return;
    for (int b = 0; b < layout.count; ++b) {
        const Band& band = layout.bands[b];
        if (band.scaleFactor == kNoScaleFactor || !choice.reuses[band.scfsiGroup]) continue;
        const int factor = granule0[band.scaleFactor];
        const int shift = 1 + choice.scalefac_scale;
        choice.steps[b] -= (factor - choice.scaleFactors[b]) << shift;
        choice.scaleFactors[b] = static_cast<Zet16s>(factor);
    }
}

}  // namespace

StepChoice chooseSteps(const BandLayout& layout, const BandDemand* demands,
                       const Zet16s* granule0) {
    StepChoice best{}, trial{};
    int least = INT_MAX;
    for (int kind = 0; kind < (layout.hasShort ? 2 : 4); ++kind) {
        Candidate candidate(layout, demands, granule0, kind % 2, kind / 2 != 0);
        const int highest = candidate.highestGain();
        if (highest == INT_MIN) return best;
        for (int gain = highest; gain > highest - candidate.gainsToTry(highest); --gain) {
            const int cost = candidate.evaluate(gain, trial);
            if (cost >= least) continue;
            least = cost;
            best = trial;
        }
    }
    applyReuse(layout, granule0, best);
    return best;
}

int chooseCompress(int lowerBits, int upperBits, int numLower, int numUpper) {
    int best = 15, least = INT_MAX;
    for (int compress = 0; compress < 16; ++compress) {
        const int slen1 = tables::ownMP3TableSlen[0][compress],
                  slen2 = tables::ownMP3TableSlen[1][compress];
        const int bits = numLower * slen1 + numUpper * slen2;
        if (slen1 >= lowerBits && slen2 >= upperBits && bits < least) {
            least = bits;
            best = compress;
        }
    }
    return best;
}

}  // namespace zetac::mp3enc
