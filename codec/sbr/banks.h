// The QMF banks of one channel with what stands between them: subband samples of the core, and what
// predicts them.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <memory>

#include "base/pcm.h"
#include "sbr/subbands.h"

namespace zetac::codec {

/** Fractional bits of the core's samples on their way into the banks. */
inline constexpr int kSbrCoreFraction = 8;

/** Samples of a frame at the doubled rate. */
inline constexpr int kSbrFrameLength = 2 * ZETAC_AAC_FRAME_LEN;

struct SbrBankOptions {
    bool isFloat = false;        // the floating banks
    bool isDownsampled = false;  // synthesis of 32 bands, at the rate of the core
};

/** The 64 subbands of a frame's slots. */
struct SubbandRows {
    const float* re[kSbrSlots];
    const float* im[kSbrSlots];
    int end;  // from here on they are zero

    template <class Matrix>
    SubbandRows(const Matrix& matrix, int firstRow, int bandEnd) : end(bandEnd) {
        for (int i = 0; i < kSbrSlots; ++i) {
            re[i] = matrix.re[firstRow + i];
            im[i] = matrix.im[firstRow + i];
        }
    }
};

/** Where the high band begins and ends: a frame's first slots may belong to the one before. */
struct SbrSplit {
    struct Range {
        int kx = kLowBands;
        int end = kLowBands;
    };
    int slot = 0;  // the first one of this frame
    Range before;
    Range now;

    const Range& at(int i) const { return i < slot ? before : now; }
};

class SbrBanks {
  public:
    static std::unique_ptr<SbrBanks> make(const SbrBankOptions& options);

    SbrBanks() = default;
    SbrBanks(const SbrBanks&) = delete;
    SbrBanks& operator=(const SbrBanks&) = delete;
    virtual ~SbrBanks() = default;

    /** Analyses a frame of the core, 1024 samples with kSbrCoreFraction fractional bits.
     *  @param bands  that are kept; the others are zero */
    virtual void analyse(const Zet32s* core, int bands) = 0;

    /** The subbands [first, end) of the core. */
    virtual const LowBand& low(int first, int end) = 0;

    /** Predicts subbands over the frame.
     *  @param bands       a bit for each
     *  @param prediction  out: of these subbands; others may be written too */
    virtual void predict(uint32_t bands, LowPrediction& prediction) = 0;

    /** Joins the low band to the high one and synthesises a frame.
     *  @param output  in: the high band; the rest is scratch */
    virtual void synthesise(OutputBand& output, const SbrSplit& split, const PcmPlane& pcm) = 0;

    /** Makes a second synthesis, for parametric stereo. */
    virtual void addSide() = 0;

    /** Synthesises a frame from all its subbands.
     *  @param side  0, or 1 for the second synthesis */
    virtual void synthesise(const SubbandRows& rows, int side, const PcmPlane& pcm) = 0;

    /** Writes the frame that was synthesised last once more. */
    virtual void write(const PcmPlane& pcm) const = 0;

    /** Memory behind this object and of it. */
    virtual size_t bytes() const = 0;
};

}  // namespace zetac::codec
