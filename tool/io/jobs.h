// Many files, each made into another one, on all processors.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <functional>
#include <string>

#include "commands/commands.h"
#include "console/console.h"

namespace zetac::tool {

struct Job {
    std::string input;
    std::string output;
};

/** A signal asks to stop: the work then ends between two frames and leaves nothing behind. */
bool isInterrupted();

/** Runs a command over its files. Outputs are planned before the first file is touched, and what
 *  would destroy a file is refused.
 *  @param extension  of the outputs, with its dot
 *  @param run        does one file; throws Failure */
Outcome runJobs(const ConversionOptions& options, const std::string& extension,
                const std::function<Outcome(const Job&, Console&)>& run);

}  // namespace zetac::tool
