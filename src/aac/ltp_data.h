// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "aac/bit_stream.h"

namespace zetac::aac {

// ltp_data() (ISO/IEC 14496-3, 4.4.2.1), without the flag that announces it.
void readLtpData(BitReader& stream, bool isShort, int maxSfb, ZetAACLtpInfo& ltp);

// ltp_data_present and, where it is 1, ltp_data().
void readOptionalLtpData(BitReader& stream, bool isShort, int maxSfb, ZetAACLtpInfo& ltp);

}  // namespace zetac::aac
