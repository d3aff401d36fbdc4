// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac_channel.h"

using namespace zetac::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    AacInput input(data, size);
    AacChannel channel(input.argument(0, 11));
    *input.pOffset() = input.argument(0, 7);
    const ZetStatus status = zetsNoiselessDecoder_LC_AAC(
        input.ppStream(), input.pOffset(), 0, &channel.info, channel.scaleFactor.data(),
        channel.spectrum.data(), channel.sfbCb.data(), channel.tnsCoef.data());
    input.requirePosition();
    if (status != zetStsOk) return 0;
    requireIcs(channel.ics);
    channel.requireDecoded(channel.ics.max_sfb, channel.ics.num_window_groups);
    return 0;
}
