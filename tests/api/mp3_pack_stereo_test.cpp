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

using Lines = std::array<Zet32s, 576>;

struct Granule {
    ZetMP3Header header{};
    ZetMP3GranuleSideInfo info[2]{};
    Lines left{}, right{};
    Zet8s positions[ZETAC_MP3_SCF_MAX];
    Zet32s bounds[3];

    Granule() {
        header.ID = 1;
        header.layer = header.mode = 1;
        std::ranges::fill(positions, Zet8s{-1});
        std::ranges::fill(bounds, -7);
    }
    ZetStatus encode() {
        return zetsJointStereoEncode_MP3_32s_I(left.data(), right.data(), positions, &header, info,
                                               bounds);
    }
};

Zet32s limited(long double x) {
    return static_cast<Zet32s>(std::clamp(x, -0x1p31L, 0x1p31L - 1));
}
// 1518500250 * 2^-31 of a 64-bit sum, rounded down: the product fits the 64 bits of a mantissa.
Zet32s scaled(int64_t sum) {
    return limited(std::floor(static_cast<long double>(sum * 1518500250) * 0x1p-31L));
}

// The bands of a granule as runs of lines, with the bound that decides on them.
struct Band {
    int start, width, index, window, position;
};
std::vector<Band> bandsOf(int row, bool isShort) {
    std::vector<Band> bands;
    for (int b = 0; b < (isShort ? 13 : 22); ++b) {
        const int start = isShort ? kShortBandStarts[row][b] : kLongBandStarts[row][b];
        const int width =
            (isShort ? kShortBandStarts[row][b + 1] : kLongBandStarts[row][b + 1]) - start;
        for (int w = 0; w < (isShort ? 3 : 1); ++w)
            bands.push_back(
                {isShort ? 3 * start + w * width : start, width, b, w, isShort ? 3 * b + w : b});
    }
    return bands;
}

int positionOf(const Granule& g, const Band& band) {
    long double left = 0, right = 0;
    for (int i = band.start; i < band.start + band.width; ++i) {
        left += static_cast<long double>(g.left[i]) * g.left[i];
        right += static_cast<long double>(g.right[i]) * g.right[i];
    }
    if (right == 0) return 6;
    constexpr int kBounds[6] = {568, 5622, 19293, 55653, 190986, 1890566};
    const long double q15 = std::floor(left / right * 32768);
    return static_cast<int>(std::ranges::count_if(kBounds, [&](int x) { return q15 >= x; }));
}

void expectEncoded(const Granule& before, const Granule& after) {
    const bool isShort = before.info[0].block_type == 2;
    const bool isMs = before.header.mode == 1 && (before.header.mode_extension & 2);
    const bool isIntensity = before.header.mode == 1 && (before.header.mode_extension & 1);
    for (const Band& band :
         bandsOf(before.header.ID * 3 + before.header.sampling_frequency, isShort)) {
        const bool above = isIntensity && band.index >= before.bounds[band.window];
        const int position = above ? positionOf(before, band) : -1;
        EXPECT_EQ(after.positions[band.position], position) << band.position;
        for (int i = band.start; i < band.start + band.width; ++i) {
            const int64_t l = before.left[i], r = before.right[i];
            Zet32s expected[2] = {before.left[i], before.right[i]};
            if (above) {
                const int64_t size = std::abs(l) + std::abs(r);
                expected[0] = limited((std::abs(l) > std::abs(r) ? l : r) < 0 ? -size : size);
                expected[1] = 0;
            } else if (isMs) {
                expected[0] = scaled(l + r);
                expected[1] = scaled(l - r);
            }
            ASSERT_EQ(after.left[i], expected[0]) << i;
            ASSERT_EQ(after.right[i], expected[1]) << i;
        }
    }
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
        const bool isShort = g.info[0].block_type == 2;
        const bool isIntensity = g.header.mode == 1 && (g.header.mode_extension & 1);
        const int shift = isIntensity ? 4 : 0;  // energies are counted in 64 bits
        for (int i = 0; i < 576; ++i) {
            g.left[i] = static_cast<Zet32s>(random()) >> (shift + random() % 8);
            g.right[i] =
                random() % 3 ? static_cast<Zet32s>(random()) >> (shift + random() % 8) : g.left[i];
        }
        if (random() % 4 == 0) std::fill_n(g.right.begin(), 400, 0);
        if (isIntensity)
            for (Zet32s& bound : g.bounds)
                bound = static_cast<Zet32s>(random() % (isShort ? 14 : 23));
        const Granule before = g;
        ASSERT_EQ(g.encode(), zetStsOk);
        expectEncoded(before, g);
        for (int w = 0; w < 3; ++w) {
            const int full = isShort ? 13 : w == 0 ? 22 : -7;
            EXPECT_EQ(g.bounds[w], isIntensity ? before.bounds[w] : full);
        }
        ASSERT_FALSE(HasFailure());
    }
}

TEST(Mp3JointStereo, positionsFollowTheRatio) {
    for (const auto& [left, right, position] : {std::array{1000, 1000, 3},
                                                {1000, 0, 6},
                                                {0, 0, 6},
                                                {0, 1000, 0},
                                                {1 << 30, 1, 6},
                                                {7596, 1000, 6},
                                                {7595, 1000, 5},
                                                {132, 1000, 1},
                                                {131, 1000, 0}}) {
        Granule g;
        g.header.mode_extension = 1;
        g.bounds[0] = 21;
        g.left[500] = left;
        g.right[500] = -right;
        ASSERT_EQ(g.encode(), zetStsOk);
        EXPECT_EQ(g.positions[21], position) << left << " " << right;
    }
}

}  // namespace
}  // namespace zetac::test
