#include "mp3dec/requantization.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstdlib>

#include "core/checks.h"
#include "core/fixed_point.h"
#include "mp3dec/reorder.h"
#include "mp3dec/stereo.h"
#include "tables/mp3_requant.h"
#include "tables/mp3_sfb.h"

namespace zetac::mp3 {
namespace {

constexpr int kFractionBits = 26;
constexpr int kUnityGain = 210;        // global_gain of 2^0
constexpr int kSubblockGainSteps = 8;  // quarter steps in a step of subblock_gain
constexpr int kMiddleSideSteps = 2;    // 1/sqrt(2) in quarter steps
constexpr int kFirstShortOfMixed = 3;  // line 12 of each window, line 36 of the granule
constexpr double kMaxValue = core::kMax32s;

// 2^(26 - e/4).
double gainOf(int e) {
    const int64_t exponent = kFractionBits - (e >> 2);
    return tables::kMP3QuarterPower[e & 3] *
           std::bit_cast<double>(static_cast<uint64_t>(1023 + exponent) << 52);
}

// x where sign is 0, -x where it is -1.
__m128i negateWhere(__m128i sign, __m128i x) {
    return _mm_sub_epi32(_mm_xor_si128(x, sign), sign);
}

// The powers of magnitudes kLane and kLane + 1, in the low half.
template <int kLane>
__m128i powers(__m128i magnitude, __m128d gain) {
    const double* const table = tables::kMP3Pow43;
    const __m128d low = _mm_load_sd(table + _mm_extract_epi16(magnitude, 2 * kLane));
    const __m128d both = _mm_loadh_pd(low, table + _mm_extract_epi16(magnitude, 2 * kLane + 2));
    return _mm_cvtpd_epi32(_mm_min_pd(_mm_mul_pd(both, gain), _mm_set1_pd(kMaxValue)));
}

// The product of two doubles is so exact that rounding to nearest decides: the result is within
// half a unit and 2^-20 of another.
__m128i requantized(__m128i x, __m128d gain) {
    const __m128i sign = _mm_srai_epi32(x, 31);
    const __m128i magnitude = negateWhere(sign, x);
    return negateWhere(sign,
                       _mm_unpacklo_epi64(powers<0>(magnitude, gain), powers<2>(magnitude, gain)));
}

// A value beyond either limit leaves a sign bit, be it by wrap-around.
bool magnitudesInRange(const Zet32s* line, int count) {
    constexpr Zet32s kMax = tables::kMP3MaxQuantised;
    Zet32s signs = 0;
    for (int i = 0; i < count; ++i)
        signs |= core::subWrap(kMax, line[i]) | core::addWrap(kMax, line[i]);
    return signs >= 0;
}

bool isIndependent(const ZetMP3Header& header) {
    return header.mode != 1 || header.mode_extension == 0;
}

int numChannels(const ZetMP3Header& header) {
    return header.mode == 3 ? 1 : 2;
}

ZetStatus checkGains(const ZetMP3GranuleSideInfo& info) {
    ZETAC_REQUIRE(core::inRange(info.global_gain, 0, 255), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(info.scalefac_scale, 0, 1), zetStsBadSideInfo);
    ZETAC_REQUIRE(core::inRange(info.preflag, 0, 1), zetStsBadSideInfo);
    if (info.block_type == 2) {
        for (const Zet32s gain : info.subblock_gain)
            ZETAC_REQUIRE(core::inRange(gain, 0, 7), zetStsOutOfRange);
    }
    return zetStsOk;
}

int middleSideSteps(BandStereo stereo) {
    return stereo == BandStereo::kMiddleSide ? kMiddleSideSteps : 0;
}

// Negative scale factors mark intensity positions; as gains they count like positive ones.
int scaleFactorSteps(const Channel& channel, int scaleFactor, int pretab) {
    return (std::abs(scaleFactor) + pretab) << (1 + channel.info->scalefac_scale);
}

void requantizeLong(const Channel& channel, const StereoPlan& plan) {
    const GranuleBands& bands = channel.bands;
    const int lines = std::min(channel.reach.lines, bands.longEnd());
    for (int band = 0; band < bands.numLong && bands.longStart[band] < lines; ++band) {
        const int pretab = channel.info->preflag != 0 ? tables::kMP3Pretab[band] : 0;
        const int e = kUnityGain - channel.info->global_gain +
                      scaleFactorSteps(channel, channel.scaleFactors[band], pretab) +
                      middleSideSteps(plan.ofLong[band]);
        const int start = bands.longStart[band];
        const int end = std::min<int>(bands.longStart[band + 1], lines);
        _sReqCore_MP3_32s_I(channel.lines + start, end - start, e);
    }
}

void requantizeShort(const Channel& channel, const StereoPlan& plan) {
    const GranuleBands& bands = channel.bands;
    for (int window = 0; window < kWindows; ++window) {
        const int gain = kUnityGain - channel.info->global_gain +
                         kSubblockGainSteps * channel.info->subblock_gain[window];
        for (int band = bands.firstShort; band < channel.reach.shortBands[window]; ++band) {
            const Zet8s scaleFactor = channel.scaleFactors[bands.shortScaleFactor(band, window)];
            const int e = gain + scaleFactorSteps(channel, scaleFactor, 0) +
                          middleSideSteps(plan.ofShort[band][window]);
            const Run run = bands.shortRun(band, window);
            const int count = std::min(run.count, channel.reach.lines - run.start);
            _sReqCore_MP3_32s_I(channel.lines + run.start, count, e);
        }
    }
}

ZetStatus requantizeChannel(const Channel& channel, const StereoPlan& plan) {
    if (const ZetStatus status = checkGains(*channel.info)) return status;
    ZETAC_REQUIRE(magnitudesInRange(channel.lines, channel.reach.lines), zetStsOutOfRange);
    requantizeLong(channel, plan);
    if (channel.bands.hasShort()) requantizeShort(channel, plan);
    return zetStsOk;
}

void undoStereo(const ZetMP3Header& header, const StereoPlan& plan, Channel& left, Channel& right) {
    _sStereoLong_MP3_32s_I(header, plan, left, right);
    if (!left.bands.hasShort()) return;
    for (int window = 0; window < kWindows; ++window)
        _sStereoShort_MP3_32s_I(header, plan, window, left, right);
}

ZetStatus checkArguments(const int* bounds, const ZetMP3GranuleSideInfo* infos,
                         const ZetMP3Header& header) {
    ZETAC_REQUIRE(core::inRange(header.ID, 0, 1), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(header.sampling_frequency, 0, 2), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(header.mode, 0, 3), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(header.mode_extension, 0, 3), zetStsBadFrameHeader);
    if (!isIndependent(header)) {
        ZETAC_REQUIRE(infos[0].block_type == infos[1].block_type, zetStsBadSideInfo);
        ZETAC_REQUIRE(infos[0].mixed_block_flag == infos[1].mixed_block_flag, zetStsBadSideInfo);
    }
    for (int ch = 0; ch < numChannels(header); ++ch) {
        ZETAC_REQUIRE(core::inRange(infos[ch].block_type, 0, 3), zetStsBadSideInfo);
        ZETAC_REQUIRE(core::inRange(infos[ch].mixed_block_flag, 0, 1), zetStsBadSideInfo);
        ZETAC_REQUIRE(core::inRange(bounds[ch], 0, ZETAC_MP3_GRANULE_LEN), zetStsBadArg);
    }
    return zetStsOk;
}

Channel makeChannel(Zet32s* lines, int bound, const Zet8s* scaleFactors,
                    const ZetMP3GranuleSideInfo& info, const GranuleBands& bands) {
    Channel channel = {lines, scaleFactors, &info, bands, {bound, {}}};
    if (bands.hasShort()) _sShortPreproc_MP3(lines, bands, channel.reach);
    return channel;
}

ZetStatus requantize(Zet32s* lines, int* bounds, const Zet8s* scaleFactors,
                     const ZetMP3GranuleSideInfo* infos, const ZetMP3Header& header, Zet32s* buffer,
                     const Zet16s* longTable, const Zet16s* shortTable) {
    const auto channelAt = [&](int ch) {
        return makeChannel(lines + ch * ZETAC_MP3_GRANULE_LEN, bounds[ch],
                           scaleFactors + ch * ZETAC_MP3_SCF_MAX, infos[ch],
                           GranuleBands(header, infos[ch], longTable, shortTable));
    };
    const int count = numChannels(header);
    Channel channels[2] = {channelAt(0), channelAt(count - 1)};
    const bool joint = !isIndependent(header);
    const StereoPlan plan = joint ? planStereo(header, channels[0], channels[1]) : StereoPlan{};
    for (int ch = 0; ch < count; ++ch) {
        if (const ZetStatus status = requantizeChannel(channels[ch], plan)) return status;
    }
    if (joint) {
        ZETAC_REQUIRE(hasKnownPositions(header, plan, channels[1]), zetStsOutOfRange);
        undoStereo(header, plan, channels[0], channels[1]);
    }
    for (int ch = 0; ch < count; ++ch) {
        bounds[ch] = channels[ch].bands.hasShort() ? _sReorder_MP3_32s(channels[ch], buffer)
                                                   : channels[ch].reach.lines;
    }
    return zetStsOk;
}

}  // namespace

GranuleBands::GranuleBands(const ZetMP3Header& header, const ZetMP3GranuleSideInfo& info,
                           const Zet16s* longTable, const Zet16s* shortTable) {
    const int row = header.ID * 3 + header.sampling_frequency;
    longStart = longTable + row * tables::kMP3SfbLongEntries;
    shortStart = shortTable + row * tables::kMP3SfbShortEntries;
    if (info.block_type != 2) {
        numLong = kLongBands;
        firstShort = kShortBands;
    } else if (info.mixed_block_flag != 0) {
        numLong = header.ID == 1 ? 8 : 6;
        firstShort = kFirstShortOfMixed;
    } else {
        numLong = 0;
        firstShort = 0;
    }
}

int Reach::maxShortBands() const {
    return std::max({shortBands[0], shortBands[1], shortBands[2]});
}

// Most bands are an even number of lines wide, every second one no multiple of four.
void _sReqCore_MP3_32s_I(Zet32s* pSrcDst, int count, int e) {
    const __m128d gain = _mm_set1_pd(gainOf(e));
    for (; count >= 4; count -= 4, pSrcDst += 4) {
        __m128i* const lines = reinterpret_cast<__m128i*>(pSrcDst);
        _mm_storeu_si128(lines, requantized(_mm_loadu_si128(lines), gain));
    }
    if (count >= 2) {
        __m128i* const lines = reinterpret_cast<__m128i*>(pSrcDst);
        _mm_storel_epi64(lines, requantized(_mm_loadl_epi64(lines), gain));
        count -= 2, pSrcDst += 2;
    }
    if (count > 0) *pSrcDst = _mm_cvtsi128_si32(requantized(_mm_cvtsi32_si128(*pSrcDst), gain));
}

}  // namespace zetac::mp3

