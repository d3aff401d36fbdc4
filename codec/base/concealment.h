// How long sound is made up for frames that are damaged.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

namespace zetac::codec {

/** Concealment keeps the length of a stream with lost frames. But bytes that merely look like
 *  frames must not grow into hours of silence, so it ends after a second without a good frame. */
class ConcealmentLimit {
  public:
    /** Takes note of a frame.
     *  @return whether it is to be heard */
    bool admits(bool isDamaged, int samples, int sampleRate) {
        if (!isDamaged) concealed_ = 0;
        if (isDamaged && concealed_ + samples > sampleRate) return false;
        concealed_ += isDamaged ? samples : 0;
        return true;
    }

  private:
    int64_t concealed_ = 0;  // samples since the last good frame
};

}  // namespace zetac::codec
