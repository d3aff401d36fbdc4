// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "aac/bit_stream.h"

namespace zetac::aac {

// program_config_element() (ISO/IEC 13818-7, 8.5).
void readProgramConfigElement(BitReader& stream, ZetAACPrgCfgElt& element);

}  // namespace zetac::aac
