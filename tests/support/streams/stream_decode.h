// Streams through the C interface, in pieces.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac_codec.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/streams/clips.h"

namespace zetac::test {

struct FreeDecoder {
    void operator()(ZetacDecoder* decoder) const { zetacDecoderFree(decoder); }
};
using DecoderHandle = std::unique_ptr<ZetacDecoder, FreeDecoder>;

inline DecoderHandle makeDecoder(const ZetacDecoderOptions& options = ZETAC_DECODER_OPTIONS_INIT) {
    ZetacDecoder* decoder = nullptr;
    zetacDecoderCreate(&decoder, &options);
    return DecoderHandle(decoder);
}

/** A frame that came out, with its samples interleaved as they were. */
struct TakenFrame {
    ZetacFrame frame;
    Bytes samples;

    /** Everything that must not depend on the pieces. */
    bool operator==(const TakenFrame& other) const;
};

struct StreamDecoded {
    std::vector<TakenFrame> frames;
    uint64_t foreignBytes = 0;
    int status = 0;  // that ended it
    std::string text;
    ZetacStreamInfo info = ZETAC_STREAM_INFO_INIT;

    size_t damages() const;
    /** Of 16 bits. */
    Pcm pcm() const;
    bool operator==(const StreamDecoded& other) const;
};

/** How many bytes to feed next, at most. */
using Pieces = std::function<size_t()>;
Pieces whole();
Pieces ofBytes(size_t count);
/** From one byte to more than a frame. */
Pieces ofAnySize(uint32_t seed);

/** Takes all frames that there are. */
int drain(ZetacDecoder* decoder, StreamDecoded& decoded);
StreamDecoded decodeStream(const Bytes& bytes, const Pieces& pieces = whole(),
                           const ZetacDecoderOptions& options = ZETAC_DECODER_OPTIONS_INIT);

}  // namespace zetac::test
