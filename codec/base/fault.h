// Why a piece of a stream could not be decoded: one type for all codecs and containers.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstdint>

namespace zetac::codec {

/** A finding with the words for it. Domain and code say which; they never change their meaning. */
struct Fault {
    enum class Domain : uint8_t {
        kNone = 0,
        kStream = 1,  // of any codec
        kAac = 2,
        kSbr = 3,
        kMp3 = 4,
        kPrimitive = 5  // a status of the primitives, without its sign
    };

    Domain domain = Domain::kNone;
    uint16_t code = 0;
    const char* text = "no fault";  // one line without a full stop
    bool isRefusal = false;         // no later frame of the same stream can mend it

    static const Fault kNone;

    constexpr bool operator==(const Fault& other) const {
        return domain == other.domain && code == other.code;
    }

    /** One number for both. */
    constexpr int32_t number() const { return static_cast<int>(domain) << 16 | code; }
};

inline constexpr Fault Fault::kNone{};

constexpr bool failed(const Fault& fault) {
    return fault.domain != Fault::Domain::kNone;
}

/** A status of the primitives as a fault; warnings are no faults. */
Fault faultOf(ZetStatus status);

/** Faults that streams of any codec may have. */
struct StreamFault {
    static constexpr Fault kTruncated{Fault::Domain::kStream, 1, "the data end inside the frame"};
    static constexpr Fault kCutShort{Fault::Domain::kStream, 2,
                                     "the next frame begins inside this one"};
    static constexpr Fault kCrcMismatch{Fault::Domain::kStream, 3,
                                        "the CRC of the frame does not match its data"};
    static constexpr Fault kPrecedingBlock{Fault::Domain::kStream, 4,
                                           "lost with a damaged block of the same frame"};
    static constexpr Fault kFormatChanged{Fault::Domain::kStream, 5,
                                          "the stream changes its format here"};
    static constexpr Fault kLost{Fault::Domain::kStream, 6, "the frame is missing"};
    static constexpr Fault kNoFrame{Fault::Domain::kStream, 7, "no frame where one should be"};
};

}  // namespace zetac::codec
