#include "tables/mp3_synthesis_window.h"

namespace zetac::tables {
namespace {

constexpr std::int32_t alternatingQ30(int index, int row) {
    const std::int32_t q30 = synthesisWindow(index) * (1 << 14);
    return row % 2 == 0 ? q30 : -q30;
}

constexpr SynthesisRow makeRow(int row, int offset) {
    SynthesisRow result{};
    for (int r = 1; r <= 16; ++r) {
        result.values[r - 1] = alternatingQ30(64 * row + offset - r, row);
        if (r > 1) result.shifted[r - 2] = result.values[r - 1];
    }
    return result;
}

constexpr SynthesisRows makeRows() {
    SynthesisRows rows{};
    for (int i = 0; i < 8; ++i) {
        rows.even[i] = makeRow(i, 16);
        rows.odd[i] = makeRow(i, 48);
        rows.center[i] = alternatingQ30(64 * i + 48, i);
    }
    return rows;
}

}  // namespace

constexpr SynthesisRows kSynthesisRows = makeRows();

}  // namespace zetac::tables
