// Packs the scale factors of one granule of one channel (ISO/IEC 11172-3, 2.4.2.7; 13818-3,
// 2.4.3.2).
#include <cstdlib>

#include "mp3enc/bit_stream.h"
#include "mp3enc/syntax.h"
#include "tables/mp3_scale_factor_lengths.h"

namespace zetac::mp3enc {
namespace {

// Writes scale factors one after another.
class Packer {
  public:
    Packer(BitWriter& stream, const Zet8s* scaleFactors) : stream_(stream), next_(scaleFactors) {}

    void write(int count, int slen) {
        for (int i = 0; i < count; ++i) ownSetBits(stream_, *next_++, slen);
    }
    // Positions of intensity stereo that are illegal stand negated.
    void writeMagnitudes(int count, int slen) {
        for (int i = 0; i < count; ++i) ownSetBits(stream_, std::abs(*next_++), slen);
    }
    void pass(int count) { next_ += count; }

  private:
    BitWriter& stream_;
    const Zet8s* next_;
};

void writeLong(Packer& out, int slen1, int slen2, const int* scfsi, int granule) {
    constexpr int kGroupBands[4] = {6, 5, 5, 5};
    for (int group = 0; group < 4; ++group) {
        if (scfsi[group] && granule == 1)
            out.pass(kGroupBands[group]);
        else
            out.write(kGroupBands[group], group < 2 ? slen1 : slen2);
    }
}

void writeMpeg1(Packer& out, const ZetMP3GranuleSideInfo& info, const int* scfsi, int granule) {
    constexpr int kLongBandsOfMixed = 8, kFirstShortBandOfMixed = 3, kUpperShortBand = 6;
    const int slen1 = tables::ownMP3TableSlen[0][info.scalefac_compress];
    const int slen2 = tables::ownMP3TableSlen[1][info.scalefac_compress];
    if (info.block_type != kShortBlock) return writeLong(out, slen1, slen2, scfsi, granule);
    if (isMixed(info)) {
        out.write(kLongBandsOfMixed, slen1);
        out.write((kUpperShortBand - kFirstShortBandOfMixed) * kWindows, slen1);
    } else {
        out.write(kUpperShortBand * kWindows, slen1);
    }
    out.write(6 * kWindows, slen2);
}

void writeLsf(Packer& out, ZetMP3GranuleSideInfo& info, bool isIntensity) {
    const int blockKind = info.block_type != kShortBlock ? 0 : 1 + isMixed(info);
    const tables::LsfLengths lengths = isIntensity
                                           ? tables::lsfIntensityLengths(info.scalefac_compress)
                                           : tables::lsfLengths(info.scalefac_compress);
    info.preflag = lengths.preflag;
    const uint8_t* counts = tables::ownNumberOfSfbBlock[lengths.row][blockKind];
    for (int group = 0; group < 4; ++group) {
        if (isIntensity)
            out.writeMagnitudes(counts[group], lengths.slen[group]);
        else
            out.write(counts[group], lengths.slen[group]);
    }
}

}  // namespace
}  // namespace zetac::mp3enc

using namespace zetac;

ZetStatus zetsPackScaleFactors_MP3_8s1u(const Zet8s* pSrcScaleFactor, Zet8u** ppBitStream,
                                        int* pOffset, const ZetMP3Header* pFrameHeader,
                                        ZetMP3GranuleSideInfo* pSideInfo, const int* pScfsi,
                                        int granule, int channel) {
    ZETAC_REQUIRE(core::isSet(ppBitStream) &&
                      core::allSet(pSrcScaleFactor, pOffset, pFrameHeader, pSideInfo, pScfsi),
                  zetStsNullPointer);
    ZETAC_REQUIRE(core::isBitOffset(pOffset), zetStsBadArg);
    const bool isMpeg1 = pFrameHeader->ID == 1;
    ZETAC_REQUIRE(core::inRange(pSideInfo->scalefac_compress, 0, isMpeg1 ? 15 : 511),
                  zetStsBadSideInfo);
    ZETAC_REQUIRE(isMpeg1 || core::inRange(pFrameHeader->mode_extension, 0, 3),
                  zetStsBadFrameHeader);
    mp3enc::BitWriter stream(ppBitStream, pOffset, mp3enc::BitWriter::Behind::kJoined);
    mp3enc::Packer out(stream, pSrcScaleFactor);
    if (isMpeg1)
        mp3enc::writeMpeg1(out, *pSideInfo, pScfsi, granule);
    else
        mp3enc::writeLsf(out, *pSideInfo, (pFrameHeader->mode_extension & 1) && channel == 1);
    stream.store(ppBitStream, pOffset);
    return zetStsOk;
}
