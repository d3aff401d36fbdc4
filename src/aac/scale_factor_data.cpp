// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>

#include "aac/individual_channel_stream.h"
#include "tables/aac/huffman_trees.h"
#include "tables/aac/spectral_lookup.h"

namespace zetac::aac {
namespace {

// Goes on from where the lookup table ends, 11 bits more at most; rare. Returns an entry like the
// table's.
[[gnu::noinline]] uint32_t walkTree(uint32_t node, uint32_t bits) {
    const Zet8u* tree = tables::_pHfTableScf;
    uint32_t length = tables::kScalefactorLookupBits;
    for (; !(tree[node] & 1); ++length) node += bits << length >> 31 ? tree[node] / 2 : 1;
    return length | static_cast<uint32_t>(tree[node] / 2) << 8;
}

// hcod_sf: a difference of -60..60.
inline int readDifference(BitReader& stream) {
    const uint32_t bits = stream.peek();
    uint32_t entry = tables::kScalefactorLookup[bits >> (32 - tables::kScalefactorLookupBits)];
    if ((entry & 63) == 0) [[unlikely]]
        entry = walkTree(entry >> 8, bits);
    stream.skip(entry & 63);
    return static_cast<int>(entry >> 8) - 60;
}

constexpr bool isScaleFactor(int value) {
    return core::inRange(value, 0, 255);
}

// One difference for each band, from the running value on. The copies stay in registers.
template <bool isBounded>
ZetStatus readRun(BitReader& stream, int& runningValue, Zet16s* band, const Zet16s* end) {
    BitReader reader = stream;
    int value = runningValue;
    ZetStatus status = zetStsOk;
    for (; band != end; ++band) {
        value += readDifference(reader);
        if (isBounded && !isScaleFactor(value)) {
            status = zetStsAacSfValErr;
            break;
        }
        *band = static_cast<Zet16s>(value);
    }
    runningValue = value;
    stream = reader;
    return status;
}

// The running values of scale_factor_data() (ISO/IEC 14496-3, 4.6.2 and 4.6.13).
class RunningValues {
  public:
    RunningValues(int globalGain, ScaleFactorForm form)
        : form_(form), globalGain_(globalGain), scaleFactor_(globalGain) {}

    ZetStatus readBands(BitReader& stream, int codebook, Zet16s* band, Zet16s* end) {
        switch (codebook) {
            case zetAacZeroCb:
                std::fill(band, end, Zet16s{0});
                return zetStsOk;
            case zetAacReservedCb:
                return band == end ? zetStsOk : zetStsAacCodeBookErr;
            case zetAacNoiseCb:
                return readNoiseEnergies(stream, band, end);
            case zetAacIntensityCb:
            case zetAacIntensityCb2:
                return readRun<false>(stream, intensityPosition_, band, end);
            default:
                return readRun<true>(stream, scaleFactor_, band, end);
        }
    }

  private:
    ZetStatus readNoiseEnergies(BitReader& stream, Zet16s* band, Zet16s* end) {
        if (band == end) return zetStsOk;
        if (form_ == ScaleFactorForm::kLowComplexity) return zetStsAacCodeBookErr;
        const bool isShared = form_ == ScaleFactorForm::kSharedNoise;
        int& energy = isShared ? scaleFactor_ : noiseEnergy_;
        if (!hasNoise_) {
            // 9 raw bits around a value 90 steps below the global gain.
            energy = globalGain_ - 90 + ownsGetBits_AAC(stream, 9) - 256;
            if (isShared && !isScaleFactor(energy)) return zetStsAacSfValErr;
            *band++ = static_cast<Zet16s>(energy);
            hasNoise_ = true;
        }
        return isShared ? readRun<true>(stream, energy, band, end)
                        : readRun<false>(stream, energy, band, end);
    }

    const ScaleFactorForm form_;
    const int globalGain_;
    int scaleFactor_;
    int intensityPosition_ = 0;
    int noiseEnergy_ = 0;
    bool hasNoise_ = false;
};

}  // namespace

ZetStatus readScaleFactorData(BitReader& stream, const BandLayout& layout,
                              const ZetAACChanInfo& info, ScaleFactorForm form,
                              Zet16s* scaleFactor) {
    RunningValues values(info.global_gain, form);
    int section = 0;
    for (int g = 0; g < layout.numGroups; ++g, scaleFactor += layout.maxSfb) {
        int sfb = 0;
        for (int i = 0; i < info.num_sec[g]; ++i, ++section) {
            const int end = info.sect_end[section];
            const ZetStatus status = values.readBands(stream, info.sect_cb[section],
                                                      scaleFactor + sfb, scaleFactor + end);
            if (status != zetStsOk) return status;
            sfb = end;
        }
    }
    return zetStsOk;
}

}  // namespace zetac::aac
