// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <zetac.h>

namespace {

constexpr ZetLibraryVersion kVersion = {
    .major = 5,
    .minor = 2,
    .majorBuild = 108,
    .build = 366,
    .targetCpu = {'r', '5', '\0', '\0'},
    .Name = "libzetacr5.so.5.2",
    .Version = "5.2",
    .BuildDate = "Jul 11 2007",
};

}  // namespace

const ZetLibraryVersion* zetacGetLibVersion(void) {
    return &kVersion;
}
