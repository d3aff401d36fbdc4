// What writers of bit streams leave behind.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <gtest/gtest.h>
#include <zetac.h>

#include <vector>

#include "support/bit_writer.h"

namespace zetac::test {

// Bytes to write to that are not clear, with canaries behind, and what a packer has made of them:
// the bits before the position are kept, those behind it in its byte are 0, no further byte is
// touched.
struct Written {
    std::vector<Zet8u> bytes = std::vector<Zet8u>(4096, 0xa5);
    Zet8u* byte = bytes.data();
    int start, offset;

    explicit Written(int startBit = 0) : start(startBit), offset(startBit) {
        if (startBit != 0) bytes[0] = static_cast<Zet8u>(0xff00 >> startBit);
    }
    void expect(const BitWriter& bits) const {
        const BitWriter whole = BitWriter{{(1 << start) - 1, start}}.append(bits);
        auto expected = whole.bytes(0);
        EXPECT_EQ(8 * (byte - bytes.data()) + offset, static_cast<long>(whole.size()));
        expected.resize(bytes.size(), 0xa5);
        EXPECT_EQ(bytes, expected);
    }
};

}  // namespace zetac::test
