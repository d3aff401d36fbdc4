// What other programs put before, behind and between audio frames: ID3v1, ID3v2, APE and Lyrics3
// tags, and the front of RIFF files.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstddef>
#include <span>
#include <vector>

namespace zetac::codec {

struct Tag {
    const char* name = nullptr;  // "ID3v1", "ID3v2", "APE", "Lyrics3" or "RIFF"
    size_t bytes = 0;            // 0: no tag
};

/** Bytes of the tag that starts at a position, or 0; cut at the end of the data. */
size_t tagLength(std::span<const Zet8u> data, size_t position);

/** Bytes of all tags that stand at the end of the data. */
size_t trailingTagLength(std::span<const Zet8u> data);

/** The tags before and behind everything else, in their order. */
std::vector<Tag> outerTags(std::span<const Zet8u> data);

}  // namespace zetac::codec
