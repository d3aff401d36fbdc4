// What is encoded has as many bits as are counted, and decodes to the same values in both forms.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "vlc_input.h"

using namespace zetac::fuzz;

namespace {

using Codes = std::vector<ZetVLCCode>;

constexpr int kEscLen = 9;

// Distinct pairs of magnitudes, many of them with escapes.
void givePairs(VlcInput& input, Codes& codes, int largest) {
    const int radix = largest + 1;
    int pair = input.number(0, radix * radix - 1);
    for (ZetVLCCode& code : codes) {
        code.value[0] = static_cast<Zet16s>(pair / radix);
        code.value[1] = static_cast<Zet16s>(pair % radix);
        pair = (pair + radix + largest) % (radix * radix);  // coprime to the number of pairs
    }
}

Codes withSigns(const Codes& magnitudes) {
    Codes codes;
    for (const ZetVLCCode& code : magnitudes) {
        const auto [x, y] = code.value;
        const int signs = (x != 0) + (y != 0);
        for (int sign = 0; sign < 1 << signs; ++sign) {
            ZetVLCCode pair = {{x, y}, code.length + signs, code.code << signs | sign};
            if (x != 0 && sign >> (signs - 1)) pair.value[0] = static_cast<Zet16s>(-x);
            if (y != 0 && sign & 1) pair.value[1] = static_cast<Zet16s>(-y);
            codes.push_back(pair);
        }
    }
    return codes;
}

Zet16s extended(VlcInput& input, Zet16s value, int escape, int most) {
    if (value != escape && value != -escape) return value;
    const int more = input.number(0, most);
    return static_cast<Zet16s>(value < 0 ? value - more : value + more);
}

struct Style {
    int escStyle, escape, most;
    ZetStatus encode(const std::vector<Zet16s>& v, Zet8u** p, int* offset, const void* spec) const {
        const int len = static_cast<int>(v.size());
        return escStyle == zetVLCEscMP3
                   ? zetsVLCEncodeEscBlock_MP3_16s1u(v.data(), len, kEscLen, p, offset, spec)
                   : zetsVLCEncodeEscBlock_AAC_16s1u(v.data(), len, p, offset, spec);
    }
    ZetStatus count(const std::vector<Zet16s>& v, int* bits, const void* spec) const {
        const int len = static_cast<int>(v.size());
        return escStyle == zetVLCEscMP3
                   ? zetsVLCCountEscBits_MP3_16s32s(v.data(), len, kEscLen, bits, spec)
                   : zetsVLCCountEscBits_AAC_16s32s(v.data(), len, bits, spec);
    }
    ZetStatus decode(bool isUnsigned, Zet8u** p, int* offset, std::vector<Zet16s>& v,
                     const void* spec) const {
        const int len = static_cast<int>(v.size());
        if (escStyle == zetVLCEscMP3)
            return (isUnsigned
                        ? zetsVLCDecodeUTupleEscBlock_MP3_1u16s
                        : zetsVLCDecodeEscBlock_MP3_1u16s)(p, offset, kEscLen, v.data(), len, spec);
        return (isUnsigned ? zetsVLCDecodeUTupleEscBlock_AAC_1u16s
                           : zetsVLCDecodeEscBlock_AAC_1u16s)(p, offset, v.data(), len, spec);
    }
};

constexpr Style kStyles[] = {{zetVLCEscMP3, 15, (1 << kEscLen) - 1}, {zetVLCEscAAC, 16, 8191 - 16}};

void requireDecodes(const Style& style, bool isUnsigned, const Codes& codes,
                    std::vector<Zet8u>& stream, int end, const std::vector<Zet16s>& values) {
    ZetsVLCDecodeSpec_1u16s* spec = nullptr;
    require(zetsVLCDecodeInitAlloc_1u16s(&spec, codes.data(), static_cast<int>(codes.size()),
                                         isUnsigned ? zetVLCUTuples : zetVLCPairs) == zetStsOk);
    Zet8u* p = stream.data();
    int offset = 0;
    std::vector<Zet16s> decoded(values.size());
    require(style.decode(isUnsigned, &p, &offset, decoded, spec) == zetStsOk);
    require((p - stream.data()) * 8 + offset == end);
    require(decoded == values);
    zetsVLCDecodeFree_1u16s(spec);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    VlcInput input(data, size);
    const Style& style = kStyles[input.byte() % 2];
    Codes magnitudes = input.prefixCode(ZETAC_VLC_CODE_BITS_MAX - 2);
    givePairs(input, magnitudes, style.escape);
    const Codes pairs = withSigns(magnitudes);
    std::vector<Zet16s> values;
    for (int i = input.byte() % 32; i >= 0; --i) {
        const ZetVLCCode& code = pairs[static_cast<size_t>(input.number(0, 0xffff)) % pairs.size()];
        for (const Zet16s value : code.value)
            values.push_back(extended(input, value, style.escape, style.most));
    }

    ZetsVLCEncodeSpec_16s1u* spec = nullptr;
    require(zetsVLCEncodeInitAlloc_16s1u(&spec, pairs.data(), static_cast<int>(pairs.size()),
                                         style.escStyle) == zetStsOk);
    int bits = -1;
    require(style.count(values, &bits, spec) == zetStsOk);
    std::vector<Zet8u> stream(static_cast<size_t>(bits + 7) / 8 + 1);
    Zet8u* p = stream.data();
    int offset = 0;
    require(style.encode(values, &p, &offset, spec) == zetStsOk);
    zetsVLCEncodeFree_16s1u(spec);
    require((p - stream.data()) * 8 + offset == bits);
    stream.resize(stream.size() - 1 + ZETAC_BIT_STREAM_SLACK);
    requireDecodes(style, false, pairs, stream, bits, values);
    requireDecodes(style, true, magnitudes, stream, bits, values);
    return 0;
}
