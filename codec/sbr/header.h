// sbr_header() (ISO/IEC 14496-3, 4.4.2.8).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr/bits.h"

namespace zetac::codec {

struct SbrHeader {
    int bs_amp_res = 0;
    int bs_start_freq = 0;
    int bs_stop_freq = 0;
    int bs_xover_band = 0;
    // bs_header_extra_1
    int bs_freq_scale = 2;
    int bs_alter_scale = 1;
    int bs_noise_bands = 2;
    // bs_header_extra_2
    int bs_limiter_bands = 2;
    int bs_limiter_gains = 2;
    int bs_interpol_freq = 1;
    int bs_smoothing_mode = 1;

    static SbrHeader read(SbrBits& bits);

    /** Whether both make the same frequency tables; others reset the decoder. */
    bool hasBandsOf(const SbrHeader& other) const;
};

}  // namespace zetac::codec
