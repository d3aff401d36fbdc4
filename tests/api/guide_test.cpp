// The code of the guide is code that the tests compile and run.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

std::string readText(const std::string& path) {
    std::ifstream file(std::string(ZETAC_TEST_DATA) + "/../../" + path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

TEST(Guide, QuotesTheExampleToTheLetter) {
    const std::string guide = readText("docs/guide.md");
    const std::string example = readText("examples/decode_adts.c");
    ASSERT_FALSE(example.empty());
    const std::string open = "```c\n";
    int blocks = 0;
    for (size_t at = guide.find(open); at != std::string::npos; at = guide.find(open, at)) {
        at += open.size();
        const std::string code = guide.substr(at, guide.find("```", at) - at);
        EXPECT_NE(std::string::npos, example.find(code)) << "not in the example:\n" << code;
        ++blocks;
    }
    EXPECT_GT(blocks, 5);
}

}  // namespace
