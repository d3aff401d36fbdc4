// M/S matrixing and intensity stereo of one granule before quantisation (ISO/IEC 11172-3,
// 2.4.3.4.9, C.1.5).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "core/checks.h"
#include "core/fixed_point.h"
#include "mp3/syntax/bands.h"
#include "tables/mp3/stereo.h"

namespace zetac::mp3 {
namespace {

constexpr int kSilentRight = 6;  // position of a band that the left channel has alone
constexpr int kPositions = 6;

void ownsEncodeMsMatrix_MP3(Zet32s* __restrict left, Zet32s* __restrict right, int count) {
    constexpr int64_t kHalfRoot = 1518500250;  // 1 / sqrt(2), Q31
    for (int i = 0; i < count; ++i) {
        const int64_t l = left[i], r = right[i];
        left[i] = core::saturate32((l + r) * kHalfRoot >> 31);
        right[i] = core::saturate32((l - r) * kHalfRoot >> 31);
    }
}

uint64_t energy(const Zet32s* lines, int count) {
    uint64_t sum = 0;
    for (int i = 0; i < count; ++i)
        sum += static_cast<uint64_t>(static_cast<int64_t>(lines[i]) * lines[i]);
    return sum;
}

// A product of 64 and 32 bits.
struct Product96 {
    uint64_t high;
    uint32_t low;

    Product96(uint64_t a, uint32_t b) {
        const uint64_t lower = (a & 0xffffffff) * b;
        high = (a >> 32) * b + (lower >> 32);
        low = static_cast<uint32_t>(lower);
    }
    bool operator>=(const Product96& other) const {
        return high != other.high ? high > other.high : low >= other.low;
    }
};

int positionOf(uint64_t leftEnergy, uint64_t rightEnergy) {
    if (rightEnergy == 0) return kSilentRight;
    const Product96 left(leftEnergy, 1 << 15);
    int position = 0;
    while (position < kPositions &&
           left >= Product96(rightEnergy,
                             static_cast<uint32_t>(tables::pIsRatioSqrTable[position + 1])))
        ++position;
    return position;
}

Zet32s magnitudesWithLargerSign(Zet32s left, Zet32s right) {
    const int64_t l = std::abs(int64_t{left});
    const int64_t r = std::abs(int64_t{right});
    const bool isNegative = (l > r ? left : right) < 0;
    return core::saturate32(isNegative ? -(l + r) : l + r);
}

Zet8s ownsEncodeIsCore_MP3_MPEG1(Zet32s* left, Zet32s* right, int count) {
    const int position = positionOf(energy(left, count), energy(right, count));
    for (int i = 0; i < count; ++i) {
        left[i] = magnitudesWithLargerSign(left[i], right[i]);
        right[i] = 0;
    }
    return static_cast<Zet8s>(position);
}

struct StereoTools {
    bool isMiddleSide;
    bool isIntensity;

    explicit StereoTools(const ZetMP3Header& header)
        : isMiddleSide(isMode(header, Mode::kJointStereo) && hasMiddleSide(header)),
          isIntensity(isMode(header, Mode::kJointStereo) && hasIntensity(header)) {}
};

void encodeLong(StereoTools tools, const Zet16s* bands, int bound, Zet32s* left, Zet32s* right,
                Zet8s* positions) {
    if (tools.isMiddleSide) ownsEncodeMsMatrix_MP3(left, right, bands[bound]);
    if (!tools.isIntensity) return;
    for (int band = bound; band < kLongBands; ++band) {
        const int start = bands[band];
        positions[band] =
            ownsEncodeIsCore_MP3_MPEG1(left + start, right + start, bands[band + 1] - start);
    }
}

void encodeShort(StereoTools tools, const Zet16s* bands, const Zet32s* bounds, Zet32s* left,
                 Zet32s* right, Zet8s* positions) {
    for (int window = 0; window < kWindows; ++window) {
        for (int band = 0; band < kShortBands; ++band) {
            const int width = bands[band + 1] - bands[band];
            const int start = kWindows * bands[band] + window * width;
            if (band >= bounds[window] && tools.isIntensity) {
                positions[band * kWindows + window] =
                    ownsEncodeIsCore_MP3_MPEG1(left + start, right + start, width);
            } else if (band < bounds[window] && tools.isMiddleSide) {
                ownsEncodeMsMatrix_MP3(left + start, right + start, width);
            }
        }
    }
}

void setFullBounds(bool isShort, Zet32s* bounds) {
    if (isShort)
        std::fill_n(bounds, kWindows, kShortBands);
    else
        bounds[0] = kLongBands;
}

bool hasValidBounds(bool isShort, const Zet32s* bounds) {
    if (!isShort) return core::inRange(bounds[0], 0, kLongBands);
    return std::all_of(bounds, bounds + kWindows,
                       [](Zet32s bound) { return core::inRange(bound, 0, kShortBands); });
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsJointStereoEncode_MP3_32s_I(Zet32s* pSrcDstXrL, Zet32s* pSrcDstXrR,
                                          Zet8s* pDstScaleFactorR, const ZetMP3Header* pFrameHeader,
                                          const ZetMP3GranuleSideInfo* pSideInfo,
                                          Zet32s* pIsSfbBound) {
    ZETAC_REQUIRE(core::allSet(pSrcDstXrL, pSrcDstXrR, pDstScaleFactorR, pFrameHeader, pSideInfo,
                               pIsSfbBound),
                  zetStsNullPointer);
    ZETAC_REQUIRE(core::inRange(pFrameHeader->ID, 0, 1), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(pFrameHeader->sampling_frequency, 0, 2), zetStsBadFrameHeader);
    const mp3::StereoTools tools(*pFrameHeader);
    const bool isShort = mp3::isShort(pSideInfo[0]);
    const bool isJoint = tools.isMiddleSide || tools.isIntensity;
    ZETAC_REQUIRE(!isJoint || pSideInfo[0].block_type == pSideInfo[1].block_type,
                  zetStsBadSideInfo);
    ZETAC_REQUIRE(!tools.isIntensity || mp3::hasValidBounds(isShort, pIsSfbBound), zetStsBadArg);

    if (!tools.isIntensity) mp3::setFullBounds(isShort, pIsSfbBound);
    if (!isJoint) return zetStsOk;
    if (isShort)
        mp3::encodeShort(tools, mp3::shortBandsOf(*pFrameHeader), pIsSfbBound, pSrcDstXrL,
                         pSrcDstXrR, pDstScaleFactorR);
    else
        mp3::encodeLong(tools, mp3::longBandsOf(*pFrameHeader), pIsSfbBound[0], pSrcDstXrL,
                        pSrcDstXrR, pDstScaleFactorR);
    return zetStsOk;
}
