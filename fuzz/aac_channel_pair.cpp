// Both forms of the channel pair reader.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac_input.h"

using namespace zetac::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    AacInput input(data, size);
    const bool isMp4 = input.argument(0, 1);
    const int predSfbMax = input.argument(0, isMp4 ? 51 : 41);
    const int audioObjectType = input.argument(0, 16);
    *input.pOffset() = input.argument(0, 7);
    ZetAACIcsInfo ics = {};
    ZetAACChanPairElt pair = {};
    ZetAACLtpInfo ltp[2] = {};
    const ZetStatus status =
        isMp4
            ? zetsDecodeChanPairElt_MP4_AAC(input.ppStream(), input.pOffset(), &ics, &pair, ltp,
                                            predSfbMax, audioObjectType)
            : zetsDecodeChanPairElt_AAC(input.ppStream(), input.pOffset(), &ics, &pair, predSfbMax);
    input.requirePosition();
    if (status != zetStsOk) {
        require(status == zetStsAacMaxSfbErr && ics.max_sfb > ZETAC_AAC_SFB_MAX);
        return 0;
    }
    if (!pair.common_window) return 0;
    requireIcs(ics);
    requireLtp(ltp[0]);
    requireLtp(ltp[1]);
    return 0;
}
