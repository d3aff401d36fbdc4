// How many bits the scale factors of Layer III have, and how many of them share a length.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

namespace zetac::tables {

// slen1 and slen2, the bits of the lower and upper bands, by scalefac_compress (ISO/IEC 11172-3,
// 2.4.2.7).
inline constexpr std::uint8_t ownMP3TableSlen[2][16] = {
    {0, 0, 0, 0, 3, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4},
    {0, 1, 2, 3, 0, 1, 2, 3, 1, 2, 3, 1, 2, 3, 2, 3}};

// Scale factors of the four groups of an LSF channel, by row and block kind: long, short, mixed
// (ISO/IEC 13818-3, 2.4.3.2). Rows 3..5 are the right channels of intensity stereo.
inline constexpr std::uint8_t ownNumberOfSfbBlock[6][3][4] = {
    {{6, 5, 5, 5}, {9, 9, 9, 9}, {6, 9, 9, 9}},
    {{6, 5, 7, 3}, {9, 9, 12, 6}, {6, 9, 12, 6}},
    {{11, 10, 0, 0}, {18, 18, 0, 0}, {15, 18, 0, 0}},
    {{7, 7, 7, 0}, {12, 12, 12, 0}, {6, 15, 12, 0}},
    {{6, 6, 6, 3}, {12, 9, 9, 6}, {6, 12, 9, 6}},
    {{8, 8, 5, 0}, {15, 12, 9, 0}, {6, 18, 9, 0}},
};

// How scalefac_compress divides the scale factors of LSF.
struct LsfLengths {
    int slen[4];
    int row;  // of ownNumberOfSfbBlock
    bool preflag;
};

constexpr LsfLengths lsfLengths(int compress) {
    if (compress < 400)
        return {{(compress >> 4) / 5, (compress >> 4) % 5, (compress & 15) >> 2, compress & 3},
                0,
                false};
    if (compress < 500) {
        const int rest = compress - 400;
        return {{(rest >> 2) / 5, (rest >> 2) % 5, rest & 3, 0}, 1, false};
    }
    const int rest = compress - 500;
    return {{rest / 3, rest % 3, 0, 0}, 2, true};
}

// The same for the right channel of intensity stereo, where they are positions.
constexpr LsfLengths lsfIntensityLengths(int compress) {
    const int half = compress >> 1;
    if (half < 180) return {{half / 36, half % 36 / 6, half % 36 % 6, 0}, 3, false};
    if (half < 244) {
        const int rest = half - 180;
        return {{rest >> 4, rest >> 2 & 3, rest & 3, 0}, 4, false};
    }
    const int rest = half - 244;
    return {{rest / 3, rest % 3, 0, 0}, 5, false};
}

}  // namespace zetac::tables
