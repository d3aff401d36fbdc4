// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/encode/band_layout.h"

#include "tables/table.h"

namespace zetac::mp3 {
namespace {

constexpr int kRates = 3;

constexpr ZetMP3Header headerOf(int sampling_frequency) {
    ZetMP3Header header{};
    header.ID = 1;
    header.sampling_frequency = sampling_frequency;
    return header;
}
constexpr int scfsiGroupOf(int longBand) {
    int group = 0;
    while (group < kScfsiGroups - 1 && longBand >= kScfsiGroupStart[group + 1]) ++group;
    return group;
}

// The ratio of the first window of the short band where a line of a long block lies.
constexpr Zet16s shortRatioAt(int rate, int line) {
    int band = 0;
    while (kWindows * shortBandsOf(headerOf(rate))[band + 1] <= line) ++band;
    return static_cast<Zet16s>(kWindows * band);
}

constexpr void addLong(BandLayout& layout, int rate, int numBands, bool isMixed) {
    const Zet16s* starts = longBandsOf(headerOf(rate));
    for (int b = 0; b < numBands; ++b) {
        const bool isCoded = b < kCodedLongBands;
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
    const Zet16s* starts = shortBandsOf(headerOf(rate));
    int place = layout.count;
    for (int b = firstBand; b < kShortBands; ++b) {
        const int width = starts[b + 1] - starts[b];
        const bool isCoded = b < kCodedShortBands;
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

constexpr BandLayout makeLayout(int rate, BlockKind kind) {
    BandLayout layout{};
    addLong(layout, rate, numLongBands(kind, true), kind == kMixedBlock);
    if (kind != kLongBlock) addShort(layout, rate, firstShortBand(kind));
    return layout;
}

using Layouts = tables::Table<BandLayout, kRates * kBlockKinds>;

constexpr Layouts makeLayouts() {
    Layouts table{};
    for (int i = 0; i < kRates * kBlockKinds; ++i)
        table.values[i] = makeLayout(i / kBlockKinds, static_cast<BlockKind>(i % kBlockKinds));
    return table;
}
constexpr Layouts kLayouts = makeLayouts();

}  // namespace

const Zet16s* longBandStarts(int sampling_frequency) {
    return longBandsOf(headerOf(sampling_frequency));
}

const BandLayout& bandLayout(int sampling_frequency, const ZetMP3GranuleSideInfo& info) {
    return kLayouts[sampling_frequency * kBlockKinds + blockKindOf(info)];
}

}  // namespace zetac::mp3
