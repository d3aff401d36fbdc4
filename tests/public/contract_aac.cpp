// Contract rows of the AAC family.
#include "support/contract.h"

namespace zetac::test {
namespace {

constexpr size_t kSpectrum = ZETAC_AAC_FRAME_LEN * sizeof(Zet32s);

// A position within a byte, and its check.
const ValueAt kOffset = valueAt("offset", 3);
Row& checkOffset(Row& row) {
    return row.range("offset", 0, 7, zetStsAacBitOffsetErr);
}

void addElementRows(Table& table) {
    const Data count = data(sizeof(int)), pce = data(sizeof(ZetAACPrgCfgElt));
    const Data ics = data(sizeof(ZetAACIcsInfo)), pair = data(sizeof(ZetAACChanPairElt));
    const Value predSfbMax = value("predSfbMax", 40);
    table
        .ZETAC_ROW(zetsUnpackADIFHeader_AAC, stream(), data(sizeof(ZetAACADIFHeader)),
                   data(16 * sizeof(ZetAACPrgCfgElt)), value("prgCfgEltMax", 16))
        .range("prgCfgEltMax", 1, 16, zetStsAacPrgNumErr);
    table.ZETAC_ROW(zetsUnpackADTSFrameHeader_AAC, stream(), data(sizeof(ZetAACADTSHeader)));
    checkOffset(table.ZETAC_ROW(zetsDecodePrgCfgElt_AAC, stream(), kOffset, pce));
    checkOffset(table.ZETAC_ROW(zetsDecodeDatStrElt_AAC, stream(), kOffset, count, count,
                                data(ZETAC_AAC_DATA_BYTES_MAX)));
    checkOffset(table.ZETAC_ROW(zetsDecodeFillElt_AAC, stream(), kOffset, count,
                                data(ZETAC_AAC_FILL_BYTES_MAX)));
    checkOffset(
        table.ZETAC_ROW(zetsDecodeChanPairElt_AAC, stream(), kOffset, ics, pair, predSfbMax))
        .range("predSfbMax", 0, 41, zetStsAacPredSfbMaxErr);
    checkOffset(table.ZETAC_ROW(zetsDecodeChanPairElt_MP4_AAC, stream(), kOffset, ics, pair,
                                data(2 * sizeof(ZetAACLtpInfo)), predSfbMax,
                                value("audioObjectType", 2)))
        .range("predSfbMax", 0, 51, zetStsAacMaxSfbErr);
}

void addScalableHeaderRows(Table& table) {
    checkOffset(table.ZETAC_ROW(zetsDecodeMainHeader_AAC, stream(), kOffset,
                                data(sizeof(ZetAACMainHeader)), value("channelNum", 2),
                                value("layerFlag", 0)))
        .range("channelNum", 1, 2, zetStsAacChanNumErr)
        .range("layerFlag", 0, 1, zetStsAacLayerFlagErr);
    checkOffset(table.ZETAC_ROW(zetsDecodeExtensionHeader_AAC, stream(), kOffset,
                                data(sizeof(ZetAACExtHeader)), value("tnsFlag", 1),
                                value("stereoLayerFlag", 1), value("diffCtrlFlag", 1),
                                value("prevMaxSfb", 10), value("prevMaxSfbSecond", 10),
                                value("windowSequence", zetAacOnlyLong)))
        .range("tnsFlag", 0, 1, zetStsAacLayerFlagErr)
        .range("stereoLayerFlag", 0, 1, zetStsAacStereoLayerErr)
        .range("diffCtrlFlag", 0, 1, zetStsAacDiffCtrlFlagErr)
        .range("prevMaxSfb", 0, 51, zetStsAacMaxSfbErr)
        .range("prevMaxSfbSecond", 0, 51, zetStsAacMaxSfbErr)
        .range("windowSequence", 0, 3, zetStsAacWinSeqErr);
}

Row& withChannelFields(Row& row) {
    return row.link(&ZetAACChanInfo::pIcsInfo)
        .field("sampling_frequency_index", &ZetAACChanInfo::sampling_frequency_index)
        .field("predSfbMax", &ZetAACChanInfo::predSfbMax)
        .range("offset", 0, 7, zetStsAacBitOffsetErr)
        .range("commonWin", 0, 1, zetStsAacCommonWinErr);
}

void addNoiselessRows(Table& table) {
    const Value commonWin = value("commonWin", 0);
    const auto scaleFactors = data(ZETAC_AAC_GROUP_BANDS_MAX * sizeof(Zet16s));
    const auto codebooks = data(ZETAC_AAC_GROUP_BANDS_MAX);
    const auto tnsCoefs = data(ZETAC_AAC_TNS_COEFS_MAX);

    withChannelFields(table.ZETAC_ROW(zetsNoiselessDecoder_LC_AAC, stream(), kOffset, commonWin,
                                      record<ZetAACChanInfo>(), scaleFactors, data(kSpectrum),
                                      codebooks, tnsCoefs))
        .range("sampling_frequency_index", 0, 11, zetStsAacSmpRateIdxErr)
        .range("predSfbMax", 0, 0, zetStsAacPredSfbMaxErr);

    const auto mpeg4 = [&](const char* name, auto function) {
        withChannelFields(
            table.add(name, function, stream(), kOffset, record<ZetAACMainHeader>(), scaleFactors,
                      data(kSpectrum), codebooks, tnsCoefs, record<ZetAACChanInfo>(),
                      value("windowSequence", zetAacOnlyLong), value("maxSfb", 40), commonWin,
                      value("scalableFlag", 0), value("audioObjectType", 2)))
            .range("windowSequence", 0, 3, zetStsAacWinSeqErr)
            .range("scalableFlag", 0, 1, zetStsAacScalableFlagErr)
            .range("audioObjectType", 0, 16, zetStsAacAotErr)
            .range("maxSfb", 0, 51, zetStsAacMaxSfbErr)
            .range("sampling_frequency_index", 0, 11, zetStsAacSmpRateIdxErr);
    };
    mpeg4("zetsNoiselessDecode_AAC", zetsNoiselessDecode_AAC);
    mpeg4("zetsNoiselessDecode_MP4_AAC", zetsNoiselessDecode_MP4_AAC);
}

// Valid band arguments at 48 kHz for long windows, or for short ones in groups of one.
struct Bands {
    const char* label;
    int winLen, numWinGrp, bandCount;
    int maxGroups;
};
constexpr Bands kLong = {"long", 1024, 1, 49, 1};
constexpr Bands kShort = {"short", 128, 8, 14, 8};

constexpr int kSampleRate48k = 3;

// Room for eight groups of long windows, which the checks of noise substitution let pass.
constexpr size_t kBandsMax = ZETAC_AAC_GROUPS_MAX * ZETAC_AAC_SFB_MAX;

struct BandArguments {
    explicit BandArguments(const Bands& bands)
        : numWinGrp(value("numWinGrp", bands.numWinGrp)),
          maxSfb(value("maxSfb", bands.bandCount)),
          winLen(value("winLen", bands.winLen)) {}

