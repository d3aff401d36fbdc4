// What containers of AAC say of a raw data block.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <cstdint>
#include <span>

#include "base/crc.h"
#include "base/fault.h"
#include "container/audio_specific_config.h"

namespace zetac::codec {

/** What a container says of the blocks of its stream. */
struct StreamFormat {
    int mpegVersion = 4;  // 2 or 4; the syntax of MPEG-4 contains that of MPEG-2
    int profile = 1;      // 0 Main, 1 LC, 2 SSR, 3 LTP: the audio object type less one
    int samplingFrequencyIndex = 0;
    int channelConfiguration = 0;  // 0: a program config element tells
    int explicitRate = 0;          // Hz, where the index only stands for the band tables
    Signal sbr = Signal::kImplicit;
    Signal parametricStereo = Signal::kImplicit;
    bool isSbrDownsampled = false;  // the rate of the output is signalled to be that of the core

    /** 0 for an index without a sampling rate. */
    int sampleRate() const;
    bool operator==(const StreamFormat&) const = default;

    static StreamFormat of(const AudioSpecificConfig& config);
};

/** One raw_data_block(), with kReadAhead readable bytes behind it. */
struct RawBlock {
    std::span<const Zet8u> data;  // as far as the block can reach
    bool isOpen = false;          // it may reach further: more data may still come
    uint64_t position = 0;        // of its first byte in the stream, or of the frame that it opens
    uint32_t bytesAround = 0;     // of that frame, before and behind the block
    bool isFirst = true;          // in its frame: reading may start here
    bool isBounded = true;        // it takes all its data; else what is used of them
    StreamFormat format;
    const ZetAACPrgCfgElt* programConfig = nullptr;  // from the container, if it has one
    Fault fault;                                     // why the block cannot be trusted already

    bool isProtected = false;  // crc and expectedCrc count
    Crc16 crc;                 // over what of the frame comes before the block
    unsigned expectedCrc = 0;
};

}  // namespace zetac::codec
