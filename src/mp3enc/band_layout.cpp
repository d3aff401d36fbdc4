#include "mp3enc/band_layout.h"

#include "tables/mp3_requant.h"
#include "tables/mp3_sfb.h"
#include "tables/table.h"

namespace zetac::mp3enc {
namespace {

constexpr int kRates = 3;
constexpr int kMpeg1Row = 3;          // of the band tables
constexpr int kLongBandsOfMixed = 8;  // lines 0..35
constexpr int kFirstShortOfMixed = 3;
constexpr int kFirstUpperShortBand = 6;
constexpr int kFirstUpperLongBand = 11;

enum BlockKind { kLong, kShort, kMixed, kKinds };

constexpr const Zet16s* longStarts(int rate) {
    return tables::_zet_pMP3SfbTableLong + (kMpeg1Row + rate) * tables::kMP3SfbLongEntries;
}
constexpr const Zet16s* shortStarts(int rate) {
    return tables::_zet_pMP3SfbTableShort + (kMpeg1Row + rate) * tables::kMP3SfbShortEntries;
}

constexpr int scfsiGroupOf(int longBand) {
    return longBand < 6 ? 0 : longBand < 11 ? 1 : longBand < 16 ? 2 : 3;
}

// The ratio of the first window of the short band where a line of a long block lies.
constexpr Zet16s shortRatioAt(int rate, int line) {
    int band = 0;
    while (kWindows * shortStarts(rate)[band + 1] <= line) ++band;
    return static_cast<Zet16s>(kWindows * band);
}

constexpr void addLong(BandLayout& layout, int rate, int numBands, bool isMixed) {
    const Zet16s* starts = longStarts(rate);
    for (int b = 0; b < numBands; ++b) {
        const bool isCoded = b < kLongBands - 1;
        Band& band = layout.bands[layout.count++];
        band.start = starts[b];
        band.width = static_cast<Zet16s>(starts[b + 1] - starts[b]);
        band.number = static_cast<Zet16s>(b);
        band.stepClass = kLongClass;
        band.scaleFactor = static_cast<Zet16s>(isCoded ? b : kNoScaleFactor);
        band.upper = b >= kFirstUpperLongBand;
        band.scfsiGroup = static_cast<Zet16s>(scfsiGroupOf(b));
        band.ratio = isMixed ? shortRatioAt(rate, starts[b]) : static_cast<Zet16s>(b - !isCoded);
        band.pretab = tables::kMP3Pretab[b];
        if (isCoded) ++(band.upper ? layout.numUpper : layout.numLower);
    }
}

constexpr void addShort(BandLayout& layout, int rate, int firstBand) {
    const Zet16s* starts = shortStarts(rate);
    int place = layout.count;
    for (int b = firstBand; b < kShortBands; ++b) {
        const int width = starts[b + 1] - starts[b];
        const bool isCoded = b < kShortBands - 1;
        for (int window = 0; window < kWindows; ++window) {
            Band& band = layout.bands[layout.count++];
            band.start = static_cast<Zet16s>(kWindows * starts[b] + window * width);
            band.width = static_cast<Zet16s>(width);
            band.number = static_cast<Zet16s>(b);
            band.stepClass = static_cast<Zet16s>(window);
            band.scaleFactor = static_cast<Zet16s>(isCoded ? place++ : kNoScaleFactor);
            band.upper = b >= kFirstUpperShortBand;
            band.ratio = static_cast<Zet16s>(kWindows * (b - !isCoded) + window);
            if (isCoded) ++(band.upper ? layout.numUpper : layout.numLower);
        }
    }
    layout.hasShort = true;
}

constexpr BandLayout makeLayout(int rate, int kind) {
    BandLayout layout{};
    if (kind == kLong) addLong(layout, rate, kLongBands, false);
    if (kind == kMixed) addLong(layout, rate, kLongBandsOfMixed, true);
    if (kind != kLong) addShort(layout, rate, kind == kMixed ? kFirstShortOfMixed : 0);
    return layout;
}

constexpr tables::Table<BandLayout, kRates * kKinds> makeLayouts() {
    tables::Table<BandLayout, kRates * kKinds> table{};
    for (int i = 0; i < kRates * kKinds; ++i) table.values[i] = makeLayout(i / kKinds, i % kKinds);
    return table;
}
constexpr tables::Table<BandLayout, kRates* kKinds> kLayouts = makeLayouts();

}  // namespace

const Zet16s* longBandStarts(int sampling_frequency) {
    return longStarts(sampling_frequency);
}

const BandLayout& bandLayout(int sampling_frequency, const ZetMP3GranuleSideInfo& info) {
    const BlockKind kind = info.block_type != 2         ? kLong
                           : info.mixed_block_flag == 0 ? kShort
                                                        : kMixed;
    return kLayouts[sampling_frequency * kKinds + kind];
}

}  // namespace zetac::mp3enc
