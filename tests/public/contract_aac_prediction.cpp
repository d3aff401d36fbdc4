// Contract rows of AAC prediction.
#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr int kLines = 8;
constexpr size_t kStateBytes = 24 * kLines + 260;

// A state for a few lines; it begins with its identifier.
struct StateImage {
    Zet32s id;
    Zet8u rest[kStateBytes - sizeof(Zet32s)];
};

Record<StateImage> state() {
    alignas(32) static Zet8u memory[2 * kStateBytes];
    ZetsFDPState_32f* made = nullptr;
    zetsFDPInit_32f(&made, kLines, memory);
    StateImage image;
    std::memcpy(&image, made, sizeof image);
    return record(image);
}

// Identifiers of freed structures and of other families.
void refuseOtherIds(Row& row) {
    row.field<StateImage>("id", &StateImage::id)
        .refuses("id", {0, 1, 4, 5, 6, 21, 22, 55, 56, 57, 58, 60, -1}, zetStsSpecMismatch);
}

// The rows make many valid calls: what they allocate has to go.
ZetStatus allocateAndFree(ZetsFDPState_32f** ppState, int len) {
    const ZetStatus status = zetsFDPInitAlloc_32f(ppState, len);
    if (status == zetStsOk) zetsFDPFree_32f(*ppState);
    return status;
}

void addStateRows(Table& table) {
    const Value len = value("len", kLines);
    table.add("zetsFDPGetSize_32f", zetsFDPGetSize_32f, len, data(sizeof(int)))
        .range("len", 1, (INT_MAX - 260) / 24, zetStsBadSize);
    table.add("zetsFDPInit_32f", zetsFDPInit_32f, data(sizeof(void*)), len, data(kStateBytes))
        .refuses("len", {INT_MIN, -1, 0, INT_MAX}, zetStsBadSize);
    table.add("zetsFDPInitAlloc_32f", allocateAndFree, data(sizeof(void*)), len)
        .refuses("len", {INT_MIN, -1, 0, INT_MAX}, zetStsBadSize);
    refuseOtherIds(table.add("zetsFDPFree_32f", zetsFDPFree_32f, state()));
    refuseOtherIds(table.add("zetsFDPReset_32f", zetsFDPReset_32f, state()));
}

void addPredictorRows(Table& table) {
    Data offsets = data(3 * sizeof(int));
    const int values[] = {0, 4, kLines};
    std::memcpy(offsets.bytes.data(), values, sizeof values);
    const Data flags = data(2, 1);
    const Data lines = elements<Zet32f>(kLines, 1);

    refuseOtherIds(table
                       .add("zetsFDPResetGroup_32f", zetsFDPResetGroup_32f, value("step", 30),
                            value("first", 3), state())
                       .atLeast("first", 0, zetStsBadSize)
                       .atLeast("step", 1, zetStsFdpGroupLengthErr));
    refuseOtherIds(table
                       .add("zetsFDPResetSfb_32f", zetsFDPResetSfb_32f, offsets, value("nBands", 2),
                            flags, state())
                       .atLeast("nBands", 1, zetStsBadSize));
    refuseOtherIds(table.add("zetsFDPFwd_32f", zetsFDPFwd_32f, lines, lines, state()));
    refuseOtherIds(table
                       .add("zetsFDPInv_32f_I", zetsFDPInv_32f_I, lines, offsets,
                            value("nBands", 2), flags, state())
                       .atLeast("nBands", 1, zetStsBadSize));
}

void addLongTermRows(Table& table) {
    constexpr size_t kSpectrum = ZETAC_AAC_FRAME_LEN * sizeof(Zet32s);
    const Data history = data(ZETAC_AAC_LTP_HISTORY_LEN * sizeof(Zet32s), 0);
    const Data info = data(sizeof(ZetAACLtpInfo), 0);
    const Value sequence = value("winSequence", zetAacOnlyLong);
    table.add("zetsLongTermPredict_AAC_32s", zetsLongTermPredict_AAC_32s, history,
              data(2 * kSpectrum), info);
    table
        .add("zetsLongTermReconstruct_AAC_32s", zetsLongTermReconstruct_AAC_32s, data(kSpectrum),
             data(kSpectrum), info, sequence, value("samplingFreqIndex", 4))
        .range("winSequence", 0, 3, zetStsAacWinSeqErr)
        .range("samplingFreqIndex", 0, 12, zetStsAacSmpRateIdxErr);
    table
        .add("zetsLtpUpdate_AAC_32s", zetsLtpUpdate_AAC_32s, data(kSpectrum, 0), history, sequence,
             value("winShape", zetAacKBD), value("prevWinShape", zetAacSine))
        .range("winSequence", 0, 3, zetStsAacWinSeqErr)
        .range("winShape", 0, 1, zetStsAacWinShapeErr)
        .range("prevWinShape", 0, 1, zetStsAacWinShapeErr);
}

}  // namespace

void addAacPredictionRows(Table& table) {
    addStateRows(table);
    addPredictorRows(table);
    addLongTermRows(table);
}

}  // namespace zetac::test
