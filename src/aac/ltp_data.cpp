// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/ltp_data.h"

#include <algorithm>

#include "tables/aac/dequant.h"

namespace zetac::aac {
namespace {

void readLongBands(BitReader& stream, int maxSfb, ZetAACLtpInfo& ltp) {
    const int coded = std::min(maxSfb, ZETAC_AAC_LTP_SFB_MAX);
    for (int sfb = 0; sfb < ZETAC_AAC_LTP_SFB_MAX; ++sfb)
        ltp.ltp_long_used[sfb] = sfb < coded ? ownsGetBits_AAC(stream, 1) : 0;
}

// The first window in use takes the lag of the frame, each later one the lag of the window in use
// before it, moved by -15..16 samples where ltp_short_lag_present says so.
void readShortWindows(BitReader& stream, ZetAACLtpInfo& ltp) {
    Zet32s lag = ltp.ltp_lag;
    bool isFirst = true;
    for (int w = 0; w < ZETAC_AAC_GROUPS_MAX; ++w) {
        ltp.ltp_short_used[w] = ownsGetBits_AAC(stream, 1);
        if (!ltp.ltp_short_used[w]) continue;
        ltp.ltp_short_lag_present[w] = isFirst ? 0 : ownsGetBits_AAC(stream, 1);
        if (ltp.ltp_short_lag_present[w]) lag = lag - ownsGetBits_AAC(stream, 5) + 16;
        ltp.ltp_short_lag[w] = lag;
        isFirst = false;
    }
}

}  // namespace

void readLtpData(BitReader& stream, bool isShort, int maxSfb, ZetAACLtpInfo& ltp) {
    ltp.ltp_lag = ownsGetBits_AAC(stream, 11);
    ltp.ltp_coef = tables::_Tab_LtpCoef_AAC[stream.get(3)];
    if (isShort)
        readShortWindows(stream, ltp);
    else
        readLongBands(stream, maxSfb, ltp);
}

void readOptionalLtpData(BitReader& stream, bool isShort, int maxSfb, ZetAACLtpInfo& ltp) {
    ltp.ltp_data_present = ownsGetBits_AAC(stream, 1);
    if (ltp.ltp_data_present) readLtpData(stream, isShort, maxSfb, ltp);
}

}  // namespace zetac::aac