ZetStatus zetsReQuantizeSfb_MP3_32s_I(Zet32s* pSrcDst, int* pNonZeroBound, Zet8s* pScaleFactors,
                                      ZetMP3GranuleSideInfo* pGranuleInfo, ZetMP3Header* pHeader,
                                      Zet32s* pBuffer, const Zet16s* pSfbTableLong,
                                      const Zet16s* pSfbTableShort) {
    using namespace zetac;
    ZETAC_REQUIRE(core::allSet(pSrcDst, pNonZeroBound, pScaleFactors, pGranuleInfo, pHeader,
                               pBuffer, pSfbTableLong, pSfbTableShort),
                  zetStsNullPointer);
    if (const ZetStatus status = mp3::checkArguments(pNonZeroBound, pGranuleInfo, *pHeader))
        return status;
    return mp3::requantize(pSrcDst, pNonZeroBound, pScaleFactors, pGranuleInfo, *pHeader, pBuffer,
                           pSfbTableLong, pSfbTableShort);
}

ZetStatus zetsReQuantize_MP3_32s_I(Zet32s* pSrcDst, int* pNonZeroBound, Zet8s* pScaleFactors,
                                   ZetMP3GranuleSideInfo* pGranuleInfo, ZetMP3Header* pHeader,
                                   Zet32s* pBuffer) {
    return zetsReQuantizeSfb_MP3_32s_I(pSrcDst, pNonZeroBound, pScaleFactors, pGranuleInfo, pHeader,
                                       pBuffer, zetac::tables::_zet_pMP3SfbTableLong,
                                       zetac::tables::_zet_pMP3SfbTableShort);
}
