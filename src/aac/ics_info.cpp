// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/ics_info.h"

#include <algorithm>

#include "aac/ltp_data.h"

namespace zetac::aac {
namespace {

constexpr int kMainProfile = 1;  // audio object type

ZetStatus readLongWindow(BitReader& stream, ZetAACIcsInfo& ics) {
    ics.num_window_groups = 1;
    ics.window_group_length[0] = 1;
    ics.max_sfb = ownsGetBits_AAC(stream, 6);
    if (ics.max_sfb > ZETAC_AAC_SFB_MAX) return zetStsAacMaxSfbErr;
    ics.predictor_data_present = ownsGetBits_AAC(stream, 1);
    return zetStsOk;
}

// All of ics_info() but the prediction data.
ZetStatus readWindowInfo(BitReader& stream, ZetAACIcsInfo& ics) {
    ics.ics_reserved_bit = ownsGetBits_AAC(stream, 1);
    ics.window_sequence = ownsGetBits_AAC(stream, 2);
    ics.window_shape = ownsGetBits_AAC(stream, 1);
    ics.predictor_data_present = 0;
    ics.predictor_reset = 0;
    if (ics.window_sequence != zetAacEightShort) return readLongWindow(stream, ics);
    readShortWindows(stream, ics);
    return zetStsOk;
}

// The stream has a flag for every band below both limits; those beyond the record's room, which
// no sampling rate has, are passed over.
void readMainPrediction(BitReader& stream, ZetAACIcsInfo& ics, int predSfbMax) {
    constexpr int kRoom = sizeof ics.prediction_used;
    ics.predictor_reset = ownsGetBits_AAC(stream, 1);
    if (ics.predictor_reset) ics.predictor_reset_group_number = ownsGetBits_AAC(stream, 5);
    const int coded = std::min(ics.max_sfb, predSfbMax);
    getFlags(stream, ics.prediction_used, 0, std::min(coded, kRoom));
    for (int sfb = kRoom; sfb < coded; ++sfb) stream.skip(1);
    for (int sfb = std::max(coded, 0); sfb < std::min(predSfbMax, kRoom); ++sfb)
        ics.prediction_used[sfb] = 0;
}

}  // namespace

int deriveWindowGroups(Zet32s scaleFactorGrouping, Zet32s* groupLength) {
    int group = 0;
    groupLength[0] = 1;
    for (int bit = 6; bit >= 0; --bit) {
        if (scaleFactorGrouping >> bit & 1)
            ++groupLength[group];
        else
            groupLength[++group] = 1;
    }
    return group + 1;
}

ZetStatus readIcsInfo(BitReader& stream, ZetAACIcsInfo& ics, int predSfbMax) {
    const ZetStatus status = readWindowInfo(stream, ics);
    if (status == zetStsOk && ics.predictor_data_present)
        readMainPrediction(stream, ics, predSfbMax);
    return status;
}

ZetStatus readIcsInfoMp4(BitReader& stream, ZetAACIcsInfo& ics, int predSfbMax, int audioObjectType,
                         ZetAACLtpInfo* ltp, int numLtpChannels) {
    if (audioObjectType == kMainProfile) return readIcsInfo(stream, ics, predSfbMax);
    const ZetStatus status = readWindowInfo(stream, ics);
    if (status != zetStsOk || !ics.predictor_data_present) return status;
    for (int ch = 0; ch < numLtpChannels; ++ch)
        readOptionalLtpData(stream, false, ics.max_sfb, ltp[ch]);
    return zetStsOk;
}

}  // namespace zetac::aac
