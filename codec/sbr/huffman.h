// The Huffman books of SBR (ISO/IEC 14496-3, 4.A.6.1).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "sbr/bits.h"

namespace zetac::codec {

/** A book as its decoder reads it: what the next kDirectBits bits say, and a binary tree of what
 * may follow them. */
class SbrHuffmanBook {
  public:
    static constexpr int kDirectBits = 8;

    /** Leads to a leaf, ~index of the codeword, or to an inner node of the tree, 0 or above. */
    using Node = int16_t;
    struct Entry {
        Node next;
        uint8_t bits;  // consumed
    };

    constexpr SbrHuffmanBook(const Entry* direct, const Node (*tree)[2], int zero)
        : direct_(direct), tree_(tree), zero_(zero) {}

    /** The next difference. */
    int read(SbrBits& bits) const {
        const Entry entry = direct_[bits.peek(kDirectBits)];
        bits.skip(entry.bits);
        Node node = entry.next;
        while (node >= 0) node = tree_[node][bits.get(1)];
        return ~node - zero_;
    }

  private:
    const Entry* direct_;
    const Node (*tree_)[2];
    int zero_;  // index of the difference 0
};

enum class SbrDelta { kFrequency, kTime };

/** @param bs_amp_res  0: steps of 1.5 dB, 1: of 3 dB */
const SbrHuffmanBook& envelopeBook(int bs_amp_res, bool isBalance, SbrDelta direction);
const SbrHuffmanBook& noiseBook(bool isBalance, SbrDelta direction);

}  // namespace zetac::codec
