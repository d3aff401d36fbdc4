// Writes SBR data of all kinds into AAC streams, from a generator that is the same everywhere.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <optional>

#include "sbr/data.h"
#include "support/bit_writer.h"
#include "support/streams/clips.h"

namespace zetac::test {

/** Which means of SBR a stream makes use of. */
struct SbrStyle {
    codec::SbrHeader header;
    bool isPair = false;
    bool hasCrc = false;
    int sampleRate = 44100;    // of the output
    int couplingPercent = 50;  // pairs: how often
    int headerEvery = 8;       // frames
};

/** What the last payload holds for a channel. */
struct SbrTruth {
    codec::SbrGrid grid;
    int envelope[codec::kSbrEnvelopesMax][codec::kSbrBandsMax] = {};
    int noise[codec::kSbrNoiseFloorsMax][codec::kSbrNoiseBandsMax] = {};
    int bs_invf_mode[codec::kSbrNoiseBandsMax] = {};
    bool bs_add_harmonic[codec::kSbrBandsMax] = {};
};

class SbrWriter {
  public:
    SbrWriter(const SbrStyle& style, uint32_t seed);

    /** The payload of the next frame, extension_type first. */
    Bytes next();

    const codec::SbrFrequencyTables& tables() const { return tables_; }
    const SbrTruth& truth(int channel) const { return channels_[channel].truth; }
    bool isCoupled() const { return isCoupled_; }
    codec::SbrHeader& header() { return style_.header; }

  private:
    struct Channel {
        SbrTruth truth;
        bool isTimeCoded[codec::kSbrEnvelopesMax] = {};
        bool isNoiseTimeCoded[codec::kSbrNoiseFloorsMax] = {};
        int bs_amp_res = 0;
        int lastEnvelope[codec::kQmfBands] = {};  // by subband
        int lastNoise[codec::kSbrNoiseBandsMax] = {};
        int end = codec::kSbrTimeSlots;  // of the last frame
    };

    void writeHeader();
    void writeGrid(Channel& channel);
    void writeVariableGrid(codec::SbrGrid& grid, int frameClass, int lead);
    void setGrid(Channel& channel, const codec::SbrGrid& grid);
    void writeDirections(Channel& channel, bool isFresh);
    void writeInverseFiltering(Channel& channel);
    void writeEnvelopes(Channel& channel, bool isBalance);
    void writeNoise(Channel& channel, bool isBalance);
    void writeHarmonics(Channel& channel);
    void writeSingle(bool isFresh);
    void writePair(bool isFresh);
    bool chance(int percent) { return static_cast<int>(random_.below(100)) < percent; }
    int between(int low, int high) {
        return low + static_cast<int>(random_.below(static_cast<uint32_t>(high - low + 1)));
    }

    SbrStyle style_;
    Random random_;
    codec::SbrFrequencyTables tables_;
    BitWriter bits_;
    Channel channels_[2];
    bool isCoupled_ = false;
    int frame_ = 0;
};

/** An ADTS frame without error check, with the payload in a fill element at its end. */
Bytes withPayload(const Bytes& adtsFrame, const Bytes& payload);

}  // namespace zetac::test
