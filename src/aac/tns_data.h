// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "aac/bit_stream.h"

namespace zetac::aac {

// tns_data() (ISO/IEC 14496-3, 4.4.2.1): the filters into tns, their coefficients one after another
// into coefs (ZETAC_AAC_TNS_COEFS_MAX). An order beyond the limit is stored, ends the reading and
// gives zetStsAacTnsOrderErr.
ZetStatus readTnsData(BitReader& stream, bool isShort, ZetAACTnsInfo& tns, Zet8s* coefs);

}  // namespace zetac::aac
