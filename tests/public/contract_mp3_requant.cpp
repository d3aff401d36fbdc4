// Contract rows of Layer III requantisation and of the power functions.
#include <array>

#include "support/contract.h"

namespace zetac::test {
namespace {

using Lines = std::array<Zet32s, 2 * ZETAC_MP3_GRANULE_LEN>;
using Bounds = std::array<Zet32s, 2>;
using ScaleFactors = std::array<Zet8s, 2 * ZETAC_MP3_SCF_MAX>;
using Infos = std::array<ZetMP3GranuleSideInfo, 2>;

constexpr int kBound = 100;

// A frame in joint stereo with the given tools, or in plain stereo without any.
ZetMP3Header headerWith(int modeExtension) {
    ZetMP3Header header{};
    header.ID = 1;
    header.layer = 1;
    header.mode = modeExtension != 0 ? 1 : 0;
    header.mode_extension = modeExtension;
    return header;
}

Row& addRow(Table& table, const char* label, int modeExtension, int blockType) {
    Infos infos{};
    for (auto& info : infos) {
        info.block_type = blockType;
        info.global_gain = 210;
    }
    return table
        .ZETAC_ROW(zetsReQuantize_MP3_32s_I, record(Lines{}), record(Bounds{kBound, 0}),
                   record(ScaleFactors{}), record(infos), record(headerWith(modeExtension)),
                   data(ZETAC_MP3_GRANULE_LEN * sizeof(Zet32s)))
        .labelled(label);
}

Row& checkHeader(Row& row) {
    using Header = ZetMP3Header;
    return row.range("ID", &Header::ID, 0, 1, zetStsBadFrameHeader)
        .range("sampling_frequency", &Header::sampling_frequency, 0, 2, zetStsBadFrameHeader)
        .range("mode", &Header::mode, 0, 3, zetStsBadFrameHeader)
        .range("mode_extension", &Header::mode_extension, 0, 3, zetStsBadFrameHeader);
}

using Info = ZetMP3GranuleSideInfo;

template <Zet32s Info::*member, int channel>
Zet32s& infoField(Infos& infos) {
    return infos[channel].*member;
}
template <int channel>
Zet32s& boundOf(Bounds& bounds) {
    return bounds[channel];
}
Zet32s& lastLine(Lines& lines) {
    return lines[kBound - 1];
}
Zet32s& lastGain(Infos& infos) {
    return infos[0].subblock_gain[2];
}

// Both channels on their own, first to second.
void addIndependentRow(Table& table) {
    checkHeader(addRow(table, "independent", 0, 0))
        .range("block_type", infoField<&Info::block_type, 0>, 0, 3, zetStsBadSideInfo)
        .range("mixed_block_flag", infoField<&Info::mixed_block_flag, 0>, 0, 1, zetStsBadSideInfo)
        .range("bound", boundOf<0>, 0, ZETAC_MP3_GRANULE_LEN, zetStsBadArg)
        .range("block_type_1", infoField<&Info::block_type, 1>, 0, 3, zetStsBadSideInfo)
        .range("bound_1", boundOf<1>, 0, ZETAC_MP3_GRANULE_LEN, zetStsBadArg)
        .range("global_gain", infoField<&Info::global_gain, 0>, 0, 255, zetStsBadSideInfo)
        .range("scalefac_scale", infoField<&Info::scalefac_scale, 0>, 0, 1, zetStsBadSideInfo)
        .range("preflag", infoField<&Info::preflag, 0>, 0, 1, zetStsBadSideInfo)
        .range("line", lastLine, -8206, 8206, zetStsOutOfRange)
        .range("preflag_1", infoField<&Info::preflag, 1>, 0, 1, zetStsBadSideInfo);
}

// In joint stereo the channels share their blocks.
void addJointRow(Table& table) {
    checkHeader(addRow(table, "joint", 1, 2))
        .field("block_type", infoField<&Info::block_type, 1>)
        .field("mixed_block_flag", infoField<&Info::mixed_block_flag, 1>)
        .refuses("block_type", {0, 1, 3}, zetStsBadSideInfo)
        .refuses("mixed_block_flag", {1}, zetStsBadSideInfo)
        .range("bound", boundOf<1>, 0, ZETAC_MP3_GRANULE_LEN, zetStsBadArg)
        .range("subblock_gain", lastGain, 0, 7, zetStsOutOfRange);
}

// Rows of equal bands: what the tables hold does not matter to the checks.
template <size_t entries>
std::array<Zet16s, 6 * entries> equalBands(int lines) {
    std::array<Zet16s, 6 * entries> rows;
    for (size_t i = 0; i < rows.size(); ++i) {
        rows[i] = static_cast<Zet16s>(lines * (i % entries) / (entries - 1));
    }
    return rows;
}

// The form with the caller's band tables has the same checks and two pointers more.
void addBandTablesRow(Table& table) {
    checkHeader(table.ZETAC_ROW(zetsReQuantizeSfb_MP3_32s_I, record(Lines{}),
                                record(Bounds{kBound, 0}), record(ScaleFactors{}), record(Infos{}),
                                record(headerWith(1)), data(ZETAC_MP3_GRANULE_LEN * sizeof(Zet32s)),
                                record(equalBands<23>(576)), record(equalBands<14>(192))));
}

void addPowerRows(Table& table) {
    constexpr int kLen = 8;
    const Data values = data(kLen * sizeof(Zet32f), 0);
    table.ZETAC_ROW(zetsPow43_16s32f, values, values, value("len", kLen))
        .atLeast("len", 0, zetStsBadSize);
    table.ZETAC_ROW(zetsPow34_32f, values, values, value("len", kLen))
        .atLeast("len", 1, zetStsBadSize);
    table.ZETAC_ROW(zetsPow34_32f16s, values, values, value("len", kLen))
        .atLeast("len", 1, zetStsBadSize);
    table
        .ZETAC_ROW(zetsPow34_16s_Sfs, values, value("inScaleFactor", 1), values,
                   value("scaleFactor", 1), value("len", kLen))
        .atLeast("len", 1, zetStsBadSize)
        .pointersLast();
}

}  // namespace

void addMp3RequantRows(Table& table) {
    addIndependentRow(table);
    addJointRow(table);
    addBandTablesRow(table);
    addPowerRows(table);
}

}  // namespace zetac::test
