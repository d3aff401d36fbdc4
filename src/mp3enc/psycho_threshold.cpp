// Masking thresholds of the partitions and what is derived from them (ISO/IEC 11172-3, D.2.4.1,
// steps 5 to 13; C.1.5.3).
#include <algorithm>

#include "mp3enc/psycho.h"
#include "mp3enc/psycho_arithmetic.h"
#include "mp3enc/psycho_kernels.h"

namespace zetac::mp3enc {
namespace {

// Weights are Q31. The factors of tonality are twice those of Annex D, so the spread energy of long
// blocks is half of Annex D's: the high words of the products.
constexpr int kSpreadShiftLong = 32;
constexpr int kSpreadShiftShort = 31;

// Threshold over spread energy for a tonality of t, Q31: 6 dB below for noise, 18 dB for tones.
Zet32s thresholdFactor(Zet32s t) {
    constexpr Zet32s kNoise = 1071379500;    // 0.4989
    constexpr Zet32s kTone = 104798000;      // 0.04880
    if (t > kNoise) return 1078847007;       // 0.50238
    if (t < kTone) return 68070644;          // 0.031698
    constexpr int64_t kFactor = 1232338071;  // 1.14770 in Q30
    return static_cast<Zet32s>((kFactor * ownsPow118813_Audio_32s(t)) >> 30);
}

void tonalThresholds(const PsyContext& context, int channel) {
    const PsyTables& tables = context.tables;
    const int count = tables.numLong;
    const Spreading spreading = {count, tables.pSprdngBoundLong, tables.pSprdngPackedLong,
                                 tables.blocksLong, tables.rowsLong};
    LongThresholds& block = context.work.thresholds.longBlock[channel];
    uint64_t unpredictability[kPartitionsLong];
    context.kernels.spread(context.work.energyLong[channel], spreading, kSpreadShiftLong,
                           block.spread);
    context.kernels.spread(context.work.unpredictabilityLong[channel], spreading, kSpreadShiftLong,
                           unpredictability);
    for (int b = 0; b < count; ++b) {
        const uint64_t energy = block.spread[b];
        const Zet32s tonality = ratioQ31(unpredictability[b], energy);
        block.threshold[b] = energy == 0 ? 1 : scaleQ31(energy, thresholdFactor(tonality));
    }
}

// Bounds the thresholds by what came before, and those by the threshold in quiet.
void limitByPast(uint64_t* threshold, const PsyContext& context, int channel) {
    ZetMP3PsyChannelState& state = context.state.channel[channel];
    const bool afterShort = context.state.channel[channel % 2].block_type == kShort;
    for (int b = 0; b < context.tables.numLong; ++b) {
        const uint64_t now = threshold[b];
        uint64_t limited = std::min(now, 2 * state.threshold[0][b]);
        if (!afterShort) limited = std::min(limited, 16 * state.threshold[1][b]);
        state.threshold[1][b] = state.threshold[0][b];
        state.threshold[0][b] = now;
        threshold[b] = std::max(limited, context.tables.pQuietThresholdLong[b]);
    }
}

// Energies and thresholds of scale-factor bands over one set of partitions.
struct BandMap {
    const uint8_t* bu;     // the partition that each boundary falls in
    const Zet32s* weight;  // its share above the boundary
};

Zet32s bandRatio(const uint64_t* energy, const uint64_t* threshold, const BandMap& map, int s) {
    const int first = map.bu[s];
    const int last = map.bu[s + 1];
    const Zet32s upper = map.weight[s];
    const Zet32s lower = kMax32s - map.weight[s + 1];
    uint64_t en = scaleQ31(energy[first], upper) + scaleQ31(energy[last], lower);
    uint64_t thm = scaleQ31(threshold[first], upper) + scaleQ31(threshold[last], lower);
    for (int b = first + 1; b < last; ++b) {
        en += energy[b];
        thm += threshold[b];
    }
    return en == 0 ? kMax32s : ratioQ31(thm, en);
}

}  // namespace

void ownsCalSpreadedEnergyThreshold_Psy_MP3(const PsyContext& context) {
    LongThresholds* blocks = context.work.thresholds.longBlock;
    for (int channel = 0; channel < context.analysisChannels; ++channel) {
        tonalThresholds(context, channel);
    }
    if (context.analysisChannels == kAnalysisChannels) {
        CoupledChannels coupled;
        for (int channel = 0; channel < kAnalysisChannels; ++channel) {
            coupled.threshold[channel] = blocks[channel].threshold;
            coupled.spread[channel] = blocks[channel].spread;
        }
        ownsMSThresholdCoupling_Psy_MP3(coupled, context.tables.pBMLDRatioLong,
                                        context.tables.numLong);
    }
    for (int channel = 0; channel < context.analysisChannels; ++channel) {
        limitByPast(blocks[channel].threshold, context, channel);
    }
}

void ownsCalSpreadedEnergyThresholdShort_Psy_MP3(const PsyContext& context) {
    const PsyTables& tables = context.tables;
    const int count = tables.numShort;
    const Spreading spreading = {count, tables.pSprdngBoundShort, tables.pSprdngPackedShort,
                                 tables.blocksShort, tables.rowsShort};
    for (int window = 0; window < kWindows; ++window) {
        CoupledChannels coupled{};
        for (int channel = 0; channel < context.analysisChannels; ++channel) {
            ShortThresholds& block = context.work.thresholds.shortBlocks[channel][window];
            context.kernels.spread(context.work.energyShort[channel][window], spreading,
                                   kSpreadShiftShort, block.spread);
            for (int b = 0; b < count; ++b) {
                const uint64_t energy = block.spread[b];
                block.threshold[b] = energy == 0 ? 1 : scaleQ31(energy, tables.pSMRShort[b]);
            }
            coupled.threshold[channel] = block.threshold;
            coupled.spread[channel] = block.spread;
        }
        if (context.analysisChannels == kAnalysisChannels)
            ownsMSThresholdCoupling_Psy_MP3(coupled, tables.pBMLDRatioShort, count);
        for (int channel = 0; channel < context.analysisChannels; ++channel) {
            uint64_t* threshold = coupled.threshold[channel];
            for (int b = 0; b < count; ++b) {
                threshold[b] = std::max(threshold[b], tables.pQuietThresholdShort[b]);
            }
        }
    }
}

void ownsMSThresholdCoupling_Psy_MP3(const CoupledChannels& channels, const Zet32s* bmld,
                                     int count) {
    const auto& spread = channels.spread;
    for (int b = 0; b < count; ++b) {
        uint64_t& left = channels.threshold[0][b];
        uint64_t& right = channels.threshold[1][b];
        const uint64_t mid = channels.threshold[2][b];
        const uint64_t side = channels.threshold[3][b];
        const uint64_t lower = std::min(left, right);
        const uint64_t limitLeft = scaleQ31(spread[0][b], bmld[b]);
        const uint64_t limitRight = scaleQ31(spread[1][b], bmld[b]);
        if (left >= limitLeft || right >= limitRight) {  // at low frequencies
            const Zet32s ratio = ratioQ31(std::min(mid, side), std::max(mid, side));
            if (left >= limitLeft) left = std::max(scaleQ31(left, ratio), limitLeft);
            if (right >= limitRight) right = std::max(scaleQ31(right, ratio), limitRight);
        }
        const uint64_t limitMid = scaleQ31(spread[2][b], bmld[b]);
        const uint64_t limitSide = scaleQ31(spread[3][b], bmld[b]);
        channels.threshold[2][b] = std::min(lower, std::max(mid, std::min(side, limitSide)));
        channels.threshold[3][b] = std::min(lower, std::max(side, std::min(mid, limitMid)));
    }
}

Zet32s ownsCalPerceptualEntropy_Psy_MP3(const PsyContext& context, int channel) {
    constexpr int kQuotientBits = 11;
    constexpr int64_t kLog10Of2 = 646456993;  // Q31
    const Zet16s* first = context.tables.pPsyPartitionTableLong;
    const uint64_t* energy = context.work.energyLong[channel];
    const uint64_t* threshold = context.work.thresholds.longBlock[channel].threshold;
    Zet32s sum = 0;  // Q5
    for (int b = 0; b < context.tables.numLong; ++b) {
        if (energy[b] <= threshold[b]) continue;
        const Zet32s excess = quotient(energy[b], threshold[b] + 1, kQuotientBits);
        const Zet32s clamped = std::max(excess, 1 << kQuotientBits);
        const int logarithm = ownsLog2_Audio_32s16s(clamped) - (kQuotientBits << 10);  // Q10
        const int width = first[b + 1] - first[b];  // below 2^9, and the logarithm below 2^15
        sum += static_cast<Zet32s>((width * logarithm * kLog10Of2) >> (31 + 5));
    }
    return sum >> 5;
}

void ownsConvertThresholdToSfb_Psy_MP3(const PsyContext& context, int channel, RatiosWanted wanted,
                                       BandRatios& ratios) {
    const PsyTables& tables = context.tables;
    const BandMap mapLong = {tables.pPartToSfbBuoLong, tables.pPartToSfbWeightLong};
    const BandMap mapShort = {tables.pPartToSfbBuoShort, tables.pPartToSfbWeightShort};
    ratios = {};
    for (int s = 0; wanted.longBands && s < kPsySfbLong; ++s) {
        ratios.ratioLong[s] =
            bandRatio(context.work.energyLong[channel],
                      context.work.thresholds.longBlock[channel].threshold, mapLong, s);
    }
    for (int window = 0; wanted.shortBands && window < kWindows; ++window) {
        const uint64_t* energy = context.work.energyShort[channel][window];
        const uint64_t* threshold = context.work.thresholds.shortBlocks[channel][window].threshold;
        for (int s = 0; s < kPsySfbShort; ++s) {
            ratios.ratioShort[kWindows * s + window] = bandRatio(energy, threshold, mapShort, s);
        }
    }
}

}  // namespace zetac::mp3enc
