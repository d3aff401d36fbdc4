// The frequency band tables of SBR (ISO/IEC 14496-3, 4.6.18.3.2), in subbands of the QMF banks.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>
#include <optional>

#include "sbr/header.h"

namespace zetac::codec {

inline constexpr int kQmfBands = 64;
inline constexpr int kSbrBandsMax = 48;      // of one table, and subbands that SBR makes
inline constexpr int kSbrNoiseBandsMax = 5;  // noise floor bands
inline constexpr int kSbrPatchesMax = 6;

/** Bands as edges in ascending order: band i covers subbands edge[i] .. edge[i + 1] - 1. */
template <int bandsMax>
struct SbrBandTable {
    int bands = 0;
    uint8_t edge[bandsMax + 1] = {};

    int first() const { return edge[0]; }
    int end() const { return edge[bands]; }
    /** First column of a band in rows that begin with the table's first subband. */
    int column(int band) const { return edge[band] - edge[0]; }
    void add(int value) { edge[++bands] = static_cast<uint8_t>(value); }
};

/** Low subbands that are copied upwards. */
struct SbrPatch {
    int source;  // first subband that is copied
    int target;  // where it goes
    int bands;
};

struct SbrFrequencyTables {
    int k0 = 0;                       // first subband of the master table
    SbrBandTable<kSbrBandsMax> high;  // f_TableHigh
    SbrBandTable<kSbrBandsMax> low;   // f_TableLow
    SbrBandTable<kSbrNoiseBandsMax> noise;
    SbrBandTable<kSbrBandsMax> limiter;
    int patches = 0;
    SbrPatch patch[kSbrPatchesMax] = {};

    /** The crossover: the first subband that SBR makes. */
    int kx() const { return high.first(); }
    /** How many it makes. */
    int count() const { return high.end() - high.first(); }

    const SbrBandTable<kSbrBandsMax>& envelope(bool isHigh) const { return isHigh ? high : low; }

    struct Range {
        int first, end;
    };
    /** The low subbands that patches copy. */
    Range sources() const;

    /** Nothing when the header asks for what the standard does not allow.
     *  @param sampleRate  of the output, in hertz */
    static std::optional<SbrFrequencyTables> make(const SbrHeader& header, int sampleRate);
};

}  // namespace zetac::codec
