// A frame's header, side information and scale factors, read one behind the other.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include <cstdlib>
#include <vector>

namespace {

// More than a header, side information and four channels' scale factors of at most 36 * 5 bits.
constexpr size_t kLongestFrame = 6 + 32 + 4 * 23 + ZETAC_BIT_STREAM_SLACK;

void expect(bool holds) {
    if (!holds) std::abort();
}

void readScaleFactors(Zet8u* byte, ZetMP3GranuleSideInfo* records, int* scfsi,
                      ZetMP3Header& header) {
    const int channels = header.mode == 3 ? 1 : 2;
    Zet8s scaleFactors[2][ZETAC_MP3_SCF_MAX] = {};
    int offset = 0;
    for (int granule = 0; granule <= header.ID; ++granule) {
        for (int channel = 0; channel < channels; ++channel) {
            ZetMP3GranuleSideInfo& info = records[granule * channels + channel];
            expect(zetsUnpackScaleFactors_MP3_1u8s(&byte, &offset, scaleFactors[channel], &info,
                                                   scfsi + 4 * channel, &header, granule,
                                                   channel) == zetStsOk);
            expect(offset >= 0 && offset <= 7);
            for (const Zet8s value : scaleFactors[channel]) expect(value >= -31 && value <= 31);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<Zet8u> bytes(data, data + size);
    bytes.resize(size + kLongestFrame);
    Zet8u* byte = bytes.data();
    ZetMP3Header header = {};
    expect(zetsUnpackFrameHeader_MP3(&byte, &header) == zetStsOk);

    ZetMP3GranuleSideInfo records[4] = {};
    int mainDataBegin = 0, privateBits = 0, scfsi[8] = {};
    const ZetStatus status =
        zetsUnpackSideInfo_MP3(&byte, records, &mainDataBegin, &privateBits, scfsi, &header);
    expect((status == zetStsBadFrameHeader) == (header.layer != 1));
    expect(mainDataBegin < 512);
    if (status == zetStsOk) readScaleFactors(byte, records, scfsi, header);
    return 0;
}
