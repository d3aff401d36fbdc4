// Why a piece of an AAC stream could not be decoded, and the words for it.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <string>

namespace zetac::codec {

/** Negative values are the library's ZetStatus, positive ones findings of this assembly. */
enum class Fault : int {
    kNone = 0,
    kTruncated = 1,       // the data end inside an element
    kCrcMismatch,         // the error check of the ADTS frame fails
    kPrecedingBlock,      // where this block starts depends on a block that is damaged
    kFormatChanged,       // the header announces another sampling rate, profile or channel count
    kLayoutChanged,       // a program config element announces other channels
    kElementUnexpected,   // an element that the channel configuration has no place for
    kElementRepeated,     // an element that came before in the same block
    kElementMissing,      // the block ends before every channel came
    kWindowsDiffer,       // intensity stereo between channels with different windows
    kNoLayout,            // audio before the program config element that tells the channels
    kPrediction,          // prediction, which the low-complexity profile does not have
    kSbrTruncated,        // the data of SBR end too early
    kSbrCrc,              // the error check of the SBR data fails
    kSbrHeader,           // bands that the standard does not allow
    kSbrGrid,             // envelopes that the standard does not allow
    kSbrValue,            // a scale factor of SBR out of range
    kPsData,              // parametric stereo out of range, or longer than its place
    kUnsupportedProfile,  // SSR
    kUnsupportedRate,     // a sampling_frequency_index without band tables
    kUnsupportedLayout,   // more than eight channels, or none
};

inline bool failed(Fault fault) {
    return fault != Fault::kNone;
}

/** True for what no later block of the same stream can mend. */
inline bool isRefusal(Fault fault) {
    return fault >= Fault::kUnsupportedProfile;
}

/** A library status as a fault; warnings are no faults. */
inline Fault faultOf(ZetStatus status) {
    return status < 0 ? static_cast<Fault>(status) : Fault::kNone;
}

/** One line without a full stop, such as "the data end inside the frame". */
std::string describe(Fault fault);

}  // namespace zetac::codec
