// Contract rows of the MP3 bit-stream readers.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/contract.h"

namespace zetac::test {
namespace {

using Info = ZetMP3GranuleSideInfo;

void addUnpackRows(Table& table) {
    ZetMP3Header header{};
    header.ID = header.layer = 1;
    table.ZETAC_ROW(zetsUnpackFrameHeader_MP3, stream(), data(sizeof header));
    table
        .ZETAC_ROW(zetsUnpackSideInfo_MP3, stream(), data(4 * sizeof(Info)), data(sizeof(int)),
                   data(sizeof(int)), data(8 * sizeof(int)), record(header))
        .checks("ID 0..1 BadFrameHeader; layer in 1 BadFrameHeader; mode 0..3 BadFrameHeader");
    for (header.ID = 0; header.ID <= 1; ++header.ID)
        table
            .ZETAC_ROW(zetsUnpackScaleFactors_MP3_1u8s, stream(), valueAt("offset", 3),
                       data(ZETAC_MP3_SCF_MAX), record<Info>(), data(4 * sizeof(int)),
                       record(header), value("granule", 0), value("channel", 0))
            .checks("offset 0..7 BadArg; granule 0..1 BadArg; channel 0..1 BadArg")
            .checks(header.ID == 1 ? "compress 0..15 BadSideInfo"
                                   : "compress 0..511 BadSideInfo; extension 0..3 BadFrameHeader")
            .labelled(header.ID == 1 ? "mpeg1" : "lsf");
}

template <int region>
Zet32s& tableSelect(Info& info) {
    return info.table_select[region];
}

const std::string kBlock =
    "big_values 0..288 BadSideInfo; block_type 0..3 BadSideInfo; switching 0..1 BadSideInfo";
const std::string kCount1 = "; count1 0..1 BadSideInfo";
const std::string kLayer = "; layer in 1 BadFrameHeader; frequency 0..2 BadFrameHeader";
const std::string kID = "; ID 0..1 BadFrameHeader";

// Window switching decides which fields count.
void addHuffmanRows(Table& table, bool isSwitched) {
    Info valid{};
    valid.part2_3_length = 100;
    valid.window_switching_flag = isSwitched;
    valid.block_type = isSwitched ? 2 : 0;
    const auto info = record(valid);
    ZetMP3Header validHeader{};
    validHeader.ID = validHeader.layer = 1;
    const auto header = record(validHeader);
    const auto lines = data(ZETAC_MP3_GRANULE_LEN * sizeof(Zet32s)), bound = data(sizeof(int));
    const auto offset = valueAt("offset", 3);
    const auto hufSize = value("hufSize", 50);
    // All boundaries of these rows are the same.
    const auto longBands = elements<Zet16s>(6 * 23, 36), shortBands = elements<Zet16s>(6 * 14, 36);
    auto optionalBands = longBands;
    optionalBands.optional = true;

    const std::string block = isSwitched ? "; block_type not 0 BadSideInfo" : "";
    const std::string plain =
        "offset 0..7 BadArg; hufSize 0..100 BadArg; " + kBlock + kCount1 + kID + kLayer + block;
    const std::string partition = "offset 0..7 BadArg" + kID + "; " + kBlock + block + kLayer +
                                  kCount1 + "; hufSize 0..100 BadSideInfo";
    const auto check = [&](Row& row, const std::string& fields) {
        row.field("select0", tableSelect<0>)
            .field("select1", tableSelect<1>)
            .field("select2", tableSelect<2>)
            .checks(fields)
            .checks(isSwitched ? "" : "region0 0..20 BadSideInfo; region1 0..20 BadSideInfo")
            .checks("select0 0..31 BadSideInfo; select1 0..31 BadSideInfo")
            .checks(isSwitched ? "" : "select2 0..31 BadSideInfo")
            .labelled(isSwitched ? "switched" : "normal");
    };
    check(table.ZETAC_ROW(zetsHuffmanDecode_MP3_1u32s, stream(), offset, lines, bound, info, header,
                          hufSize),
          plain);
    check(table.ZETAC_ROW(zetsHuffmanDecodeSfb_MP3_1u32s, stream(), offset, lines, bound, info,
                          header, hufSize, optionalBands),
          plain);
    check(table.ZETAC_ROW(zetsHuffmanDecodeSfbMbp_MP3_1u32s, stream(), offset, lines, bound, info,
                          header, hufSize, longBands, shortBands, elements<Zet16s>(6 * 2, 3)),
          partition);
}

}  // namespace

void addMp3UnpackRows(Table& table) {
    addUnpackRows(table);
    for (const bool isSwitched : {false, true}) addHuffmanRows(table, isSwitched);
}

}  // namespace zetac::test
