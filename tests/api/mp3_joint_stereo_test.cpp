// Joint stereo of the encoder against exact arithmetic, and through the decoder's stereo.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>
#include <zetac.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <random>

#include "support/mp3_bands.h"

namespace zetac::test {
namespace {

struct Granule {
    ZetMP3Header header{};
    ZetMP3GranuleSideInfo info[2]{};
    std::array<Zet32s, 576> left{}, right{};
    Zet8s positions[ZETAC_MP3_SCF_MAX];
    Zet32s bounds[3] = {-7, -7, -7};

    Granule() {
        header.layer = 1;
        std::ranges::fill(positions, Zet8s{-1});
    }
};

Zet32s limited(long double x) {
    return static_cast<Zet32s>(std::clamp(x, -0x1p31L, 0x1p31L - 1));
}
// 1518500250 * 2^-31 of a 64-bit sum, rounded down: the product fits the 64 bits of a mantissa.
Zet32s scaled(int64_t sum) {
    return limited(std::floor(static_cast<long double>(sum * 1518500250) * 0x1p-31L));
}

int positionOf(const Granule& g, int start, int width) {
    long double left = 0, right = 0;
    for (int i = start; i < start + width; ++i) {
        left += static_cast<long double>(g.left[i]) * g.left[i];
        right += static_cast<long double>(g.right[i]) * g.right[i];
    }
    if (right == 0) return 6;
    constexpr int kBounds[6] = {568, 5622, 19293, 55653, 190986, 1890566};
    const long double q15 = std::floor(left / right * 32768);
    return static_cast<int>(std::ranges::count_if(kBounds, [&](int x) { return q15 >= x; }));
}

// What becomes of a band of a window, or of a long one.
void encodeBand(Granule& g, const Granule& before, int band, int window, int start, int width) {
    const bool isJoint = before.header.mode == 1;
    const int place = before.info[0].block_type == 2 ? 3 * band + window : band;
    const bool isIntensity = isJoint && (before.header.mode_extension & 1);
    const bool above = isIntensity && band >= before.bounds[window];
    if (above) g.positions[place] = static_cast<Zet8s>(positionOf(before, start, width));
    for (int i = start; i < start + width; ++i) {
        const int64_t l = before.left[i], r = before.right[i];
        if (above) {
            const int64_t size = std::abs(l) + std::abs(r);
            g.left[i] = limited((std::abs(l) > std::abs(r) ? l : r) < 0 ? -size : size);
            g.right[i] = 0;
        } else if (isJoint && (before.header.mode_extension & 2)) {
            g.left[i] = scaled(l + r);
            g.right[i] = scaled(l - r);
        }
    }
}

Granule expectedOf(const Granule& before) {
    Granule g = before;
    const int row = g.header.ID * 3 + g.header.sampling_frequency;
    const bool isShort = g.info[0].block_type == 2;
    for (int band = 0; band < (isShort ? 13 : 22); ++band) {
        const int* start = (isShort ? kShortBandStarts[row] : kLongBandStarts[row]) + band;
        const int width = start[1] - start[0];
        for (int w = 0; w < (isShort ? 3 : 1); ++w)
            encodeBand(g, before, band, w, isShort ? 3 * *start + w * width : *start, width);
    }
    if (g.header.mode == 1 && (g.header.mode_extension & 1)) return g;
    for (int w = 0; w < (isShort ? 3 : 1); ++w) g.bounds[w] = isShort ? 13 : 22;
    return g;
}

TEST(Mp3JointStereo, encodesBandsAsTheirBoundsSay) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE(round);
        Granule g;
        g.header.ID = round % 5 != 0;
        g.header.sampling_frequency = static_cast<Zet32s>(random() % 3);
        g.header.mode = random() % 8 ? 1 : 0;
        g.header.mode_extension = static_cast<Zet32s>(random() % 4);
        g.info[0].block_type = g.info[1].block_type = static_cast<Zet32s>(random() % 4);
        const bool isIntensity = g.header.mode == 1 && (g.header.mode_extension & 1);
        const int shift = isIntensity ? 4 : 0;  // energies are counted in 64 bits
        for (int i = 0; i < 576; ++i) {
            g.left[i] = static_cast<Zet32s>(random()) >> (shift + random() % 8);
            g.right[i] =
                random() % 3 ? static_cast<Zet32s>(random()) >> (shift + random() % 8) : g.left[i];
        }
        if (random() % 4 == 0) std::fill_n(g.right.begin(), 400, 0);
        for (Zet32s& bound : g.bounds)
            if (isIntensity)
                bound = static_cast<Zet32s>(random() % (g.info[0].block_type == 2 ? 14 : 23));
        const Granule expected = expectedOf(g);
        ASSERT_EQ(zetsJointStereoEncode_MP3_32s_I(g.left.data(), g.right.data(), g.positions,
                                                  &g.header, g.info, g.bounds),
                  zetStsOk);
        ASSERT_EQ(g.left, expected.left);
        ASSERT_EQ(g.right, expected.right);
        ASSERT_TRUE(std::ranges::equal(g.positions, expected.positions));
        ASSERT_TRUE(std::ranges::equal(g.bounds, expected.bounds));
    }
}

}  // namespace
}  // namespace zetac::test
