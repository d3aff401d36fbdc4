// HF adjuster: gives the generated high band its envelope, noise and sinusoids (ISO/IEC 14496-3,
// 4.6.18.7).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr/data.h"
#include "sbr/subbands.h"

namespace zetac::codec {

/** Of one channel. */
class SbrHfAdjuster {
  public:
    /** Adjusts the envelopes of one frame. Call once a frame.
     *  @param isReset  the high band has nothing in common with that of the frame before
     *  @param high     generated; used up
     *  @param first    slot before which the output is not touched
     *  @param firstNumber  of slot 0, counted from the start of the stream: noise and sinusoids
     * depend on it, so that they are the same wherever decoding began
     *  @param output   out: rows from the first border on, columns from the crossover on */
    void adjust(const SbrHeader& header, const SbrFrequencyTables& tables,
                const SbrChannel& channel, bool isReset, const HighBand& high, int first,
                unsigned firstNumber, OutputBand& output);

  private:
    static constexpr int kTaps = 4;  // slots before the current one that smoothing reaches back to

    /** A value per subband of SBR, zero beyond the last one. */
    struct Row {
        alignas(32) float v[kSbrBandsMax] = {};
    };

    /** What becomes of each subband in one envelope. */
    struct Envelope {
        Row gain;   // G
        Row noise;  // Q_M
        Row sine;   // S_M
        bool hasSine = false;
    };

    /** Rows of the last slots, oldest first. */
    struct History {
        Row rows[kTaps];

        void smooth(const Row& current, int slot, Row& out) const;
        void push(const Row& row, int slots);
    };

    struct Frame;  // what the steps share

    void placeSinusoids(const Frame& frame, int envelope, bool* isSine) const;
    void makeGains(const Frame& frame, int envelope, const bool* isSine, Envelope& out) const;
    void assemble(const Frame& frame, int envelope, const Envelope& e, OutputBand& output);
    void addNoise(const Frame& frame, int slot, const Row& gain, const Row& noise,
                  OutputBand& output) const;
    void addSinusoids(const Frame& frame, int slot, const Row& sine, OutputBand& output) const;

    History gains_;
    History noises_;
    bool hadSine_[kQmfBands] = {};  // at the end of the frame before, by subband
    unsigned noiseOrigin_ = 0;      // number of the slot where f_IndexNoise is 0
    bool hasRun_ = false;
};

}  // namespace zetac::codec
