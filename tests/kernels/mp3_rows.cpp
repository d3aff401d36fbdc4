// The kernels of the MP3 filter banks.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "kernels/kernel_rows.h"
#include "mp3/banks/hybrid_kernels.h"
#include "mp3/banks/polyphase_analysis_kernels.h"
#include "mp3/banks/polyphase_synthesis_kernels.h"
#include "mp3/psycho/kernels.h"
#include "mp3/psycho/prediction_kernels.h"
#include "tables/mp3/psycho_spectrum.h"

namespace zetac::mp3 {
namespace {

using test::KernelMemory;

// Variants: every number of bits, and for each every one of a few cases.
int bitsOf(int variant, int cases) {
    return 1 + variant / cases;
}

const test::KernelRows kHybrid(
    kHybridKernels,
    {{"mp3AliasReduce", 6 * 32,
      [](KernelMemory& memory, int variant) {
          constexpr int kCounts[] = {32, 0, 1, 2, 3, 17};
          Zet32s* lines = memory.integers(576, bitsOf(variant, 6));
          return [=](const HybridKernels& k) {
              k._sAliasReduce_MP3_32s_I(lines, kCounts[variant % 6]);
          };
      }},
     {"mp3SynthesizeGroup", 16 * 32,
      [](KernelMemory& memory, int variant) {
          constexpr SubbandGroup kGroups[] = {
              {8, 8, {}, 0}, {8, 8, {}, 2}, {3, 5, {}, 0}, {0, 8, {}, 0}};
          SubbandGroup group = kGroups[variant % 4];
          group.type = static_cast<BlockType>(variant / 4 % 4);
          const int bits = bitsOf(variant, 16);
          const Zet32s* lines = memory.integers(144, bits);
          Zet32s* samples = memory.zeros<Zet32s>(576);
          Zet32s* overlap = memory.integers(144, bits);
          return [=](const HybridKernels& k) { k.synthesizeGroup(lines, samples, overlap, group); };
      }},
     {"mp3TransformSubband", 4 * 32,
      [](KernelMemory& memory, int variant) {
          const Zet32s* lines = memory.integers(18, bitsOf(variant, 4));
          Zet32s* values = memory.zeros<Zet32s>(36);
          return [=](const HybridKernels& k) {
              k.transformSubband(lines, values, static_cast<BlockType>(variant % 4));
          };
      }},
     {"mp3AnalyzeGroup", 8 * 32,
      [](KernelMemory& memory, int variant) {
          const Zet32s* samples = memory.integers(2 * 576, 1 + variant / 8);
          Zet32s* lines = memory.zeros<Zet32s>(8 * kLinesPerSubband);
          const auto type = static_cast<BlockType>(variant % 4);
          return [=](const HybridKernels& k) {
              k.analyzeGroup(samples, samples + 576, lines, type, variant / 4 % 2 * 2);
          };
      }},
     {"mp3SpreadAliases", 3 * 32, [](KernelMemory& memory, int variant) {
          constexpr int kCounts[] = {32, 0, 2};
          Zet32s* lines = memory.integers(576, 1 + variant / 3);
          return [=](const HybridKernels& k) { k.spreadAliases(lines, kCounts[variant % 3]); };
      }}});

const test::KernelRows kPolyphase(kPolyphaseSynthesis,
                                  {{"mp3SynthesisSlot", 32 * 32,
                                    [](KernelMemory& memory, int variant) {
                                        const int bits = bitsOf(variant, 32);
                                        const Zet32s* samples = memory.integers(32, bits);
                                        Zet32s* v = memory.integers(ZETAC_MP3_V_BUFFER_LEN, bits);
                                        auto* pcm = memory.zeros<Zet16s>(64);
                                        const int offset = variant % 16;
                                        const int stride = 1 + variant / 16 % 2;
                                        return [=](const PolyphaseSynthesis& k) {
                                            k._sDCTFwd32_MP3_32s(samples, v + vSlot(offset));
                                            k.windowSlots(v, offset, pcm, stride);
                                        };
                                    }}});

const test::KernelRows kAnalysis(kPolyphaseAnalysis,
                                 {{"mp3Analysis", 16, [](KernelMemory& memory, int variant) {
                                       const auto* pcm =
                                           memory.integers<Zet16s>(kAnalysisSamples, 1 + variant);
                                       Zet32s* dst = memory.zeros<Zet32s>(576);
                                       return
                                           [=](const PolyphaseAnalysis& k) { k.analyze(pcm, dst); };
                                   }}});

// Spectra as large as they come, and measures of unpredictability below 1.
PsyContext psyContext(KernelMemory& memory, int variant, const PsyKernels& kernels) {
    auto* work = reinterpret_cast<Workspace*>(memory.zeros<uint64_t>(sizeof(Workspace) / 8));
    const auto fill = [&](Zet32s* values, size_t bytes, int bits, Zet32s mask) {
        for (size_t i = 0; i < bytes / sizeof *values; ++i)
            values[i] = (static_cast<Zet32s>(memory.random()()) >> (32 - bits)) & mask;
    };
    Spectra& spectra = work->spectra;
    fill(&spectra.longLines[0][0].re, sizeof spectra.longLines, 25, -1);
    fill(&spectra.shortLines[0][0][0].re, sizeof spectra.shortLines, 25, -1);
    fill(spectra.unpredictability[0], sizeof spectra.unpredictability, 32, INT32_MAX);
    auto* state =
        reinterpret_cast<ZetMP3PsyState*>(memory.zeros<uint64_t>(sizeof(ZetMP3PsyState) / 8));
    return {tables::_zet_pPsyTables_MP3[variant % 3],
            kernels,
            kPredictionKernels[0],
            *state,
            *work,
            2,
            kAnalysisChannels};
}

const test::KernelRows kPsycho(
    kPsyKernels,
    {{"mp3PsyWindow", 2,
      [](KernelMemory& memory, int variant) {
          const auto* pcm = memory.integers<Zet16s>(2 * kLongBlockLen, 16);
          auto* dst = memory.zeros<Zet16s>(kLongBlockLen);
          return [=](const PsyKernels& k) {
              k.applyWindow(pcm, 1 + variant, tables::pHannWinLong_MP3, dst, kLongBlockLen);
          };
      }},
     {"mp3PsySpectra", 4,
      [](KernelMemory& memory, int variant) {
          const auto* pcm = memory.integers<Zet16s>(kLongBlockLen, 4 + 4 * variant);
          auto* longLines = reinterpret_cast<Zet32sc*>(memory.zeros<Zet32s>(2 * kLongSpectrum));
          auto* shortLines = reinterpret_cast<Zet32sc*>(memory.zeros<Zet32s>(2 * kShortSpectrum));
          return [=](const PsyKernels& k) {
              k.ownsFFTFwd1024_Audio_16s32sc(pcm, longLines);
              k.ownsFFTFwd256_Audio_16s32sc(pcm, shortLines);
          };
      }},
     {"mp3PsyEnergies", 3,
      [](KernelMemory& memory, int variant) {
          const PsyContext context = psyContext(memory, variant, kPsyKernels[0]);
          return [=](const PsyKernels& k) {
              k.ownsCalEnergyUnpredict_Psy_MP3(context);
              k.ownsCalEnergyShort_Psy_MP3(context);
          };
      }},
     {"mp3PsySpread", 6, [](KernelMemory& memory, int variant) {
          const PsyTables& t = tables::_zet_pPsyTables_MP3[variant % 3];
          const Spreading spreading =
              variant < 3 ? Spreading{t.numLong, t.pSprdngBoundLong, t.pSprdngPackedLong,
                                      t.blocksLong, t.rowsLong}
                          : Spreading{t.numShort, t.pSprdngBoundShort, t.pSprdngPackedShort,
                                      t.blocksShort, t.rowsShort};
          auto* energy = memory.zeros<uint64_t>(kPartitionsLong);
          for (int b = 0; b < kPartitionsLong; ++b)
              energy[b] = uint64_t{memory.random()()} << 20 >> memory.random()() % 40;
          auto* dst = memory.work<uint64_t>(kPartitionsLong);  // with room behind the partitions
          auto* result = memory.zeros<uint64_t>(kPartitionsLong);
          return [=](const PsyKernels& k) {
              k.spread(energy, spreading, 31 + variant / 3, dst);
              std::copy_n(dst, spreading.count, result);
          };
      }}});

const test::KernelRows kPrediction(
    kPredictionKernels, {{"mp3PsyPrediction", 22, [](KernelMemory& memory, int variant) {
                              auto* lines =
                                  memory.integers(2 * kWindows * kShortSpectrum, 2 + variant);
                              auto* spectra = reinterpret_cast<Zet32sc(*)[kShortSpectrum]>(lines);
                              auto* state = reinterpret_cast<ZetMP3PsyChannelState*>(
                                  memory.zeros<uint64_t>(sizeof(ZetMP3PsyChannelState) / 8));
                              auto* dst = memory.zeros<Zet32s>(4 * ZETAC_MP3_PSY_SHORT_LINES);
                              return [=](const PredictionKernels& k) {
                                  k.ownsCalUnpredictMeasureCwAbove06_Psy_MP3(spectra, *state, dst);
                              };
                          }}});

}  // namespace
}  // namespace zetac::mp3
