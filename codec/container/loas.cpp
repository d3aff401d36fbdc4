// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "container/loas.h"

#include <algorithm>

namespace zetac::codec {
namespace {

std::span<const Zet8u> elementOf(View view) {
    const View element = view.from(LoasHeader::kBytes);
    const size_t length = *LoasHeader::elementBytes(view.bytes);
    return element.bytes.first(std::min(length, element.size()));
}

/** Whether the frame begins with a configuration, be it one that is not supported. */
bool bringsConfig(View view) {
    const auto element = elementOf(view);
    LatmReader latm;
    const Fault fault = latm.begin(element);
    return !failed(fault) || fault.isRefusal;
}

}  // namespace

Answer LoasFrames::isHeader(View view) const {
    if (view.size() == 0 || view[0] != 0x56) return Answer::kNo;
    if (view.awaits(LoasHeader::kBytes)) return Answer::kUnknown;
    if (!view.has(LoasHeader::kBytes)) return Answer::kNo;
    return LoasHeader::elementBytes(view.bytes).value_or(0) > 0 ? Answer::kYes : Answer::kNo;
}

Answer LoasFrames::isFrame(View view, bool isDue, const TagScanner& tags) const {
    if (const Answer answer = isHeader(view); answer != Answer::kYes) return answer;
    const size_t length = LoasHeader::kBytes + *LoasHeader::elementBytes(view.bytes);
    if (view.awaits(length)) return Answer::kUnknown;
    if (isLocked_ && isDue) return Answer::kYes;
    if (!isLocked_ && !bringsConfig(view)) return Answer::kNo;
    if (view.awaits(length + 1)) return Answer::kUnknown;
    if (view.size() <= length) return view.size() == length || isDue ? Answer::kYes : Answer::kNo;
    const Answer tag = tags.at(view.from(length)).answer;
    return tag == Answer::kNo ? isHeader(view.from(length)) : tag;
}

size_t LoasFrames::open(View view) {
    const auto element = elementOf(view);
    std::ranges::copy(element, element_);
    isLocked_ = isGood_ = isFirst_ = true;
    frameBytes_ = LoasHeader::kBytes + element.size();
    fault_ = latm_.begin({element_, element.size()});
    return LoasHeader::kBytes + *LoasHeader::elementBytes(view.bytes);
}

RawBlock LoasFrames::next(View, uint64_t position) {
    RawBlock block;
    if (!failed(fault_)) latm_.next(block.data, fault_);
    block.fault = fault_;
    block.position = position;
    block.isFirst = isFirst_;
    if (isFirst_) block.bytesAround = static_cast<uint32_t>(frameBytes_ - block.data.size());
    if (latm_.config()) {
        block.format = StreamFormat::of(*latm_.config());
        const auto& program = latm_.config()->programConfig;
        block.programConfig = program ? &*program : nullptr;
    }
    isFirst_ = false;
    return block;
}

bool LoasFrames::finish(size_t, bool isGood) {
    isGood_ = isGood_ && isGood;
    return !failed(fault_) && latm_.hasMore();
}

size_t LoasFrames::behind() const {
    return isGood_ ? frameBytes_ : 1;
}

}  // namespace zetac::codec
