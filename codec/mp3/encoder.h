// A Layer III encoder assembled from the functions of the library.
//
//     Mp3Encoder encoder({.sampleRate = 44100, .channels = 2, .bitRate = 128000});
//     for (;;) {
//         while (encoder.next(frame) == Mp3Encoder::Next::kFrame) put(frame);
//         const std::span<Zet16s> room = encoder.room();
//         encoder.filled(read(room));  // or finish(), and a last round
//     }
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "container/info_tag_writer.h"
#include "container/mpeg_audio.h"
#include "mp3/frame_writer.h"

namespace zetac::codec {

struct Mp3EncoderSettings {
    int sampleRate = 44100;  // 44100, 48000 or 32000
    int channels = 2;        // 1 or 2
    bool isJoint = true;     // M/S and intensity stereo where they help; two channels only
    int bitRate = 128000;    // bit/s: one that frames can have
    float quality = -1;      // 0 (best) .. 9: variable bit rate, whatever bitRate is; -1: constant
    bool hasCrc = false;
};

/** Encodes one stream. It allocates nothing, so it is large: not for the stack. */
class Mp3Encoder {
  public:
    /** Samples in front of the first one when all frames are decoded: 481 of the filter banks and a
     *  granule of the MDCT. */
    static constexpr size_t kDelay = 481 + ZETAC_MP3_GRANULE_LEN;
    static constexpr size_t kFrameSamples = 2 * ZETAC_MP3_GRANULE_LEN;

    /** Whether there are frames with these settings. */
    static bool isValid(const Mp3EncoderSettings& settings);

    explicit Mp3Encoder(const Mp3EncoderSettings& settings);

    /** Where the next samples go, interleaved. Empty while next() has work to do. */
    std::span<Zet16s> room();
    /** @param samples  per channel, that were put there */
    void filled(size_t samples);
    /** No further samples will come: next() gives frames until the last one comes out of a decoder.
     */
    void finish() { isFinished_ = true; }
    bool isFinished() const { return isFinished_; }

    enum class Next { kFrame, kNeedsInput, kEnd, kFailed };
    /** Gives a frame of the stream.
     *  @param frame  out: lives until the next call */
    Next next(std::span<const Zet8u>& frame);

    uint64_t samples() const { return samples_; }
    /** Given out. */
    uint64_t frames() const { return info_.frames(); }
    uint64_t bytes() const { return info_.bytes(); }
    /** That frames have or, where they differ, have had in the mean. */
    int bitRate() const;
    uint64_t padding() const;

    /** The frame to be put first, which has no sound: it tells players how long the sound is, what
     *  to cut off, and where to seek. Always of the same size; right at the end. */
    size_t infoFrameBytes() const { return info_.frameBytes(); }
    void writeInfoFrame(std::span<Zet8u> frame) const;

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

    bool hasSoundLeft() const;
    void padWithSilence();
    ZetStatus encodeFrame();
    ZetStatus runModel(const Zet16s* pcm);
    ZetStatus primeModel();
    ZetStatus transform();
    ZetStatus quantise(size_t& frameBytes, int& mainDataBegin);
    size_t chooseBitRate(int bits);
    ZetStatus pack(size_t frameBytes, int mainDataBegin);
    ZetStatus packFront(int mainDataBegin, Zet8u* front);
    ZetStatus packMainData(Zet8u* mainData, size_t& bytes);
    void scaleThresholds();
    bool isVariable() const { return settings_.quality >= 0; }
    size_t frontBytes() const;
    int mainDataBits(size_t frameBytes) const;
    size_t paddedFrameBytes();
    size_t channels() const { return static_cast<size_t>(settings_.channels); }
    int index(int granule, int channel) const { return granule * settings_.channels + channel; }

    Mp3EncoderSettings settings_;
    Mp3Format format_;
    ZetMP3Header header_;
    double thresholdScale_ = 1;
    ZetMP3BitReservoir reservoir_{};
    ZetMP3PsyState psyState_{};
    Zet32s overlap_[2][ZETAC_MP3_GRANULE_LEN] = {};
    FrameData frame_{};
    std::array<Zet16s, 2 * kWindowSamples> window_{};
    size_t windowFilled_ = kHistory;  // samples per channel
    bool isFinished_ = false;
    uint64_t coded_ = 0;  // frames
    uint64_t samples_ = 0;
    size_t paddingRest_ = 0;  // of the fraction of a byte that frames have, in 1 / sampleRate
    Mp3FrameWriter writer_;
    Mp3InfoWriter info_;
    alignas(64) Zet32s subbands_[ZETAC_MP3_GRANULE_LEN];
    alignas(8) Zet8u psyBuffer_[ZETAC_MP3_PSY_BUFFER_LEN];
    Zet8u quantiseBuffer_[ZETAC_MP3_QUANTIZE_BUFFER_LEN];
};

}  // namespace zetac::codec
