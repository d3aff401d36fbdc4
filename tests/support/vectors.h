// What models in double precision have computed: tests/support/vectors/*.py write the files in
// tests/data/vectors, from random input that is made here again.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace zetac::test {

class VectorRandom {
  public:
    explicit VectorRandom(uint32_t seed) : state_(seed) {}
    int32_t operator()() {
        state_ = state_ * 1664525 + 1013904223;
        return static_cast<int32_t>(state_);
    }

  private:
    uint32_t state_;
};

template <class T>
std::vector<T> readVector(const std::string& name) {
    std::ifstream file(ZETAC_TEST_DATA "/vectors/" + name, std::ios::binary | std::ios::ate);
    std::vector<T> values(static_cast<size_t>(file.tellg()) / sizeof(T));
    file.seekg(0).read(reinterpret_cast<char*>(values.data()),
                       static_cast<std::streamsize>(values.size() * sizeof(T)));
    EXPECT_TRUE(file) << name;
    return values;
}

}  // namespace zetac::test
