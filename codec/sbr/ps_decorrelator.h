// Decorrelation of parametric stereo (ISO/IEC 14496-3, 8.6.4.5): makes a second signal that sounds
// like the first one and has nothing in common with its phases.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr/ps_bands.h"

namespace zetac::codec {

class PsDecorrelator {
  public:
    /** Decorrelates a frame.
     *  @param columns  QMF subbands that count, a multiple of 4; the others are zero
     *  @param signal   with its rows of the frame before
     *  @param out      the same slots */
    void decorrelate(const PsBands& bands, int columns, const PsSignal& signal, PsSignal& out);

    /** Silence in front of the next frame. */
    void reset() { *this = {}; }

  private:
    static constexpr int kLinks = 3;
    static constexpr int kRingRows = 3 + 4 + 5;           // of all links
    static constexpr int kFirstWhole = kPsBands20.split;  // of the QMF subbands, in both cases
    static constexpr int kAllPassColumns = kPsAllPassEnd - kFirstWhole;

    template <int columns>
    struct Coefficients;

    /** All-pass filters side by side. Each link has a ring of the slots that it delays. */
    template <int columns>
    struct AllPass {
        alignas(32) float re[kRingRows][columns] = {};
        alignas(32) float im[kRingRows][columns] = {};

        /** Filters a slot.
         *  @param row  the oldest slot in the ring of each link */
        void filter(const Coefficients<columns>& c, const int* row, const float* inRe,
                    const float* inIm, const float* gain, float* outRe, float* outIm);
    };

    /** The transient detector, by parameter band. */
    struct Detector {
        static constexpr int kBands = PsBands::paddedTo4(kPsBandsMax);
        alignas(32) float peak[kBands] = {};
        alignas(32) float mean[kBands] = {};
        alignas(32) float excess[kBands] = {};  // of the peak over the power

        /** @param gain  out: by which a transient's echo is lowered */
        void detect(int bands, const float* power, float* gain);
    };

    void findTransients(const PsBands& bands, int columns, const PsSignal& signal, int slot,
                        float* gain);
    void filter(const PsBands& bands, const PsSignal& signal, int slot, const float* gain,
                PsSignal& out);
    static void delay(const PsBands& bands, int columns, const PsWholeBand& signal, int slot,
                      const float* gain, PsWholeBand& out);
    void turnRings();

    AllPass<kAllPassColumns> whole_;
    AllPass<kPsBands20.padded> hybrid20_;
    AllPass<kPsBands34.padded> hybrid34_;
    Detector detector_;
    int row_[kLinks] = {0, 3, 7};  // oldest slot of each link's ring
};

}  // namespace zetac::codec
