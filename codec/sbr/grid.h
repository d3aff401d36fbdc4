// sbr_grid(): the time borders of envelopes and noise floors (ISO/IEC
// 14496-3, 4.4.2.8, 4.6.18.3.3).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <cstdint>

#include "sbr/bits.h"
#include "sbr/fault.h"

namespace zetac::codec {

inline constexpr int kSbrEnvelopesMax = 5;
inline constexpr int kSbrNoiseFloorsMax = 2;
inline constexpr int kSbrTimeSlots = 16;                    // of a frame; two subband slots each
inline constexpr int kSbrTimeSlotsMax = kSbrTimeSlots + 3;  // up to the last border of a frame

/** Borders are in time slots from the start of the frame, ascending. */
struct SbrGrid {
    enum FrameClass { kFixFix, kFixVar, kVarFix, kVarVar };

    int bs_frame_class = kFixFix;
    int envelopes = 1;
    uint8_t border[kSbrEnvelopesMax + 1] = {0, kSbrTimeSlots};
    uint8_t bs_freq_res[kSbrEnvelopesMax] = {};
    int noiseFloors = 1;
    int noiseBorder = 0;  // where the second noise floor begins
    int transient = -1;   // l_A: the envelope that begins with a transient, or -1
    /** l_APrev: 0 when the last frame said that this one begins with a transient, else -1. */
    int transientBefore = -1;

    static Fault read(SbrBits& bits, SbrGrid& grid);
    /** Takes note of what the channel's last frame said of this one. */
    void follow(const SbrGrid& before) {
        transientBefore = before.transient == before.envelopes ? 0 : -1;
    }

    bool isTransient(int envelope) const {
        return envelope == transient || envelope == transientBefore;
    }
    /** 0 or 1: the noise floor under an envelope. */
    int noiseFloorOf(int envelope) const {
        return noiseFloors > 1 && border[envelope] >= noiseBorder ? 1 : 0;
    }
    int end() const { return border[envelopes]; }

  private:
    bool readBorders(SbrBits& bits);
    bool readFixed(SbrBits& bits);
    void readPointer(SbrBits& bits);
    bool isValid() const;
    int noiseBorderIndex() const;

    int pointer_ = 0;  // bs_pointer
};

}  // namespace zetac::codec
