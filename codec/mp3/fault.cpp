// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "mp3/fault.h"

#include "base/fault_message.h"

namespace zetac::codec {
namespace {

constexpr FaultMessage kMessages[] = {
    {0, "no fault"},
    {static_cast<int>(Mp3Fault::kTruncated), "the data end inside the frame"},
    {static_cast<int>(Mp3Fault::kCutShort), "the next frame begins inside this one"},
    {static_cast<int>(Mp3Fault::kCrcMismatch), "the CRC of the frame does not match its data"},
    {static_cast<int>(Mp3Fault::kMissingMainData), "the frame needs data from before what is here"},
    {static_cast<int>(Mp3Fault::kMainDataOverrun), "the granules are longer than the main data"},
    {static_cast<int>(Mp3Fault::kScaleFactorsOverrun),
     "the scale factors are longer than their granule"},
    {static_cast<int>(Mp3Fault::kFormatChanged), "the stream changes its format here"},
    {static_cast<int>(Mp3Fault::kUnsupportedLayer1),
     "is MPEG audio Layer I, which is not supported; Layer III is"},
    {static_cast<int>(Mp3Fault::kUnsupportedLayer2),
     "is MPEG audio Layer II, which is not supported; Layer III is"},
    {static_cast<int>(Mp3Fault::kUnsupportedVersion25),
     "is MPEG-2.5, which is not supported; MPEG-1 and MPEG-2 are"},
    {zetStsOutOfRange, "a value or a length out of range"},
    {zetStsBadSideInfo, "side information out of range"},
};

}  // namespace

std::string describe(Mp3Fault fault) {
    return messageOf(static_cast<int>(fault), kMessages);
}

}  // namespace zetac::codec
