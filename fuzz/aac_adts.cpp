// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "aac_input.h"

using namespace zetac::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    AacInput input(data, size, 9);
    ZetAACADTSHeader header = {};
    require(zetsUnpackADTSFrameHeader_AAC(input.ppStream(), &header) == zetStsOk);
    input.requirePosition();
    require(0 <= header.sampling_frequency_index && header.sampling_frequency_index <= 15);
    require(0 <= header.frame_length && header.frame_length < 8192);
    return 0;
}
