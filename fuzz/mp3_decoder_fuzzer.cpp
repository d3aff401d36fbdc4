// The whole MP3 decoder on arbitrary bytes: sync search, reservoir, unpacking and synthesis.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <cstdlib>
#include <memory>
#include <vector>

#include "mp3/decoder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace zetac::codec;
    const auto stream = Mp3Stream::open({data, size});
    if (!stream) return 0;
    const auto decoder = std::make_unique<Mp3Decoder>();
    std::vector<Zet16s> pcm(kMp3PcmValuesMax);
    Mp3Frame frame;
    size_t end = 0;
    while (stream->next(frame)) {
        if (frame.position < end || frame.data.empty()) std::abort();
        end = frame.position + frame.data.size();
        if (end > size) std::abort();
        const Mp3DecodedFrame decoded = decoder->decode(frame, pcm.data());
        const size_t values = static_cast<size_t>(decoded.samples * decoded.channels);
        if (values > pcm.size()) std::abort();
    }
    return 0;
}
