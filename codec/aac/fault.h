// What may be wrong with the raw data blocks of AAC.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "base/fault.h"

namespace zetac::codec {

struct AacFault {
    static constexpr Fault kLayoutChanged{Fault::Domain::kAac, 1,
                                          "the stream changes its channel layout here"};
    static constexpr Fault kElementUnexpected{
        Fault::Domain::kAac, 2, "an element that the channel configuration has no place for"};
    static constexpr Fault kElementRepeated{Fault::Domain::kAac, 3,
                                            "the same element twice in one frame"};
    static constexpr Fault kElementMissing{Fault::Domain::kAac, 4,
                                           "the frame ends before all channels have come"};
    static constexpr Fault kWindowsDiffer{
        Fault::Domain::kAac, 5, "intensity stereo between channels with different windows"};
    static constexpr Fault kNoLayout{Fault::Domain::kAac, 6,
                                     "audio before any program config element"};
    static constexpr Fault kPrediction{
        Fault::Domain::kAac, 7, "prediction, which the low-complexity profile does not have"};
    static constexpr Fault kUnsupportedProfile{
        Fault::Domain::kAac, 8, "the profile is not supported; AAC Main, LC and LTP are", true};
    static constexpr Fault kUnsupportedRate{Fault::Domain::kAac, 9,
                                            "the sampling rate is not supported", true};
    static constexpr Fault kUnsupportedLayout{
        Fault::Domain::kAac, 10, "the channel layout is not supported; one to eight channels are",
        true};
};

}  // namespace zetac::codec
