// Psychoacoustic model two in double precision: the formulas of ISO/IEC 11172-3, Annex D, on a
// whole signal at once, with the constants that the library documents.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <array>
#include <vector>

namespace zetac::test {

// Partitions of one length of block. Ranges are of lines or partitions, the end behind.
struct PsyModelBlock {
    std::vector<int> firstLine;                  // with the end behind
    std::vector<std::vector<double>> spreading;  // [masked][masker]
    std::vector<double> bmld;
    std::vector<double> quiet;
    std::vector<double> ratio;   // threshold over spread energy, short blocks only
    std::vector<int> bandStart;  // partition of each boundary
    std::vector<double> bandWeight;
};

struct PsyModelGranule {
    std::array<double, 4> pe{};
    std::vector<double> ratioLong[4], ratioShort[4];  // at most 1; short: [band * 3 + window]
    int type = 0;                                     // as finally settled
    // How far the decisions are from tipping over: the smallest relative distance of an entropy or
    // a quotient of energies from its limit.
    double margin = 1;
};

// pcm: interleaved, granules * 576 + 448 steps. channels: 1 or 2; joint adds mid and side.
std::vector<PsyModelGranule> modelPsychoacoustics(const PsyModelBlock& longBlock,
                                                  const PsyModelBlock& shortBlock,
                                                  const std::vector<Zet16s>& pcm, int channels,
                                                  bool joint, int granules);

}  // namespace zetac::test
