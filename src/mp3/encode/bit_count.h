// What the quantised lines of a granule cost (ISO/IEC 11172-3, C.1.5.4.4.3 to C.1.5.4.4.8).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::mp3 {

// How the lines of a granule are divided and which tables code them.
struct HuffmanPlan {
    int bits;
    int big_values;  // pairs
    int count1Len;   // lines
    int table_select[3];
    int region0_count, region1_count;
    int count1table_select;
};

// The division with the fewest bits. magnitudes: 576 quantised lines, at most 8206; longStarts: the
// long bands; windowSwitching: region 0 ends at line 36 and there is no region 2.
HuffmanPlan planHuffman(const Zet16s* magnitudes, const Zet16s* longStarts, bool windowSwitching);

}  // namespace zetac::mp3
