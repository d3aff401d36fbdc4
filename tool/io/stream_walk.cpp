// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/stream_walk.h"

#include "io/failure.h"
#include "io/signals.h"

namespace zetac::tool {

uint64_t walkStream(SoundSource& source, const StreamVisitor& visitor) {
    uint64_t damages = 0;
    bool hasGoodFrame = false;
    const auto report = [&](size_t position, const std::string& what) {
        ++damages;
        visitor.damage(position, what);
    };
    const auto reportForeign = [&] {
        const ForeignBytes foreign = source.foreign();
        if (foreign.count > 0)
            report(foreign.position,
                   std::to_string(foreign.count) + " bytes that belong to no frame");
    };
    SoundFrame frame;
    while (source.next(frame)) {
        stopIfInterrupted();
        reportForeign();
        hasGoodFrame = hasGoodFrame || frame.fault.empty() || frame.isHeard;
        if (!frame.fault.empty() && frame.isFaultNews) report(frame.position, frame.fault);
        visitor.frame(frame);
    }
    reportForeign();
    if (!hasGoodFrame) throw Failure("holds no frame that can be decoded");
    return damages;
}

}  // namespace zetac::tool
