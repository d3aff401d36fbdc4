// LATM: AudioMuxElement() with its configuration, and the frames of LOAS around it
// (ISO/IEC 14496-3, 1.7).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstddef>
#include <optional>
#include <span>

#include "base/bits.h"
#include "base/fault.h"
#include "container/audio_specific_config.h"

namespace zetac::codec {

/** The header of AudioSyncStream(): 11 bits of sync, 13 bits of length. */
struct LoasHeader {
    static constexpr size_t kBytes = 3;
    static constexpr size_t kElementBytesMax = 8191;

    /** Bytes of the AudioMuxElement behind a header; nothing where there is no sync.
     *  @param data  at least kBytes */
    static std::optional<size_t> elementBytes(std::span<const Zet8u> data);
};

struct LatmFault {
    static constexpr Fault kTruncated{Fault::Domain::kStream, 32,
                                      "the LATM element is shorter than what it holds"};
    static constexpr Fault kNoConfig{Fault::Domain::kStream, 33,
                                     "a LATM element before any configuration"};
    static constexpr Fault kVersion{Fault::Domain::kStream, 34,
                                    "the version of LATM is not supported", true};
    static constexpr Fault kPrograms{Fault::Domain::kStream, 35,
                                     "LATM with several programs or layers is not supported", true};
    static constexpr Fault kFraming{Fault::Domain::kStream, 36,
                                    "LATM with streams in different time framing is not supported",
                                    true};
    static constexpr Fault kFrameLength{Fault::Domain::kStream, 37,
                                        "the frame length type of LATM is not supported", true};
};

/** Takes AudioMuxElement(1) apart: begin() with each, then next() for its payloads. One program,
 * one layer. Configurations may change from element to element. */
class LatmReader {
  public:
    /** @param element  in whole; must stay until the last payload was taken */
    Fault begin(std::span<const Zet8u> element);

    /** The next raw_data_block(), copied to whole bytes with kReadAhead readable ones behind.
     *  @return false when the element has no more, or on a fault */
    bool next(std::span<const Zet8u>& payload, Fault& fault);

    bool hasMore() const { return payloadsLeft_ > 0; }

    /** The configuration in force; nothing before the first. */
    const std::optional<AudioSpecificConfig>& config() const { return config_; }
    /** The last element brought a configuration that differs from the one before. */
    bool isConfigNew() const { return isConfigNew_; }

    /** Forgets the element at hand; the configuration stays. */
    void reset() { payloadsLeft_ = 0; }

  private:
    enum class LengthType { kVariable = 0, kFixed = 1 };

    Fault readMuxConfig(BitReader& bits);
    Fault readLayer(BitReader& bits, AudioSpecificConfig& config);
    Fault readAudioConfig(BitReader& bits, AudioSpecificConfig& config);
    void readOtherDataLength(BitReader& bits);
    size_t readPayloadBits();

    std::span<const Zet8u> element_;
    BitReader bits_{{}};
    std::optional<AudioSpecificConfig> config_;
    Zet8u configBytes_[256] = {};  // of the configuration in force, to see whether it changes
    size_t configBits_ = 0;
    bool isConfigNew_ = false;
    int version_ = 0;
    int subFrames_ = 0;  // payloads of an element
    int payloadsLeft_ = 0;
    LengthType lengthType_ = LengthType::kVariable;
    size_t fixedBits_ = 0;
    Zet8u payload_[LoasHeader::kElementBytesMax + kReadAhead] = {};
};

}  // namespace zetac::codec
