// The Huffman data of a granule. The first bytes choose the decoder and fill the records, the rest
// is the data, in a block that ends with them.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {

constexpr size_t kFixedBytes = 12;

void expect(bool holds) {
    if (!holds) std::abort();
}

struct Input {
    int form;  // 0 plain, 1 with a band table, 2 with partitions
    ZetMP3Header header = {};
    ZetMP3GranuleSideInfo info = {};
    int offset;
    int hufSize;

    // The lowest bits of each byte, and a little more than the valid range where that is not a
    // power of two.
    Input(const uint8_t* data, size_t dataBytes) {
        form = data[0] % 3;
        header.ID = data[1] & 1;
        header.layer = 1;
        header.sampling_frequency = data[1] >> 1 & 3;
        offset = data[1] >> 3 & 7;
        info.window_switching_flag = data[2] & 1;
        info.block_type = data[2] >> 1 & 3;
        info.mixed_block_flag = data[2] >> 3 & 1;
        info.count1table_select = data[2] >> 4 & 1;
        for (int i = 0; i < 3; ++i) info.table_select[i] = data[3 + i] & 31;
        info.region0_count = data[6] & 15;
        info.region1_count = data[6] >> 4 & 7;
        info.big_values = (data[7] << 8 | data[8]) & 511;
        const int bits = static_cast<int>(std::min<size_t>(dataBytes, 4096)) * 8 - offset;
        hufSize = std::min((data[9] << 8 | data[10]) & 4095, std::max(bits, 0));
        info.part2_3_length = hufSize;
    }
};

// Bands as at 44100 Hz in every row, and partitions that stay inside.
struct BandTables {
    Zet16s longBands[6 * 23], shortBands[6 * 14], partition[6 * 2];

    explicit BandTables(uint8_t choice) {
        constexpr Zet16s kLong[23] = {0,  4,  8,   12,  16,  20,  24,  30,  36,  44,  52, 62,
                                      74, 90, 110, 134, 162, 196, 238, 288, 342, 418, 576};
        constexpr Zet16s kShort[14] = {0, 4, 8, 12, 16, 22, 30, 40, 52, 66, 84, 106, 136, 192};
        for (int row = 0; row < 6; ++row) {
            std::copy_n(kLong, 23, longBands + row * 23);
            std::copy_n(kShort, 14, shortBands + row * 14);
            partition[2 * row] = static_cast<Zet16s>((choice & 15) + (choice >> 4 & 1));
            partition[2 * row + 1] = static_cast<Zet16s>(choice >> 3);
        }
    }
};

ZetStatus decode(Input& in, BandTables& bands, Zet8u** byte, Zet32s* lines, int* bound) {
    if (in.form == 0)
        return zetsHuffmanDecode_MP3_1u32s(byte, &in.offset, lines, bound, &in.info, &in.header,
                                           in.hufSize);
    if (in.form == 1)
        return zetsHuffmanDecodeSfb_MP3_1u32s(byte, &in.offset, lines, bound, &in.info, &in.header,
                                              in.hufSize, bands.longBands);
    return zetsHuffmanDecodeSfbMbp_MP3_1u32s(byte, &in.offset, lines, bound, &in.info, &in.header,
                                             in.hufSize, bands.longBands, bands.shortBands,
                                             bands.partition);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size <= kFixedBytes) return 0;
    const size_t dataBytes = size - kFixedBytes;
    Input in(data, dataBytes);
    BandTables bands(data[11]);
    const int start = in.offset;
    const auto bytes = std::make_unique<Zet8u[]>(static_cast<size_t>(start + in.hufSize + 7) / 8);
    std::copy_n(data + kFixedBytes,
                std::min(dataBytes, static_cast<size_t>(start + in.hufSize + 7) / 8), bytes.get());
    const auto lines = std::make_unique<Zet32s[]>(ZETAC_MP3_GRANULE_LEN);
    Zet8u* byte = bytes.get();
    int bound = -1;
    const ZetStatus status = decode(in, bands, &byte, lines.get(), &bound);
    if (status == zetStsOk) {
        expect(bound >= 0 && bound <= ZETAC_MP3_GRANULE_LEN);
        expect(bound == 0 || lines[static_cast<size_t>(bound) - 1] != 0);
        for (int i = bound; i < ZETAC_MP3_GRANULE_LEN; ++i)
            expect(lines[static_cast<size_t>(i)] == 0);
    } else {
        expect(bound == -1);
    }
    const auto moved = (byte - bytes.get()) * 8 + in.offset - start;
    if (status == zetStsOk || status == zetStsOutOfRange) expect(moved == in.hufSize);
    return 0;
}
