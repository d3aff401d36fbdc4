// The Huffman data of a granule (ISO/IEC 11172-3, 2.4.1.7, 2.4.2.7): big values and count1.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "mp3/syntax/syntax.h"

namespace zetac::mp3 {

// Where the regions of the big values end, in lines; all even.
struct BigValueRegions {
    int end[kRegions];
};

// Reads hufSize bits, at least one, into 576 lines. zetStsOutOfRange when the big values have more,
// and then the bound stays as it is.
ZetStatus readHuffmanData(const Zet8u* byte, int offset, int hufSize,
                          const BigValueRegions& regions, const ZetMP3GranuleSideInfo& info,
                          Zet32s* lines, int& nonZeroBound);

}  // namespace zetac::mp3
