// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/streams/stream_decode.h"

#include <algorithm>
#include <cstring>

namespace zetac::test {
namespace {

/** Interleaved or plane after plane, as they lie. */
Bytes samplesOf(const ZetacFrame& frame) {
    const size_t width = frame.sampleFormat == ZETAC_S16 ? 2 : 4;
    const bool isPlanar = frame.channels > 1 && frame.planes[1] != nullptr;
    const size_t planes = isPlanar ? static_cast<size_t>(frame.channels) : 1;
    const size_t bytes = width * static_cast<size_t>(frame.samples) *
                         (isPlanar ? 1 : static_cast<size_t>(frame.channels));
    Bytes samples;
    for (size_t i = 0; i < planes && frame.planes[i] != nullptr; ++i) {
        const auto* first = static_cast<const Zet8u*>(frame.planes[i]);
        samples.insert(samples.end(), first, first + bytes);
    }
    return samples;
}

}  // namespace

bool TakenFrame::operator==(const TakenFrame& other) const {
    const ZetacFrame& a = frame;
    const ZetacFrame& b = other.frame;
    return samples == other.samples && a.samples == b.samples && a.channels == b.channels &&
           a.sampleRate == b.sampleRate && a.isFormatNew == b.isFormatNew &&
           a.position == b.position && a.bytePosition == b.bytePosition &&
           a.byteCount == b.byteCount && a.isSeekPoint == b.isSeekPoint &&
           a.damage.code == b.damage.code && a.damage.position == b.damage.position &&
           a.damage.foreignAt == b.damage.foreignAt &&
           a.damage.foreignBytes == b.damage.foreignBytes;
}

bool StreamDecoded::operator==(const StreamDecoded& other) const {
    return frames == other.frames && foreignBytes == other.foreignBytes && status == other.status;
}

size_t StreamDecoded::damages() const {
    return static_cast<size_t>(std::ranges::count_if(
        frames, [](const TakenFrame& taken) { return taken.frame.damage.code != 0; }));
}

Pcm StreamDecoded::pcm() const {
    Pcm pcm;
    for (const TakenFrame& taken : frames) {
        const size_t first = pcm.size();
        pcm.resize(first + taken.samples.size() / sizeof(Zet16s));
        if (!taken.samples.empty()) {
            std::memcpy(&pcm[first], taken.samples.data(), taken.samples.size());
        }
    }
    return pcm;
}

Pieces whole() {
    return [] { return SIZE_MAX; };
}

Pieces ofBytes(size_t count) {
    return [count] { return count; };
}

Pieces ofAnySize(uint32_t seed) {
    return [random = Random(seed)]() mutable {
        return size_t{1} + random.below(random.below(8) == 0 ? 20000 : 400);
    };
}

int drain(ZetacDecoder* decoder, StreamDecoded& decoded) {
    ZetacFrame frame = ZETAC_FRAME_INIT;
    for (;;) {
        const int status = zetacDecoderTake(decoder, &frame);
        if (status == ZETAC_OK || status == ZETAC_END) {
            decoded.foreignBytes += frame.damage.foreignBytes;
        }
        if (status != ZETAC_OK) return status;
        decoded.frames.push_back({frame, samplesOf(frame)});
    }
}

StreamDecoded decodeStream(const Bytes& bytes, const Pieces& pieces,
                           const ZetacDecoderOptions& options) {
    const DecoderHandle decoder = makeDecoder(options);
    StreamDecoded decoded;
    size_t at = 0;
    while ((decoded.status = drain(decoder.get(), decoded)) == ZETAC_NEED_INPUT) {
        // A copy without room behind it: nothing may be read there.
        const Bytes piece(
            bytes.begin() + static_cast<ptrdiff_t>(at),
            bytes.begin() + static_cast<ptrdiff_t>(at + std::min(pieces(), bytes.size() - at)));
        size_t taken = 0;
        zetacDecoderFeed(decoder.get(), piece.data(), piece.size(), &taken);
        at += taken;
        if (at == bytes.size()) zetacDecoderFinish(decoder.get());
    }
    decoded.text = zetacDecoderErrorText(decoder.get());
    zetacDecoderGetInfo(decoder.get(), &decoded.info);
    return decoded;
}

}  // namespace zetac::test
