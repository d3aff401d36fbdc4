// The outputs of the noiseless decoders, each in a heap block of its documented size, and what
// holds of them.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "aac_input.h"

namespace zetac::fuzz {

struct AacChannel {
    ZetAACIcsInfo ics = {};
    ZetAACChanInfo info = {};
    std::vector<Zet16s> scaleFactor = std::vector<Zet16s>(ZETAC_AAC_GROUP_BANDS_MAX);
    std::vector<Zet32s> spectrum = std::vector<Zet32s>(ZETAC_AAC_FRAME_LEN, 1 << 20);
    std::vector<Zet8u> sfbCb = std::vector<Zet8u>(ZETAC_AAC_GROUP_BANDS_MAX);
    std::vector<Zet8s> tnsCoef = std::vector<Zet8s>(ZETAC_AAC_TNS_COEFS_MAX);

    explicit AacChannel(int samplingFreqIndex) {
        info.sampling_frequency_index = samplingFreqIndex;
        info.pIcsInfo = &ics;
    }

    // After a success: every line is written, sections end at maxSfb, scalefactors are in range.
    void requireDecoded(int maxSfb, int numGroups) const {
        constexpr int kLargest = 8191 + 4 * 15;  // all four pulses on one line
        for (Zet32s line : spectrum) require(-kLargest <= line && line <= kLargest);
        int section = 0;
        for (int g = 0; g < numGroups; ++g) {
            section += info.num_sec[g];
            require(section <= ZETAC_AAC_GROUP_BANDS_MAX);
            require(maxSfb == 0 || info.sect_end[section - 1] == maxSfb);
        }
        for (int band = 0; band < numGroups * maxSfb; ++band) {
            require(sfbCb[static_cast<size_t>(band)] != zetAacReservedCb);
            if (sfbCb[static_cast<size_t>(band)] > zetAacEscapeCb) continue;
            const Zet16s value = scaleFactor[static_cast<size_t>(band)];
            require(0 <= value && value <= 255);
        }
        if (info.tns_data_present) requireTns(info.tns, tnsCoef.data(), info.num_windows == 8);
    }
};

}  // namespace zetac::fuzz
