// Counts what the program allocates with operator new, and can make it fail.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstddef>

namespace zetac::test {

/** Since the program began, in all threads. */
size_t allocationCount();

/** While it lives, allocations fail once so many have succeeded. */
class FailingAllocations {
  public:
    explicit FailingAllocations(size_t after);
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
};

}  // namespace zetac::test
