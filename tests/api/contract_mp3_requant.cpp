// Contract rows of Layer III requantisation and of the power functions.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/contract.h"

namespace zetac::test {
namespace {

using Infos = std::array<ZetMP3GranuleSideInfo, 2>;
constexpr int kBound = 100;

// A frame in joint stereo with the given tools, or in plain stereo without any; with band tables
// or without. What the tables hold does not matter to the checks.
template <class Function, class... Bands>
Row& addRow(Table& table, const char* name, Function function, int modeExtension, int blockType,
            const Bands&... bands) {
    ZetMP3Header header{};
    header.ID = header.layer = 1;
    header.mode = modeExtension != 0;
    header.mode_extension = modeExtension;
    ZetMP3GranuleSideInfo info{};
    info.global_gain = 210;
    info.block_type = blockType;
    return table
        .add(name, function, Ints{"line", std::vector(2 * ZETAC_MP3_GRANULE_LEN, 0)},
             Ints{"bound", {kBound, 0}}, data(2 * ZETAC_MP3_SCF_MAX, 0), record(Infos{info, info}),
             record(header), data(ZETAC_MP3_GRANULE_LEN * sizeof(Zet32s)), bands...)
        .checks(
            "ID 0..1 BadFrameHeader; frequency 0..2 BadFrameHeader;"
            "mode 0..3 BadFrameHeader; extension 0..3 BadFrameHeader");
}

// count bands of equal width, six times.
Data equalBands(int count, int lines) {
    Data rows = elements<Zet16s>(0, 0);
    for (int i = 0; i < 6 * (count + 1); ++i) {
        const auto start = static_cast<Zet16s>(lines * (i % (count + 1)) / count);
        rows.bytes.insert(rows.bytes.end(),
                          {static_cast<Zet8u>(start & 255), static_cast<Zet8u>(start >> 8)});
    }
    return rows;
}

void addPowerRows(Table& table) {
    constexpr int kLen = 8;
    const Data values = data(kLen * sizeof(Zet32f), 0);
    const Value len = value("len", kLen);
    table.ZETAC_ROW(zetsPow43_16s32f, values, values, len).checks("len >= 0 BadSize");
    table.ZETAC_ROW(zetsPow34_32f, values, values, len).checks("len >= 1 BadSize");
    table.ZETAC_ROW(zetsPow34_32f16s, values, values, len).checks("len >= 1 BadSize");
    table.ZETAC_ROW(zetsPow34_16s_Sfs, values, value("in", 1), values, value("out", 1), len)
        .checks("len >= 1 BadSize")
        .pointersLast();
}

}  // namespace

void addMp3RequantRows(Table& table) {
    // Both channels on their own, first to second.
    addRow(table, "zetsReQuantize_MP3_32s_I", zetsReQuantize_MP3_32s_I, 0, 0)
        .checks(
            "block_type 0..3 BadSideInfo; mixed 0..1 BadSideInfo; bound0 0..576 BadArg;"
            "block_type_1 0..3 BadSideInfo; bound1 0..576 BadArg;"
            "global_gain 0..255 BadSideInfo; scale 0..1 BadSideInfo; preflag 0..1 BadSideInfo;"
            "line99 -8206..8206 OutOfRange; preflag_1 0..1 BadSideInfo")
        .labelled("independent");
    // In joint stereo the channels share their blocks.
    addRow(table, "zetsReQuantize_MP3_32s_I", zetsReQuantize_MP3_32s_I, 1, 2)
        .field<Infos>("subblock_gain",
                      [](Infos& infos) -> Zet32s& { return infos[0].subblock_gain[2]; })
        .checks(
            "block_type_1 not 0 1 3 BadSideInfo; mixed_1 not 1 BadSideInfo;"
            "bound1 0..576 BadArg; subblock_gain 0..7 OutOfRange")
        .labelled("joint");
    // The same checks and two pointers more.
    addRow(table, "zetsReQuantizeSfb_MP3_32s_I", zetsReQuantizeSfb_MP3_32s_I, 1, 0,
           equalBands(22, 576), equalBands(13, 192));
    addPowerRows(table);
}

}  // namespace zetac::test
