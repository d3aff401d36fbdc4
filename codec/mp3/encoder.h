// A Layer III encoder assembled from the functions of the library: a model to copy.
//
//     Mp3Encoder encoder({.sampleRate = 44100, .channels = 2, .bitRate = 128});
//     std::vector<Zet8u> stream = encoder.infoFrame();  // to be written once more at the end
//     while (const size_t samples = read(pcm)) encoder.encode(pcm, samples, stream);
//     encoder.finish(stream);
//     const std::vector<Zet8u> info = encoder.infoFrame();
//     std::copy(info.begin(), info.end(), stream.begin());
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstddef>
#include <vector>

#include "container/info_tag_writer.h"
#include "container/mpeg_audio.h"
#include "mp3/frame_writer.h"

namespace zetac::codec {

struct Mp3EncoderSettings {
    int sampleRate = 44100;  // 44100, 48000 or 32000
    int channels = 2;        // 1 or 2
    bool isJoint = true;     // M/S and intensity stereo where they help; two channels only
    int bitRate = 128;  // kbit/s: 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320
    int quality = -1;   // 0 (best) .. 9: variable bit rate, whatever bitRate is; -1: constant
    bool hasCrc = false;
};

/** Encodes one stream. The samples of a frame are delayed by kDelay and looked at kLookAhead before
 *  their time. */
class Mp3Encoder {
  public:
    /** Samples in front of the first one when all frames are decoded: 481 of the filter banks and a
     *  granule of the MDCT. */
    static constexpr size_t kDelay = 481 + ZETAC_MP3_GRANULE_LEN;
    static constexpr size_t kFrameSamples = 2 * ZETAC_MP3_GRANULE_LEN;

    /** Whether there are frames with these settings. */
    static bool isValid(const Mp3EncoderSettings& settings);

    explicit Mp3Encoder(const Mp3EncoderSettings& settings);

    /** Takes samples, interleaved, and appends the frames that are complete. */
    ZetStatus encode(const Zet16s* pcm, size_t samples, std::vector<Zet8u>& out);
    /** Appends the rest: frames until the last sample comes out of a decoder. */
    ZetStatus finish(std::vector<Zet8u>& out);

    /** The first frame of the stream, which has no sound: it tells players how long the sound is,
     *  what to cut off, and where to seek. Always of the same size; right at the end. */
    std::vector<Zet8u> infoFrame() const;

    size_t frames() const { return frames_; }

  private:
    // PCM around a frame, in time steps from its first new sample: the analysis window goes back
    // 480, and the blocks of the psychoacoustic model begin 176 before, so that their middle is
    // that of the MDCT window; the last one ends 1424 behind.
    static constexpr size_t kHistory = 480;
    static constexpr size_t kModelStart = kHistory - 176;
    static constexpr size_t kModelSamples = ZETAC_MP3_GRANULE_LEN + 1024;
    static constexpr size_t kWindowSamples = kModelStart + kModelSamples;

    /** What becomes of a frame on its way. */
    struct FrameData {
        alignas(64) Zet32s lines[4][ZETAC_MP3_GRANULE_LEN];
        ZetMP3GranuleSideInfo sideInfo[4] = {};
        ZetMP3PsyOutput psy[4] = {};
        Zet32s intensityBound[6] = {};
        Zet8s scaleFactor[4][ZETAC_MP3_SCF_MAX] = {};
        int scfsi[8] = {};
        int count1Len[4] = {};
        int hufSize[4] = {};
    };

    ZetStatus encodeFrame(std::vector<Zet8u>& out);
    ZetStatus runModel(const Zet16s* pcm);
    ZetStatus primeModel();
    ZetStatus transform();
    ZetStatus quantise(size_t& frameBytes, int& mainDataBegin);
    size_t chooseBitRate(int bits);
    ZetStatus pack(size_t frameBytes, int mainDataBegin, std::vector<Zet8u>& out);
    ZetStatus packFront(int mainDataBegin, Zet8u* front);
    ZetStatus packMainData(std::vector<Zet8u>& mainData);
    void scaleThresholds();
    size_t frontBytes() const;
    int mainDataBits(size_t frameBytes) const;
    size_t paddedFrameBytes();
    int index(int granule, int channel) const { return granule * settings_.channels + channel; }

    Mp3EncoderSettings settings_;
    Mp3Format format_;
    ZetMP3Header header_{};
    ZetMP3BitReservoir reservoir_{};
    ZetMP3PsyState psyState_{};
    Zet32s overlap_[2][ZETAC_MP3_GRANULE_LEN] = {};
    FrameData frame_{};
    std::vector<Zet16s> window_;
    size_t frames_ = 0;
    size_t samples_ = 0;
    size_t paddingRest_ = 0;  // of the fraction of a byte that frames have, in 1 / sampleRate
    Mp3FrameWriter writer_;
    Mp3InfoWriter info_;
    alignas(64) Zet32s subbands_[ZETAC_MP3_GRANULE_LEN];
    alignas(8) Zet8u psyBuffer_[ZETAC_MP3_PSY_BUFFER_LEN];
    Zet8u quantiseBuffer_[ZETAC_MP3_QUANTIZE_BUFFER_LEN];
};

}  // namespace zetac::codec
