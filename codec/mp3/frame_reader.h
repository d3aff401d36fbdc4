// Unpacks frames of Layer III (ISO/IEC 11172-3, 2.4.1; 13818-3, 2.4.1) into quantised lines.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "container/mpeg_audio.h"
#include "mp3/fault.h"

namespace zetac::codec {

/** One granule of all channels, as the library's readers leave it. */
struct Mp3GranuleData {
    alignas(64) Zet32s lines[2][ZETAC_MP3_GRANULE_LEN];
    Zet8s scaleFactor[2][ZETAC_MP3_SCF_MAX];
    int nonZeroBound[2];
};

/** Reads frame after frame of one stream: begin() with the frame, then its granules in order. The
 *  main data of a frame start in earlier frames, so what those left is kept (the bit reservoir). */
class Mp3FrameReader {
  public:
    /** Header, error check, side information; on a fault the granules cannot be read. */
    Fault begin(const Mp3Frame& frame);
    /** Scale factors and Huffman data of all channels. */
    Fault readGranule(int granule);
    /** The next frame does not continue the last one. */
    void forgetMainData() { mainDataBytes_ = 0; }

    int channels() const { return header_.mode == kModeMono ? 1 : 2; }
    int granules() const { return header_.ID == 1 ? 2 : 1; }
    ZetMP3Header& header() { return header_; }
    const ZetMP3Header& header() const { return header_; }
    ZetMP3GranuleSideInfo& sideInfo(int granule, int channel) {
        return sideInfo_[granule * channels() + channel];
    }
    const ZetMP3GranuleSideInfo& sideInfo(int granule, int channel) const {
        return sideInfo_[granule * channels() + channel];
    }
    /** Whether the second granule takes scale factors from the first. */
    bool sharesScaleFactors() const;
    /** Bytes that the main data reach back. */
    int mainDataBegin() const { return mainDataBegin_; }
    Mp3GranuleData& data() { return data_; }

  private:
    static constexpr int kModeMono = 3;
    static constexpr size_t kReservoirBytes = 511;  // main_data_begin has 9 bits
    static constexpr size_t kSlackBytes = 64;       // scale factors that overrun, and read-ahead

    Fault readSideInfo(Zet8u* cursor, size_t reservoir);
    void keepReservoir();
    void append(std::span<const Zet8u> bytes);
    Fault readChannel(int granule, int channel);

    ZetMP3Header header_{};
    ZetMP3GranuleSideInfo sideInfo_[4]{};
    int scfsi_[8] = {};
    int mainDataBegin_ = 0;
    Mp3GranuleData data_{};
    size_t nextBit_ = 0;  // in mainData_, where the next channel's granule begins
    bool isComplete_ = true;

    Zet8u mainData_[kReservoirBytes + kMp3FrameBytesMax + kSlackBytes] = {};
    size_t mainDataBytes_ = 0;
};

}  // namespace zetac::codec
