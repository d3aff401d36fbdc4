// LATM elements one behind another, as LOAS has them, and AudioSpecificConfig() on the same bytes.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <cstdlib>
#include <vector>

#include "container/latm.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace zetac::codec;
    LatmReader reader;
    size_t at = 0;
    while (size - at > LoasHeader::kBytes) {
        // The sync is given, so that its absence hides nothing.
        const size_t length = (data[at] & 0x1Fu) << 8 | data[at + 1];
        const size_t bytes = length < size - at - 2 ? length : size - at - 2;
        const std::vector<Zet8u> element(data + at + 2, data + at + 2 + bytes);
        Fault fault = reader.begin(element);
        std::span<const Zet8u> payload;
        while (!failed(fault) && reader.next(payload, fault)) {
            if (payload.size() > element.size()) std::abort();
        }
        at += 2 + bytes;
    }
    AudioSpecificConfig config;
    const std::vector<Zet8u> bytes(data, data + size);
    const Fault fault = readAudioSpecificConfig(bytes, size % 2 == 0, config);
    if (!failed(fault) && config.samplingFrequency <= 0) std::abort();
    return 0;
}
