// Contract rows of the MP3 packers, of the encoder's filter banks and of its joint stereo.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <array>

#include "support/contract.h"

namespace zetac::test {
namespace {

using Header = ZetMP3Header;
using Info = ZetMP3GranuleSideInfo;
using Infos = std::array<Info, 2>;
using Bounds = std::array<Zet32s, 3>;

constexpr size_t kGranule = ZETAC_MP3_GRANULE_LEN * sizeof(Zet32s);

Header validHeader(int ID = 1) {
    Header header{};
    header.ID = ID;
    header.layer = 1;
    return header;
}

void addHeaderRows(Table& table) {
    table.ZETAC_ROW(zetsPackFrameHeader_MP3, record(validHeader()), stream());
    table
        .ZETAC_ROW(zetsPackSideInfo_MP3, data(4 * sizeof(Info), 0), stream(), value("begin", 0),
                   value("private", 0), data(8 * sizeof(int)), record(validHeader()))
        .range("ID", &Header::ID, 0, 1, zetStsBadFrameHeader)
        .field("layer", &Header::layer)
        .oneOf("layer", {1}, zetStsBadFrameHeader)
        .range("mode", &Header::mode, 0, 3, zetStsBadFrameHeader);
}

void addScaleFactorRows(Table& table) {
    for (const int ID : {1, 0}) {
        Row& row = table.ZETAC_ROW(zetsPackScaleFactors_MP3_8s1u, data(ZETAC_MP3_SCF_MAX), stream(),
                                   valueAt("offset", 3), record(validHeader(ID)), record<Info>(),
                                   data(4 * sizeof(int)), value("granule", 0), value("channel", 0));
        row.range("offset", 0, 7, zetStsBadArg)
            .range("scalefac_compress", &Info::scalefac_compress, 0, ID == 1 ? 15 : 511,
                   zetStsBadSideInfo)
            .labelled(ID == 1 ? "mpeg1" : "lsf");
        if (ID == 0)
            row.range("mode_extension", &Header::mode_extension, 0, 3, zetStsBadFrameHeader);
    }
}

Zet32s& firstTable(Info& info) {
    return info.table_select[0];
}

void addHuffmanRow(Table& table) {
    table
        .ZETAC_ROW(zetsHuffmanEncode_MP3_32s1u, data(kGranule), stream(), valueAt("offset", 3),
                   record(validHeader()), record<Info>(), value("count1Len", 0),
                   value("hufSize", 50))
        .range("offset", 0, 7, zetStsBadArg)
        .range("big_values", &Info::big_values, 0, 288, zetStsBadSideInfo)
        .range("region0_count", &Info::region0_count, 0, 20, zetStsBadSideInfo)
        .range("region1_count", &Info::region1_count, 0, 20, zetStsBadSideInfo)
        .range("count1table_select", &Info::count1table_select, 0, 1, zetStsBadSideInfo)
        .range("ID", &Header::ID, 1, 1, zetStsBadFrameHeader)
        .range("layer", &Header::layer, 1, 1, zetStsBadFrameHeader)
        .range("sampling_frequency", &Header::sampling_frequency, 0, 2, zetStsBadFrameHeader)
        .range("table_select", firstTable, 0, 31, zetStsBadSideInfo);
}

Row& checkRate(Row& row) {
    return row.range("ID", &Header::ID, 0, 1, zetStsBadFrameHeader)
        .range("sampling_frequency", &Header::sampling_frequency, 0, 2, zetStsBadFrameHeader);
}

Zet32s& rightBlockType(Infos& infos) {
    return infos[1].block_type;
}
template <int window>
Zet32s& boundOf(Bounds& bounds) {
    return bounds[window];
}

void addJointStereoRows(Table& table) {
    for (const int blockType : {0, 2}) {
        Header header = validHeader();
        header.mode = 1;
        header.mode_extension = 3;
        Infos infos{};
        for (Info& info : infos) info.block_type = blockType;
        Row& row = checkRate(table
                                 .ZETAC_ROW(zetsJointStereoEncode_MP3_32s_I, data(kGranule),
                                            data(kGranule), data(ZETAC_MP3_SCF_MAX), record(header),
                                            record(infos), record(Bounds{}))
                                 .labelled(blockType == 0 ? "long" : "short"));
        row.range("block_type", rightBlockType, blockType, blockType, zetStsBadSideInfo)
            .range("bound0", boundOf<0>, 0, blockType == 0 ? 22 : 13, zetStsBadArg);
        if (blockType == 2)
            row.range("bound1", boundOf<1>, 0, 13, zetStsBadArg)
                .range("bound2", boundOf<2>, 0, 13, zetStsBadArg);
    }
}

}  // namespace

void addMp3PackRows(Table& table) {
    addHeaderRows(table);
    addScaleFactorRows(table);
    addHuffmanRow(table);
    addJointStereoRows(table);
    table
        .ZETAC_ROW(zetsBitReservoirInit_MP3, data(sizeof(ZetMP3BitReservoir)),
                   record(validHeader()))
        .range("ID", &Header::ID, 1, 1, zetStsBadFrameHeader)
        .range("sampling_frequency", &Header::sampling_frequency, 0, 2, zetStsBadFrameHeader)
        .range("bitrate_index", &Header::bitrate_index, 0, 14, zetStsBadFrameHeader);
    table
        .ZETAC_ROW(zetsAnalysisPQMF_MP3_16s32s, data(2 * 1056 * sizeof(Zet16s)), data(kGranule),
                   value("nChannels", 1))
        .range("nChannels", 1, 2, zetStsBadArg);
    checkRate(table.ZETAC_ROW(zetsMDCTFwd_MP3_32s, data(kGranule), data(kGranule), data(kGranule),
                              record(validHeader()), record<Info>()))
        .range("block_type", &Info::block_type, 0, 3, zetStsBadSideInfo)
        .range("mixed_block_flag", &Info::mixed_block_flag, 0, 1, zetStsBadSideInfo);
}

}  // namespace zetac::test
