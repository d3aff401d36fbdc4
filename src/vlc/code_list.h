// The caller's list of values and codewords.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

namespace zetac::vlc {

struct CodeList {
    const ZetVLCCode* first;
    int count;

    const ZetVLCCode* begin() const { return first; }
    const ZetVLCCode* end() const { return first + count; }
};

// A codeword at 64 bits, so that it may be shifted by its whole length.
inline uint64_t codeword(const ZetVLCCode& code) {
    return static_cast<uint32_t>(code.code);
}

// True when codewords of representable lengths have no bits beyond their length and none begins
// another one.
bool isPrefixCode(const CodeList& list);

}  // namespace zetac::vlc
