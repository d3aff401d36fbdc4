// Both MPEG-4 forms, stand-alone and behind the header of a scalable layer.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac_channel.h"

using namespace zetac::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    AacInput input(data, size);
    const auto decode =
        input.argument(0, 1) ? zetsNoiselessDecode_MP4_AAC : zetsNoiselessDecode_AAC;
    const int scalableFlag = input.argument(0, 1);
    const int audioObjectType = input.argument(0, 16);
    AacChannel channel(input.argument(0, 11));
    channel.info.predSfbMax = input.argument(0, 51);
    ZetAACMainHeader header = {};
    Zet8u** ppStream = input.ppStream();
    if (scalableFlag) zetsDecodeMainHeader_AAC(ppStream, input.pOffset(), &header, 1, 0);
    const int maxSfb = header.max_sfb > 51 ? 51 : header.max_sfb;
    const ZetStatus status =
        decode(ppStream, input.pOffset(), &header, channel.scaleFactor.data(),
               channel.spectrum.data(), channel.sfbCb.data(), channel.tnsCoef.data(), &channel.info,
               header.window_sequence, maxSfb, 0, scalableFlag, audioObjectType);
    input.requirePosition();
    if (status != zetStsOk) return 0;
    if (scalableFlag) {
        channel.info.tns_data_present = 0;
        channel.requireDecoded(maxSfb, header.num_window_groups);
        return 0;
    }
    requireIcs(channel.ics);
    requireLtp(header.ltp[0]);
    channel.requireDecoded(channel.ics.max_sfb, channel.ics.num_window_groups);
    return 0;
}
