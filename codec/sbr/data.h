// sbr_extension_data(): what one channel element carries for SBR (ISO/IEC 14496-3, 4.4.2.8).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr/envelope.h"
#include "sbr/ps_data.h"

namespace zetac::codec {

/** The data of one channel in one frame. */
struct SbrChannel {
    SbrGrid grid;
    SbrScaleFactors factors;
    SbrLevels levels;
    uint8_t bs_invf_mode[kSbrNoiseBandsMax] = {};
    uint8_t bs_add_harmonic[kSbrBandsMax] = {};
};

/** Reads the payloads of one channel element, frame by frame. What is lost or damaged stops it
 *  until a header comes whose frame builds on no other. */
class SbrParser {
  public:
    /** @param sampleRate  of the output, in hertz */
    SbrParser(bool isPair, int sampleRate) : isPair_(isPair), sampleRate_(sampleRate) {}

    /** @param payload  empty when the block carries none for this element
     *  @return kPsData if parametric stereo alone is damaged */
    Fault parse(const SbrPayload& payload);

    /** Forgets everything up to the next header. */
    void lose() {
        isSynchronised_ = isActive_ = false;
        ps_.lose();
    }

    /** Whether the last frame has data to make a high band from. */
    bool isActive() const { return isActive_; }
    /** Whether the last frame has data that build on others which have not come. */
    bool isWaiting() const { return isWaiting_; }
    /** Whether its high band has nothing in common with the one before. */
    bool isReset() const { return isReset_; }
    /** Whether parametric stereo has begun. */
    bool hasParametricStereo() const { return ps_.hasStarted(); }
    /** Its parameters in the last frame, whether new or held. */
    const PsFrame& parametricStereo() const { return ps_.frame(); }

    int channels() const { return isPair_ ? 2 : 1; }
    const SbrHeader& header() const { return header_; }
    const SbrFrequencyTables& tables() const { return tables_; }
    const SbrChannel& channel(int index) const { return channels_[index]; }

  private:
    Fault readHeader(SbrBits& bits);
    Fault readSingle(SbrBits& bits);
    Fault readPair(SbrBits& bits);
    Fault readGrid(SbrBits& bits, SbrChannel& channel);
    void adopt(SbrGrid grid, SbrChannel& channel) const;
    void readInverseFiltering(SbrBits& bits, SbrChannel& channel) const;
    Fault readFactors(SbrBits& bits, SbrChannel& channel, bool isBalance);
    void readHarmonics(SbrBits& bits, SbrChannel& channel) const;
    Fault readExtendedData(SbrBits& bits, Fault& stereoFault);

    bool isPair_;
    int sampleRate_;
    bool isSynchronised_ = false;  // a header and all frames since have been read
    bool isActive_ = false;
    bool isReset_ = false;
    bool isWaiting_ = false;
    bool hasTables_ = false;
    SbrHeader header_;
    SbrFrequencyTables tables_;
    SbrChannel channels_[2];
    PsParser ps_;
};

}  // namespace zetac::codec
