// Structures of the C interface that may grow: the caller's may be shorter than ours, or longer.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace zetac::codec {

/** Whether the caller has set the size of a structure. */
template <typename Struct>
bool isSized(const Struct* structure) {
    return structure != nullptr && structure->size >= sizeof structure->size;
}

/** The caller's structure, or none of it where that is null; zeros are the defaults. */
template <typename Struct>
Struct readSized(const Struct* structure) {
    Struct ours{};
    if (structure) std::memcpy(&ours, structure, std::min(structure->size, sizeof ours));
    ours.size = sizeof ours;
    return ours;
}

/** Gives the caller as much of a structure as there is room for. */
template <typename Struct>
void writeSized(Struct ours, Struct* structure) {
    ours.size = structure->size;
    std::memcpy(structure, &ours, std::min(structure->size, sizeof ours));
}

}  // namespace zetac::codec
