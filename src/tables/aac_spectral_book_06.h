// Spectral codebook 6 (ISO/IEC 14496-3, Table 4.A.7): signed pairs of -4..4.
// {length, codeword}, in ascending order of the tuple, first value most significant;
// each row has the leading value y in front and runs through the last value z.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kSpectralBook6[81] = {
    /* -4 */ {11, 0x7fe}, {10, 0x3fd}, { 9, 0x1f1}, { 9, 0x1eb}, { 9, 0x1f4},
             { 9, 0x1ea}, { 9, 0x1f0}, {10, 0x3fc}, {11, 0x7fd},
    /* -3 */ {10, 0x3f6}, { 9, 0x1e5}, { 8, 0x0ea}, { 7, 0x06c}, { 7, 0x071},
             { 7, 0x068}, { 8, 0x0f0}, { 9, 0x1e6}, {10, 0x3f7},
    /* -2 */ { 9, 0x1f3}, { 8, 0x0ef}, { 6, 0x032}, { 6, 0x027}, { 6, 0x028},
             { 6, 0x026}, { 6, 0x031}, { 8, 0x0eb}, { 9, 0x1f7},
    /* -1 */ { 9, 0x1e8}, { 7, 0x06f}, { 6, 0x02e}, { 4, 0x008}, { 4, 0x004},
             { 4, 0x006}, { 6, 0x029}, { 7, 0x06b}, { 9, 0x1ee},
    /*  0 */ { 9, 0x1ef}, { 7, 0x072}, { 6, 0x02d}, { 4, 0x002}, { 4, 0x000},
             { 4, 0x003}, { 6, 0x02f}, { 7, 0x073}, { 9, 0x1fa},
    /*  1 */ { 9, 0x1e7}, { 7, 0x06e}, { 6, 0x02b}, { 4, 0x007}, { 4, 0x001},
             { 4, 0x005}, { 6, 0x02c}, { 7, 0x06d}, { 9, 0x1ec},
    /*  2 */ { 9, 0x1f9}, { 8, 0x0ee}, { 6, 0x030}, { 6, 0x024}, { 6, 0x02a},
             { 6, 0x025}, { 6, 0x033}, { 8, 0x0ec}, { 9, 0x1f2},
    /*  3 */ {10, 0x3f8}, { 9, 0x1e4}, { 8, 0x0ed}, { 7, 0x06a}, { 7, 0x070},
             { 7, 0x069}, { 7, 0x074}, { 8, 0x0f1}, {10, 0x3fa},
    /*  4 */ {11, 0x7ff}, {10, 0x3f9}, { 9, 0x1f6}, { 9, 0x1ed}, { 9, 0x1f8},
             { 9, 0x1e9}, { 9, 0x1f5}, {10, 0x3fb}, {11, 0x7fc},
};
// clang-format on

}  // namespace zetac::tables
