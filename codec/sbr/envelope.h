// Scale factors of envelopes and noise floors: delta decoding, dequantisation, coupling (ISO/IEC
// 14496-3, 4.6.18.3.4 to 4.6.18.3.6).
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include "sbr/fault.h"
#include "sbr/frequency_tables.h"
#include "sbr/grid.h"

namespace zetac::codec {

/** Quantised scale factors of one channel. */
struct SbrScaleFactors {
    int bs_amp_res = 0;  // of this frame; 0: steps of 1.5 dB, 1: of 3 dB
    uint8_t bs_df_env[kSbrEnvelopesMax] = {};
    uint8_t bs_df_noise[kSbrNoiseFloorsMax] = {};
    uint8_t envelope[kSbrEnvelopesMax][kSbrBandsMax] = {};
    uint8_t noise[kSbrNoiseFloorsMax][kSbrNoiseBandsMax] = {};

    void readDirections(SbrBits& bits, const SbrGrid& grid);

    /** Whether a frame can be decoded without the one before it. */
    bool startsAfresh() const { return bs_df_env[0] == 0 && bs_df_noise[0] == 0; }

    /** @param isBalance  for the second channel of a coupled pair */
    Fault readEnvelopes(SbrBits& bits, const SbrGrid& grid, const SbrFrequencyTables& tables,
                        bool isBalance);
    Fault readNoise(SbrBits& bits, const SbrGrid& grid, const SbrFrequencyTables& tables,
                    bool isBalance);

  private:
    uint8_t lastEnvelope_[kSbrBandsMax] = {};  // of the frame before
    bool lastIsHigh_ = false;
    uint8_t lastNoise_[kSbrNoiseBandsMax] = {};
};

/** Energies in the scale of subband samples whose time samples are 16-bit integers, and the ratios
 *  of noise to the rest. */
struct SbrLevels {
    float envelope[kSbrEnvelopesMax][kSbrBandsMax] = {};
    float noise[kSbrNoiseFloorsMax][kSbrNoiseBandsMax] = {};
};

void dequantise(const SbrScaleFactors& factors, const SbrGrid& grid,
                const SbrFrequencyTables& tables, SbrLevels& levels);

/** A coupled pair: the first channel's factors are the levels of both, the second one's balances.
 */
void dequantisePair(const SbrScaleFactors& level, const SbrScaleFactors& balance,
                    const SbrGrid& grid, const SbrFrequencyTables& tables, SbrLevels& left,
                    SbrLevels& right);

}  // namespace zetac::codec
