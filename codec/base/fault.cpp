// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "base/fault.h"

#include <algorithm>
#include <iterator>

namespace zetac::codec {
namespace {

struct StatusText {
    ZetStatus status;
    const char* text;
};

/** What the readers find wrong with a stream. */
constexpr StatusText kTexts[] = {
    {zetStsOutOfRange, "a value or a length out of range"},
    {zetStsAacTnsOrderErr, "a TNS filter of too high an order"},
    {zetStsAacTnsLengthErr, "a TNS filter that is too long"},
    {zetStsAacTnsNumFiltErr, "too many TNS filters"},
    {zetStsAacSectDataErr, "the sections do not end at the last band"},
    {zetStsAacGainControlErr, "gain control, which is not supported"},
    {zetStsAacPulseStartSfbErr, "pulse data out of range"},
    {zetStsAacMaxSfbErr, "more scalefactor bands than the sampling rate has"},
    {zetStsAacCoefValErr, "a quantised value out of range"},
    {zetStsAacSfValErr, "a scalefactor out of range"},
    {zetStsAacCodeBookErr, "a codebook that is not allowed"},
    {zetStsAacPrgNumErr, "more program config elements than are allowed"},
    {zetStsBadSideInfo, "side information out of range"},
};

}  // namespace

Fault faultOf(ZetStatus status) {
    if (status >= 0) return Fault::kNone;
    const auto* found = std::ranges::find(kTexts, status, &StatusText::status);
    const char* text = found == std::end(kTexts) ? "data that cannot be decoded" : found->text;
    return {Fault::Domain::kPrimitive, static_cast<uint16_t>(-status), text};
}

}  // namespace zetac::codec
