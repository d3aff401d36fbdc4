// MP3 clips, and the decoding of them.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <string>
#include <vector>

#include "mp3/decoder.h"
#include "support/streams/clips.h"

namespace zetac::test {

/** A bundled clip: "tests/data/mp3/<name>.mp3". */
Bytes mp3Clip(const std::string& name);

/** Bytes of a Layer III frame, computed as the standard writes it: 144 (LSF: 72) times the bit rate
 *  over the sampling rate, in whole bytes, and one byte of padding. */
size_t mp3FrameBytes(const Zet8u* header);

/** The frames of a stream that consists of nothing else. */
std::vector<Bytes> mp3FramesOf(const Bytes& stream);

struct Mp3Decoded {
    bool isMp3 = false;
    Pcm pcm;
    std::vector<codec::Fault> faults;  // of every frame
    std::vector<size_t> positions;     // of every frame
    std::vector<size_t> starts;        // of every frame in pcm
    size_t foreignBytes = 0;
    std::optional<codec::Mp3InfoTag> infoTag;

    size_t damages() const;
    size_t count(codec::Fault fault) const;
};

/** Decodes everything. The data end where readable memory ends for the sanitizers, and the output
 *  stands against canaries. */
Mp3Decoded decodeMp3(const Bytes& bytes);

/** A frame without sound, like the first one of the stream, with a tag at this byte. */
Bytes infoFrame(const Bytes& stream, size_t at, const Bytes& tag);
/** An encoder's tag with these optional fields. */
Bytes xing(const char* name, Zet8u flags, const char* encoder, int delay, int padding);

/** Where the side information of a frame without CRC begins, in bits. */
inline constexpr size_t kSideInfoBits = 8 * 4;

/** Sets bits, the first one of the first byte being bit 0. */
void putBits(Bytes& bytes, size_t firstBit, size_t count, uint32_t value);

}  // namespace zetac::test
