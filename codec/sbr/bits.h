// The payload of one SBR extension and its bits.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "base/bits.h"

namespace zetac::codec {

/** extension_payload() of a fill element (ISO/IEC 14496-3, 4.4.2.7), its extension_type included.
 */
struct SbrPayload {
    size_t bytes = 0;  // 0: the element has no SBR data in this block
    Zet8u data[ZETAC_AAC_FILL_BYTES_MAX] = {};
};

class SbrBits : public BitReader {
  public:
    explicit SbrBits(const SbrPayload& payload) : BitReader({payload.data, payload.bytes}) {}
};

}  // namespace zetac::codec
