// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

namespace zetac::tables {

// A codeword, right-aligned: its first transmitted bit is bit length - 1.
struct HuffmanCode {
    std::uint8_t length;
    std::uint32_t codeword;
};

}  // namespace zetac::tables
