// Values of syntax elements that several stages tell apart (ISO/IEC 11172-3, 2.4.2).
#pragma once

#include <zetac.h>

namespace zetac::mp3enc {

inline constexpr int kShortBlock = 2;     // block_type
inline constexpr int kJointStereo = 1;    // mode
inline constexpr int kSingleChannel = 3;  // mode
inline constexpr int kLongBands = 22;
inline constexpr int kShortBands = 13;
inline constexpr int kWindows = 3;

inline bool isMixed(const ZetMP3GranuleSideInfo& info) {
    return info.mixed_block_flag & 1;
}

// The row of the band tables.
inline int bandRow(const ZetMP3Header& header) {
    return header.ID * 3 + header.sampling_frequency;
}

}  // namespace zetac::mp3enc
