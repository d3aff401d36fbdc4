// A file of any codec on its way to PCM, frame by frame.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "base/layout.h"
#include "inspect/summary.h"

namespace zetac::tool {

/** One frame, decoded or concealed. */
struct SoundFrame {
    size_t position = 0;          // in the file
    size_t inputBytes = 0;        // that it took
    std::string fault;            // what is wrong with it; empty when it is good
    bool isFaultNews = true;      // false: the fault of the frame before goes on
    const Zet16s* pcm = nullptr;  // interleaved in the order of WAV files; null without sound
    int channels = 0;             // 0: silent, because no layout is known yet
    size_t samples = 0;           // per channel
    bool isHeard = false;         // in spite of its fault
};

/** Samples per channel that the encoder added to the sound. */
struct EncoderGaps {
    size_t front = 0;
    size_t back = 0;
};

/** Foreign bytes, which belong to no frame. */
struct ForeignBytes {
    size_t position = 0;
    size_t count = 0;
};

class SoundSource {
  public:
    SoundSource() = default;
    SoundSource(const SoundSource&) = delete;
    SoundSource(SoundSource&&) = delete;
    SoundSource& operator=(const SoundSource&) = delete;
    SoundSource& operator=(SoundSource&&) = delete;
    virtual ~SoundSource() = default;

    /** Throws Failure when the whole stream cannot be decoded. */
    virtual bool next(SoundFrame& frame) = 0;

    /** Before the last frame, or after the last one of all. */
    virtual ForeignBytes foreign() const = 0;
    virtual int sampleRate() const = 0;
    /** Once a frame has channels; it stays the same. */
    virtual const codec::ChannelLayout& layout() const = 0;
    virtual EncoderGaps gaps() const { return {}; }
    /** What is in the frames so far. */
    virtual codec::StreamSummary summary() const = 0;
    /** What the user should know at the end. */
    virtual std::vector<std::string> notes() const = 0;
};

/** How HE-AAC is decoded. */
struct SbrOptions {
    bool isOn = true;            // false: the core alone
    bool isDownsampled = false;  // at the rate of the core
    bool isFloat = false;        // in floating point
};

/** Throws Failure when the bytes are no sound.
 *  @param data       with kReadAhead readable bytes behind it; must outlive the source
 *  @param isDecoded  false: frames are read and checked as usual, but no sound is made */
std::unique_ptr<SoundSource> openSound(std::span<const Zet8u> data, const SbrOptions& sbr,
                                       bool isDecoded = true);

}  // namespace zetac::tool
