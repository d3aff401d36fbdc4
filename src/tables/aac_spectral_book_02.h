// Spectral codebook 2 (ISO/IEC 14496-3, Table 4.A.3): signed quadruples of -1..1.
// {length, codeword}, in ascending order of the tuple, first value most significant;
// each row has the leading values w x y in front and runs through the last value z.
#pragma once

#include "tables/huffman_code.h"

namespace zetac::tables {

// clang-format off
inline constexpr HuffmanCode kSpectralBook2[81] = {
    /* -1 -1 -1 */ { 9, 0x1f3}, { 7, 0x06f}, { 9, 0x1fd},
    /* -1 -1  0 */ { 8, 0x0eb}, { 6, 0x023}, { 8, 0x0ea},
    /* -1 -1  1 */ { 9, 0x1f7}, { 8, 0x0e8}, { 9, 0x1fa},
    /* -1  0 -1 */ { 8, 0x0f2}, { 6, 0x02d}, { 7, 0x070},
    /* -1  0  0 */ { 6, 0x020}, { 5, 0x006}, { 6, 0x02b},
    /* -1  0  1 */ { 7, 0x06e}, { 6, 0x028}, { 8, 0x0e9},
    /* -1  1 -1 */ { 9, 0x1f9}, { 7, 0x066}, { 8, 0x0f8},
    /* -1  1  0 */ { 8, 0x0e7}, { 6, 0x01b}, { 8, 0x0f1},
    /* -1  1  1 */ { 9, 0x1f4}, { 7, 0x06b}, { 9, 0x1f5},
    /*  0 -1 -1 */ { 8, 0x0ec}, { 6, 0x02a}, { 7, 0x06c},
    /*  0 -1  0 */ { 6, 0x02c}, { 5, 0x00a}, { 6, 0x027},
    /*  0 -1  1 */ { 7, 0x067}, { 6, 0x01a}, { 8, 0x0f5},
    /*  0  0 -1 */ { 6, 0x024}, { 5, 0x008}, { 6, 0x01f},
    /*  0  0  0 */ { 5, 0x009}, { 3, 0x000}, { 5, 0x007},
    /*  0  0  1 */ { 6, 0x01d}, { 5, 0x00b}, { 6, 0x030},
    /*  0  1 -1 */ { 8, 0x0ef}, { 6, 0x01c}, { 7, 0x064},
    /*  0  1  0 */ { 6, 0x01e}, { 5, 0x00c}, { 6, 0x029},
    /*  0  1  1 */ { 8, 0x0f3}, { 6, 0x02f}, { 8, 0x0f0},
    /*  1 -1 -1 */ { 9, 0x1fc}, { 7, 0x071}, { 9, 0x1f2},
    /*  1 -1  0 */ { 8, 0x0f4}, { 6, 0x021}, { 8, 0x0e6},
    /*  1 -1  1 */ { 8, 0x0f7}, { 7, 0x068}, { 9, 0x1f8},
    /*  1  0 -1 */ { 8, 0x0ee}, { 6, 0x022}, { 7, 0x065},
    /*  1  0  0 */ { 6, 0x031}, { 4, 0x002}, { 6, 0x026},
    /*  1  0  1 */ { 8, 0x0ed}, { 6, 0x025}, { 7, 0x06a},
    /*  1  1 -1 */ { 9, 0x1fb}, { 7, 0x072}, { 9, 0x1fe},
    /*  1  1  0 */ { 7, 0x069}, { 6, 0x02e}, { 8, 0x0f6},
    /*  1  1  1 */ { 9, 0x1ff}, { 7, 0x06d}, { 9, 0x1f6},
};
// clang-format on

}  // namespace zetac::tables
