// The scale factors of one granule of one channel (ISO/IEC 11172-3, 2.4.2.7; 13818-3, 2.4.3.2).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <cstdlib>

#include "core/checks.h"
#include "mp3/syntax/bands.h"
#include "mp3/syntax/fields.h"
#include "tables/mp3/scale_factor_lengths.h"

namespace zetac::mp3 {
namespace {

// Scale factors one after another, read into an array.
struct FactorReader {
    core::BitReader& stream;
    Zet8s* next;

    void run(int count, int slen) {
        for (int i = 0; i < count; ++i) *next++ = static_cast<Zet8s>(ownGetBits_MP3(stream, slen));
    }
    void pass(int count) { next += count; }
    // The band above the last coded one, in each window.
    void fillBand() {
        for (int window = 0; window < kWindows; ++window) *next++ = 0;
    }
};

// The same, written. Positions of intensity stereo that are illegal stand negated.
struct FactorWriter {
    core::BitWriter& stream;
    const Zet8s* next;
    bool hasMagnitudes;

    void run(int count, int slen) {
        for (int i = 0; i < count; ++i, ++next)
            ownSetBits(stream, hasMagnitudes ? std::abs(*next) : *next, slen);
    }
    void pass(int count) { next += count; }
    void fillBand() {}
};

template <class Factors>
void longMpeg1(Factors factors, const int (&slen)[2], const int* scfsi, int granule) {
    for (int group = 0; group < kScfsiGroups; ++group) {
        if (scfsi[group] && granule == 1)
            factors.pass(scfsiGroupSize(group));
        else
            factors.run(scfsiGroupSize(group), slen[group / 2]);
    }
}

template <class Factors>
void factorsMpeg1(Factors factors, const ZetMP3GranuleSideInfo& info, BlockKind kind,
                  const int* scfsi, int granule) {
    const int slen[2] = {tables::ownMP3TableSlen[0][info.scalefac_compress],
                         tables::ownMP3TableSlen[1][info.scalefac_compress]};
    if (kind == kLongBlock) return longMpeg1(factors, slen, scfsi, granule);
    factors.run(numLongBands(kind, true), slen[0]);
    factors.run((kFirstUpperShortBand - firstShortBand(kind)) * kWindows, slen[0]);
    factors.run((kCodedShortBands - kFirstUpperShortBand) * kWindows, slen[1]);
    factors.fillBand();
}

// Returns how the factors were divided.
template <class Factors>
tables::LsfLengths factorsLsf(Factors factors, ZetMP3GranuleSideInfo& info, bool isIntensity) {
    const tables::LsfLengths lengths = isIntensity
                                           ? tables::lsfIntensityLengths(info.scalefac_compress)
                                           : tables::lsfLengths(info.scalefac_compress);
    info.preflag = lengths.preflag;
    const uint8_t* counts = tables::ownNumberOfSfbBlock[lengths.row][blockKindOf(info)];
    for (int group = 0; group < 4; ++group) factors.run(counts[group], lengths.slen[group]);
    factors.fillBand();
    return lengths;
}

// The largest value of a group is no position, and stands negated.
void markIllegalPositions(const tables::LsfLengths& lengths, BlockKind kind, Zet8s* scaleFactors) {
    for (int group = 0; group < 4; ++group) {
        const int illegal = (1 << lengths.slen[group]) - 1;
        const int count = tables::ownNumberOfSfbBlock[lengths.row][kind][group];
        for (int i = 0; i < count; ++i, ++scaleFactors)
            if (*scaleFactors == illegal) *scaleFactors = static_cast<Zet8s>(-illegal);
    }
}

bool hasPositions(const ZetMP3Header& header, int channel) {
    return hasIntensity(header) && channel == 1;
}

// MPEG-1 knows mixed_block_flag 1 only; other values than 0 are read like long blocks.
BlockKind readKindOf(const ZetMP3GranuleSideInfo& info) {
    return core::inRange(info.mixed_block_flag, 0, 1) ? blockKindOf(info) : kLongBlock;
}

void readFactors(core::BitReader& stream, const ZetMP3Header& header, ZetMP3GranuleSideInfo& info,
                 const int* scfsi, int granule, int channel, Zet8s* scaleFactors) {
    const FactorReader factors = {stream, scaleFactors};
    if (isMpeg1(header)) {
        scaleFactors[kCodedLongBands] = 0;
        return factorsMpeg1(factors, info, readKindOf(info), scfsi, granule);
    }
    if (isShort(info)) info.mixed_block_flag &= 1;
    const bool isIntensity = hasPositions(header, channel);
    const tables::LsfLengths lengths = factorsLsf(factors, info, isIntensity);
    if (isIntensity) markIllegalPositions(lengths, blockKindOf(info), scaleFactors);
}

void writeFactors(core::BitWriter& stream, const ZetMP3Header& header, ZetMP3GranuleSideInfo& info,
                  const int* scfsi, int granule, int channel, const Zet8s* scaleFactors) {
    const bool isIntensity = !isMpeg1(header) && hasPositions(header, channel);
    const FactorWriter factors = {stream, scaleFactors, isIntensity};
    if (isMpeg1(header))
        factorsMpeg1(factors, info, blockKindOf(info), scfsi, granule);
    else
        factorsLsf(factors, info, isIntensity);
}

ZetStatus checkLengths(const ZetMP3Header& header, const ZetMP3GranuleSideInfo& info) {
    const bool mpeg1 = isMpeg1(header);
    ZETAC_REQUIRE(core::inRange(info.scalefac_compress, 0, mpeg1 ? 15 : 511), zetStsBadSideInfo);
    ZETAC_REQUIRE(mpeg1 || core::inRange(header.mode_extension, 0, 3), zetStsBadFrameHeader);
    return zetStsOk;
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsUnpackScaleFactors_MP3_1u8s(Zet8u** ppStream, int* pBitOffset, Zet8s* pScaleFactors,
                                          ZetMP3GranuleSideInfo* pGranuleInfo, int* pScfsi,
                                          ZetMP3Header* pHeader, int granule, int channel) {
    ZETAC_REQUIRE(core::isSet(ppStream) &&
                      core::allSet(pBitOffset, pScaleFactors, pGranuleInfo, pScfsi, pHeader),
                  zetStsNullPointer);
    ZETAC_REQUIRE(core::isBitOffset(pBitOffset), zetStsBadArg);
    ZETAC_REQUIRE(core::inRange(granule, 0, 1), zetStsBadArg);
    ZETAC_REQUIRE(core::inRange(channel, 0, 1), zetStsBadArg);
    if (const ZetStatus status = mp3::checkLengths(*pHeader, *pGranuleInfo)) return status;
    core::BitReader stream(ppStream, pBitOffset);
    mp3::readFactors(stream, *pHeader, *pGranuleInfo, pScfsi, granule, channel, pScaleFactors);
    stream.store(ppStream, pBitOffset);
    return zetStsOk;
}

ZetStatus zetsPackScaleFactors_MP3_8s1u(const Zet8s* pSrcScaleFactor, Zet8u** ppBitStream,
                                        int* pOffset, const ZetMP3Header* pFrameHeader,
                                        ZetMP3GranuleSideInfo* pSideInfo, const int* pScfsi,
                                        int granule, int channel) {
    ZETAC_REQUIRE(core::isSet(ppBitStream) &&
                      core::allSet(pSrcScaleFactor, pOffset, pFrameHeader, pSideInfo, pScfsi),
                  zetStsNullPointer);
    ZETAC_REQUIRE(core::isBitOffset(pOffset), zetStsBadArg);
    if (const ZetStatus status = mp3::checkLengths(*pFrameHeader, *pSideInfo)) return status;
    core::BitWriter stream(ppBitStream, pOffset, core::BitWriter::Behind::kJoined);
    mp3::writeFactors(stream, *pFrameHeader, *pSideInfo, pScfsi, granule, channel, pSrcScaleFactor);
    stream.store(ppBitStream, pOffset);
    return zetStsOk;
}
