// The SBR data of a channel element, frame by frame, and the high band made from them.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <cstdlib>

#include "sbr/decoder.h"

namespace {

using namespace zetac::codec;

void require(bool holds) {
    if (!holds) std::abort();
}

/** What later stages rely on to stay within their arrays. */
void requireSound(const SbrParser& parser) {
    const SbrFrequencyTables& t = parser.tables();
    require(0 < t.kx() && t.kx() <= kLowBands && t.high.end() <= kQmfBands);
    require(t.count() <= kSbrBandsMax && t.low.end() == t.high.end());
    require(t.limiter.end() == t.high.end() && t.noise.end() == t.high.end());
    require(0 <= t.sources().first && t.sources().end <= t.kx());
    for (int c = 0; c < parser.channels(); ++c) {
        const SbrGrid& grid = parser.channel(c).grid;
        require(1 <= grid.envelopes && grid.envelopes <= kSbrEnvelopesMax);
        require(std::is_sorted(grid.border, grid.border + grid.envelopes + 1));
        require(kSbrTimeSlots <= grid.end() && grid.end() <= kSbrTimeSlotsMax);
    }
}

}  // namespace

// A byte for the kind of element, the rate and the banks; then frames: a byte for the length, and
// the payload behind its extension_type.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    static constexpr int kRates[] = {16000, 22050, 24000, 32000, 44100, 48000, 64000, 96000};
    const bool isPair = data[0] & 1;
    SbrDecoder decoder(isPair, kRates[data[0] >> 1 & 7],
                       {(data[0] & 16) != 0, (data[0] & 32) != 0});
    Zet32s core[ZETAC_AAC_FRAME_LEN];
    uint32_t random = 1;
    for (Zet32s& sample : core) {
        random = random * 1664525 + 1013904223;
        sample = static_cast<Zet32s>(random) >> 8;
    }
    const uint8_t* const end = data + size;
    for (++data; data < end;) {
        SbrPayload payload;
        const size_t wanted = *data++;
        const size_t length = std::min(wanted, static_cast<size_t>(end - data));
        std::copy_n(data, length, payload.data);
        payload.bytes = length;
        data += length;
        const Fault fault = decoder.read(payload);
        if (decoder.parser().isActive()) {
            require(!failed(fault));
            requireSound(decoder.parser());
        }
        Zet16s pcm[kSbrFrameLength];
        for (int c = 0; c < (isPair ? 2 : 1); ++c) decoder.decode(c, core, PcmPlane(pcm));
    }
    return 0;
}
