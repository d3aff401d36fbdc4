// The decoder of the C interface on arbitrary bytes: whatever the pieces are, the same frames come
// out, within bounded memory, and in order.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac_codec.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

/** What has come out, as one number. */
class Sum {
  public:
    void add(const void* data, size_t bytes) {
        const auto* p = static_cast<const uint8_t*>(data);
        for (size_t i = 0; i < bytes; ++i) value_ = (value_ ^ p[i]) * 0x100000001B3u;
    }
    uint64_t value() const { return value_; }

  private:
    uint64_t value_ = 0xCBF29CE484222325u;
};

void addFrame(const ZetacFrame& frame, size_t size, Sum& sum) {
    if (frame.bytePosition > size || frame.byteCount > size) std::abort();
    const int32_t numbers[] = {frame.samples, frame.channels, frame.sampleRate, frame.damage.code};
    sum.add(numbers, sizeof numbers);
    sum.add(&frame.bytePosition, sizeof frame.bytePosition);
    if (frame.samples > 0) {
        sum.add(frame.planes[0],
                sizeof(int16_t) * static_cast<size_t>(frame.samples * frame.channels));
    }
}

uint64_t decode(const uint8_t* data, size_t size, size_t piece) {
    ZetacDecoder* decoder = nullptr;
    if (zetacDecoderCreate(&decoder, nullptr) != ZETAC_OK) std::abort();
    ZetacFrame frame = ZETAC_FRAME_INIT;
    Sum sum;
    size_t at = 0;
    for (;;) {
        const int status = zetacDecoderTake(decoder, &frame);
        sum.add(&status, status == ZETAC_NEED_INPUT ? 0 : sizeof status);
        if (status == ZETAC_OK) addFrame(frame, size, sum);
        if (status < 0 || status == ZETAC_END) break;
        if (status == ZETAC_OK) continue;
        size_t taken = 0;
        const size_t count = std::min(piece, size - at);
        if (zetacDecoderFeed(decoder, data + at, count, &taken) != ZETAC_OK) std::abort();
        if (count > 0 && taken == 0) std::abort();
        at += taken;
        if (at == size) zetacDecoderFinish(decoder);
    }
    zetacDecoderFree(decoder);
    return sum.value();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const size_t piece = 1 + data[size - 1] % 64;
    if (decode(data, size, SIZE_MAX) != decode(data, size, piece)) std::abort();
    return 0;
}
