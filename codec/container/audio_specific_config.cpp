// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/audio_specific_config.h"

#include <algorithm>
#include <array>

#include "base/bits.h"

namespace zetac::codec {
namespace {

constexpr int kSsr = 3;
constexpr int kSbr = 5;
constexpr int kScalable = 6;
constexpr int kFirstErrorResilient = 17;
constexpr int kLastErrorResilient = 27;
constexpr int kParametricStereo = 29;
constexpr int kEnhancedLowDelay = 39;
constexpr int kUsac = 42;
constexpr unsigned kSbrExtension = 0x2B7;
constexpr unsigned kPsExtension = 0x548;

constexpr int kFrequencies[] = {96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                22050, 16000, 12000, 11025, 8000,  7350};
// Rates from here on take the tables of an index (ISO/IEC 14496-3, table 4.82).
constexpr int kTableFrequencies[] = {92017, 75132, 55426, 46009, 37566, 27713,
                                     23004, 18783, 13856, 11502, 9391,  0};

struct Frequency {
    int index = 0;
    int hertz = 0;
};

int readObjectType(BitReader& bits) {
    constexpr int kEscape = 31;
    const int type = bits.number(5);
    return type == kEscape ? kEscape + 1 + bits.number(6) : type;
}

/** 0 Hz for a reserved index. */
Frequency readFrequency(BitReader& bits) {
    constexpr int kExplicit = 15;
    const int index = bits.number(4);
    if (index < static_cast<int>(std::size(kFrequencies))) return {index, kFrequencies[index]};
    if (index != kExplicit) return {};
    const int hertz = bits.number(24);
    const auto* entry =
        std::ranges::find_if(kTableFrequencies, [&](int from) { return hertz >= from; });
    return {static_cast<int>(entry - kTableFrequencies), hertz};
}

Fault checkObjectType(int type) {
    switch (type) {
        case AudioSpecificConfig::kMain:
        case AudioSpecificConfig::kLc:
        case AudioSpecificConfig::kLtp:
            return Fault::kNone;
        case kSsr:
            return ConfigFault::kSsr;
        case kScalable:
            return ConfigFault::kScalable;
        case kUsac:
            return ConfigFault::kUsac;
        case kEnhancedLowDelay:
            return ConfigFault::kErrorResilient;
        default:
            return type >= kFirstErrorResilient && type <= kLastErrorResilient
                       ? ConfigFault::kErrorResilient
                       : ConfigFault::kObjectType;
    }
}

/** The element's alignment counts from the start of the configuration, which is that of the data.
 *  It is read from a copy, because the primitive's reader does not know where data end. */
Fault readProgramConfig(std::span<const Zet8u> data, BitReader& bits, AudioSpecificConfig& config) {
    constexpr size_t kElementBytesMax = 384;  // all counts at their limits, and a comment
    std::array<Zet8u, kElementBytesMax + ZETAC_BIT_STREAM_SLACK> copy{};
    const size_t first = std::min(bits.position() / 8, data.size());
    std::ranges::copy(data.subspan(first, std::min(kElementBytesMax, data.size() - first)),
                      copy.begin());
    Zet8u* byte = copy.data();
    int offset = static_cast<int>(bits.position() % 8);
    const auto before = static_cast<size_t>(offset);
    if (failed(faultOf(zetsDecodePrgCfgElt_AAC(&byte, &offset, &config.programConfig.emplace())))) {
        return ConfigFault::kDamaged;
    }
    bits.skip(BitCursor{byte, offset}.bitsFrom(copy.data()) - before);
    return Fault::kNone;
}

/** GASpecificConfig() (ISO/IEC 14496-3, 4.4.1) of the object types that are supported. */
Fault readGeneralAudio(std::span<const Zet8u> data, BitReader& bits, AudioSpecificConfig& config) {
    constexpr size_t kCoreCoderDelayBits = 14;
    config.hasShortFrames = bits.flag();
    const bool dependsOnCoreCoder = bits.flag();
    if (dependsOnCoreCoder) bits.skip(kCoreCoderDelayBits);
    const bool hasExtension = bits.flag();
    if (config.channelConfiguration == 0) {
        if (const Fault fault = readProgramConfig(data, bits, config); failed(fault)) return fault;
    }
    if (hasExtension) bits.skip(1);  // extensionFlag3
    return Fault::kNone;
}

/** What stands behind a configuration to tell of SBR without confusing decoders that lack it. */
Fault readSyncExtension(BitReader& bits, size_t end, AudioSpecificConfig& config) {
    const auto left = [&] { return end > bits.position() ? end - bits.position() : 0; };
    if (left() < 16 || bits.peek(11) != kSbrExtension) return Fault::kNone;
    bits.skip(11);
    if (readObjectType(bits) != kSbr) return Fault::kNone;
    config.sbr = bits.flag() ? Signal::kYes : Signal::kNo;
    if (config.sbr == Signal::kNo) return Fault::kNone;
    config.extensionFrequency = readFrequency(bits).hertz;
    if (config.extensionFrequency == 0) return ConfigFault::kSamplingFrequency;
    if (left() < 12 || bits.peek(11) != kPsExtension) return Fault::kNone;
    bits.skip(11);
    config.parametricStereo = bits.flag() ? Signal::kYes : Signal::kNo;
    return Fault::kNone;
}

Fault readConfig(std::span<const Zet8u> data, BitReader& bits, bool isWhole,
                 AudioSpecificConfig& config) {
    config.objectType = readObjectType(bits);
    Frequency frequency = readFrequency(bits);
    config.channelConfiguration = bits.number(4);
    const bool isHierarchical = config.objectType == kSbr || config.objectType == kParametricStereo;
    if (isHierarchical) {
        config.sbr = Signal::kYes;
        if (config.objectType == kParametricStereo) config.parametricStereo = Signal::kYes;
        config.extensionFrequency = readFrequency(bits).hertz;
        config.objectType = readObjectType(bits);
    }
    if (const Fault fault = checkObjectType(config.objectType); failed(fault)) return fault;
    if (frequency.hertz == 0) return ConfigFault::kSamplingFrequency;
    config.samplingFrequencyIndex = frequency.index;
    config.samplingFrequency = frequency.hertz;
    if (const Fault fault = readGeneralAudio(data, bits, config); failed(fault)) return fault;
    if (isWhole && !isHierarchical) return readSyncExtension(bits, data.size() * 8, config);
    return Fault::kNone;
}

}  // namespace

Fault readAudioSpecificConfig(std::span<const Zet8u> data, bool isWhole,
                              AudioSpecificConfig& config) {
    config = {};
    BitReader bits(data);
    const Fault fault = readConfig(data, bits, isWhole, config);
    config.bits = bits.position();
    if (bits.isBeyondEnd()) return ConfigFault::kTruncated;
    return fault;
}

}  // namespace zetac::codec
