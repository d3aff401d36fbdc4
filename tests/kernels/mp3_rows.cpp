// The kernels of the MP3 filter banks.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "kernels/kernel_rows.h"
#include "mp3/banks/hybrid_kernels.h"
#include "mp3/banks/polyphase_analysis_kernels.h"
#include "mp3/banks/polyphase_synthesis_kernels.h"

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

}  // namespace
}  // namespace zetac::mp3
