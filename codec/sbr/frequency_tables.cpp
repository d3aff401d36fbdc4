// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/frequency_tables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace zetac::codec {
namespace {

using Table = SbrBandTable<kSbrBandsMax>;

int nint(double value) {
    return static_cast<int>(std::floor(value + 0.5));
}

// --- Start and stop -----------------------------------------------------------------------------

/** The lowest start, or with two the lowest stop, is at 3, 4 or 5 kHz. */
int lowestBand(int sampleRate, int factor) {
    const int base = sampleRate < 32000 ? 3000 : sampleRate < 64000 ? 4000 : 5000;
    return nint(factor * base * 128. / sampleRate);
}

int startBand(int bs_start_freq, int sampleRate) {
    struct Row {
        int rateMax;
        int8_t offset[16];
    };
    static constexpr Row kRows[] = {
        {16000, {-8, -7, -6, -5, -4, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7}},
        {22050, {-5, -4, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 9, 11, 13}},
        {24000, {-5, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 9, 11, 13, 16}},
        {32000, {-6, -4, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 9, 11, 13, 16}},
        {64000, {-4, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 9, 11, 13, 16, 20}},
        {96000, {-2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 9, 11, 13, 16, 20, 24}},
    };
    const auto row = std::find_if(std::begin(kRows), std::end(kRows) - 1,
                                  [&](const Row& r) { return sampleRate <= r.rateMax; });
    return lowestBand(sampleRate, 1) + row->offset[bs_start_freq];
}

int stopBand(int bs_stop_freq, int k0, int sampleRate) {
    if (bs_stop_freq >= 14) return std::min(kQmfBands, (bs_stop_freq - 12) * k0);
    const int stopMin = lowestBand(sampleRate, 2);
    const auto edge = [&](int p) {
        return nint(stopMin * std::pow(static_cast<double>(kQmfBands) / stopMin, p / 13.));
    };
    std::array<int, 13> widths{};
    for (int p = 0; p < 13; ++p) widths[static_cast<size_t>(p)] = edge(p + 1) - edge(p);
    std::sort(widths.begin(), widths.end());
    int stop = stopMin;
    for (int p = 0; p < bs_stop_freq; ++p) stop += widths[static_cast<size_t>(p)];
    return std::min(kQmfBands, stop);
}

// --- The master table ---------------------------------------------------------------------------

/** Widths of the bands of one region, in ascending order. */
struct Widths {
    int bands = 0;
    int width[kQmfBands] = {};

