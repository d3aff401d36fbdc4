// Values of syntax elements that several stages tell apart (ISO/IEC 11172-3, 2.4.2).
#pragma once

namespace zetac::mp3 {

inline constexpr int kShortBlock = 2;     // block_type
inline constexpr int kSingleChannel = 3;  // mode

}  // namespace zetac::mp3
