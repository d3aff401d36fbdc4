// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/latm.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace zetac::codec {
namespace {

constexpr unsigned kSyncWord = 0x2B7;

/** LatmGetValue() (ISO/IEC 14496-3, 1.7.3.1): one to four bytes. */
size_t readValue(BitReader& bits) {
    size_t value = 0;
    for (int bytes = bits.number(2) + 1; bytes > 0; --bytes) value = value << 8 | bits.get(8);
    return value;
}

/** Copies bits of data to the front of a buffer; zeros follow in its last byte. */
void copyBitsTo(Zet8u* to, std::span<const Zet8u> data, size_t firstBit, size_t count) {
    BitReader bits(data);
    bits.skip(firstBit);
    size_t i = 0;
    if (firstBit % 8 == 0) {
        const size_t bytes = count / 8;
        std::memcpy(to, data.data() + firstBit / 8, bytes);
        bits.skip(8 * bytes);
        i = bytes;
    }
    for (size_t done = 8 * i; done < count; done += 8, ++i) {
        const size_t step = std::min<size_t>(8, count - done);
        to[i] = static_cast<Zet8u>(bits.get(static_cast<int>(step)) << (8 - step));
    }
}

}  // namespace

std::optional<size_t> LoasHeader::elementBytes(std::span<const Zet8u> data) {
    BitReader bits(data);
    if (bits.get(11) != kSyncWord) return std::nullopt;
    return bits.get(13);
}

Fault LatmReader::begin(std::span<const Zet8u> element) {
    element_ = element;
    bits_ = BitReader(element);
    payloadsLeft_ = 0;
    isConfigNew_ = false;
    const bool usesSameConfig = bits_.flag();
    if (!usesSameConfig) {
        if (const Fault fault = readMuxConfig(bits_); failed(fault)) return fault;
    }
    if (bits_.isBeyondEnd()) return LatmFault::kTruncated;
    if (!config_) return LatmFault::kNoConfig;
    payloadsLeft_ = subFrames_;
    return Fault::kNone;
}

/** StreamMuxConfig() (1.7.3.1). */
Fault LatmReader::readMuxConfig(BitReader& bits) {
    version_ = bits.number(1);
    if (version_ == 1) {
        if (bits.flag()) return LatmFault::kVersion;  // audioMuxVersionA
        readValue(bits);                              // taraBufferFullness
    }
    if (!bits.flag()) return LatmFault::kFraming;  // allStreamsSameTimeFraming
    const int subFrames = bits.number(6) + 1;
    const int programs = bits.number(4) + 1;
    const int layers = bits.number(3) + 1;
    if (programs > 1 || layers > 1) return LatmFault::kPrograms;
    AudioSpecificConfig config;
    if (const Fault fault = readLayer(bits, config); failed(fault)) return fault;
    readOtherDataLength(bits);
    constexpr size_t kCrcBits = 8;
    const bool hasCrc = bits.flag();
    if (hasCrc) bits.skip(kCrcBits);
    if (bits.isBeyondEnd()) return LatmFault::kTruncated;
    subFrames_ = subFrames;
    config_ = config;
    return Fault::kNone;
}

Fault LatmReader::readLayer(BitReader& bits, AudioSpecificConfig& config) {
    constexpr size_t kBufferFullnessBits = 8;
    if (const Fault fault = readAudioConfig(bits, config); failed(fault)) return fault;
    switch (bits.number(3)) {
        case 0:
            lengthType_ = LengthType::kVariable;
            bits.skip(kBufferFullnessBits);
            return Fault::kNone;
        case 1:
            lengthType_ = LengthType::kFixed;
            fixedBits_ = 8 * (bits.get(9) + 20);
            return Fault::kNone;
        default:
            return LatmFault::kFrameLength;
    }
}

/** In version 1 its length stands in front of it, and an extension may stand at its end. */
Fault LatmReader::readAudioConfig(BitReader& bits, AudioSpecificConfig& config) {
    std::array<Zet8u, sizeof configBytes_ + kReadAhead> copy{};
    const bool hasLength = version_ == 1;
    const size_t told = hasLength ? readValue(bits) : SIZE_MAX;
    const size_t start = std::min(bits.position(), element_.size() * 8);
    const size_t left = element_.size() * 8 - start;
    if (hasLength && told > left) return LatmFault::kTruncated;
    const size_t count = std::min({told, left, 8 * sizeof configBytes_});
    copyBitsTo(copy.data(), element_, start, count);
    const std::span<const Zet8u> data(copy.data(), (count + 7) / 8);
    if (const Fault fault = readAudioSpecificConfig(data, hasLength, config); failed(fault)) {
        return fault;
    }
    const size_t used = hasLength ? told : config.bits;
    bits.skip(used);
    const size_t usedBytes = (std::min(used, count) + 7) / 8;
    if (!hasLength && used % 8 != 0) {
        copy[used / 8] &= static_cast<Zet8u>(0xFF00u >> used % 8);
    }
    isConfigNew_ = used != configBits_ || std::memcmp(copy.data(), configBytes_, usedBytes) != 0;
    std::memcpy(configBytes_, copy.data(), usedBytes);
    configBits_ = used;
    return Fault::kNone;
}

/** Other data stand behind the payloads, up to the end of the element: their length is not needed.
 */
void LatmReader::readOtherDataLength(BitReader& bits) {
    const bool hasOtherData = bits.flag();
    if (!hasOtherData) return;
    if (version_ == 1) {
        readValue(bits);
        return;
    }
    for (bool isMore = true; isMore && !bits.isBeyondEnd(); bits.skip(8)) isMore = bits.flag();
}

/** PayloadLengthInfo() */
size_t LatmReader::readPayloadBits() {
    constexpr unsigned kMore = 255;
    if (lengthType_ == LengthType::kFixed) return fixedBits_;
    size_t bytes = 0;
    unsigned step = 0;
    do {
        step = bits_.get(8);
        bytes += step;
    } while (step == kMore && !bits_.isBeyondEnd());
    return 8 * bytes;
}

bool LatmReader::next(std::span<const Zet8u>& payload, Fault& fault) {
    fault = Fault::kNone;
    if (payloadsLeft_ == 0) return false;
    --payloadsLeft_;
    const size_t count = readPayloadBits();
    const size_t start = bits_.position();
    if (start + count > element_.size() * 8) {
        payloadsLeft_ = 0;
        fault = LatmFault::kTruncated;
        return false;
    }
    copyBitsTo(payload_, element_, start, count);
    bits_.skip(count);
    payload = {payload_, count / 8};
    return true;
}

}  // namespace zetac::codec
