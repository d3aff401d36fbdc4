// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "tables/mp3/polyphase_float.h"

#include "core/constexpr_math.h"
#include "tables/mp3/polyphase.h"

namespace zetac::tables {
namespace {

constexpr AnalysisWindow makeAnalysisWindow() {
    AnalysisWindow window{};
    for (int i = 0; i < 512; ++i) {
        window.values[i] = static_cast<float>(synthesisWindow(i)) * 0x1p-21f;
    }
    return window;
}

constexpr float windowD(int i) {
    return static_cast<float>(synthesisWindow(i)) * 0x1p-16f;
}

constexpr SynthesisLanes makeSynthesisLanes() {
    SynthesisLanes lanes{};
    for (int i = 0; i < 8; ++i) {
        for (int r = 0; r < 16; ++r) {
            lanes.minusHigh[i][r] = r == 0 ? 0 : windowD(64 * i + 16 - r);
            lanes.minusLow[i][r] = -windowD(64 * i + 48 - r);
            lanes.plusHigh[i][r] = r == 0 ? windowD(64 * i) : -windowD(64 * i + 16 + r);
            lanes.plusLow[i][r] = r == 0 ? 0 : -windowD(64 * i + 48 + r);
        }
        lanes.edge[i] = -windowD(64 * i + 32);
    }
    return lanes;
}

template <int half>
constexpr OddCosines<half> makeOddCosines() {
    OddCosines<half> table{};
    for (int k = 0; k < half; ++k) {
        for (int p = 0; p < half; ++p) {
            const int multiple = (2 * k + 1) * (2 * p + 1);
            table.values[k][p] =
                static_cast<float>(core::cosine(core::kPi * multiple / (4 * half)));
        }
    }
    return table;
}

}  // namespace

constexpr AnalysisWindow kAnalysisWindow = makeAnalysisWindow();
constexpr SynthesisLanes kSynthesisLanes = makeSynthesisLanes();
constexpr OddCosines<16> kOddCosines16 = makeOddCosines<16>();
constexpr OddCosines<8> kOddCosines8 = makeOddCosines<8>();
constexpr OddCosines<4> kOddCosines4 = makeOddCosines<4>();
constexpr OddCosines<2> kOddCosines2 = makeOddCosines<2>();
constexpr OddCosines<1> kOddCosines1 = makeOddCosines<1>();

}  // namespace zetac::tables
