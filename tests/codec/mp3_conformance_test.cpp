// Layer III streams against reference PCM: the ISO streams where they are there, and bundled clips
// decoded in double precision by an independent decoder.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <gtest/gtest.h>

#include "support/streams/mp3_clips.h"
#include "support/streams/reference.h"

namespace zetac::test {
namespace {

TEST(Mp3Conformance, BundledClips) {
    const auto clips = bundledClips("mp3");
    EXPECT_GE(clips.size(), 19u);
    for (const auto& [path, reference] : clips) {
        SCOPED_TRACE(path);
        const Mp3Decoded decoded = decodeMp3(readFile(path));
        EXPECT_EQ(decoded.damages(), 0u);
        EXPECT_EQ(decoded.foreignBytes, 0u);
        const Pcm expected = readReference(reference);
        ASSERT_EQ(decoded.pcm.size(), expected.size());
        expectFullAccuracy(path, compare(decoded.pcm, expected));
    }
}

/** Some references end a little before their stream. Where one starts later, the stream starts in
 *  the middle of a frame, and the frames before the reference need what is not there. */
TEST(Mp3Conformance, SharedStreams) {
    std::vector<SharedStream> streams = sharedStreams("mp3/");
    std::ranges::copy(sharedStreams("mp25/"), std::back_inserter(streams));
    if (streams.empty()) GTEST_SKIP() << "no streams in " ZETAC_SHARED_STREAMS;
    for (const SharedStream& stream : streams) {
        SCOPED_TRACE(stream.path);
        Mp3Decoded decoded = decodeMp3(readFile(stream.path));
        const Pcm expected = readReference(stream.reference);
        EXPECT_EQ(decoded.damages(), stream.offset / 1152);
        EXPECT_EQ(decoded.foreignBytes > 0, stream.offset > 0);
        const size_t skipped = stream.offset * static_cast<size_t>(stream.channels);
        ASSERT_GE(decoded.pcm.size(), skipped + expected.size());
        ASSERT_GT(expected.size(), 0u);
        decoded.pcm.erase(decoded.pcm.begin(),
                          decoded.pcm.begin() + static_cast<ptrdiff_t>(skipped));
        expectFullAccuracy(stream.path, compare(decoded.pcm, expected));
    }
}

TEST(Mp3Conformance, StateOfDecoderIsSmall) {
    EXPECT_LT(sizeof(codec::Mp3Decoder), 40u * 1024);
}

}  // namespace
}  // namespace zetac::test
