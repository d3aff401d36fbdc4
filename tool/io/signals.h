// Signals that ask the program to stop.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <string>

namespace zetac::tool {

/** From here on SIGINT, SIGTERM and SIGHUP ask to stop: the first one lets the work end between two
 *  frames, the second one ends the program at once. What the caller has ignored stays ignored. */
void catchSignals();

/** SIGPIPE and SIGXFSZ become errors of the write that caused them. */
void ignoreWriteSignals();

/** Whether a signal has asked to stop. */
bool isInterrupted();

/** Throws Failure if a signal has asked to stop: for loops around calls that signals break off. */
void stopIfInterrupted();

/** Ends the program by the signal that asked to stop, so that a shell's loop stops too. */
[[noreturn]] void endBySignal();

/** Most temporary names at a time. */
inline constexpr int kTemporaryNamesMax = 256;

/** A short name, unused so far, for a file that must not outlive the program. */
class TemporaryName {
  public:
    /** @param folder  descriptor that stays open longer than this object */
    explicit TemporaryName(int folder);
    /** Removes the file. */
    ~TemporaryName();
    TemporaryName(const TemporaryName&) = delete;
    TemporaryName(TemporaryName&&) = delete;
    TemporaryName& operator=(const TemporaryName&) = delete;
    TemporaryName& operator=(TemporaryName&&) = delete;

    const char* c_str() const { return name_.c_str(); }
    /** The file has got its final name. */
    void release();

  private:
    int folder_;
    std::string name_;
    int slot_;
};

}  // namespace zetac::tool
