// zetac: shows, decodes and encodes AAC and MP3 files with the functions of the library.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "commands/arguments.h"
#include "io/descriptor.h"
#include "io/signals.h"

namespace {

using namespace zetac::tool;

struct Run {
    Outcome operator()(Outcome outcome) const { return outcome; }
    Outcome operator()(const Command& command) const { return std::visit(*this, command); }
    Outcome operator()(const InfoOptions& options) const { return runInfo(options); }
    Outcome operator()(const DecodeOptions& options) const { return runDecode(options); }
    Outcome operator()(const EncodeOptions& options) const { return runEncode(options); }
};

Outcome run(int argc, char** argv) {
    try {
        return std::visit(Run(), parseCommandLine(argc, argv));
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "zetac: %s\n", exception.what());
    }
    return Outcome::kFailed;
}

}  // namespace

int main(int argc, char** argv) {
    reserveStandardDescriptors();
    ignoreWriteSignals();
    Outcome outcome = run(argc, argv);
    if (!closeStandardOutput()) {
        std::fprintf(stderr, "zetac: standard output cannot be written: %s\n",
                     std::strerror(errno));
        outcome = worse(outcome, Outcome::kFailed);
    }
    if (outcome == Outcome::kInterrupted) endBySignal();
    return static_cast<int>(outcome);
}
