// An individual_channel_stream() for tests and what the noiseless decoders make of it.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <vector>

#include "support/guarded_stream.h"

namespace zetac::test {

enum class Form { kLowComplexity, kShared, kSeparate };

// Every output in a heap block of exactly the documented size, so that a sanitizer sees one element
// too many.
struct Channel {
    ZetAACIcsInfo ics{};
    ZetAACChanInfo info{};
    ZetAACMainHeader header{};
    std::vector<Zet16s> scaleFactor = std::vector<Zet16s>(ZETAC_AAC_GROUP_BANDS_MAX, 0x5a5a);
    std::vector<Zet32s> spectrum = std::vector<Zet32s>(ZETAC_AAC_FRAME_LEN, 0x5a5a5a5a);
    std::vector<Zet8u> sfbCb = std::vector<Zet8u>(ZETAC_AAC_GROUP_BANDS_MAX, 0x5a);
    std::vector<Zet8s> tnsCoef = std::vector<Zet8s>(ZETAC_AAC_TNS_COEFS_MAX, 0x5a);
    int commonWin = 0;
    int scalableFlag = 0;
    int windowSequence = 0;
    int maxSfb = 0;
    int audioObjectType = 2;
    size_t consumed = 0;  // bits, after decode()

    explicit Channel(int samplingFreqIndex = 4) {
        std::memset(&info, 0x5a, sizeof info);
        info.sampling_frequency_index = samplingFreqIndex;
        info.predSfbMax = 0;
        info.pIcsInfo = &ics;
    }
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    ZetStatus decode(Form form, StreamPosition& position) {
        const auto run = [&](auto decoder, auto... arguments) {
            return decoder(position.ppByte(), position.pOffset(), arguments...);
        };
        const ZetStatus status =
            form == Form::kLowComplexity
                ? run(zetsNoiselessDecoder_LC_AAC, commonWin, &info, scaleFactor.data(),
                      spectrum.data(), sfbCb.data(), tnsCoef.data())
                : run(form == Form::kShared ? zetsNoiselessDecode_AAC : zetsNoiselessDecode_MP4_AAC,
                      &header, scaleFactor.data(), spectrum.data(), sfbCb.data(), tnsCoef.data(),
                      &info, windowSequence, maxSfb, commonWin, scalableFlag, audioObjectType);
        consumed = position.consumed();
        return status;
    }
    ZetStatus decode(Form form, const BitWriter& stream) {
        StreamPosition position(stream);
        return decode(form, position);
    }
    // The output begins with the expected values.
    template <class T>
    static bool startsWith(const std::vector<T>& output, std::initializer_list<int> expected) {
        return std::equal(expected.begin(), expected.end(), output.begin());
    }
};

// global_gain and ics_info() of a long window without prediction.
inline BitWriter longWindow(int globalGain, int maxSfb) {
    return {{globalGain, 8}, {0, 4}, {maxSfb, 6}, {0, 1}};
}

inline BitWriter shortWindows(int globalGain, int maxSfb, int grouping) {
    return {{globalGain, 8}, {2 << 1, 4}, {maxSfb, 4}, {grouping, 7}};
}

// A section with its length in as many increments as it takes.
inline BitWriter section(int codebook, int length, bool isShort = false) {
    const int bits = isShort ? 3 : 5;
    const int escape = (1 << bits) - 1;
    BitWriter stream{{codebook, 4}};
    for (; length >= escape; length -= escape) stream.append(escape, bits);
    return stream.append(length, bits);
}

// Pulse, TNS and gain-control flags.
inline BitWriter noTools() {
    return {{0, 3}};
}

}  // namespace zetac::test
