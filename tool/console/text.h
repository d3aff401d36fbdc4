// Text for people.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zetac::tool {

/** With control characters, and bytes that are no UTF-8, as \n or \x1b: for terminals. */
std::string escaped(std::string_view text);

/** The text as a terminal may have it, or as it is when the descriptor is none. */
std::string shownOn(int descriptor, std::string_view text);

/** "a, b, c". */
std::string join(std::span<const std::string> parts, std::string_view separator);

/** "a, b and c". */
std::string enumerated(std::span<const std::string> parts);

/** The word that was probably meant: the one with the fewest letters changed, added, left out or
 *  exchanged with their neighbour, if these are no more than a third. Empty when there is none. */
std::string nearest(std::string_view word, std::span<const std::string> words);

}  // namespace zetac::tool
