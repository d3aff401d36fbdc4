// Data stream and fill elements.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac_input.h"

using namespace zetac::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    AacInput input(data, size, 516);
    const bool isFill = input.argument(0, 1);
    *input.pOffset() = input.argument(0, 7);
    int tag = 0;
    int count = -1;
    const int most = isFill ? ZETAC_AAC_FILL_BYTES_MAX : ZETAC_AAC_DATA_BYTES_MAX;
    std::vector<Zet8u> bytes(static_cast<size_t>(most));
    const ZetStatus status =
        isFill ? zetsDecodeFillElt_AAC(input.ppStream(), input.pOffset(), &count, bytes.data())
               : zetsDecodeDatStrElt_AAC(input.ppStream(), input.pOffset(), &tag, &count,
                                         bytes.data());
    input.requirePosition();
    require(status == zetStsOk);
    require(0 <= count && count <= most);
    require(0 <= tag && tag <= 15);
    return 0;
}