    int* begin() { return width; }
    int* end() { return width + bands; }
    void sort() { std::sort(begin(), end()); }
    int smallest() const { return width[0]; }
    int largest() const { return width[bands - 1]; }
};

void append(const Widths& widths, Table& table) {
    for (int i = 0; i < widths.bands; ++i) table.add(table.end() + widths.width[i]);
}

/** bs_freq_scale 0: bands of one or two subbands; what is left over changes single bands. */
std::optional<Widths> linearWidths(int k0, int k2, int bs_alter_scale) {
    const int width = bs_alter_scale + 1;
    Widths widths;
    widths.bands = width == 1 ? (k2 - k0) / 2 * 2 : 2 * nint((k2 - k0) / 4.);
    if (widths.bands < 1) return std::nullopt;
    std::fill(widths.begin(), widths.end(), width);
    int rest = k2 - k0 - widths.bands * width;
    for (int i = 0; rest < 0; ++i, ++rest) --widths.width[i];
    for (int i = widths.bands; rest > 0; --rest) ++widths.width[--i];
    return widths;
}

/** Bands of about equal width on a logarithmic scale. */
std::optional<Widths> logarithmicWidths(int from, int to, double bandsPerOctave) {
    const double ratio = static_cast<double>(to) / from;
    Widths widths;
    widths.bands = 2 * nint(bandsPerOctave * std::log2(ratio) / 2);
    if (widths.bands < 1 || widths.bands > kSbrBandsMax) return std::nullopt;
    int edge = from;
    for (int i = 0; i < widths.bands; ++i) {
        const int next = nint(from * std::pow(ratio, (i + 1.) / widths.bands));
        widths.width[i] = next - edge;
        edge = next;
    }
    widths.sort();
    if (widths.smallest() < 1) return std::nullopt;
    return widths;
}

std::optional<Table> logarithmicTable(int k0, int k2, const SbrHeader& header) {
    static constexpr int kBandsPerOctave[] = {0, 12, 10, 8};
    const double bandsPerOctave = kBandsPerOctave[header.bs_freq_scale];
    const bool hasTwoRegions = k2 > 2.2449 * k0;
    const int k1 = hasTwoRegions ? 2 * k0 : k2;
    const auto lower = logarithmicWidths(k0, k1, bandsPerOctave);
    if (!lower) return std::nullopt;
    Table table;
    table.edge[0] = static_cast<uint8_t>(k0);
    append(*lower, table);
    if (!hasTwoRegions) return table;

    auto upper = logarithmicWidths(k1, k2, bandsPerOctave / (header.bs_alter_scale ? 1.3 : 1.0));
    if (!upper || lower->bands + upper->bands > kSbrBandsMax) return std::nullopt;
    if (upper->smallest() < lower->largest()) {
        const int change = std::min(lower->largest() - upper->smallest(),
                                    (upper->largest() - upper->smallest()) / 2);
        upper->width[0] += change;
        upper->width[upper->bands - 1] -= change;
        upper->sort();
    }
    append(*upper, table);
    return table;
}

std::optional<Table> masterTable(const SbrHeader& header, int sampleRate) {
    const int k0 = startBand(header.bs_start_freq, sampleRate);
    const int k2 = stopBand(header.bs_stop_freq, k0, sampleRate);
    const int countMax = sampleRate <= 32000 ? 48 : sampleRate <= 44100 ? 35 : 32;
    if (k2 <= k0 || k2 - k0 > countMax) return std::nullopt;
    if (header.bs_freq_scale != 0) return logarithmicTable(k0, k2, header);
    const auto widths = linearWidths(k0, k2, header.bs_alter_scale);
    if (!widths) return std::nullopt;
    Table table;
    table.edge[0] = static_cast<uint8_t>(k0);
    append(*widths, table);
    return table;
}

// --- The tables made from it --------------------------------------------------------------------

void makeEnvelopeTables(const Table& master, int bs_xover_band, SbrFrequencyTables& t) {
    t.high.bands = master.bands - bs_xover_band;
    std::copy_n(master.edge + bs_xover_band, t.high.bands + 1, t.high.edge);
    const int odd = t.high.bands % 2;
    t.low.bands = (t.high.bands + 1) / 2;
    t.low.edge[0] = t.high.edge[0];
    for (int i = 1; i <= t.low.bands; ++i) t.low.edge[i] = t.high.edge[2 * i - odd];
}

/** Where there are more noise bands than low ones, some are empty. */
bool makeNoiseTable(int bs_noise_bands, SbrFrequencyTables& t) {
    const double octaves = std::log2(static_cast<double>(t.high.end()) / t.kx());
    const int bands = std::max(1, nint(bs_noise_bands * octaves));
    if (bands > kSbrNoiseBandsMax) return false;
    t.noise.edge[0] = t.low.edge[0];
    for (int j = 1, i = 0; j <= bands; ++j) {
        i += (t.low.bands - i) / (bands + 1 - j);
        t.noise.add(t.low.edge[i]);
    }
    return true;
}

/** Patch construction of 4.6.18.6.3. A round places a patch or starts again from the crossover, so
 *  twice the number of patches is more than enough of them. */
bool makePatches(const Table& master, int sampleRate, SbrFrequencyTables& t) {
    const int goal = nint(2048000. / sampleRate);
    const int end = t.high.end();
    int source = t.k0;    // msb: below it lies what can be copied
    int target = t.kx();  // usb
    int k = master.bands;
    if (goal < end)
        k = static_cast<int>(std::lower_bound(master.edge, master.edge + k, goal) - master.edge);
    for (int round = 0; round < 2 * kSbrPatchesMax; ++round) {
        int j = k;
        int odd = 0;
        const auto isTooHigh = [&] {
            odd = (master.edge[j] + t.k0) % 2;
            return master.edge[j] > t.k0 - 1 + source - odd;
        };
        while (isTooHigh()) {
            if (--j < 0) return false;
        }
        const int sb = master.edge[j];
        const int bands = std::max(sb - target, 0);
        if (bands > 0) {
            if (t.patches == kSbrPatchesMax) return false;
            t.patch[t.patches++] = {t.k0 - odd - bands, target, bands};
            source = target = sb;
        } else {
            source = t.kx();
        }
        if (master.edge[k] - sb < 3) k = master.bands;
        if (sb == end) {
            if (t.patches > 1 && t.patch[t.patches - 1].bands < 3) --t.patches;
            return t.patches > 0;
        }
    }
    return false;
}

/** Limiter bands of 4.6.18.3.2.3: low resolution bands cut at the patches, without those that are
 *  too narrow. */
void makeLimiterTable(int bs_limiter_bands, SbrFrequencyTables& t) {
    t.limiter.edge[0] = static_cast<uint8_t>(t.kx());
    if (bs_limiter_bands == 0) {
        t.limiter.add(t.high.end());
        return;
    }
    uint8_t borders[kSbrPatchesMax + 1];
    int borderCount = 0;
    for (int i = 0; i < t.patches; ++i)
        borders[borderCount++] = static_cast<uint8_t>(t.patch[i].target);
    borders[borderCount++] = static_cast<uint8_t>(t.high.end());
    const auto isBorder = [&](int edge) {
        return std::find(borders, borders + borderCount, edge) != borders + borderCount;
    };
    uint8_t edges[kSbrBandsMax + kSbrPatchesMax + 1];
    uint8_t* const end = std::merge(t.low.edge, t.low.edge + t.low.bands + 1, borders + 1,
                                    borders + borderCount - 1, edges);
    static constexpr double kBandsPerOctave[] = {0, 1.2, 2, 3};
    // Bands narrower than 0.49 of what their number per octave says are merged.
    const double narrow = std::exp2(0.49 / kBandsPerOctave[bs_limiter_bands]);
    for (const uint8_t* edge = edges + 1; edge != end; ++edge) {
        uint8_t& last = t.limiter.edge[t.limiter.bands];
        const bool isNarrow = *edge < last * narrow;
        if (isNarrow && (*edge == last || !isBorder(*edge))) continue;
        if (isNarrow && !isBorder(last)) {
            last = *edge;
        } else {
            t.limiter.add(*edge);
        }
    }
}

}  // namespace

SbrFrequencyTables::Range SbrFrequencyTables::sources() const {
    Range range{kQmfBands, 0};
    for (int i = 0; i < patches; ++i) {
        range.first = std::min(range.first, patch[i].source);
        range.end = std::max(range.end, patch[i].source + patch[i].bands);
    }
    return range;
}

std::optional<SbrFrequencyTables> SbrFrequencyTables::make(const SbrHeader& header,
                                                           int sampleRate) {
    const auto master = masterTable(header, sampleRate);
    if (!master || header.bs_xover_band >= master->bands) return std::nullopt;
    SbrFrequencyTables t;
    t.k0 = master->first();
    makeEnvelopeTables(*master, header.bs_xover_band, t);
    if (t.kx() > kQmfBands / 2 || t.high.end() > kQmfBands) return std::nullopt;
    if (!makeNoiseTable(header.bs_noise_bands, t)) return std::nullopt;
    if (!makePatches(*master, sampleRate, t)) return std::nullopt;
    makeLimiterTable(header.bs_limiter_bands, t);
    return t;
}

}  // namespace zetac::codec
