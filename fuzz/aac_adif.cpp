// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <memory>

#include "aac_input.h"

using namespace zetac::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    AacInput input(data, size, ZETAC_AAC_ADIF_BYTES_MAX);
    const int room = input.argument(1, 16);
    ZetAACADIFHeader header = {};
    const auto elements = std::make_unique<ZetAACPrgCfgElt[]>(static_cast<size_t>(room));
    const ZetStatus status =
        zetsUnpackADIFHeader_AAC(input.ppStream(), &header, elements.get(), room);
    input.requirePosition();
    const bool fits = header.num_program_config_elements <= room;
    require(status == (fits ? zetStsOk : zetStsAacPrgNumErr));
    return 0;
}
