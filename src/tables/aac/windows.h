// Window tables of the AAC filter bank (ISO/IEC 14496-3, 4.6.11.3.2): the rising halves, 31
// fractional bits, rounded to nearest. The falling half is the rising half read backwards.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "tables/table.h"

namespace zetac::tables {

extern const Table<std::int32_t, 128> pWinSINShort;
extern const Table<std::int32_t, 1024> pWinSINLong;
extern const Table<std::int32_t, 128> pWinKBDShort;
extern const Table<std::int32_t, 1024> pWinKBDLong;

}  // namespace zetac::tables