    Value numWinGrp, maxSfb, winLen;
    Value samplingFreqIndex = value("samplingFreqIndex", kSampleRate48k);
    Data groupLengths = elements<Zet32s>(ZETAC_AAC_GROUPS_MAX, 1);
    Data spectrum = elements<Zet32s>(ZETAC_AAC_FRAME_LEN, 1);
    Data scaleFactors = elements<Zet16s>(kBandsMax, 100);
    Data codebooks = elements<Zet8u>(kBandsMax, 1);
    Data msUsed = elements<Zet8u>(ZETAC_AAC_GROUPS_MAX * ZETAC_AAC_MS_ROW, 1);
};

Row& bandRanges(Row& row, int maxGroups, int maxSamplingFreqIndex) {
    return row.oneOf("winLen", {128, 1024}, zetStsAacWinLenErr)
        .range("numWinGrp", 1, maxGroups, zetStsAacWinGrpErr)
        .range("maxSfb", 0, 51, zetStsAacMaxSfbErr)
        .range("samplingFreqIndex", 0, maxSamplingFreqIndex, zetStsAacSmpRateIdxErr);
}

void bandCount(Row& row, const Bands& bands) {
    row.refuses("maxSfb", {bands.bandCount + 1, 51}, zetStsAacMaxSfbErr).labelled(bands.label);
}

void addBandToolRows(Table& table, const Bands& bands) {
    const BandArguments a(bands);
    const auto band = [&](Row& row) { bandCount(bandRanges(row, bands.maxGroups, 11), bands); };

    band(table.ZETAC_ROW(zetsQuantInv_AAC_32s_I, a.spectrum, a.scaleFactors, a.numWinGrp,
                         a.groupLengths, a.maxSfb, a.codebooks, a.samplingFreqIndex, a.winLen));
    band(table.ZETAC_ROW(zetsDecodeIsStereo_AAC_32s, a.spectrum, a.spectrum, a.scaleFactors,
                         elements<Zet8u>(kBandsMax, zetAacIntensityCb), a.numWinGrp, a.groupLengths,
                         a.maxSfb, a.samplingFreqIndex, a.winLen));
    band(table.ZETAC_ROW(zetsDeinterleaveSpectrum_AAC_32s, a.spectrum, data(kSpectrum), a.numWinGrp,
                         a.groupLengths, a.maxSfb, a.samplingFreqIndex, a.winLen));

    Row& ms = table.ZETAC_ROW(zetsDecodeMsStereo_AAC_32s_I, a.spectrum, a.spectrum,
                              value("msMaskPresent", 1), a.msUsed, a.codebooks, a.numWinGrp,
                              a.groupLengths, a.maxSfb, a.samplingFreqIndex, a.winLen);
    bandCount(bandRanges(ms, bands.maxGroups, 11).range("msMaskPresent", 1, 2, zetStsAacMsMaskErr),
              bands);
}

void addNoiseRows(Table& table, const Bands& bands) {
    const BandArguments a(bands);
    const auto noise = elements<Zet8u>(kBandsMax, zetAacNoiseCb);
    const auto spectrum = data(ZETAC_AAC_GROUPS_MAX * kSpectrum);
    const auto band = [&](Row& row) { bandCount(bandRanges(row, 8, 16), bands); };

    band(table.ZETAC_ROW(zetsDecodePNS_AAC_32s, spectrum, data(sizeof(Zet32s)), a.scaleFactors,
                         a.numWinGrp, a.groupLengths, a.maxSfb, noise, a.samplingFreqIndex,
                         a.winLen));
    band(table.ZETAC_ROW(zetsDecodeMsPNS_AAC_32s, spectrum, spectrum, data(sizeof(Zet32s)),
                         a.scaleFactors, a.scaleFactors, value("msMaskPresent", 1), a.msUsed,
                         a.numWinGrp, a.groupLengths, a.maxSfb, noise, noise, a.samplingFreqIndex,
                         a.winLen));
}

// One filter of order 2 over 10 bands in every window.
ZetAACTnsInfo tnsInfo() {
    ZetAACTnsInfo info = {};
    for (int window = 0; window < ZETAC_AAC_GROUPS_MAX; ++window) {
        info.n_filt[window] = 1;
        info.coef_res[window] = 4;
        info.length[window] = 10;
        info.order[window] = 2;
    }
    return info;
}

// The limits of the filters for one window length.
struct TnsLimits {
    Bands bands;
    int filters, order;
};

Row& tnsRanges(Row& row, const TnsLimits& limits) {
    return row.oneOf("winLen", {128, 1024}, zetStsAacWinLenErr)
        .range("samplingFreqIndex", 0, 11, zetStsAacSmpRateIdxErr)
        .range("maxSfb", 0, limits.bands.bandCount, zetStsAacMaxSfbErr)
        .labelled(limits.bands.label);
}

void tnsFilterRanges(Row& row, const TnsLimits& limits) {
    using Tns = ZetAACTnsInfo;
    row.field<Tns>("n_filt", [](Tns& tns) -> Zet32s& { return tns.n_filt[0]; })
        .field<Tns>("coef_res", [](Tns& tns) -> Zet32s& { return tns.coef_res[0]; })
        .field<Tns>("length", [](Tns& tns) -> Zet32s& { return tns.length[0]; })
        .field<Tns>("order", [](Tns& tns) -> Zet32s& { return tns.order[0]; })
        .field<Tns>("direction", [](Tns& tns) -> Zet32s& { return tns.direction[0]; })
        .field<Tns>("coef_compress", [](Tns& tns) -> Zet32s& { return tns.coef_compress[0]; })
        .range("n_filt", 0, limits.filters, zetStsAacTnsNumFiltErr)
        .oneOf("coef_res", {3, 4}, zetStsAacTnsCoefResErr)
        .range("length", 0, limits.bands.bandCount, zetStsAacTnsLengthErr)
        .range("order", 0, limits.order, zetStsAacTnsOrderErr)
        .range("direction", 0, 1, zetStsAacTnsDirectionErr)
        .range("coef_compress", 0, 1, zetStsAacTnsCoefCompressErr);
}

void addTnsRows(Table& table, const TnsLimits& limits) {
    const BandArguments a(limits.bands);
    const auto tns = record(tnsInfo());
    const auto coefs = elements<Zet8s>(ZETAC_AAC_TNS_COEFS_MAX, 1);

    tnsFilterRanges(tnsRanges(table.ZETAC_ROW(zetsDecodeTNS_AAC_32s_I, a.spectrum, tns, coefs,
                                              a.maxSfb, a.samplingFreqIndex, a.winLen),
                              limits),
                    limits);
    tnsFilterRanges(
        tnsRanges(table.ZETAC_ROW(zetsEncodeTNS_AAC_32s_I, a.spectrum, tns, coefs, a.maxSfb,
                                  a.samplingFreqIndex, a.winLen, value("objectType", 1)),
                  limits)
            .oneOf("objectType", {1}, zetStsAacObjTypeErr),
        limits);
}

void addFilterBankRows(Table& table) {
    const Value sequence = value("winSequence", zetAacOnlyLong);
    const Value shape = value("winShape", zetAacKBD), previous = value("prevWinShape", zetAacSine);
    const auto overlap = data(kSpectrum, 0), samples = data(2 * kSpectrum, 0);
    const auto checks = [](Row& row) -> Row& {
        return row.range("winSequence", 0, 3, zetStsAacWinSeqErr)
            .range("winShape", 0, 1, zetStsAacWinShapeErr)
            .range("prevWinShape", 0, 1, zetStsAacWinShapeErr);
    };

    checks(table.ZETAC_ROW(zetsMDCTInv_AAC_32s16s, data(kSpectrum, 0),
                           data(2 * ZETAC_AAC_FRAME_LEN * sizeof(Zet16s)), overlap, sequence, shape,
                           previous, value("pcmStep", 2)))
        .range("pcmStep", 1, 2, zetStsAacPcmStepErr);
    checks(table.ZETAC_ROW(zetsMDCTInv_AAC_32s_I, data(kSpectrum, 0), overlap, sequence, shape,
                           previous, value("len", ZETAC_AAC_FRAME_LEN)))
        .oneOf("len", {ZETAC_AAC_FRAME_LEN}, zetStsBadSize);
    checks(table.ZETAC_ROW(zetsMDCTFwd_AAC_32s, samples, data(kSpectrum), data(kSpectrum), sequence,
                           shape, previous, data(2 * kSpectrum)));
    checks(table.ZETAC_ROW(zetsMDCTFwd_AAC_32s_I, samples, data(kSpectrum), sequence, shape,
                           previous, data(2 * kSpectrum)));
}

void addPowerRow(Table& table) {
    constexpr size_t kLen = 8;
    table
        .ZETAC_ROW(zetsPow43Scale_16s32s_Sf, elements<Zet16s>(kLen, 1), data(kLen * sizeof(Zet32s)),
                   value("scaleFactor", 100), value("len", kLen))
        .atLeast("len", 1, zetStsBadSize);
}

}  // namespace

void addAacRows(Table& table) {
    addElementRows(table);
    addScalableHeaderRows(table);
    addNoiselessRows(table);
    for (const Bands& bands : {kLong, kShort}) {
        addBandToolRows(table, bands);
        addNoiseRows(table, bands);
    }
    addTnsRows(table, {kLong, 3, 12});
    addTnsRows(table, {kShort, 1, 7});
    addPowerRow(table);
    addFilterBankRows(table);
}

}  // namespace zetac::test
