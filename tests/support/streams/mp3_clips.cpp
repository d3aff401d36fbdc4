// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/streams/mp3_clips.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace zetac::test {

Bytes mp3Clip(const std::string& name) {
    return readFile(std::string(ZETAC_TEST_DATA) + "/mp3/" + name + ".mp3");
}

size_t mp3FrameBytes(const Zet8u* header) {
    static constexpr int kMpeg1[] = {0,   32,  40,  48,  56,  64,  80, 96,
                                     112, 128, 160, 192, 224, 256, 320};
    static constexpr int kLsf[] = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};
    static constexpr int kRates[] = {44100, 48000, 32000};
    const bool isMpeg1 = header[1] & 0x08;
    const int rate = kRates[header[2] >> 2 & 3] / (isMpeg1 ? 1 : 2);
    const int bits = (isMpeg1 ? kMpeg1 : kLsf)[header[2] >> 4] * 1000;
    return static_cast<size_t>((isMpeg1 ? 144 : 72) * bits / rate + (header[2] >> 1 & 1));
}

std::vector<Bytes> mp3FramesOf(const Bytes& stream) {
    std::vector<Bytes> frames;
    for (size_t at = 0; at < stream.size(); at += frames.back().size()) {
        const auto first = stream.begin() + static_cast<ptrdiff_t>(at);
        frames.emplace_back(first, first + static_cast<ptrdiff_t>(mp3FrameBytes(&stream[at])));
    }
    return frames;
}

size_t Mp3Decoded::count(codec::Fault fault) const {
    return static_cast<size_t>(std::ranges::count(faults, fault));
}

size_t Mp3Decoded::damages() const {
    return faults.size() - count(codec::Fault::kNone);
}

Mp3Decoded decodeMp3(const Bytes& bytes) {
    constexpr size_t kCanaries = 64;
    constexpr Zet16s kCanary = 0x5A5A;
    const Bytes exact(bytes.begin(), bytes.end());  // no capacity behind the data
    Mp3Decoded result;
    const auto stream = codec::Mp3Stream::open(exact);
    if (!stream) return result;
    result.isMp3 = true;
    result.infoTag = stream->infoTag();
    const auto decoder = std::make_unique<codec::Mp3Decoder>();
    codec::Mp3Frame frame;
    Pcm pcm(codec::kMp3PcmValuesMax + kCanaries);
    while (stream->next(frame)) {
        result.foreignBytes += stream->foreign().bytes;
        std::ranges::fill(pcm, kCanary);
        const codec::Mp3DecodedFrame decoded = decoder->decode(frame, pcm.data());
        result.faults.push_back(decoded.fault);
        result.positions.push_back(frame.position);
        result.starts.push_back(result.pcm.size());
        const auto values = decoded.channels * decoded.samples;
        result.pcm.insert(result.pcm.end(), pcm.begin(), pcm.begin() + values);
        EXPECT_TRUE(std::all_of(pcm.begin() + values, pcm.end(),
                                [](Zet16s value) { return value == kCanary; }));
    }
    result.foreignBytes += stream->foreign().bytes;
    return result;
}

Bytes infoFrame(const Bytes& stream, size_t at, const Bytes& tag) {
    Bytes frame(mp3FrameBytes(stream.data()));
    EXPECT_LE(at + tag.size(), frame.size());
    std::copy_n(stream.begin(), 4, frame.begin());
    std::ranges::copy(tag, frame.begin() + static_cast<ptrdiff_t>(at));
    return frame;
}

Bytes xing(const char* name, Zet8u flags, const char* encoder, int delay, int padding) {
    constexpr size_t kFieldBytes[] = {4, 4, 100, 4};
    Bytes tag = ascii(name);
    append(tag, {0, 0, 0, flags});
    for (size_t i = 0; i < 4; ++i) {
        if (flags >> i & 1) append(tag, Bytes(kFieldBytes[i], static_cast<Zet8u>(i + 1)));
    }
    append(tag, ascii(encoder));
    append(tag, Bytes(12, 0x55));
    append(tag, {static_cast<Zet8u>(delay >> 4), static_cast<Zet8u>(delay << 4 | padding >> 8),
                 static_cast<Zet8u>(padding)});
    return tag;
}

void putBits(Bytes& bytes, size_t firstBit, size_t count, uint32_t value) {
    for (size_t i = 0; i < count; ++i) {
        const size_t bit = firstBit + i;
        const auto mask = static_cast<Zet8u>(0x80 >> bit % 8);
        const bool isSet = value >> (count - 1 - i) & 1;
        bytes[bit / 8] = static_cast<Zet8u>(isSet ? bytes[bit / 8] | mask : bytes[bit / 8] & ~mask);
    }
}

}  // namespace zetac::test
