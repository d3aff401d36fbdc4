// AudioSpecificConfig(): what containers of MPEG-4 say of a stream (ISO/IEC 14496-3, 1.6.2.1).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstddef>
#include <optional>
#include <span>

#include "base/fault.h"

namespace zetac::codec {

/** Whether a tool is used, as far as it is told. */
enum class Signal { kImplicit, kNo, kYes };

struct AudioSpecificConfig {
    static constexpr int kMain = 1;
    static constexpr int kLc = 2;
    static constexpr int kLtp = 4;

    int objectType = 0;              // of the core
    int samplingFrequencyIndex = 0;  // whose tables hold for the core
    int samplingFrequency = 0;       // of the core, Hz
    int channelConfiguration = 0;    // 0: programConfig tells
    bool hasShortFrames = false;     // 960 samples instead of 1024
    Signal sbr = Signal::kImplicit;
    Signal parametricStereo = Signal::kImplicit;
    int extensionFrequency = 0;  // of the output with SBR, Hz; 0: not told
    std::optional<ZetAACPrgCfgElt> programConfig;
    size_t bits = 0;  // that were read
};

/** @param data       from the first bit of the first byte on
 *  @param isWhole    the data are the whole configuration, so that an extension may follow at its
 *                    end; false where its length is not known, as in LATM of version 0
 *  @return a refusal, with its name, of what is not supported; a fault of damaged data */
Fault readAudioSpecificConfig(std::span<const Zet8u> data, bool isWhole,
                              AudioSpecificConfig& config);

struct ConfigFault {
    static constexpr Fault kTruncated{Fault::Domain::kStream, 16,
                                      "the AudioSpecificConfig is cut short"};
    static constexpr Fault kDamaged{Fault::Domain::kStream, 17,
                                    "the AudioSpecificConfig is damaged"};
    static constexpr Fault kObjectType{
        Fault::Domain::kStream, 18,
        "the audio object type is not supported; AAC Main, LC and LTP, SBR and PS are", true};
    static constexpr Fault kSsr{Fault::Domain::kStream, 19,
                                "scalable sampling rate (AAC SSR) is not supported", true};
    static constexpr Fault kErrorResilient{
        Fault::Domain::kStream, 20, "error-resilient and low-delay AAC are not supported", true};
    static constexpr Fault kScalable{Fault::Domain::kStream, 21, "scalable AAC is not supported",
                                     true};
    static constexpr Fault kUsac{Fault::Domain::kStream, 22,
                                 "USAC (extended HE-AAC) is not supported", true};
    static constexpr Fault kShortFrames{Fault::Domain::kStream, 23,
                                        "frames of 960 samples are not supported", true};
    static constexpr Fault kSamplingFrequency{Fault::Domain::kStream, 24,
                                              "the sampling rate is reserved", true};
};

}  // namespace zetac::codec
