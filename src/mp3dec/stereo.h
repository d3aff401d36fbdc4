// Joint stereo of Layer III (ISO/IEC 11172-3, 2.4.3.4; 13818-3, 2.4.3.2).
#pragma once

#include "mp3dec/requantization.h"

namespace zetac::mp3 {

enum class BandStereo : uint8_t { kSeparate, kMiddleSide, kIntensity };

// What each band is coded as. It is known from the quantised values and needed twice: middle/side
// bands are requantised by 1/sqrt(2) lower, and the stereo step then undoes them.
struct StereoPlan {
    BandStereo ofLong[kLongBands] = {};
    BandStereo ofShort[kShortBands][kWindows] = {};
};

StereoPlan planStereo(const ZetMP3Header& header, const Channel& left, const Channel& right);

// Whether all bands in intensity stereo have a position that exists.
bool hasKnownPositions(const ZetMP3Header& header, const StereoPlan& plan, const Channel& right);

// Undo joint stereo in the long bands, and in the short bands of one window. Sums and differences
// saturate. They extend the reach of the channels.
void _sStereoLong_MP3_32s_I(const ZetMP3Header& header, const StereoPlan& plan, Channel& left,
                            Channel& right);
void _sStereoShort_MP3_32s_I(const ZetMP3Header& header, const StereoPlan& plan, int window,
                             Channel& left, Channel& right);

}  // namespace zetac::mp3
