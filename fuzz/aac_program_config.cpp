// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac_input.h"

using namespace zetac::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    AacInput input(data, size, 320);
    *input.pOffset() = input.argument(0, 7);
    ZetAACPrgCfgElt element = {};
    require(zetsDecodePrgCfgElt_AAC(input.ppStream(), input.pOffset(), &element) == zetStsOk);
    input.requirePosition();
    require(*input.pOffset() == 0);
    require(0 <= element.comment_field_bytes && element.comment_field_bytes <= 255);
    return 0;
}
