// The scale factors of one granule of one channel (ISO/IEC 11172-3, 2.4.2.7; 13818-3, 2.4.3.2).
#include "mp3dec/bit_stream.h"
#include "mp3dec/syntax.h"
#include "tables/mp3_scale_factor_lengths.h"

namespace zetac::mp3 {
namespace {

constexpr int kWindows = 3;

// Reads scale factors one after another.
class Writer {
  public:
    Writer(BitReader& stream, Zet8s* scaleFactors) : stream_(stream), next_(scaleFactors) {}

    void read(int count, int slen) {
        for (int i = 0; i < count; ++i)
            *next_++ = static_cast<Zet8s>(ownGetBits_MP3(stream_, slen));
    }
    void keep(int count) { next_ += count; }
    // The band above the last coded one, in each window.
    void fillShortBand() {
        for (int window = 0; window < kWindows; ++window) *next_++ = 0;
    }

  private:
    BitReader& stream_;
    Zet8s* next_;
};

void readLong(Writer& out, int slen1, int slen2, const int* scfsi, int granule) {
    constexpr int kGroupBands[4] = {6, 5, 5, 5};
    for (int group = 0; group < 4; ++group) {
        if (scfsi[group] && granule == 1)
            out.keep(kGroupBands[group]);
        else
            out.read(kGroupBands[group], group < 2 ? slen1 : slen2);
    }
}

void readMpeg1(BitReader& stream, const ZetMP3GranuleSideInfo& info, const int* scfsi, int granule,
               Zet8s* scaleFactors) {
    constexpr int kLongBandsOfMixed = 8, kFirstShortBandOfMixed = 3, kUpperShortBand = 6;
    const int slen1 = tables::ownMP3TableSlen[0][info.scalefac_compress];
    const int slen2 = tables::ownMP3TableSlen[1][info.scalefac_compress];
    const bool isShort = info.block_type == kShortBlock;
    Writer out(stream, scaleFactors);
    scaleFactors[21] = 0;
    if (isShort && info.mixed_block_flag == 0) {
        out.read(kUpperShortBand * kWindows, slen1);
    } else if (isShort && info.mixed_block_flag == 1) {
        out.read(kLongBandsOfMixed, slen1);
        out.read((kUpperShortBand - kFirstShortBandOfMixed) * kWindows, slen1);
    } else {
        return readLong(out, slen1, slen2, scfsi, granule);
    }
    out.read(6 * kWindows, slen2);
    out.fillShortBand();
}

// The largest value of a group is no position, and stands negated.
void markIllegalPositions(const tables::LsfLengths& lengths, const uint8_t* counts,
                          Zet8s* scaleFactors) {
    for (int group = 0; group < 4; ++group) {
        const int illegal = (1 << lengths.slen[group]) - 1;
        for (int i = 0; i < counts[group]; ++i, ++scaleFactors) {
            if (*scaleFactors == illegal) *scaleFactors = static_cast<Zet8s>(-illegal);
        }
    }
}

void readLsf(BitReader& stream, ZetMP3GranuleSideInfo& info, bool isIntensity,
             Zet8s* scaleFactors) {
    int blockKind = 0;
    if (info.block_type == kShortBlock) {
        info.mixed_block_flag &= 1;
        blockKind = 1 + info.mixed_block_flag;
    }
    const tables::LsfLengths lengths = isIntensity
                                           ? tables::lsfIntensityLengths(info.scalefac_compress)
                                           : tables::lsfLengths(info.scalefac_compress);
    info.preflag = lengths.preflag;
    const uint8_t* counts = tables::ownNumberOfSfbBlock[lengths.row][blockKind];
    Writer out(stream, scaleFactors);
    for (int group = 0; group < 4; ++group) out.read(counts[group], lengths.slen[group]);
    out.fillShortBand();
    if (isIntensity) markIllegalPositions(lengths, counts, scaleFactors);
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsUnpackScaleFactors_MP3_1u8s(Zet8u** ppStream, int* pBitOffset, Zet8s* pScaleFactors,
                                          ZetMP3GranuleSideInfo* pGranuleInfo, int* pScfsi,
                                          ZetMP3Header* pHeader, int granule, int channel) {
    ZETAC_REQUIRE(mp3::isSet(ppStream) &&
                      core::allSet(pBitOffset, pScaleFactors, pGranuleInfo, pScfsi, pHeader),
                  zetStsNullPointer);
    ZETAC_REQUIRE(mp3::isBitOffset(pBitOffset), zetStsBadArg);
    ZETAC_REQUIRE(core::inRange(granule, 0, 1), zetStsBadArg);
    ZETAC_REQUIRE(core::inRange(channel, 0, 1), zetStsBadArg);
    const bool isMpeg1 = pHeader->ID == 1;
    ZETAC_REQUIRE(core::inRange(pGranuleInfo->scalefac_compress, 0, isMpeg1 ? 15 : 511),
                  zetStsBadSideInfo);
    ZETAC_REQUIRE(isMpeg1 || core::inRange(pHeader->mode_extension, 0, 3), zetStsBadFrameHeader);
    mp3::BitReader stream(ppStream, pBitOffset);
    if (isMpeg1) {
        mp3::readMpeg1(stream, *pGranuleInfo, pScfsi, granule, pScaleFactors);
    } else {
        const bool isIntensity = (pHeader->mode_extension & 1) && channel == 1;
        mp3::readLsf(stream, *pGranuleInfo, isIntensity, pScaleFactors);
    }
    stream.store(ppStream, pBitOffset);
    return zetStsOk;
}
