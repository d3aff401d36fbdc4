// Contract rows of AAC prediction.
#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr int kLines = 8;
constexpr size_t kStateBytes = 24 * kLines + 260;

void addStateRows(Table& table) {
    const Value len = value("len", kLines), nBands = value("nBands", 2);
    const Data pointer = data(sizeof(void*)), lines = elements<Zet32f>(kLines, 1);
    const Data flags = data(2, 1), offsets = elements<int>(3, 0);
    const auto state = frontOf<ZetsFDPState_32f>(
        [](ZetsFDPState_32f** ppState) { zetsFDPInit_32f(ppState, kLines, lastingMemory()); });
    const std::string is = isOf(state);

    table.ZETAC_ROW(zetsFDPGetSize_32f, len, data(sizeof(int)))
        .range("len", 1, (INT_MAX - 260) / 24, zetStsBadSize);
    table.ZETAC_ROW(zetsFDPInit_32f, pointer, len, data(kStateBytes))
        .checks("len not min -1 0 max BadSize");
    table.ZETAC_ALLOC_ROW(zetsFDPInitAlloc_32f, zetsFDPFree_32f, pointer, len)
        .checks("len not min -1 0 max BadSize");
    table.ZETAC_ROW(zetsFDPFree_32f, state).checks(is);
    table.ZETAC_ROW(zetsFDPReset_32f, state).checks(is);
    table.ZETAC_ROW(zetsFDPResetGroup_32f, value("step", 30), value("first", 3), state)
        .checks("first >= 0 BadSize; step >= 1 FdpGroupLengthErr; " + is);
    table.ZETAC_ROW(zetsFDPResetSfb_32f, offsets, nBands, flags, state)
        .checks("nBands >= 1 BadSize; " + is);
    table.ZETAC_ROW(zetsFDPFwd_32f, lines, lines, state).checks(is);
    table.ZETAC_ROW(zetsFDPInv_32f_I, lines, offsets, nBands, flags, state)
        .checks("nBands >= 1 BadSize; " + is);
}

void addLongTermRows(Table& table) {
    constexpr size_t kSpectrum = ZETAC_AAC_FRAME_LEN * sizeof(Zet32s);
    const Data history = data(ZETAC_AAC_LTP_HISTORY_LEN * sizeof(Zet32s), 0);
    const Data info = data(sizeof(ZetAACLtpInfo), 0);
    const Value sequence = value("sequence", zetAacOnlyLong);
    table.ZETAC_ROW(zetsLongTermPredict_AAC_32s, history, data(2 * kSpectrum), info);
    table
        .ZETAC_ROW(zetsLongTermReconstruct_AAC_32s, data(kSpectrum), data(kSpectrum), info,
                   sequence, value("frequency", 4))
        .checks("sequence 0..3 AacWinSeqErr; frequency 0..12 AacSmpRateIdxErr");
    table
        .ZETAC_ROW(zetsLtpUpdate_AAC_32s, data(kSpectrum, 0), history, sequence,
                   value("shape", zetAacKBD), value("previous", zetAacSine))
        .checks(
            "sequence 0..3 AacWinSeqErr; shape 0..1 AacWinShapeErr;"
            "previous 0..1 AacWinShapeErr");
}

}  // namespace

void addAacPredictionRows(Table& table) {
    addStateRows(table);
    addLongTermRows(table);
}

}  // namespace zetac::test
