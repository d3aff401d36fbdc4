// Any list of codewords is refused or decodes any stream, within the bytes that it may read.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "vlc_input.h"

using namespace zetac::fuzz;

namespace {

constexpr int kLen = 32;
// 32 bits of a codeword for every value, its sign and an escape of 21 bits, or 15 and the sign.
constexpr size_t kBytes = kLen * (32 + 1 + 21) / 8;

std::vector<ZetVLCCode> anyList(VlcInput& input) {
    if (input.byte() % 4 != 0) return input.prefixCode(ZETAC_VLC_CODE_BITS_MAX);
    std::vector<ZetVLCCode> codes(static_cast<size_t>(input.number(1, 16)));
    for (ZetVLCCode& code : codes) {
        code.length = input.number(-1, 34);
        code.code = input.number(0, 0xffff);
    }
    return codes;
}

ZetStatus decode(int which, Zet8u** p, int* offset, int escLen, Zet16s* values, const void* spec) {
    switch (which) {
        case 0:
            return zetsVLCDecodeEscBlock_MP3_1u16s(p, offset, escLen, values, kLen, spec);
        case 1:
            return zetsVLCDecodeEscBlock_AAC_1u16s(p, offset, values, kLen, spec);
        case 2:
            return zetsVLCDecodeUTupleEscBlock_MP3_1u16s(p, offset, escLen, values, kLen, spec);
        default:
            return zetsVLCDecodeUTupleEscBlock_AAC_1u16s(p, offset, values, kLen, spec);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    VlcInput input(data, size);
    auto codes = anyList(input);
    const int range = 1 << input.byte() % 8;
    for (ZetVLCCode& code : codes)
        for (Zet16s& value : code.value) value = static_cast<Zet16s>(input.number(-range, range));
    const int form = input.byte() % 4, which = input.byte() % 4, escLen = input.number(-1, 17);

    ZetsVLCDecodeSpec_1u16s* spec = nullptr;
    const ZetStatus built =
        zetsVLCDecodeInitAlloc_1u16s(&spec, codes.data(), static_cast<int>(codes.size()), form);
    require((built == zetStsOk) == (spec != nullptr));
    if (built != zetStsOk) return 0;
    auto stream = input.rest(kBytes + ZETAC_BIT_STREAM_SLACK);
    Zet8u* p = stream.data();
    int offset = 0;
    std::vector<Zet16s> values(kLen);
    const ZetStatus status = decode(which, &p, &offset, escLen, values.data(), spec);
    require(status == zetStsOk || (which % 2 == 1 && status == zetStsBadEscapeCode));
    require(0 <= offset && offset <= 7 && p >= stream.data());
    require(static_cast<size_t>(p - stream.data()) * 8 + static_cast<size_t>(offset) <= 8 * kBytes);
    require(zetsVLCDecodeFree_1u16s(spec) == zetStsOk);
    return 0;
}
