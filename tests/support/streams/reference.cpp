// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "support/streams/reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace zetac::test {
namespace {

/** The fields of a line of comma-separated values, with quotes. */
std::vector<std::string> fieldsOf(const std::string& line) {
    std::vector<std::string> fields(1);
    bool isQuoted = false;
    for (const char c : line) {
        if (c == '"') {
            isQuoted = !isQuoted;
        } else if (c == ',' && !isQuoted) {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    return fields;
}

}  // namespace

Difference compare(const Pcm& a, const Pcm& b) {
    Difference result;
    double sum = 0;
    const size_t count = std::min(a.size(), b.size());
    for (size_t i = 0; i < count; ++i) {
        const int difference = std::abs(a[i] - b[i]);
        sum += static_cast<double>(difference) * difference;
        result.max = std::max(result.max, difference);
    }
    result.rms = std::sqrt(sum / static_cast<double>(std::max<size_t>(1, count)));
    return result;
}

void expectFullAccuracy(const std::string& path, const Difference& difference) {
    std::printf("%-44s rms %.4f  max %d\n", std::filesystem::path(path).stem().c_str(),
                difference.rms, difference.max);
    EXPECT_LE(difference.rms, kRmsMax);
    EXPECT_LE(difference.max, kDifferenceMax);
}

std::vector<std::pair<std::string, std::string>> bundledClips(const std::string& folder) {
    std::vector<std::pair<std::string, std::string>> clips;
    for (const auto& entry : std::filesystem::directory_iterator(ZETAC_TEST_DATA "/" + folder)) {
        auto path = entry.path();
        if (path.extension() != "." + folder) continue;
        const std::string stream = path.string();
        clips.emplace_back(stream, path.replace_extension(".pcm.gz").string());
    }
    return clips;
}

std::vector<SharedStream> sharedStreams(const std::string& folder) {
    constexpr size_t kFields = 10;
    const std::string root = ZETAC_SHARED_STREAMS "/";
    std::ifstream manifest(root + "manifest.csv");
    std::vector<SharedStream> streams;
    for (std::string line; std::getline(manifest, line);) {
        const std::vector<std::string> fields = fieldsOf(line);
        if (fields.size() < kFields || !fields[0].starts_with(folder)) continue;
        streams.push_back({root + fields[0], fields[2], root + fields[7], std::atoi(&fields[5][0]),
                           static_cast<size_t>(std::atoi(&fields[9][0]))});
    }
    return streams;
}

}  // namespace zetac::test
