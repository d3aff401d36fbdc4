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

/** Does one file; throws Failure. */
using Work = std::function<Outcome(const Job&, Console&)>;

/** Runs a command over its files. Outputs are planned before the first file is touched, and what
 *  would destroy a file is refused.
 *  @param extension  of the outputs, with its dot */
Outcome runJobs(ConversionOptions options, const std::string& extension, const Work& work);

}  // namespace zetac::tool
