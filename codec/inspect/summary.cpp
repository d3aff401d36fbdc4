// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "inspect/summary.h"

namespace zetac::codec {

std::vector<std::string> namesOfBits(unsigned bits, std::initializer_list<const char*> names) {
    std::vector<std::string> picked;
    for (const char* name : names) {
        if (bits & 1) picked.emplace_back(name);
        bits >>= 1;
    }
    return picked;
}

}  // namespace zetac::codec
