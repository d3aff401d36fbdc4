// Psychoacoustic model two of the Layer III encoder (ISO/IEC 11172-3, Annex D.2 and C.1.5.3): the
// work area and the steps.
//
// Scales: spectra are unscaled (a sine of full scale on a line has 32767 * 256 in a long spectrum,
// 32767 * 64 in a short one), energies and thresholds are 64-bit on the scale of their squares,
// ratios and the measure of unpredictability are Q31.
//
// Bounds, whatever the samples are. A windowed sample is at most its weight, and the weights of a
// long window sum to 2^24, those of a short one to 2^22: so much is a line at most. The weights'
// squares sum to 384 and 96 * 2^30, which makes the energy of all N lines 1024 * 384 * 2^30 or 256
// * 96 * 2^30 at most (Parseval): below 2^49 in one channel, and, (|L| + |R|)^2 / 2 being at most
// twice the greater one's energy, below 2^50 in mid and side. A partition's energy is part of that,
// a spread one a weighted mean, a threshold at most an energy or one in quiet, below 2^42. All of
// them stay below 2^52: 40 times an energy, 16 times a threshold and sums over all partitions fit
// in 64 bits, and so do sums of their halves of 26 bits times Q31.
#pragma once

#include <zetac.h>

#include "tables/mp3_psy.h"

namespace zetac::mp3enc {

using tables::kPsySfbLong;
using tables::kPsySfbShort;
using tables::PsyTables;

inline constexpr int kLongBlockLen = 1024;
inline constexpr int kShortBlockLen = 256;
inline constexpr int kLongSpectrum = kLongBlockLen / 2 + 1;
inline constexpr int kShortSpectrum = kShortBlockLen / 2 + 1;
inline constexpr int kWindows = 3;           // short blocks of a granule
inline constexpr int kAnalysisChannels = 4;  // left, right, mid, side
inline constexpr int kPartitionsLong = 64;   // rounded up
inline constexpr int kPartitionsShort = 42;

// Lines with a measured unpredictability; the ones above have a constant.
inline constexpr int kPredictedLines = 206;
inline constexpr int kPredictedRoom = 208;
inline constexpr int kFirstShortLine = 2;  // serves long lines 6..9, the next one 10..13, and so on
static_assert(ZETAC_MP3_PSY_LONG_LINES + 4 * ZETAC_MP3_PSY_SHORT_LINES == kPredictedLines);

enum BlockType { kNormal, kStart, kShort, kStop };

struct Spectra {
    Zet32sc longLines[2][kLongSpectrum];
    Zet32sc shortLines[2][kWindows][kShortSpectrum];
    Zet32s unpredictability[2][kPredictedRoom];
};

struct LongThresholds {
    uint64_t spread[kPartitionsLong];     // ecb
    uint64_t threshold[kPartitionsLong];  // nb
};
struct ShortThresholds {
    uint64_t spread[(kPartitionsShort + 7) / 8 * 8];
    uint64_t threshold[kPartitionsShort];
};

// What the work buffer holds: one granule.
struct Workspace {
    uint64_t energyLong[kAnalysisChannels][kPartitionsLong];            // eb
    uint64_t unpredictabilityLong[kAnalysisChannels][kPartitionsLong];  // cb
    uint64_t energyShort[kAnalysisChannels][kWindows][kPartitionsShort];
    union {  // the spectra are done with when thresholds begin
        Spectra spectra;
        struct {
            LongThresholds longBlock[kAnalysisChannels];
            ShortThresholds shortBlocks[kAnalysisChannels][kWindows];
        } thresholds;
    };
};
static_assert(sizeof(Workspace) + 4 <= ZETAC_MP3_PSY_BUFFER_LEN, "4 bytes go into alignment");

struct PsyKernels;

// The call's view of everything.
struct PsyContext {
    const PsyTables& tables;
    const PsyKernels& kernels;
    ZetMP3PsyState& state;
    Workspace& work;
    int channels;          // 1 or 2
    int analysisChannels;  // 1, 2 or 4
};

// Ratios of one granule and analysis channel, as the state holds them.
struct BandRatios {
    Zet32s ratioLong[36];
    Zet32s ratioShort[36];
};

// c = |X - X^| / (|X| + |X^|), Q31, where X^ continues the last two spectra in magnitude and phase:
// lines 0..5, from spectra a granule apart.
void ownsCalUnpredictMeasureCw06_Psy_MP3(const Zet32sc* spectrum, ZetMP3PsyChannelState& state,
                                         Zet32s* unpredictability);

// Thresholds nb of all analysis channels from energies and unpredictabilities of the partitions.
void ownsCalSpreadedEnergyThreshold_Psy_MP3(const PsyContext& context);
void ownsCalSpreadedEnergyThresholdShort_Psy_MP3(const PsyContext& context);

// The four channels of one partition: bounds thresholds by what the other pair lets be heard.
struct CoupledChannels {
    uint64_t* threshold[kAnalysisChannels];
    const uint64_t* spread[kAnalysisChannels];
};
void ownsMSThresholdCoupling_Psy_MP3(const CoupledChannels& channels, const Zet32s* bmld,
                                     int count);

// Perceptual entropy of one analysis channel: bits, in units of the decimal logarithm.
Zet32s ownsCalPerceptualEntropy_Psy_MP3(const PsyContext& context, int channel);

// Threshold over energy of the scale-factor bands of one analysis channel.
struct RatiosWanted {
    bool longBands;
    bool shortBands;
};
void ownsConvertThresholdToSfb_Psy_MP3(const PsyContext& context, int channel, RatiosWanted wanted,
                                       BandRatios& ratios);

// Chooses the block type of the granule analysed (pe: its entropies) and settles that of the
// granule before, whose side information it writes.
void ownsSwitchBlockType_Psy_MP3(const PsyContext& context, const Zet32s* pe,
                                 ZetMP3GranuleSideInfo* sideInfo);

// Of a joint-stereo frame: 1 for M/S. pe and sideInfo are those of the granules to be output.
int ownsCalStereoMode_Psy_MP3(const Zet32s* const (&pe)[2], const ZetMP3GranuleSideInfo* sideInfo,
                              int granules);

}  // namespace zetac::mp3enc
