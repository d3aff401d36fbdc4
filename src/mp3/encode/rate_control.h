// The bits of a frame: how many it may spend, the noise level that spends them, and stuffing
// (ISO/IEC 11172-3, C.1.5.4.2.2 and C.1.5.4.3.6).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include "mp3/encode/granule_coder.h"

namespace zetac::mp3 {

inline constexpr int kMaxChannels = 2;
inline constexpr int kMaxRecords = kGranules * kMaxChannels;

struct FrameBudget {
    int meanBits;
    int held;
    int capacity;
    bool isVariable;  // the caller chooses the bit rate afterwards
};

// What a frame takes at a noise level.
struct Trial {
    int level;
    int bits;
    int nonZero;  // lines
};

// A frame in the making; lives in the caller's work buffer.
class FrameCoder {
  public:
    explicit FrameCoder(int numChannels) : numChannels_(numChannels) {}

    int numRecords() const { return kGranules * numChannels_; }
    GranuleCoder& granule(int record) { return granules_[record]; }

    // Codes all granules, after they were prepared, and returns the bits that stay in the
    // reservoir.
    int code(const FrameBudget& budget);

    // The code of a record, and the bits to stuff it with.
    const GranuleCode& result(int record) const { return codes_[best_][record]; }
    int stuffing(int record) const { return stuffing_[record]; }

  private:
    int numLines() const { return numRecords() * ZETAC_MP3_GRANULE_LEN; }
    Trial codeAll(int level);
    void keep() { best_ = 1 - best_; }
    int fit(Trial last, int budget);
    int nextLevel(const Trial& last, int budget) const;
    void codeSilence();
    int stuff(int bits);

    GranuleCoder granules_[kMaxRecords];
    GranuleCode codes_[2][kMaxRecords];  // the best so far, and the one on trial
    int best_ = 0;
    int numChannels_;
    int floor_[kMaxRecords] = {};  // levels below which 4095 bits do not suffice
    int stuffing_[kMaxRecords] = {};
};

}  // namespace zetac::mp3
