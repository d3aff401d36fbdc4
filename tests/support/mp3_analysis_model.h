// The hybrid analysis of Layer III in double precision, straight from ISO/IEC 11172-3.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "support/mp3_synthesis_model.h"

namespace zetac::test {

// The analysis bank of C.1.3 in full, with the window C = D / 32; samples in 16-bit units.
struct AnalysisModel {
    std::array<double, 512> x{};

    template <class Sample>
    std::array<double, 32> analyze(const Sample* pcm) {
        static const auto cosines = [] {
            std::array<double, 128> table;
            for (int i = 0; i < 128; ++i) table[i] = std::cos(i * std::numbers::pi / 64);
            return table;
        }();
        std::copy_backward(x.begin(), x.end() - 32, x.end());
        for (int i = 0; i < 32; ++i) x[i] = static_cast<double>(pcm[31 - i]) / 32768;
        double y[64] = {};
        for (int i = 0; i < 512; ++i) y[i % 64] += synthesisWindowD(i) / 32 * x[i];
        std::array<double, 32> s{};
        for (int k = 0; k < 32; ++k) {
            for (int i = 0; i < 64; ++i) s[k] += cosines[(2 * k + 1) * (i + 112) % 128] * y[i];
        }
        return s;
    }
};

// C.1.5.3.3: frequency inversion, windows, MDCT and alias butterflies, scaled so that 2.4.3.4.10
// undoes it. The lines of short blocks stay in their subbands: [sb][window][6].
class MdctModel {
  public:
    std::array<double, 576> lines(const double (&samples)[18][32], int blockType, bool mixed) {
        std::array<double, 576> x{};
        for (int sb = 0; sb < 32; ++sb) {
            double z[36];
            for (int t = 0; t < 18; ++t) {
                z[t] = previous_[t][sb];
                z[18 + t] = previous_[t][sb] =
                    sb % 2 != 0 && t % 2 != 0 ? -samples[t][sb] : samples[t][sb];
            }
            transform(z, mixed && sb < 2 ? 0 : blockType, &x[18 * sb]);
        }
        const int count = blockType != 2 ? 32 : mixed ? 2 : 0;
        for (int sb = 1; sb < count; ++sb) spread(&x[18 * sb]);
        return x;
    }

  private:
    static double mdct(const double* z, int n, int k) {
        double sum = 0;
        for (int i = 0; i < n; ++i)
            sum += z[i] * std::cos(std::numbers::pi / (2 * n) * (2 * i + 1 + n / 2) * (2 * k + 1));
        return sum * 4 / n;
    }
    // The windows are what the inverse transform weights a constant with.
    static void transform(const double* z, int blockType, double* x) {
        double windowed[36];
        if (blockType != 2) {
            for (int i = 0; i < 36; ++i)
                windowed[i] = z[i] * SynthesisModel::windowLong(blockType, i);
            for (int k = 0; k < 18; ++k) x[k] = mdct(windowed, 36, k);
            return;
        }
        for (int w = 0; w < 3; ++w) {
            for (int i = 0; i < 12; ++i)
                windowed[i] = z[6 + 6 * w + i] * std::sin(std::numbers::pi / 12 * (i + 0.5));
            for (int k = 0; k < 6; ++k) x[6 * w + k] = mdct(windowed, 12, k);
        }
    }
    static void spread(double* border) {
        constexpr double kC[8] = {-0.6, -0.535, -0.33, -0.185, -0.095, -0.041, -0.0142, -0.0037};
        for (int i = 0; i < 8; ++i) {
            const double cs = 1 / std::sqrt(1 + kC[i] * kC[i]), ca = kC[i] * cs;
            const double lower = border[-1 - i], upper = border[i];
            border[-1 - i] = lower * cs + upper * ca;
            border[i] = upper * cs - lower * ca;
        }
    }

    double previous_[18][32] = {};
};

}  // namespace zetac::test
