// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "io/descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace zetac::tool {

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        close();
        number_ = other.release();
    }
    return *this;
}

int Descriptor::release() {
    const int number = number_;
    number_ = -1;
    return number;
}

bool Descriptor::close() {
    const int number = release();
    return number < 0 || ::close(number) == 0 || errno == EINTR;
}

void reserveStandardDescriptors() {
    for (int number = 0; number <= 2; ++number) {
        if (fcntl(number, F_GETFD) >= 0) continue;
        // The lowest free number is taken. The wrong direction makes every use fail.
        const int opened = open("/dev/null", number == 0 ? O_WRONLY : O_RDONLY);
        if (opened != number) std::_Exit(2);
    }
}

bool closeStandardOutput() {
    const bool isFlushed = std::fflush(stdout) == 0 && !std::ferror(stdout);
    return isFlushed && close(STDOUT_FILENO) == 0;
}

}  // namespace zetac::tool
