// What may be wrong with the data of SBR.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "base/fault.h"

namespace zetac::codec {

struct SbrFault {
    static constexpr Fault kTruncated{Fault::Domain::kSbr, 1, "the SBR data end too early"};
    static constexpr Fault kCrc{Fault::Domain::kSbr, 2, "the CRC of the SBR data does not match"};
    static constexpr Fault kHeader{Fault::Domain::kSbr, 3, "an SBR header with impossible bands"};
    static constexpr Fault kGrid{Fault::Domain::kSbr, 4, "SBR envelopes with impossible borders"};
    static constexpr Fault kValue{Fault::Domain::kSbr, 5, "an SBR scale factor out of range"};
    static constexpr Fault kParametricStereo{
        Fault::Domain::kSbr, 6, "the parametric stereo data are damaged; the last ones hold"};
};

}  // namespace zetac::codec
