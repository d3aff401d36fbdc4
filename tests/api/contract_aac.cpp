// Contract rows of the AAC family.
#include "support/contract.h"

namespace zetac::test {

template <>
inline constexpr auto kFields<ZetAACChanInfo> =
    std::to_array<Field<ZetAACChanInfo>>({{"frequency", &ZetAACChanInfo::sampling_frequency_index},
                                          {"predSfbMax", &ZetAACChanInfo::predSfbMax}});

namespace {

constexpr size_t kSpectrum = ZETAC_AAC_FRAME_LEN * sizeof(Zet32s);

// A position within a byte, and its check.
const ValueAt kOffset = valueAt("offset", 3);
const std::string kIsOffset = "offset 0..7 AacBitOffsetErr";

void addElementRows(Table& table) {
    const Data count = data(sizeof(int)), ics = data(sizeof(ZetAACIcsInfo));
    const Data pce = data(sizeof(ZetAACPrgCfgElt)), pair = data(sizeof(ZetAACChanPairElt));
    const Value predSfbMax = value("predSfbMax", 40);
    table
        .ZETAC_ROW(zetsUnpackADIFHeader_AAC, stream(), data(sizeof(ZetAACADIFHeader)),
                   data(16 * sizeof(ZetAACPrgCfgElt)), value("room", 16))
        .checks("room 1..16 AacPrgNumErr");
    table.ZETAC_ROW(zetsUnpackADTSFrameHeader_AAC, stream(), data(sizeof(ZetAACADTSHeader)));
    table.ZETAC_ROW(zetsDecodePrgCfgElt_AAC, stream(), kOffset, pce).checks(kIsOffset);
    table
        .ZETAC_ROW(zetsDecodeDatStrElt_AAC, stream(), kOffset, count, count,
                   data(ZETAC_AAC_DATA_BYTES_MAX))
        .checks(kIsOffset);
    table.ZETAC_ROW(zetsDecodeFillElt_AAC, stream(), kOffset, count, data(ZETAC_AAC_FILL_BYTES_MAX))
        .checks(kIsOffset);
    table.ZETAC_ROW(zetsDecodeChanPairElt_AAC, stream(), kOffset, ics, pair, predSfbMax)
        .checks(kIsOffset + "; predSfbMax 0..41 AacPredSfbMaxErr");
    table
        .ZETAC_ROW(zetsDecodeChanPairElt_MP4_AAC, stream(), kOffset, ics, pair,
                   data(2 * sizeof(ZetAACLtpInfo)), predSfbMax, value("objectType", 2))
        .checks(kIsOffset + "; predSfbMax 0..51 AacMaxSfbErr");
    table
        .ZETAC_ROW(zetsDecodeMainHeader_AAC, stream(), kOffset, data(sizeof(ZetAACMainHeader)),
                   value("channels", 2), value("layer", 0))
        .checks(kIsOffset + "; channels 1..2 AacChanNumErr; layer 0..1 AacLayerFlagErr");
    table
        .ZETAC_ROW(zetsDecodeExtensionHeader_AAC, stream(), kOffset, data(sizeof(ZetAACExtHeader)),
                   value("tns", 1), value("stereo", 1), value("diff", 1), value("maxSfb", 10),
                   value("second", 10), value("sequence", zetAacOnlyLong))
        .checks(kIsOffset +
                "; tns 0..1 AacLayerFlagErr; stereo 0..1 AacStereoLayerErr;"
                "diff 0..1 AacDiffCtrlFlagErr; maxSfb 0..51 AacMaxSfbErr;"
                "second 0..51 AacMaxSfbErr; sequence 0..3 AacWinSeqErr");
}

void addNoiselessRows(Table& table) {
    const Value commonWin = value("commonWin", 0);
    const auto info = record<ZetAACChanInfo>();
    const auto scaleFactors = data(ZETAC_AAC_GROUP_BANDS_MAX * sizeof(Zet16s));
    const auto codebooks = data(ZETAC_AAC_GROUP_BANDS_MAX);
    const auto tnsCoefs = data(ZETAC_AAC_TNS_COEFS_MAX);
    const std::string isChannel = kIsOffset + "; commonWin 0..1 AacCommonWinErr";

    table
        .ZETAC_ROW(zetsNoiselessDecoder_LC_AAC, stream(), kOffset, commonWin, info, scaleFactors,
                   data(kSpectrum), codebooks, tnsCoefs)
        .link(&ZetAACChanInfo::pIcsInfo)
        .checks(isChannel + "; frequency 0..11 AacSmpRateIdxErr; predSfbMax 0..0 AacPredSfbMaxErr");
    for (const bool isSeparate : {false, true})
        table
            .add(isSeparate ? "zetsNoiselessDecode_MP4_AAC" : "zetsNoiselessDecode_AAC",
                 isSeparate ? zetsNoiselessDecode_MP4_AAC : zetsNoiselessDecode_AAC, stream(),
                 kOffset, record<ZetAACMainHeader>(), scaleFactors, data(kSpectrum), codebooks,
                 tnsCoefs, info, value("sequence", zetAacOnlyLong), value("maxSfb", 40), commonWin,
                 value("scalable", 0), value("objectType", 2))
            .link(&ZetAACChanInfo::pIcsInfo)
            .checks(isChannel +
                    "; sequence 0..3 AacWinSeqErr; scalable 0..1 AacScalableFlagErr;"
                    "objectType 0..16 AacAotErr; maxSfb 0..51 AacMaxSfbErr;"
                    "frequency 0..11 AacSmpRateIdxErr");
}

// Valid band arguments at 48 kHz for long windows, or for short ones in groups of one, and the
// limits of TNS filters.
struct Bands {
    const char* label;
    int winLen, numWinGrp, bandCount, filters, order;
};
constexpr Bands kBands[] = {{"long", 1024, 1, 49, 3, 12}, {"short", 128, 8, 14, 1, 7}};

// Room for eight groups of long windows, which the checks of noise substitution let pass.
constexpr size_t kBandsMax = ZETAC_AAC_GROUPS_MAX * ZETAC_AAC_SFB_MAX;

// One filter of order 2 over 10 bands in every window.
ZetAACTnsInfo tnsInfo() {
    ZetAACTnsInfo info = {};
    std::fill_n(info.n_filt, 8, 1);
    std::fill_n(info.coef_res, 8, 4);
    std::fill_n(info.length, 8, 10);
    std::fill_n(info.order, 8, 2);
    return info;
}

Row& tnsChecks(Row& row, const Bands& bands) {
    using Tns = ZetAACTnsInfo;
    const std::string bandCount = std::to_string(bands.bandCount);
    return row.field<Tns>("n_filt", [](Tns& tns) -> Zet32s& { return tns.n_filt[0]; })
        .field<Tns>("coef_res", [](Tns& tns) -> Zet32s& { return tns.coef_res[0]; })
        .field<Tns>("length", [](Tns& tns) -> Zet32s& { return tns.length[0]; })
        .field<Tns>("order", [](Tns& tns) -> Zet32s& { return tns.order[0]; })
        .field<Tns>("direction", [](Tns& tns) -> Zet32s& { return tns.direction[0]; })
        .field<Tns>("compress", [](Tns& tns) -> Zet32s& { return tns.coef_compress[0]; })
        .checks(
            "winLen in 128 1024 AacWinLenErr; frequency 0..11 AacSmpRateIdxErr;"
            "maxSfb 0.." +
            bandCount + " AacMaxSfbErr")
        .labelled(bands.label);
}
std::string filterChecks(const Bands& bands) {
    return "n_filt 0.." + std::to_string(bands.filters) +
           " AacTnsNumFiltErr; coef_res in 3 4 AacTnsCoefResErr; length 0.." +
           std::to_string(bands.bandCount) + " AacTnsLengthErr; order 0.." +
           std::to_string(bands.order) +
           " AacTnsOrderErr; direction 0..1 AacTnsDirectionErr;"
           "compress 0..1 AacTnsCoefCompressErr";
}

void addBandRows(Table& table, const Bands& bands) {
    const Value groups = value("groups", bands.numWinGrp),
                maxSfb = value("maxSfb", bands.bandCount);
    const Value winLen = value("winLen", bands.winLen), frequency = value("frequency", 3);
    const Value mask = value("mask", 1);
    const Data lengths = elements<Zet32s>(ZETAC_AAC_GROUPS_MAX, 1);
    const Data spectrum = elements<Zet32s>(ZETAC_AAC_FRAME_LEN, 1), wide = data(8 * kSpectrum);
    const Data scaleFactors = elements<Zet16s>(kBandsMax, 100);
    const Data books = elements<Zet8u>(kBandsMax, 1), state = data(sizeof(Zet32s));
    const Data intensity = elements<Zet8u>(kBandsMax, zetAacIntensityCb);
    const Data noise = elements<Zet8u>(kBandsMax, zetAacNoiseCb);
    const Data used = elements<Zet8u>(ZETAC_AAC_GROUPS_MAX * ZETAC_AAC_MS_ROW, 1);

    const auto check = [&](Row& row, int maxGroups, int maxFrequency, const std::string& more) {
        row.checks("winLen in 128 1024 AacWinLenErr; groups 1.." + std::to_string(maxGroups) +
                   " AacWinGrpErr; maxSfb 0..51 AacMaxSfbErr; frequency 0.." +
                   std::to_string(maxFrequency) + " AacSmpRateIdxErr" + more)
            .refuses("maxSfb", {bands.bandCount + 1, 51}, zetStsAacMaxSfbErr)
            .labelled(bands.label);
    };
    check(table.ZETAC_ROW(zetsQuantInv_AAC_32s_I, spectrum, scaleFactors, groups, lengths, maxSfb,
                          books, frequency, winLen),
          bands.numWinGrp, 11, "");
    check(table.ZETAC_ROW(zetsDecodeIsStereo_AAC_32s, spectrum, spectrum, scaleFactors, intensity,
                          groups, lengths, maxSfb, frequency, winLen),
          bands.numWinGrp, 11, "");
    check(table.ZETAC_ROW(zetsDeinterleaveSpectrum_AAC_32s, spectrum, data(kSpectrum), groups,
                          lengths, maxSfb, frequency, winLen),
          bands.numWinGrp, 11, "");
    check(table.ZETAC_ROW(zetsDecodeMsStereo_AAC_32s_I, spectrum, spectrum, mask, used, books,
                          groups, lengths, maxSfb, frequency, winLen),
          bands.numWinGrp, 11, "; mask 1..2 AacMsMaskErr");
    check(table.ZETAC_ROW(zetsDecodePNS_AAC_32s, wide, state, scaleFactors, groups, lengths, maxSfb,
                          noise, frequency, winLen),
          8, 16, "");
    check(table.ZETAC_ROW(zetsDecodeMsPNS_AAC_32s, wide, wide, state, scaleFactors, scaleFactors,
                          mask, used, groups, lengths, maxSfb, noise, noise, frequency, winLen),
          8, 16, "");

    const auto coefs = elements<Zet8s>(ZETAC_AAC_TNS_COEFS_MAX, 1);
    tnsChecks(table.ZETAC_ROW(zetsDecodeTNS_AAC_32s_I, spectrum, record(tnsInfo()), coefs, maxSfb,
                              frequency, winLen),
              bands)
        .checks(filterChecks(bands));
    tnsChecks(table.ZETAC_ROW(zetsEncodeTNS_AAC_32s_I, spectrum, record(tnsInfo()), coefs, maxSfb,
                              frequency, winLen, value("objectType", 1)),
              bands)
        .checks("objectType in 1 AacObjTypeErr; " + filterChecks(bands));
}

void addFilterBankRows(Table& table) {
    const Value sequence = value("sequence", zetAacOnlyLong);
    const Value shape = value("shape", zetAacKBD), previous = value("previous", zetAacSine);
    const auto lines = data(kSpectrum), zeros = data(kSpectrum, 0);
    const auto samples = data(2 * kSpectrum, 0), work = data(2 * kSpectrum);
    const std::string isWindow =
        "sequence 0..3 AacWinSeqErr; shape 0..1 AacWinShapeErr; previous 0..1 AacWinShapeErr";
    table
        .ZETAC_ROW(zetsMDCTInv_AAC_32s16s, zeros, data(kSpectrum), zeros, sequence, shape, previous,
                   value("step", 2))
        .checks(isWindow + "; step 1..2 AacPcmStepErr");
    table
        .ZETAC_ROW(zetsMDCTInv_AAC_32s_I, zeros, zeros, sequence, shape, previous,
                   value("len", ZETAC_AAC_FRAME_LEN))
        .checks(isWindow + "; len in 1024 BadSize");
    table.ZETAC_ROW(zetsMDCTFwd_AAC_32s, samples, lines, lines, sequence, shape, previous, work)
        .checks(isWindow);
    table.ZETAC_ROW(zetsMDCTFwd_AAC_32s_I, samples, lines, sequence, shape, previous, work)
        .checks(isWindow);
    table
        .ZETAC_ROW(zetsPow43Scale_16s32s_Sf, elements<Zet16s>(8, 1), data(8 * sizeof(Zet32s)),
                   value("scaleFactor", 100), value("len", 8))
        .checks("len >= 1 BadSize");
}

}  // namespace

void addAacRows(Table& table) {
    addElementRows(table);
    addNoiselessRows(table);
    for (const Bands& bands : kBands) addBandRows(table, bands);
    addFilterBankRows(table);
}

}  // namespace zetac::test
