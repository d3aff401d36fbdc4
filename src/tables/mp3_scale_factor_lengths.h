// How many bits the scale factors of Layer III have, and how many of them share a length.
#pragma once

#include <cstdint>

namespace zetac::tables {

// Bits of the lower and upper bands by scalefac_compress (ISO/IEC 11172-3, 2.4.2.7).
inline constexpr std::uint8_t kSlen1[16] = {0, 0, 0, 0, 3, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4};
inline constexpr std::uint8_t kSlen2[16] = {0, 1, 2, 3, 0, 1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 3};

// Scale factors of the four groups of an LSF channel, by row and block kind: long, short, mixed
// (ISO/IEC 13818-3, 2.4.3.2). Rows 3..5 are the right channels of intensity stereo.
inline constexpr std::uint8_t kNrOfSfbBlock[6][3][4] = {
    {{6, 5, 5, 5}, {9, 9, 9, 9}, {6, 9, 9, 9}},
    {{6, 5, 7, 3}, {9, 9, 12, 6}, {6, 9, 12, 6}},
    {{11, 10, 0, 0}, {18, 18, 0, 0}, {15, 18, 0, 0}},
    {{7, 7, 7, 0}, {12, 12, 12, 0}, {6, 15, 12, 0}},
    {{6, 6, 6, 3}, {12, 9, 9, 6}, {6, 12, 9, 6}},
    {{8, 8, 5, 0}, {15, 12, 9, 0}, {6, 18, 9, 0}},
};

}  // namespace zetac::tables
