// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "base/window.h"

#include <algorithm>

namespace zetac::codec {

size_t ByteWindow::feed(std::span<const Zet8u> bytes) {
    const size_t passed = static_cast<size_t>(std::min<uint64_t>(skipped_, bytes.size()));
    skipped_ -= passed;
    bytes = bytes.subspan(passed);
    if (kCapacity - end_ < bytes.size() && begin_ > 0) {
        std::memmove(buffer_, buffer_ + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    const size_t taken = std::min(bytes.size(), kCapacity - end_);
    std::copy_n(bytes.data(), taken, buffer_ + end_);
    end_ += taken;
    return passed + taken;
}

void ByteWindow::reset(uint64_t position) {
    begin_ = end_ = 0;
    position_ = position;
    skipped_ = 0;
    isFinal_ = false;
}

void ByteWindow::skip(uint64_t count) {
    const size_t here = static_cast<size_t>(std::min<uint64_t>(count, end_ - begin_));
    begin_ += here;
    position_ += count;
    skipped_ += count - here;
}

}  // namespace zetac::codec
