// The kernels of the SBR banks and predictors.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "kernels/kernel_rows.h"
#include "sbr/predict_float_kernels.h"
#include "sbr/qmf_encoder_kernels.h"
#include "sbr/qmf_fixed_kernels.h"
#include "sbr/qmf_float_bank.h"
#include "transform/fft_spec.h"

namespace zetac::sbr {
namespace {

using test::KernelMemory;

// Fixed-point banks: 24 slots of 1 to 32 bits, and of the largest values with random signs.
template <class Source, class Result>
auto fixedBank(int slotLength,
               void (*QmfFixedKernels::*kernel)(const Source*, Result*, Zet32s*, int)) {
    return [=](KernelMemory& memory, int variant) {
        constexpr int kSlots = 24;
        const int bands = slotLength == 128 ? 64 : 32;
        auto* values =
            memory.integers(static_cast<size_t>(2 * bands * kSlots), std::min(variant + 1, 32));
        for (int i = 0; variant == 32 && i < 2 * bands * kSlots; ++i)
            values[i] = values[i] >> 31 ^ INT32_MAX;
        const auto* src = reinterpret_cast<const Source*>(values);
        auto* dst = memory.zeros<Result>(static_cast<size_t>(bands * kSlots));
        auto* line = memory.zeros<Zet32s>(static_cast<size_t>(kQmfSlots * slotLength));
        return [=](const QmfFixedKernels& kernels) {
            for (int slot = 0; slot < kSlots; ++slot) {
                const int position = (kSlots - slot) % kQmfSlots * slotLength;
                (kernels.*kernel)(src + bands * slot, dst + bands * slot, line, position);
            }
        };
    };
}

using Fixed = QmfFixedKernels;
const test::KernelRows kFixed(kQmfFixedKernels,
                              {{"qmfFixedAnalysisHQ", 33, fixedBank(32, &Fixed::analysisHQ)},
                               {"qmfFixedAnalysisLP", 33, fixedBank(32, &Fixed::analysisLP)},
                               {"qmfFixedSynthesisHQ", 33, fixedBank(128, &Fixed::synthesisHQ)},
                               {"qmfFixedSynthesisLP", 33, fixedBank(128, &Fixed::synthesisLP)},
                               {"qmfFixedDownHQ", 33, fixedBank(64, &Fixed::synthesisDownHQ)},
                               {"qmfFixedDownLP", 33, fixedBank(64, &Fixed::synthesisDownLP)}});

constexpr int kSlots = 39;  // leaves a part of a batch at every width

// A bank's transform in memory of the row.
const transform::FftPlan& fft(KernelMemory& memory, int order) {
    ZetsFFTSpec_C_32fc* spec = nullptr;
    zetsFFTInit_C_32fc(&spec, order, zetFftNoDiv, zetAlgHintNone, memory.work<Zet8u>(8192),
                       nullptr);
    return spec->plan;
}
const transform::DctSpec& dct(KernelMemory& memory, int len) {
    ZetsDCTFwdSpec_32f* spec = nullptr;
    zetsDCTFwdInit_32f(&spec, len, zetAlgHintNone, memory.work<Zet8u>(8192), nullptr);
    return *spec;
}

// The variants: rows of pairs, and rows with the imaginary parts in their second halves.
template <class Value>
QmfRows<Value> rowsOf(Value* values, int first, int count, int variant) {
    QmfRows<Value> rows{};
    for (int i = 0; i < count; ++i) {
        rows.re[i] = values + 128 * (first + i);
        if (variant == 1) rows.im[i] = rows.re[i] + 64;
    }
    return rows;
}

// All slots in batches of a level's own width; run(first, count).
template <class Run>
void inBatches(const QmfFloatKernels& kernels, Run run) {
    for (int first = 0; first < kSlots; first += kernels.lanes)
        run(first, std::min(kernels.lanes, kSlots - first));
}

template <class Transform>
auto analysis(void (*QmfFloatKernels::*kernel)(const AnalysisBatch&, const Transform&),
              const Transform& (*transformIn)(KernelMemory&, int), int size) {
    return [=](KernelMemory& memory, int variant) {
        const Transform* transform = &transformIn(memory, size);
        const Zet32f* src = memory.singles(32 * kSlots);
        const Zet32f* window = memory.singles(320);
        const DelayLine line = {memory.singles(320), memory.zeros<Zet32s>(1)};
        Zet32f* dst = memory.singles(128 * kSlots);
        return [=](const QmfFloatKernels& kernels) {
            *line.position = 0;
            inBatches(kernels, [&](int first, int count) {
                (kernels.*kernel)(
                    {count, 27, src + 32 * first, window, line, rowsOf(dst, first, count, variant)},
                    *transform);
            });
        };
    };
}

template <class Transform>
auto synthesis(void (*QmfFloatKernels::*kernel)(const SynthesisBatch&, const Transform&),
               const Transform& (*transformIn)(KernelMemory&, int), int size, int bands) {
    return [=](KernelMemory& memory, int variant) {
        const Transform* transform = &transformIn(memory, size);
        const Zet32f* src = memory.singles(128 * kSlots);
        const Zet32f* window = memory.singles(640);
        const DelayLine line = {memory.singles(static_cast<size_t>(20 * bands + 4)),
                                memory.zeros<Zet32s>(1)};
        Zet32f* dst = memory.zeros<Zet32f>(static_cast<size_t>(bands * kSlots));
        return [=](const QmfFloatKernels& kernels) {
            *line.position = 0;
            inBatches(kernels, [&](int first, int count) {
                (kernels.*kernel)(
                    {count, dst + bands * first, window, line, rowsOf(src, first, count, variant)},
                    *transform);
            });
        };
    };
}

using Float = QmfFloatKernels;
const test::KernelRows kFloat(
    kQmfFloatKernels,
    {{"qmfAnalyzeReal", 1, analysis(&Float::analyzeReal, dct, 32)},
     {"qmfAnalyzeComplex", 2, analysis(&Float::analyzeComplex, fft, 5)},
     {"qmfAnalyzeByLongerPlan", 2, analysis(&Float::analyzeComplex, fft, 6)},
     {"qmfSynthesizeReal", 1, synthesis(&Float::synthesizeReal, dct, 64, 64)},
     {"qmfSynthesizeComplex", 2, synthesis(&Float::synthesizeComplex, fft, 5, 64)},
     {"qmfSynthesizeDownReal", 1, synthesis(&Float::synthesizeDownReal, dct, 32, 32)},
     {"qmfSynthesizeDownComplex", 2, synthesis(&Float::synthesizeDownComplex, fft, 6, 32)}});

const test::KernelRows kEncoder(kQmfEncoderKernels,
                                {{"qmfEncoderToPoints", 1,
                                  [](KernelMemory& memory, int) {
                                      const Zet32f* src = memory.singles(640);
                                      Zet32f* dst = memory.zeros<Zet32f>(128);
                                      return [=](const QmfEncoderKernels& kernels) {
                                          kernels.toPoints(src, dst, dst + 64);
                                      };
                                  }},
                                 {"qmfEncoderToBands", 1, [](KernelMemory& memory, int) {
                                      const Zet32f* src = memory.singles(128);
                                      auto* dst = memory.zeros<Zet32fc>(64);
                                      return [=](const QmfEncoderKernels& kernels) {
                                          kernels.toBands(src, src + 64, dst);
                                      };
                                  }}});

constexpr int kLen = 61;
constexpr PredictorBlock kBlock = {kLen, kSlots - 2};

// Bands of noise, one without a signal and one that overflows.
Zet32f* bands(KernelMemory& memory) {
    Zet32f* values = memory.singles(2 * kLen * kSlots);
    for (int i = 0; i < 2 * kSlots; ++i) {
        values[kLen * i] = 0;
        values[kLen * i + 1] = 3e38f;
    }
    return values;
}
template <class Value>
const Value** rowsFrom(KernelMemory& memory, const Zet32f* values) {
    auto* rows = memory.work<const Value*>(kSlots);
    for (int n = 0; n < kSlots; ++n) rows[n] = reinterpret_cast<const Value*>(values + kLen * n);
    return rows;
}

const test::KernelRows kPredict(
    kPredictFloatKernels,
    {{"predictReal", 1,
      [](KernelMemory& memory, int) {
          const auto* rows = rowsFrom<Zet32f>(memory, bands(memory));
          Zet32f* out = memory.zeros<Zet32f>(2 * kLen);
          return [=](const PredictFloatKernels& k) { k.real(rows, out, out + kLen, kBlock); };
      }},
     {"predictParts", 1,
      [](KernelMemory& memory, int) {
          const Zet32f* values = bands(memory);
          const ConstParts rows = {rowsFrom<Zet32f>(memory, values),
                                   rowsFrom<Zet32f>(memory, values + kLen)};
          Zet32f* out = memory.zeros<Zet32f>(4 * kLen);
          return [=](const PredictFloatKernels& k) {
              k.parts(rows, {out, out + kLen}, {out + 2 * kLen, out + 3 * kLen}, kBlock);
          };
      }},
     {"predictPairs", 1,
      [](KernelMemory& memory, int) {
          const auto* rows = rowsFrom<Zet32fc>(memory, bands(memory));
          auto* out = memory.zeros<Zet32fc>(2 * kLen);
          return [=](const PredictFloatKernels& k) { k.pairs(rows, out, out + kLen, kBlock); };
      }},
     {"predictTonality", 1,
      [](KernelMemory& memory, int) {
          const Zet32f* values = bands(memory);
          Zet32f* out = memory.zeros<Zet32f>(kLen);
          return [=](const PredictFloatKernels& k) {
              k.tonality(values, values + kLen * kSlots, out, kBlock);
          };
      }},
     {"predictRise", 1, [](KernelMemory& memory, int) {
          Zet32f* energies = bands(memory);
          for (int i = 0; i < 2 * kLen; ++i) energies[i] *= energies[i] < 1 ? energies[i] : 0;
          Zet32f* rise = memory.zeros<Zet32f>(1);
          return [=](const PredictFloatKernels& k) {
              *rise = k.rise(energies, energies + kLen, kLen, 0.1f);
          };
      }}});

}  // namespace
}  // namespace zetac::sbr
