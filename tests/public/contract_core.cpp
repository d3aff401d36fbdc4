// Contract rows of the vector utilities.
#include <type_traits>

#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr int kLen = 8;
constexpr size_t kBytes = kLen * sizeof(Zet32fc);  // enough for kLen elements of any type

const Value kLength = value("len", kLen);

// Vectors and their common length.
template <class... Arguments>
void addPlain(Table& table, const char* name, ZetStatus (*function)(Arguments...)) {
    const auto given = [](auto* type) {
        if constexpr (std::is_pointer_v<std::remove_pointer_t<decltype(type)>>)
            return data(kBytes);
        else
            return kLength;
    };
    table.add(name, function, given(static_cast<Arguments*>(nullptr))...)
        .atLeast("len", 1, zetStsBadSize);
}

void addPlainRows(Table& table) {
#define PLAIN(function) addPlain(table, #function, function)
    PLAIN(zetsZero_8u);
    PLAIN(zetsZero_16s);
    PLAIN(zetsZero_32s);
    PLAIN(zetsZero_32f);
    PLAIN(zetsZero_16sc);
    PLAIN(zetsZero_32sc);
    PLAIN(zetsZero_32fc);
    PLAIN(zetsCopy_8u);
    PLAIN(zetsCopy_32s);
    PLAIN(zetsCopy_32f);
    PLAIN(zetsMove_8u);
    PLAIN(zetsMul_32fc);
    PLAIN(zetsMul_32fc_I);
    PLAIN(zetsConvert_16s32f);
    PLAIN(zetsMakeFloat_16s32f);
    PLAIN(zetsCplxToReal_32fc);
    PLAIN(zetsMinMax_16s);
#undef PLAIN
}

void addArithmeticRows(Table& table) {
    const Data vector = data(kBytes);
    table.ZETAC_ROW(zetsSet_32s, value("value", 7), vector, kLength)
        .atLeast("len", 1, zetStsBadSize);
    table.ZETAC_ROW(zetsAdd_32s_ISfs, vector, vector, kLength, value("scaleFactor", 1))
        .atLeast("len", 1, zetStsBadSize);
    table.ZETAC_ROW(zetsRShiftC_32s_I, value("shift", 1), vector, kLength)
        .atLeast("len", 1, zetStsBadSize)
        .atLeast("shift", 0, zetStsNegativeShift);
    for (const int constant : {0, 1, 2})
        table.ZETAC_ROW(zetsMulC_32f_I, value("value", constant), vector, kLength)
            .atLeast("len", 1, zetStsBadSize)
            .labelled(std::to_string(constant));
    table
        .ZETAC_ROW(zetsScale_32f_I, vector, vector, elements<int>(kLen + 1, 0),
                   value("nBands", kLen))
        .atLeast("nBands", 1, zetStsBadSize);
    table.ZETAC_ROW(zetsStdDev_32f, vector, kLength, data(4), value("hint", zetAlgHintFast))
        .atLeast("len", 2, zetStsBadSize);
}

void addConversionRows(Table& table) {
    const Data vector = data(kBytes);
    table.ZETAC_ROW(zetsConvert_32s16s_Sfs, vector, vector, kLength, value("scaleFactor", 1))
        .atLeast("len", 1, zetStsBadSize);
    table
        .ZETAC_ROW(zetsConvert_32f16s_Sfs, vector, vector, kLength, value("roundMode", zetRndNear),
                   value("scaleFactor", 1))
        .atLeast("len", 1, zetStsBadSize)
        .range("roundMode", 0, 2, zetStsBadArg);
    table.ZETAC_ROW(zetsCalcSF_16s32f, vector, value("offset", 100), vector, kLength)
        .atLeast("len", 1, zetStsBadSize);
    table.ZETAC_ROW(zetsRealToCplx_32f, optionalData(kBytes), optionalData(kBytes), vector, kLength)
        .atLeast("len", 1, zetStsBadSize);
}

void addInterleaveRows(Table& table) {
    for (const int numChannels : {2, 3}) {
        const auto together = data(kBytes * 3);
        const Value count = value("numChannels", numChannels);
        const auto checks = [&](Row& row) {
            row.atLeast("numChannels", 1, zetStsBadChannelCount)
                .atLeast("len", 1, zetStsBadSize)
                .channelsSet("channels")
                .labelled(std::to_string(numChannels));
        };
        const Channels apart = channels("channels", numChannels, kBytes);
        checks(table.ZETAC_ROW(zetsInterleave_16s, apart, count, kLength, together));
        checks(table.ZETAC_ROW(zetsInterleave_32f, apart, count, kLength, together));
        checks(table.ZETAC_ROW(zetsDeinterleave_16s, together, count, kLength, apart));
        checks(table.ZETAC_ROW(zetsDeinterleave_32f, together, count, kLength, apart));
    }
}

}  // namespace

void addCoreRows(Table& table) {
    addPlainRows(table);
    addArithmeticRows(table);
    addConversionRows(table);
    addInterleaveRows(table);
}

}  // namespace zetac::test
