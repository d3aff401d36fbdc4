// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "sbr/header.h"

#include <tuple>

namespace zetac::codec {

SbrHeader SbrHeader::read(SbrBits& bits) {
    SbrHeader h;
    h.bs_amp_res = bits.number(1);
    h.bs_start_freq = bits.number(4);
    h.bs_stop_freq = bits.number(4);
    h.bs_xover_band = bits.number(3);
    bits.skip(2);  // bs_reserved
    const bool bs_header_extra_1 = bits.flag();
    const bool bs_header_extra_2 = bits.flag();
    if (bs_header_extra_1) {
        h.bs_freq_scale = bits.number(2);
        h.bs_alter_scale = bits.number(1);
        h.bs_noise_bands = bits.number(2);
    }
    if (bs_header_extra_2) {
        h.bs_limiter_bands = bits.number(2);
        h.bs_limiter_gains = bits.number(2);
        h.bs_interpol_freq = bits.number(1);
        h.bs_smoothing_mode = bits.number(1);
    }
    return h;
}

bool SbrHeader::hasBandsOf(const SbrHeader& o) const {
    return std::tie(bs_start_freq, bs_stop_freq, bs_xover_band, bs_freq_scale, bs_alter_scale,
                    bs_noise_bands) == std::tie(o.bs_start_freq, o.bs_stop_freq, o.bs_xover_band,
                                                o.bs_freq_scale, o.bs_alter_scale,
                                                o.bs_noise_bands);
}

}  // namespace zetac::codec
