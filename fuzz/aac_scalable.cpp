// The main header, then an extension header behind it in the same stream.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac_input.h"

using namespace zetac::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    AacInput input(data, size);
    const int channels = input.argument(1, 2);
    const int flags = input.argument(0, 7);
    const int prevMaxSfb = input.argument(0, 51);
    const int prevMaxSfbSecond = input.argument(0, 51);
    ZetAACMainHeader header = {};
    Zet8u** ppStream = input.ppStream();
    require(zetsDecodeMainHeader_AAC(ppStream, input.pOffset(), &header, channels, 0) == zetStsOk);
    input.requirePosition();
    requireGroups(header.window_sequence, header.num_window_groups, header.window_group_length);
    for (int ch = 0; ch < channels; ++ch) requireLtp(header.ltp[ch]);

    ZetAACExtHeader extension = {};
    const ZetStatus status = zetsDecodeExtensionHeader_AAC(
        ppStream, input.pOffset(), &extension, flags & 1, flags >> 1 & 1, flags >> 2, prevMaxSfb,
        prevMaxSfbSecond, header.window_sequence);
    input.requirePosition();
    require(status == (extension.max_sfb > 60 ? zetStsAacMaxSfbErr : zetStsOk));
    return 0;
}
