// Contract rows of the MP3 bit-stream readers.
#include "support/contract.h"

namespace zetac::test {
namespace {

using Header = ZetMP3Header;
using Info = ZetMP3GranuleSideInfo;

Header validHeader() {
    Header header = {};
    header.ID = 1;
    header.layer = 1;
    return header;
}

void addSideInfoRow(Table& table) {
    table
        .ZETAC_ROW(zetsUnpackSideInfo_MP3, stream(), data(4 * sizeof(Info)), data(sizeof(int)),
                   data(sizeof(int)), data(8 * sizeof(int)), record(validHeader()))
        .range("ID", &Header::ID, 0, 1, zetStsBadFrameHeader)
        .field("layer", &Header::layer)
        .oneOf("layer", {1}, zetStsBadFrameHeader)
        .range("mode", &Header::mode, 0, 3, zetStsBadFrameHeader);
}

void addScaleFactorRows(Table& table) {
    for (const int ID : {1, 0}) {
        Header header = validHeader();
        header.ID = ID;
        Row& row = table.ZETAC_ROW(zetsUnpackScaleFactors_MP3_1u8s, stream(), valueAt("offset", 3),
                                   data(ZETAC_MP3_SCF_MAX), record<Info>(), data(4 * sizeof(int)),
                                   record(header), value("granule", 0), value("channel", 0));
        row.range("offset", 0, 7, zetStsBadArg)
            .range("granule", 0, 1, zetStsBadArg)
            .range("channel", 0, 1, zetStsBadArg)
            .range("scalefac_compress", &Info::scalefac_compress, 0, ID == 1 ? 15 : 511,
                   zetStsBadSideInfo)
            .labelled(ID == 1 ? "mpeg1" : "lsf");
        if (ID == 0)
            row.range("mode_extension", &Header::mode_extension, 0, 3, zetStsBadFrameHeader);
    }
}

// Window switching decides which fields count.
struct Window {
    const char* label;
    int window_switching_flag, block_type;
};
constexpr Window kWindows[] = {{"normal", 0, 0}, {"switched", 1, 2}};

Info validInfo(const Window& window) {
    Info info = {};
    info.part2_3_length = 100;
    info.window_switching_flag = window.window_switching_flag;
    info.block_type = window.block_type;
    return info;
}

template <int region>
Zet32s& tableSelect(Info& info) {
    return info.table_select[region];
}

void regionChecks(Row& row, const Window& window) {
    const bool isNormal = window.window_switching_flag == 0;
    if (isNormal) {
        row.range("region0_count", &Info::region0_count, 0, 20, zetStsBadSideInfo)
            .range("region1_count", &Info::region1_count, 0, 20, zetStsBadSideInfo);
    }
    row.range("table_select0", tableSelect<0>, 0, 31, zetStsBadSideInfo)
        .range("table_select1", tableSelect<1>, 0, 31, zetStsBadSideInfo)
        .labelled(window.label);
    if (isNormal) row.range("table_select2", tableSelect<2>, 0, 31, zetStsBadSideInfo);
}

Row& checkBlock(Row& row) {
    return row.range("big_values", &Info::big_values, 0, 288, zetStsBadSideInfo)
        .range("block_type", &Info::block_type, 0, 3, zetStsBadSideInfo)
        .range("window_switching_flag", &Info::window_switching_flag, 0, 1, zetStsBadSideInfo);
}

Row& checkCount1(Row& row) {
    return row.range("count1table_select", &Info::count1table_select, 0, 1, zetStsBadSideInfo);
}

Row& checkLayer(Row& row) {
    return row.field("layer", &Header::layer)
        .oneOf("layer", {1}, zetStsBadFrameHeader)
        .range("sampling_frequency", &Header::sampling_frequency, 0, 2, zetStsBadFrameHeader);
}

// The fields of the plain forms in their order; the pointers before and the regions behind.
void plainChecks(Row& row, const Window& window) {
    row.range("offset", 0, 7, zetStsBadArg).range("hufSize", 0, 100, zetStsBadArg);
    checkLayer(checkCount1(checkBlock(row)).range("ID", &Header::ID, 0, 1, zetStsBadFrameHeader));
    if (window.window_switching_flag) row.refuses("block_type", {0}, zetStsBadSideInfo);
    regionChecks(row, window);
}

void partitionChecks(Row& row, const Window& window) {
    row.range("offset", 0, 7, zetStsBadArg).range("ID", &Header::ID, 0, 1, zetStsBadFrameHeader);
    checkBlock(row);
    if (window.window_switching_flag) row.refuses("block_type", {0}, zetStsBadSideInfo);
    checkCount1(checkLayer(row)).range("hufSize", 0, 100, zetStsBadSideInfo);
    regionChecks(row, window);
}

void addHuffmanRows(Table& table) {
    const auto lines = data(ZETAC_MP3_GRANULE_LEN * sizeof(Zet32s));
    const auto bound = data(sizeof(int));
    const auto offset = valueAt("offset", 3);
    const auto hufSize = value("hufSize", 50);
    const auto header = record(validHeader());
    // All boundaries of these rows are the same.
    const auto longBands = elements<Zet16s>(6 * 23, 36), shortBands = elements<Zet16s>(6 * 14, 36);
    auto optionalLongBands = longBands;
    optionalLongBands.optional = true;
    for (const Window& window : kWindows) {
        const auto info = record(validInfo(window));
        plainChecks(table.ZETAC_ROW(zetsHuffmanDecode_MP3_1u32s, stream(), offset, lines, bound,
                                    info, header, hufSize),
                    window);
        plainChecks(table.ZETAC_ROW(zetsHuffmanDecodeSfb_MP3_1u32s, stream(), offset, lines, bound,
                                    info, header, hufSize, optionalLongBands),
                    window);
        partitionChecks(
            table.ZETAC_ROW(zetsHuffmanDecodeSfbMbp_MP3_1u32s, stream(), offset, lines, bound, info,
                            header, hufSize, longBands, shortBands, elements<Zet16s>(6 * 2, 3)),
            window);
    }
}

}  // namespace

void addMp3UnpackRows(Table& table) {
    table.ZETAC_ROW(zetsUnpackFrameHeader_MP3, stream(), data(sizeof(Header)));
    addSideInfoRow(table);
    addScaleFactorRows(table);
    addHuffmanRows(table);
}

}  // namespace zetac::test
