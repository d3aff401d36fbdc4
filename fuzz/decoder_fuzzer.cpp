// The whole decoder on arbitrary bytes: containers, parser, spectral tools and filter bank.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <cstdlib>
#include <vector>

#include "aac/decoder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace zetac::codec;
    std::vector<Zet8u> bytes(data, data + size);
    bytes.resize(size + kReadAhead);
    const auto stream = openStream({bytes.data(), size});
    if (!stream) return 0;
    AacDecoder decoder;
    std::vector<Zet16s> pcm(kPcmValuesMax);
    RawBlock block;
    // Every frame starts behind the one before, and has four blocks at most.
    for (size_t blocks = 0; stream->next(block); ++blocks) {
        if (blocks > 4 * size) std::abort();
        const DecodedFrame frame = decoder.decode(block, pcm.data());
        if (block.position > size || block.data.size() > size - block.position) std::abort();
        if (!failed(frame.fault) && frame.bytesUsed > block.data.size()) std::abort();
        stream->finish(frame.bytesUsed, !failed(frame.fault));
    }
    return 0;
}
