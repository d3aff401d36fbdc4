// The way through a stream that decoding and showing have in common, so that they agree on what is
// damaged.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <functional>
#include <string>

#include "io/sound_source.h"

namespace zetac::tool {

struct StreamVisitor {
    /** Takes a frame, decoded or concealed. */
    std::function<void(const SoundFrame&)> frame;
    /** Takes a piece of bad news, with its place. */
    std::function<void(size_t position, const std::string& what)> damage;
};

/** Goes through a stream to its end. Throws Failure when it cannot be decoded, or nothing of it is
 *  good.
 *  @return how often it is damaged */
uint64_t walkStream(SoundSource& source, const StreamVisitor& visitor);

}  // namespace zetac::tool
