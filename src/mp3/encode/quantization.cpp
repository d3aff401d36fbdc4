// Quantisation and rate control of an MPEG-1 Layer III frame (ISO/IEC 11172-3, C.1.5.4.3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include <algorithm>
#include <new>

#include "core/checks.h"
#include "core/spec.h"
#include "mp3/encode/bandwidth.h"
#include "mp3/encode/rate_control.h"
#include "mp3/encode/scale_factor_choice.h"

namespace zetac::mp3 {
namespace {

constexpr int kVariableRate = 15;      // bitrate_index
constexpr int kMaxHeldBits = 8 * 511;  // 9 bits of main_data_begin, in bytes
constexpr int kMostBits = 1 << 20;     // more than any frame can use
constexpr size_t kAlignment = 64;

static_assert(sizeof(FrameCoder) + kAlignment - 1 <= ZETAC_MP3_QUANTIZE_BUFFER_LEN);

ZetStatus checkHeader(const ZetMP3Header& header) {
    ZETAC_REQUIRE(header.ID == 1, zetStsBadFrameHeader);
    ZETAC_REQUIRE(header.layer == 1, zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(header.bitrate_index, 0, kVariableRate), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(header.sampling_frequency, 0, 2), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(header.mode, 0, 3), zetStsBadFrameHeader);
    ZETAC_REQUIRE(core::inRange(header.mode_extension, 0, 3), zetStsBadFrameHeader);
    return zetStsOk;
}

ZetStatus checkBlocks(const ZetMP3GranuleSideInfo* infos, int count) {
    for (int i = 0; i < count; ++i) {
        ZETAC_REQUIRE(core::inRange(infos[i].block_type, 0, 3), zetStsBadSideInfo);
        ZETAC_REQUIRE(core::inRange(infos[i].mixed_block_flag, 0, 1), zetStsBadSideInfo);
    }
    return zetStsOk;
}

ZetStatus checkReservoir(const ZetMP3BitReservoir& reservoir) {
    ZETAC_REQUIRE(core::inRange(reservoir.held, 0, kMaxHeldBits), zetStsBadArg);
    ZETAC_REQUIRE(reservoir.held % 8 == 0, zetStsBadArg);
    ZETAC_REQUIRE(reservoir.capacity >= 0, zetStsBadArg);
    return zetStsOk;
}

// The arguments of one call.
struct Frame {
    const ZetMP3Header& header;
    Zet32s* lines;
    Zet8s* scaleFactors;
    int* scfsi;
    int* count1Len;
    int* hufSize;
    ZetMP3GranuleSideInfo* infos;
    const ZetMP3PsyOutput* psy;
    const Zet32s* intensityBounds;

    int channels() const { return numChannels(header); }
    Zet32s* linesOf(int record) const { return lines + record * ZETAC_MP3_GRANULE_LEN; }
    Zet8s* scaleFactorsOf(int record) const { return scaleFactors + record * ZETAC_MP3_SCF_MAX; }
    IntensityBounds intensityOf(int record) const {
        const bool isIntensity = isMode(header, Mode::kJointStereo) && hasIntensity(header);
        if (!isIntensity || record % channels() == 0) return {nullptr, nullptr};
        return {intensityBounds + record / channels() * kWindows, scaleFactorsOf(record)};
    }
};

void prepare(const Frame& frame, int meanBits, FrameCoder& coder) {
    const int lines = codedLines(frame.header.sampling_frequency, meanBits / coder.numRecords());
    for (int record = 0; record < coder.numRecords(); ++record) {
        coder.granule(record).prepare(frame.linesOf(record), frame.infos[record], frame.psy[record],
                                      frame.header.sampling_frequency, lines,
                                      frame.intensityOf(record),
                                      frame.header.bitrate_index == kVariableRate);
    }
}

// The quantised lines, with the signs that the lines had.
void writeLines(const Zet16s* magnitudes, Zet32s* lines) {
    for (int i = 0; i < ZETAC_MP3_GRANULE_LEN; ++i) {
        const Zet32s sign = lines[i] >> 31;
        lines[i] = (magnitudes[i] ^ sign) - sign;
    }
}

void deliver(const FrameCoder& coder, const Frame& frame) {
    for (int record = 0; record < coder.numRecords(); ++record) {
        const GranuleCode& code = coder.result(record);
        const int stuffing = coder.stuffing(record);
        ZetMP3GranuleSideInfo& info = frame.infos[record];
        info = code.info;
        info.part2_3_length += stuffing;
        frame.count1Len[record] = code.count1Len;
        frame.hufSize[record] = info.part2_3_length - code.part2Bits;
        std::copy_n(code.scaleFactors, ZETAC_MP3_SCF_MAX, frame.scaleFactorsOf(record));
        writeLines(code.magnitudes, frame.linesOf(record));
    }
    for (int channel = 0; channel < frame.channels(); ++channel) {
        const GranuleCode& second = coder.result(frame.channels() + channel);
        std::copy_n(second.scfsi, kScfsiGroups, frame.scfsi + channel * kScfsiGroups);
    }
}

}  // namespace
}  // namespace zetac::mp3

using namespace zetac;

ZetStatus zetsQuantize_MP3_32s_I(Zet32s* pSrcDst, Zet8s* pScaleFactors, int* pScfsi,
                                 int* pCount1Len, int* pHufSize, const ZetMP3Header* pFrameHeader,
                                 ZetMP3GranuleSideInfo* pSideInfo,
                                 const ZetMP3PsyOutput* pPsyOutput, const Zet32s* pIsSfbBound,
                                 ZetMP3BitReservoir* pReservoir, int meanBits, Zet8u* pBuffer) {
    using namespace mp3;
    ZETAC_REQUIRE(core::allSet(pSrcDst, pScaleFactors, pScfsi, pCount1Len, pHufSize, pFrameHeader,
                               pSideInfo, pPsyOutput, pIsSfbBound, pReservoir, pBuffer),
                  zetStsNullPointer);
    if (const ZetStatus status = checkHeader(*pFrameHeader)) return status;
    const int channels = numChannels(*pFrameHeader);
    if (const ZetStatus status = checkBlocks(pSideInfo, kGranules * channels)) return status;
    ZETAC_REQUIRE(meanBits >= 0, zetStsBadSize);
    if (const ZetStatus status = checkReservoir(*pReservoir)) return status;

    FrameCoder& coder = *new (core::alignUp(pBuffer, kAlignment)) FrameCoder(channels);
    const Frame frame = {*pFrameHeader, pSrcDst,   pScaleFactors, pScfsi,     pCount1Len,
                         pHufSize,      pSideInfo, pPsyOutput,    pIsSfbBound};
    const int bits = std::min(meanBits, kMostBits);
    prepare(frame, bits, coder);
    pReservoir->held =
        coder.code({bits, pReservoir->held, std::min(pReservoir->capacity, kMaxHeldBits),
                    pFrameHeader->bitrate_index == kVariableRate});
    deliver(coder, frame);
    return zetStsOk;
}
