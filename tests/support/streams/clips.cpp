// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/streams/clips.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

namespace zetac::test {

std::string clipPath(const std::string& name) {
    return std::string(ZETAC_TEST_DATA) + "/aac/" + name + ".aac";
}

Bytes readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << path;
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

void writeFile(const std::string& path, const Bytes& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

Bytes clip(const std::string& name) {
    return readFile(clipPath(name));
}

std::vector<Bytes> framesOf(const Bytes& adts) {
    std::vector<Bytes> frames;
    for (size_t at = 0; at + 7 <= adts.size();) {
        const size_t length =
            (adts[at + 3] & 3u) << 11 | static_cast<size_t>(adts[at + 4]) << 3 | adts[at + 5] >> 5;
        frames.emplace_back(adts.begin() + static_cast<ptrdiff_t>(at),
                            adts.begin() + static_cast<ptrdiff_t>(at + length));
        at += length;
    }
    return frames;
}

void append(Bytes& to, const Bytes& bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

Bytes ascii(const char* text) {
    return Bytes(text, text + std::strlen(text));
}

Bytes id3v2(Zet8u size, bool hasFooter) {
    Bytes tag = ascii("ID3");
    append(tag, {4, 0, static_cast<Zet8u>(hasFooter ? 0x10 : 0), 0, 0, 0, size});
    tag.resize(tag.size() + size + (hasFooter ? 10 : 0), 0xFF);  // as good as a sync
    return tag;
}

Bytes apeTag(Zet8u itemBytes) {
    const auto end = [&](Zet8u flags) {
        Bytes bytes = ascii("APETAGEX");
        append(bytes, {0xD0, 7, 0, 0, static_cast<Zet8u>(itemBytes + 32), 0, 0, 0, 1, 0, 0, 0});
        append(bytes, {0, 0, 0, flags, 0, 0, 0, 0, 0, 0, 0, 0});
        return bytes;
    };
    Bytes tag = end(0xA0);
    tag.resize(tag.size() + itemBytes, 'x');
    append(tag, end(0x80));
    return tag;
}

Bytes id3v1() {
    Bytes tag = ascii("TAG");
    tag.resize(128, ' ');
    return tag;
}

Bytes joined(const std::vector<Bytes>& frames, const Bytes& between) {
    Bytes stream;
    for (const Bytes& frame : frames) {
        append(stream, frame);
        append(stream, between);
    }
    return stream;
}

Pcm readReference(const std::string& path) {
    Pcm pcm;
    std::FILE* pipe = popen(("gunzip -c '" + path + "'").c_str(), "r");
    if (pipe == nullptr) return pcm;
    Zet8u pair[2];
    while (std::fread(pair, 1, 2, pipe) == 2) {
        pcm.push_back(static_cast<Zet16s>(pair[0] | pair[1] << 8));
    }
    EXPECT_EQ(pclose(pipe), 0) << path;
    return pcm;
}

size_t Decoded::damages() const {
    return faults.size() - static_cast<size_t>(std::ranges::count(faults, codec::Fault::kNone));
}

Decoded decodeAll(const Bytes& bytes, codec::DecoderOptions options) {
    constexpr size_t kCanaries = 64;
    constexpr Zet16s kCanary = 0x5A5A;
    Bytes padded = bytes;
    padded.resize(bytes.size() + codec::kReadAhead);
    Decoded result;
    const auto stream = codec::openStream({padded.data(), bytes.size()});
    if (!stream) return result;
    result.isAac = true;
    codec::AacDecoder decoder(options);
    codec::RawBlock block;
    Pcm pcm(codec::kPcmValuesMax + kCanaries);
    while (stream->next(block)) {
        result.skippedBytes += stream->skippedBytes();
        std::ranges::fill(pcm, kCanary);
        const codec::DecodedFrame frame = decoder.decode(block, pcm.data());
        stream->finish(frame.bytesUsed, !failed(frame.fault));
        result.faults.push_back(frame.fault);
        result.sbrFaults.push_back(frame.sbrFault);
        result.positions.push_back(block.position);
        result.channels = frame.channels;
        const auto values = frame.channels * frame.samples;
        result.pcm.insert(result.pcm.end(), pcm.begin(), pcm.begin() + values);
        EXPECT_TRUE(std::all_of(pcm.begin() + values, pcm.end(),
                                [](Zet16s value) { return value == kCanary; }));
    }
    result.skippedBytes += stream->skippedBytes();
    result.sampleRate = decoder.sampleRate();
    result.stateBytes = decoder.stateBytes();
    return result;
}

}  // namespace zetac::test
