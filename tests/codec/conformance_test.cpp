// Real and synthetic streams against the PCM of an independent decoder in double precision.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include "support/streams/clips.h"
#include "support/streams/reference.h"

namespace zetac::test {
namespace {

/** Noise bands are empty in the references, so they stay empty here. */
void expectConformance(const std::string& path, const std::string& reference) {
    SCOPED_TRACE(path);
    const Decoded decoded = decodeAll(readFile(path), {codec::ChannelOrder::kStream, false});
    const Pcm expected = readReference(reference);
    ASSERT_TRUE(decoded.isAac);
    EXPECT_EQ(decoded.damages(), 0u);
    EXPECT_EQ(decoded.skippedBytes, 0u);
    ASSERT_EQ(decoded.pcm.size(), expected.size());
    expectFullAccuracy(path, compare(decoded.pcm, expected));
}

TEST(Conformance, BundledClips) {
    const auto clips = bundledClips("aac");
    EXPECT_GE(clips.size(), 21u);
    for (const auto& [path, reference] : clips) expectConformance(path, reference);
}

TEST(Conformance, SharedStreams) {
    const std::vector<SharedStream> streams = sharedStreams("aac/");
    if (streams.empty()) GTEST_SKIP() << "no streams in " ZETAC_SHARED_STREAMS;
    int count = 0;
    for (const SharedStream& stream : streams) {
        if (stream.profile.starts_with("HE-AAC")) continue;
        ++count;
        expectConformance(stream.path, stream.reference);
    }
    EXPECT_GT(count, 0);
}

TEST(Conformance, StateOfStereoDecoderIsSmall) {
    const Decoded decoded = decodeAll(clip("stereo_noise"));
    EXPECT_GE(decoded.stateBytes, 2u * 1024 * sizeof(Zet32s));  // it counts the overlaps at least
    EXPECT_LT(decoded.stateBytes, 64u * 1024);
}

}  // namespace
}  // namespace zetac::test
