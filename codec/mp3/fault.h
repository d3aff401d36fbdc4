// What may be wrong with frames of MPEG audio.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "base/fault.h"

namespace zetac::codec {

struct Mp3Fault {
    static constexpr Fault kMissingMainData{Fault::Domain::kMp3, 1,
                                            "the frame needs data from before what is here"};
    static constexpr Fault kMainDataOverrun{Fault::Domain::kMp3, 2,
                                            "the granules are longer than the main data"};
    static constexpr Fault kScaleFactorsOverrun{Fault::Domain::kMp3, 3,
                                                "the scale factors are longer than their granule"};
    static constexpr Fault kUnsupportedLayer1{
        Fault::Domain::kMp3, 4, "is MPEG audio Layer I, which is not supported; Layer III is",
        true};
    static constexpr Fault kUnsupportedLayer2{
        Fault::Domain::kMp3, 5, "is MPEG audio Layer II, which is not supported; Layer III is",
        true};
    static constexpr Fault kUnsupportedVersion25{
        Fault::Domain::kMp3, 6, "is MPEG-2.5, which is not supported; MPEG-1 and MPEG-2 are", true};
};

}  // namespace zetac::codec
