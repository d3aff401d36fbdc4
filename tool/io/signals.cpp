// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "io/failure.h"

namespace zetac::tool {
namespace {

constexpr size_t kNameBytes = 24;

/** A temporary file for the handler, which may neither lock nor allocate. */
struct Slot {
    std::atomic<int> folder{-1};  // -1: free
    char name[kNameBytes] = {};
};

Slot slots[kTemporaryNamesMax];
std::atomic<int> signalNumber{0};

void removeTemporaries() {
    for (const Slot& slot : slots) {
        const int folder = slot.folder;
        if (folder >= 0) unlinkat(folder, slot.name, 0);
    }
}

void raiseByDefault(int number) {
    std::signal(number, SIG_DFL);
    sigset_t own;
    sigemptyset(&own);
    sigaddset(&own, number);
    pthread_sigmask(SIG_UNBLOCK, &own, nullptr);
    std::raise(number);
}

void onSignal(int number) {
    int none = 0;
    if (signalNumber.compare_exchange_strong(none, number)) return;
    removeTemporaries();
    raiseByDefault(number);
}

int claimSlot(int folder, const std::string& name) {
    for (int i = 0; i < kTemporaryNamesMax; ++i) {
        int none = -1;
        if (!slots[i].folder.compare_exchange_strong(none, -2)) continue;
        std::memcpy(slots[i].name, name.c_str(), name.size() + 1);
        slots[i].folder = folder;
        return i;
    }
    throw Failure("too many files at once");
}

std::string randomName() {
    static constexpr char kLetters[] = "abcdefghijklmnopqrstuvwxyz234567";
    std::random_device random;
    std::string name = ".zetac-";
    for (int i = 0; i < 12; ++i) name += kLetters[random() & 31];
    return name;
}

}  // namespace

/** No call is restarted, so that blocked ones come back and look. */
void catchSignals() {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler == SIG_IGN) continue;
        action = {};
        action.sa_handler = onSignal;
        sigaction(number, &action, nullptr);
    }
}

void ignoreWriteSignals() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

bool isInterrupted() {
    return signalNumber != 0;
}

void stopIfInterrupted() {
    if (isInterrupted()) throw Failure("was interrupted");
}

void endBySignal() {
    raiseByDefault(signalNumber);
    std::_Exit(128 + signalNumber);
}

TemporaryName::TemporaryName(int folder)
    : folder_(folder), name_(randomName()), slot_(claimSlot(folder, name_)) {}

TemporaryName::~TemporaryName() {
    if (slot_ < 0) return;
    unlinkat(folder_, name_.c_str(), 0);
    release();
}

void TemporaryName::release() {
    slots[slot_].folder = -1;
    slot_ = -1;
}

}  // namespace zetac::tool
