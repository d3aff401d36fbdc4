// The frame without sound that encoders put first, to tell about the stream as a whole.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace zetac::codec {

struct Mp3InfoTag {
    std::string name;     // "Xing", "Info" or "VBRI"
    std::string encoder;  // such as "LAME3.100"; empty when the tag does not tell
    std::optional<uint32_t> frames;
    /** Samples per channel that the encoder put in front, and behind to fill the last frame. */
    int delay = 0;
    int padding = 0;
    bool hasGaps = false;  // delay and padding are known
};

/** The tag in a Layer III frame, if it has one.
 *  @param frame  from the first byte of its header */
std::optional<Mp3InfoTag> readMp3InfoTag(std::span<const Zet8u> frame);

}  // namespace zetac::codec
