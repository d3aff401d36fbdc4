// Why a frame of an MPEG audio stream could not be decoded, and the words for it.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <string>

namespace zetac::codec {

/** Negative values are the library's ZetStatus, positive ones findings of this assembly. */
enum class Mp3Fault : int {
    kNone = 0,
    kTruncated = 1,         // the data end inside the frame
    kCutShort,              // the next frame begins inside this one
    kCrcMismatch,           // the error check over header and side information fails
    kMissingMainData,       // the main data reach back to what is not there
    kMainDataOverrun,       // the granules are longer than the main data
    kScaleFactorsOverrun,   // the scale factors are longer than their granule
    kFormatChanged,         // the header announces another version, layer or sampling rate
    kUnsupportedLayer1,     //
    kUnsupportedLayer2,     //
    kUnsupportedVersion25,  // sampling rates below 16 kHz, which no ISO standard has
};

inline bool failed(Mp3Fault fault) {
    return fault != Mp3Fault::kNone;
}

/** True for what no later frame of the same stream can mend. */
inline bool isRefusal(Mp3Fault fault) {
    return fault >= Mp3Fault::kUnsupportedLayer1;
}

/** One line without a full stop, such as "the data end inside the frame". */
std::string describe(Mp3Fault fault);

}  // namespace zetac::codec
