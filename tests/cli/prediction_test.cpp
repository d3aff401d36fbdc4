// Prediction from frame to frame: its accuracy, and what becomes of it after damage.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "clips.h"

namespace zetac::test {
namespace {

// The history of long-term prediction has eight fractional bits, so that its output is rounded only
// once. With three bits the RMS would be 0.3 and more.
TEST(Prediction, LongTermHistoryIsFine) {
    constexpr double kRmsMax = 0.15;  // measured: 0.1212 and 0.1346
    for (const std::string name : {"mono_ltp", "stereo_ltp_tns"}) {
        const Pcm expected = readReference(ZETAC_TEST_DATA "/aac/" + name + ".pcm.gz");
        const Pcm found = decodeAll(clip(name)).pcm;
        ASSERT_EQ(found.size(), expected.size());
        double sum = 0;
        for (size_t i = 0; i < found.size(); ++i) sum += std::pow(found[i] - expected[i], 2);
        EXPECT_LT(std::sqrt(sum / static_cast<double>(found.size())), kRmsMax) << name;
    }
}

Bytes joined(const std::vector<Bytes>& frames) {
    Bytes bytes;
    for (const Bytes& frame : frames) append(bytes, frame);
    return bytes;
}

/** Whether both channels of a frame have short windows, by frame. */
std::vector<bool> shortFrames(const Bytes& bytes) {
    Bytes padded = bytes;
    padded.resize(bytes.size() + codec::kReadAhead);
    const auto stream = codec::openStream({padded.data(), bytes.size()});
    codec::BlockParser parser;
    codec::RawBlock block;
    std::vector<bool> result;
    while (stream->next(block)) {
        if (result.empty()) parser.open(block);
        EXPECT_EQ(parser.parse(block), codec::Fault::kNone);
        stream->finish(parser.bytesUsed(), true);
        result.push_back(parser.channel(0).ics().window_sequence == zetAacEightShort &&
                         parser.channel(1).ics().window_sequence == zetAacEightShort);
    }
    return result;
}

// Short windows reset the predictors, so damage before them is forgotten behind them.
TEST(Prediction, ShortWindowsEndTheEffectOfDamage) {
    const Bytes whole = clip("stereo_main_prediction");
    const std::vector<bool> isShort = shortFrames(whole);
    const Pcm expected = decodeAll(whole).pcm;
    const auto reset = std::find(isShort.begin() + 2, isShort.end(), true) - isShort.begin();
    ASSERT_LT(static_cast<size_t>(reset), isShort.size() - 1);
    std::vector<Bytes> frames = framesOf(whole);
    std::fill(frames[1].begin() + 7, frames[1].end(), Zet8u{0xE0});  // an end at once
    const Decoded damaged = decodeAll(joined(frames));
    EXPECT_EQ(damaged.damages(), 1u);
    ASSERT_EQ(damaged.pcm.size(), expected.size());
    const auto behind = (reset + 1) * 2 * ZETAC_AAC_FRAME_LEN;
    EXPECT_TRUE(
        std::equal(expected.begin() + behind, expected.end(), damaged.pcm.begin() + behind));
    EXPECT_FALSE(std::equal(expected.begin(), expected.begin() + behind, damaged.pcm.begin()));
}

}  // namespace
}  // namespace zetac::test
