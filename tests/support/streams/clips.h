// Clips with reference PCM, and the decoding of them.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "aac/decoder.h"

namespace zetac::test {

using Bytes = std::vector<Zet8u>;
using Pcm = std::vector<Zet16s>;

/** A bundled clip: "tests/data/aac/<name>.aac". */
std::string clipPath(const std::string& name);
Bytes readFile(const std::string& path);
void writeFile(const std::string& path, const Bytes& bytes);
Bytes clip(const std::string& name);

/** The frames of an ADTS stream, each as it stands. */
std::vector<Bytes> framesOf(const Bytes& adts);
void append(Bytes& to, const Bytes& bytes);
inline Bytes operator+(Bytes a, const Bytes& b) {
    append(a, b);
    return a;
}
/** Some of the frames, to the end unless told otherwise. */
inline Bytes joined(const std::vector<Bytes>& frames, size_t first, size_t end = SIZE_MAX) {
    Bytes stream;
    for (size_t i = first; i < std::min(end, frames.size()); ++i) append(stream, frames[i]);
    return stream;
}

Bytes ascii(const char* text);
/** Tags as other programs write them; that of ID3v2 is full of bytes as good as a sync. */
Bytes id3v2(Zet8u size, bool hasFooter = false);
Bytes apeTag(Zet8u itemBytes);
Bytes id3v1();
/** Frames one after another, each with something behind it. */
Bytes joined(const std::vector<Bytes>& frames, const Bytes& between = {});

/** Reference PCM from a gzip file: 16 bits, little-endian, interleaved. */
Pcm readReference(const std::string& path);

struct Decoded {
    bool isAac = false;
    int channels = 0;
    int sampleRate = 0;
    Pcm pcm;
    std::vector<codec::Fault> faults;  // of every block
    std::vector<codec::Fault> sbrFaults;
    std::vector<size_t> positions;  // of every block
    size_t skippedBytes = 0;
    size_t stateBytes = 0;

    size_t damages() const;
};

/** Decodes everything, in stream order unless told otherwise. The data and the output stand against
 *  canaries. */
Decoded decodeAll(const Bytes& bytes,
                  codec::DecoderOptions options = {codec::ChannelOrder::kStream, true});

/** A small generator for damage that is the same everywhere. */
class Random {
  public:
    explicit Random(uint32_t seed) : state_(seed) {}
    uint32_t below(uint32_t limit) {
        state_ = state_ * 1664525u + 1013904223u;
        return static_cast<uint32_t>(static_cast<uint64_t>(state_) * limit >> 32);
    }

  private:
    uint32_t state_;
};

inline Bytes withFlippedBits(Bytes bytes, int count, Random& random) {
    while (count-- > 0) {
        const uint32_t bit = random.below(static_cast<uint32_t>(bytes.size() * 8));
        bytes[bit / 8] ^= static_cast<Zet8u>(1u << bit % 8);
    }
    return bytes;
}

}  // namespace zetac::test
