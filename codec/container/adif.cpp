// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/adif.h"

namespace zetac::codec {

Answer AdifHeader::read(View view) {
    constexpr int kProgramsMax = 16;
    if (const Answer answer = view.startsWith("ADIF"); answer != Answer::kYes) return answer;
    ZetAACPrgCfgElt programs[kProgramsMax];
    auto* cursor = const_cast<Zet8u*>(view.bytes.data());
    const ZetStatus status = zetsUnpackADIFHeader_AAC(&cursor, &fields_, programs, kProgramsMax);
    bytes_ = static_cast<size_t>(cursor - view.bytes.data());
    if (view.awaits(bytes_)) return Answer::kUnknown;
    if (status < 0 || !view.has(bytes_)) return Answer::kNo;
    program_ = programs[0];
    return Answer::kYes;
}

RawBlock AdifHeader::blockAt(View view, uint64_t position) const {
    RawBlock block;
    block.data = view.bytes;
    block.isOpen = !view.isFinal;
    block.position = position;
    block.isBounded = false;
    block.format = {4, program_.object_type, program_.sampling_frequency_index, 0};
    block.programConfig = &program_;
    return block;
}

}  // namespace zetac::codec
