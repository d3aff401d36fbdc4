// What the build knows about itself.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

namespace zetac::tool {

/** Such as "5.2". */
extern const char* const kRelease;
/** Of the source; empty when it was not in a repository. */
extern const char* const kCommit;

}  // namespace zetac::tool
