// The command line: options, their values and the help texts.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <optional>
#include <variant>

#include "commands/commands.h"

namespace zetac::tool {

using Command = std::variant<InfoOptions, DecodeOptions, EncodeOptions>;

/** What the command line asks for. Help and version are printed here; so is, in one line, what is
 *  wrong.
 *  @return the exit status when there is nothing left to do */
std::variant<Command, Outcome> parseCommandLine(int argc, char** argv);

}  // namespace zetac::tool
