// Stereo of parametric stereo (ISO/IEC 14496-3, 8.6.4.6): mixes left and right from a signal and
// its decorrelated copy.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr/ps_bands.h"

namespace zetac::codec {

class PsMixer {
  public:
    PsMixer();

    /** Mixes a frame.
     *  @param columns  QMF subbands that count, a multiple of 4
     *  @param left     in: the signal
     *  @param right    in: its decorrelated copy */
    void mix(const PsFrame& frame, int columns, PsSignal& left, PsSignal& right);

  private:
    static constexpr int kElements = 4;  // h11, h12, h21, h22

    /** The mixing matrix of each parameter band. */
    struct Matrix {
        float re[kElements][kPsBandsMax] = {};
        float im[kElements][kPsBandsMax] = {};
        bool isComplex = false;
    };

    struct Ramp;

    void change(bool is34);
    Matrix matrixOf(const PsFrame& frame, const PsEnvelope& envelope);

    Matrix last_;                              // where the envelope before ended
    std::array<uint16_t, kPsBandsMax> ipd_{};  // the last three phases of each band
    std::array<uint16_t, kPsBandsMax> opd_{};
    bool is34_ = false;
};

}  // namespace zetac::codec
