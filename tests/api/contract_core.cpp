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
        .checks("len >= 1 BadSize");
}

void addPlainRows(Table& table) {
#define PLAIN(function) addPlain(table, #function, function)
    PLAIN(zetsZero_8u), PLAIN(zetsZero_16s), PLAIN(zetsZero_32s), PLAIN(zetsZero_32f);
    PLAIN(zetsZero_16sc), PLAIN(zetsZero_32sc), PLAIN(zetsZero_32fc);
    PLAIN(zetsCopy_8u), PLAIN(zetsCopy_32s), PLAIN(zetsCopy_32f), PLAIN(zetsMove_8u);
    PLAIN(zetsMul_32fc), PLAIN(zetsMul_32fc_I), PLAIN(zetsConvert_16s32f);
    PLAIN(zetsMakeFloat_16s32f), PLAIN(zetsCplxToReal_32fc), PLAIN(zetsMinMax_16s);
}

void addOtherRows(Table& table) {
    const Data v = data(kBytes), maybe = optionalData(kBytes);
    const Value scale = value("scaleFactor", 1);
    const char* length = "len >= 1 BadSize";
    table.ZETAC_ROW(zetsSet_32s, value("value", 7), v, kLength).checks(length);
    table.ZETAC_ROW(zetsAdd_32s_ISfs, v, v, kLength, scale).checks(length);
    table.ZETAC_ROW(zetsConvert_32s16s_Sfs, v, v, kLength, scale).checks(length);
    table.ZETAC_ROW(zetsCalcSF_16s32f, v, value("offset", 100), v, kLength).checks(length);
    table.ZETAC_ROW(zetsRealToCplx_32f, maybe, maybe, v, kLength).checks(length);
    table.ZETAC_ROW(zetsConvert_32f16s_Sfs, v, v, kLength, value("mode", zetRndNear), scale)
        .checks("len >= 1 BadSize; mode 0..2 BadArg");
    table.ZETAC_ROW(zetsRShiftC_32s_I, value("shift", 1), v, kLength)
        .checks("len >= 1 BadSize; shift >= 0 NegativeShift");
    for (const int constant : {0, 1, 2})
        table.ZETAC_ROW(zetsMulC_32f_I, value("value", constant), v, kLength)
            .checks(length)
            .labelled(std::to_string(constant));
    table.ZETAC_ROW(zetsScale_32f_I, v, v, elements<int>(kLen + 1, 0), value("nBands", kLen))
        .checks("nBands >= 1 BadSize");
    table.ZETAC_ROW(zetsStdDev_32f, v, kLength, data(4), value("hint", zetAlgHintFast))
        .checks("len >= 2 BadSize");
}

void addInterleaveRows(Table& table) {
    for (const int numChannels : {2, 3}) {
        const auto together = data(kBytes * 3);
        const Value count = value("n", numChannels);
        const Channels apart = channels("channels", numChannels, kBytes);
        for (Row* row : {&table.ZETAC_ROW(zetsInterleave_16s, apart, count, kLength, together),
                         &table.ZETAC_ROW(zetsInterleave_32f, apart, count, kLength, together),
                         &table.ZETAC_ROW(zetsDeinterleave_16s, together, count, kLength, apart),
                         &table.ZETAC_ROW(zetsDeinterleave_32f, together, count, kLength, apart)})
            row->checks("n >= 1 BadChannelCount; len >= 1 BadSize; channels set")
                .labelled(std::to_string(numChannels));
    }
}

}  // namespace

void addCoreRows(Table& table) {
    addPlainRows(table);
    addOtherRows(table);
    addInterleaveRows(table);
}

}  // namespace zetac::test
