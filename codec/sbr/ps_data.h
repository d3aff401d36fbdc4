// ps_data(): what a frame carries for parametric stereo (ISO/IEC 14496-3, 8.6.4.4), and the
// parameters that come of it.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <array>
#include <cstdint>

#include "sbr/bits.h"
#include "sbr/fault.h"
#include "sbr/huffman.h"

namespace zetac::codec {

inline constexpr int kPsBandsMax = 34;
inline constexpr int kPsEnvelopesMax = 4 + 1;  // the last one may only hold to the frame's end
inline constexpr int kPsIidMax[] = {7, 15};    // of the default grid and the fine one
inline constexpr int kPsIccMax = 7;
inline constexpr int kPsPhases = 8;  // steps of a turn

/** A quantised parameter of every band, zero in bands without one. */
using PsIndices = std::array<int8_t, kPsBandsMax>;

struct PsEnvelope {
    int end = 0;  // the slot behind its last one, in which its parameters are reached
    std::array<PsIndices, 4> values{};

    const PsIndices& iid() const { return values[0]; }
    const PsIndices& icc() const { return values[1]; }
    const PsIndices& ipd() const { return values[2]; }
    const PsIndices& opd() const { return values[3]; }
};

/** The parameters of a frame, all for 20 bands or all for 34. */
struct PsFrame {
    bool is34 = false;
    bool isIidFine = false;
    bool isMixingB = false;
    int envelopes = 0;
    PsEnvelope envelope[kPsEnvelopesMax];
};

/** Reads the data of one stream, frame by frame. After damage each kind of parameter holds until
 *  values come that build on none before. */
class PsParser {
  public:
    /** @param end  position of the bit behind the data */
    Fault parse(SbrBits& bits, size_t end);

    /** Takes note of a frame without data: the parameters hold. */
    void hold();

    /** Takes note of a frame whose data are lost. */
    void lose() {
        known_ = 0;
        hold();
    }

    /** Whether a header has come. */
    bool hasStarted() const { return hasHeader_; }

    const PsFrame& frame() const { return frame_; }

  private:
    enum Kind { kIid, kIcc, kIpd, kOpd, kKinds };
    struct Books {
        const SbrHuffmanBook *frequency, *time;
    };

    bool read(SbrBits& bits, size_t end);
    bool readHeader(SbrBits& bits);
    bool readBorders(SbrBits& bits);
    bool readLevels(SbrBits& bits);
    bool readExtension(SbrBits& bits);
    void readPhases(SbrBits& bits);
    void readEnvelope(SbrBits& bits, int envelope, Kind kind, int bands, const Books& books);
    bool isInRange(int envelope, Kind kind, int min, int max) const;
    void clear(Kind kind);
    void finish();

    bool hasHeader_ = false;
    unsigned known_ = 0;  // a bit for each kind: last_ is what the encoder takes it for
    bool enable_iid_ = false;
    bool enable_icc_ = false;
    bool enable_ext_ = false;
    bool enable_ipdopd_ = false;
    int iid_mode_ = 0;
    int icc_mode_ = 0;
    int num_env_ = 0;
    PsEnvelope transmitted_[kPsEnvelopesMax];  // in the bands of their modes
    PsEnvelope last_;                          // of the frame before, likewise
    PsFrame frame_;
};

/** The two of 20 bands whose mean is the parameter of one of 34 (8.6.4.6.3). */
inline constexpr uint8_t kPsSourcesOf34[kPsBandsMax][2] = {
    {0, 0},   {0, 1},   {1, 1},   {2, 2},   {2, 3},   {3, 3},   {4, 4},   {4, 4},   {5, 5},
    {5, 5},   {6, 6},   {7, 7},   {8, 8},   {8, 8},   {9, 9},   {9, 9},   {10, 10}, {11, 11},
    {12, 12}, {13, 13}, {14, 14}, {14, 14}, {15, 15}, {15, 15}, {16, 16}, {16, 16}, {17, 17},
    {17, 17}, {18, 18}, {18, 18}, {18, 18}, {18, 18}, {19, 19}, {19, 19}};

}  // namespace zetac::codec
