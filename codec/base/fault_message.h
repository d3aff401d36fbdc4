// The words for a fault: what the two codecs' tables of messages share.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <span>
#include <string>

namespace zetac::codec {

struct FaultMessage {
    int code;
    const char* text;
};

/** The text of a code, or the code itself where the table has none. */
inline std::string messageOf(int code, std::span<const FaultMessage> messages) {
    for (const FaultMessage& message : messages) {
        if (message.code == code) return message.text;
    }
    return "the library reports status " + std::to_string(code);
}

}  // namespace zetac::codec
