// The commands of zetac.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "io/sound_source.h"

namespace zetac::tool {

/** Exit statuses; of several files the worst one counts. */
enum class Outcome : int {
    kGood = 0,
    kDamaged = 1,  // something was concealed or passed over
    kFailed = 2,   // a file could not be read, decoded or written
    kInterrupted = 130
};

inline Outcome worse(Outcome a, Outcome b) {
    return std::max(a, b);
}

struct InfoOptions {
    std::vector<std::string> files;
    bool asJson = false;
};

/** Prints what the files are. */
Outcome runInfo(const InfoOptions& options);

/** Of a command that makes one file of each. */
struct ConversionOptions {
    std::vector<std::string> files;
    std::string output;  // file, folder or "-"; empty: beside the input
    int jobs = 0;        // files at once; 0: one per processor
    bool isForced = false;
    bool isQuiet = false;
};

struct DecodeOptions : ConversionOptions {
    bool isStrict = false;
    bool isTrimmed = true;  // of the samples that the encoder added
    SbrOptions sbr;
};

/** Decodes the files to WAV. */
Outcome runDecode(const DecodeOptions& options);

enum class ChannelMode { kJoint, kStereo, kMono };

struct EncodeOptions : ConversionOptions {
    int bitRate = 0;   // kbit/s; 0: the default
    int quality = -1;  // 0..9, variable bit rate; -1: constant
    ChannelMode mode = ChannelMode::kJoint;
    bool hasCrc = false;
};

/** Encodes the files to MP3. */
Outcome runEncode(const EncodeOptions& options);

}  // namespace zetac::tool
