// Reads the tags before and behind a stream.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "reader/feed.h"
#include "reader/tag_text.h"

namespace zetac::codec {

/** Takes the ID3v2 tags at the front; bytes at hand are then those behind them.
 *  @return false on an error of the source */
bool takeFrontTags(Feed& feed, TagTexts& texts);

/** Reads ID3v1, APE, Lyrics3 and appended ID3v2 tags at the end of a source that can be rewound.
 *  @param from  byte before which no tag of the end can begin
 *  @return bytes of all of them */
uint64_t readBackTags(ByteSource& source, uint64_t from, TagTexts& texts);

}  // namespace zetac::codec
