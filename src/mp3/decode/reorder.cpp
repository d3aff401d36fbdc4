// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/decode/reorder.h"

#include <algorithm>

#include "mp3/banks/subbands.h"
#include "tables/table.h"

namespace zetac::mp3 {
namespace {

constexpr int kShortLines = ZETAC_MP3_GRANULE_LEN / kWindows;

// Where line j of window 0 goes; window w is w * kWindowLines further on.
constexpr tables::Table<Zet16s, kShortLines> makePlaces() {
    tables::Table<Zet16s, kShortLines> table{};
    for (int j = 0; j < kShortLines; ++j)
        table.values[j] =
            static_cast<Zet16s>(kLinesPerSubband * (j / kWindowLines) + j % kWindowLines);
    return table;
}
constexpr tables::Table<Zet16s, kShortLines> kPlace = makePlaces();

bool hasNonZero(const Zet32s* line, int count) {
    Zet32s bits = 0;
    for (int i = 0; i < count; ++i) bits |= line[i];
    return bits != 0;
}

int lastNonZeroPlus1(const Zet32s* line, int count) {
    while (count > 0 && line[count - 1] == 0) --count;
    return count;
}

}  // namespace

void _sShortPreproc_MP3(const Zet32s* lines, const GranuleBands& bands, Reach& reach) {
    for (int window = 0; window < kWindows; ++window) {
        int end = kShortBands;
        for (; end > bands.firstShort; --end) {
            const Run run = bands.shortRun(end - 1, window);
            if (run.start < reach.lines &&
                hasNonZero(lines + run.start, std::min(run.count, reach.lines - run.start)))
                break;
        }
        reach.shortBands[window] = end;
    }
}

int _sReorder_MP3_32s(const Channel& channel, Zet32s* buffer) {
    const GranuleBands& bands = channel.bands;
    const int base = bands.longEnd();
    const int endBand = channel.reach.maxShortBands();
    const int count = bands.shortStart[endBand] - bands.shortStart[bands.firstShort];
    Zet32s* const dst = channel.lines + base;
    std::copy_n(dst, kWindows * count, buffer);

    const Zet32s* src = buffer;
    int j = 0;
    for (int band = bands.firstShort; band < endBand; ++band) {
        const int width = bands.shortRun(band, 0).count;
        for (int window = 0; window < kWindows; ++window) {
            Zet32s* const windowDst = dst + window * kWindowLines;
            for (int i = 0; i < width; ++i) windowDst[kPlace[j + i]] = *src++;
        }
        j += width;
    }
    for (; j % kWindowLines != 0; ++j)
        for (int window = 0; window < kWindows; ++window)
            dst[window * kWindowLines + kPlace[j]] = 0;
    return lastNonZeroPlus1(channel.lines, base + kWindows * j);
}

}  // namespace zetac::mp3
