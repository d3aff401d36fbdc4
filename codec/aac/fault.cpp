// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac/fault.h"

#include "base/fault_message.h"

namespace zetac::codec {
namespace {

constexpr FaultMessage kMessages[] = {
    {0, "no fault"},
    {static_cast<int>(Fault::kTruncated), "the data end inside the frame"},
    {static_cast<int>(Fault::kCrcMismatch), "the CRC of the frame does not match its data"},
    {static_cast<int>(Fault::kPrecedingBlock), "lost with a damaged block of the same frame"},
    {static_cast<int>(Fault::kFormatChanged), "the stream changes its format here"},
    {static_cast<int>(Fault::kLayoutChanged), "the stream changes its channel layout here"},
    {static_cast<int>(Fault::kElementUnexpected),
     "an element that the channel configuration has no place for"},
    {static_cast<int>(Fault::kElementRepeated), "the same element twice in one frame"},
    {static_cast<int>(Fault::kElementMissing), "the frame ends before all channels have come"},
    {static_cast<int>(Fault::kWindowsDiffer),
     "intensity stereo between channels with different windows"},
    {static_cast<int>(Fault::kNoLayout), "audio before any program config element"},
    {static_cast<int>(Fault::kPrediction),
     "prediction, which the low-complexity profile does not have"},
    {static_cast<int>(Fault::kSbrTruncated), "the SBR data end too early"},
    {static_cast<int>(Fault::kSbrCrc), "the CRC of the SBR data does not match"},
    {static_cast<int>(Fault::kSbrHeader), "an SBR header with impossible bands"},
    {static_cast<int>(Fault::kSbrGrid), "SBR envelopes with impossible borders"},
    {static_cast<int>(Fault::kSbrValue), "an SBR scale factor out of range"},
    {static_cast<int>(Fault::kPsData),
     "the parametric stereo data are damaged; the last ones hold"},
    {static_cast<int>(Fault::kUnsupportedProfile),
     "the profile is not supported; AAC Main, LC and LTP are"},
    {static_cast<int>(Fault::kUnsupportedRate), "the sampling rate is not supported"},
    {static_cast<int>(Fault::kUnsupportedLayout),
     "the channel layout is not supported; one to eight channels are"},
    {zetStsOutOfRange, "a section reaches beyond the scalefactor bands"},
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
};

}  // namespace

std::string describe(Fault fault) {
    return messageOf(static_cast<int>(fault), kMessages);
}

}  // namespace zetac::codec
