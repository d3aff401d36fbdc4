// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "vlc/code_list.h"

#include <algorithm>

#include "core/checks.h"

namespace zetac::vlc {
namespace {

bool isCodeword(const ZetVLCCode& code) {
    return core::inRange(code.length, 1, ZETAC_VLC_CODE_BITS_MAX) &&
           codeword(code) >> code.length == 0;
}

bool oneBeginsTheOther(const ZetVLCCode& a, const ZetVLCCode& b) {
    const int common = std::min(a.length, b.length);
    return codeword(a) >> (a.length - common) == codeword(b) >> (b.length - common);
}

}  // namespace

bool isPrefixCode(const CodeList& list) {
    if (!std::all_of(list.begin(), list.end(), isCodeword)) return false;
    for (const ZetVLCCode* code = list.begin(); code != list.end(); ++code)
        for (const ZetVLCCode* other = list.begin(); other != code; ++other)
            if (oneBeginsTheOther(*code, *other)) return false;
    return true;
}

}  // namespace zetac::vlc
