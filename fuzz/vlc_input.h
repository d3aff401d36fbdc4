// A fuzz input of the escape-block functions: bytes that make a code, then values or a stream.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstdlib>
#include <vector>

namespace zetac::fuzz {

inline void require(bool holds) {
    if (!holds) std::abort();
}

class VlcInput {
  public:
    VlcInput(const uint8_t* data, size_t size) : next_(data), end_(data + size) {}

    int byte() { return next_ == end_ ? 0 : *next_++; }
    int number(int low, int high) { return low + (byte() << 8 | byte()) % (high - low + 1); }

    // A prefix code, made by splitting codewords; incomplete when some are dropped.
    std::vector<ZetVLCCode> prefixCode(int longest) {
        std::vector<ZetVLCCode> codes = {{{0, 0}, 1, 0}, {{0, 0}, 1, 1}};
        for (int splits = byte() % 64; splits > 0; --splits) {
            ZetVLCCode& parent = codes[static_cast<size_t>(byte()) % codes.size()];
            if (parent.length == longest) continue;
            ++parent.length;
            parent.code = static_cast<Zet32s>(static_cast<uint32_t>(parent.code) << 1);
            ZetVLCCode sibling = parent;
            sibling.code |= 1;
            codes.push_back(sibling);
        }
        codes.resize(codes.size() - static_cast<size_t>(byte()) % 2);
        return codes;
    }

    std::vector<Zet8u> rest(size_t size) {
        std::vector<Zet8u> bytes(next_, end_);
        bytes.resize(size);
        return bytes;
    }

  private:
    const uint8_t* next_;
    const uint8_t* end_;
};

}  // namespace zetac::fuzz
