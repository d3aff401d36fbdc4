// The hybrid synthesis of Layer III in double precision, straight from ISO/IEC 11172-3.
//
// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#pragma once

#include <zetac.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace zetac::test {

// The window D, table B.3.
double synthesisWindowD(int i);

class SynthesisModel {
  public:
    // 2.4.3.4.10: alias reduction, IMDCT, overlap, frequency inversion. lines are Q26.
    std::array<double, 576> hybrid(const Zet32s* lines, int blockType, bool mixed) {
        std::array<double, 576> x;
        for (int i = 0; i < 576; ++i) x[i] = lines[i] * 0x1p-26;
        reduceAliases(x, blockType == 2 ? (mixed ? 2 : 0) : 32);
        std::array<double, 576> out;
        for (int sb = 0; sb < 32; ++sb) {
            const auto z = transform(&x[18 * sb], mixed && sb < 2 ? 0 : blockType);
            for (int t = 0; t < 18; ++t) {
                const double sum = z[t] + overlap_[sb][t];
                out[32 * t + sb] = sb % 2 != 0 && t % 2 != 0 ? -sum : sum;
                overlap_[sb][t] = z[18 + t];
            }
        }
        return out;
    }

    // Figure A.2, with the matrix in full.
    std::array<double, 32> polyphase(const double* s) {
        std::copy_backward(v_.begin(), v_.end() - 64, v_.end());
        for (int i = 0; i < 64; ++i) {
            v_[i] = 0;
            for (int k = 0; k < 32; ++k) v_[i] += cosine64((16 + i) * (2 * k + 1)) * s[k];
        }
        std::array<double, 32> out{};
        for (int i = 0; i < 16; ++i) {
            for (int j = 0; j < 32; ++j) {
                const int u = i / 2 * 128 + (i % 2 != 0 ? 96 : 0) + j;
                out[j] += v_[u] * synthesisWindowD(32 * i + j);
            }
        }
        return out;
    }

    // The IMDCT of one subband, windowed.
    static std::array<double, 36> transform(const double* x, int blockType) {
        std::array<double, 36> z{};
        if (blockType != 2) {
            for (int i = 0; i < 36; ++i) z[i] = windowLong(blockType, i) * imdct(x, 36, i);
            return z;
        }
        for (int w = 0; w < 3; ++w) {
            for (int i = 0; i < 12; ++i) {
                const double window = std::sin(std::numbers::pi / 12 * (i + 0.5));
                z[6 + 6 * w + i] += window * imdct(x + 6 * w, 12, i);
            }
        }
        return z;
    }

    static double windowLong(int blockType, int i) {
        const double normal = std::sin(std::numbers::pi / 36 * (i + 0.5));
        if (blockType == 3) return windowLong(1, 35 - i);
        if (blockType == 0 || i < 18) return normal;
        return i < 24 ? 1 : i < 30 ? std::sin(std::numbers::pi / 12 * (i - 18 + 0.5)) : 0;
    }

  private:
    static double cosine64(int n) {
        static const auto table = [] {
            std::array<double, 128> t;
            for (int i = 0; i < 128; ++i) t[i] = std::cos(std::numbers::pi / 64 * i);
            return t;
        }();
        return table[n % 128];
    }
    static double imdct(const double* x, int n, int i) {
        double sum = 0;
        for (int k = 0; k < n / 2; ++k) {
            sum += x[k] * std::cos(std::numbers::pi / (2 * n) * (2 * i + 1 + n / 2) * (2 * k + 1));
        }
        return sum;
    }
    static void reduceAliases(std::array<double, 576>& x, int count) {
        constexpr double kC[8] = {-0.6, -0.535, -0.33, -0.185, -0.095, -0.041, -0.0142, -0.0037};
        for (int sb = 1; sb < count; ++sb) {
            for (int i = 0; i < 8; ++i) {
                const double cs = 1 / std::sqrt(1 + kC[i] * kC[i]);
                const double ca = kC[i] * cs;
                const double lower = x[18 * sb - 1 - i];
                const double upper = x[18 * sb + i];
                x[18 * sb - 1 - i] = lower * cs - upper * ca;
                x[18 * sb + i] = upper * cs + lower * ca;
            }
        }
    }

    std::array<std::array<double, 18>, 32> overlap_{};
    std::array<double, 1024> v_{};
};

}  // namespace zetac::test
