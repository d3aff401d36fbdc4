// Statistics of the differences between results and a model.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <algorithm>
#include <cmath>

namespace zetac::test {

struct Differences {
    double sum = 0, squares = 0, largest = 0, count = 0;

    void add(double difference) {
        sum += difference;
        squares += difference * difference;
        largest = std::max(largest, std::abs(difference));
        ++count;
    }
    double mean() const { return sum / count; }
    double rms() const { return std::sqrt(squares / count); }
};

}  // namespace zetac::test
