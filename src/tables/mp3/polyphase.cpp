// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/mp3/polyphase.h"

#include "core/constexpr_math.h"

namespace zetac::tables {
namespace {

constexpr std::int32_t alternatingQ30(int index, int row) {
    const std::int32_t q30 = synthesisWindow(index) * (1 << 14);
    return row % 2 == 0 ? q30 : -q30;
}

constexpr SynthesisRow makeSynthesisRow(int row, int offset) {
    SynthesisRow result{};
    for (int r = 1; r <= 16; ++r) {
        result.values[r - 1] = alternatingQ30(64 * row + offset - r, row);
        if (r > 1) result.shifted[r - 2] = result.values[r - 1];
    }
    return result;
}

constexpr SynthesisRows makeSynthesisRows() {
    SynthesisRows rows{};
    for (int i = 0; i < 8; ++i) {
        rows.even[i] = makeSynthesisRow(i, 16);
        rows.odd[i] = makeSynthesisRow(i, 48);
        rows.center[i] = alternatingQ30(64 * i + 48, i);
    }
    return rows;
}

constexpr AnalysisWindowWords makeAnalysisWindow() {
    AnalysisWindowWords words{};
    for (int n = 0; n < 512; ++n) {
        const std::int32_t d = synthesisWindow(511 - n);
        const std::int32_t coarse = (d + 2) >> 2;
        words.coarse[n] = static_cast<std::int16_t>(coarse);
        words.fine[n] = static_cast<std::int16_t>(d - 4 * coarse);
    }
    return words;
}

constexpr Dct3Secants makeDct3Secants() {
    Dct3Secants secants{};
    int i = 0;
    for (int size = 2; size <= 32; size *= 2)
        for (int k = 0; k < size / 2; ++k)
            secants.values[i++] = core::toFixedPoint<std::int32_t>(
                1 / (2 * core::cosine(core::kPi / (2 * size) * (2 * k + 1))),
                kDct3SecantFractionBits);
    return secants;
}

constexpr Table<std::int32_t, 128> makeDct32Cosines() {
    Table<std::int32_t, 128> table{};
    for (int j = 0; j < 128; ++j) {
        table.values[j] =
            core::toFixedPoint<std::int32_t>(core::cosine(core::kPi * j / 64), kDct32FractionBits);
    }
    return table;
}

constexpr Dct32Rows makeDct32Rows(const Table<std::int32_t, 128>& cosines) {
    Dct32Rows rows{};
    for (int column = 0; column < 16; ++column) {
        const auto output = [column](int r) { return column < 8 ? r : 32 - r; };
        const auto factor = [&](int m, int k) { return cosines.values[m * (2 * k + 1) % 128]; };
        for (int k = 0; k < 16; ++k) {
            rows.odd[k][column] = factor(output(2 * (column % 8) + 1), k);
        }
        for (int k = 0; k < 8; ++k) {
            rows.even[k][column] = factor(output(2 * (column % 8) + 2), k);
        }
    }
    return rows;
}

}  // namespace

constexpr SynthesisRows kSynthesisRows = makeSynthesisRows();
constexpr AnalysisWindowWords kAnalysisWindowWords = makeAnalysisWindow();
constexpr Dct3Secants kDct3Secants = makeDct3Secants();
constexpr Table<std::int32_t, 128> kDct32Cosines = makeDct32Cosines();
constexpr Dct32Rows kDct32Rows = makeDct32Rows(kDct32Cosines);

}  // namespace zetac::tables
