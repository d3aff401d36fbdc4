// SPDX-License-Identifier: BSD-2-Clause
// Copyright (c) 2026, The Zetac authors
#include "transform/mdct_blocks.h"

#include "transform/mdct_fold.h"

namespace zetac::transform {
namespace {

Zet32fc operator+(Zet32fc a, Zet32fc b) {
    return {a.re + b.re, a.im + b.im};
}
Zet32fc operator-(Zet32fc a, Zet32fc b) {
    return {a.re - b.re, a.im - b.im};
}
Zet32fc operator*(Zet32fc a, Zet32fc b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
Zet32fc scaled(Zet32fc a, Zet32f factor) {
    return {a.re * factor, a.im * factor};
}

// In place; cosine and sine of a third of a turn.
void dft3(Zet32fc& a, Zet32fc& b, Zet32fc& c) {
    constexpr Zet32f kCosine = -0.5f;
    constexpr Zet32f kMinusSine = -0.86602540378443864676f;
    const Zet32fc sum = b + c;
    const Zet32fc difference = scaled(b - c, kMinusSine);
    const Zet32fc centre = a + scaled(sum, kCosine);
    a = a + sum;
    b = {centre.re - difference.im, centre.im + difference.re};
    c = {centre.re + difference.im, centre.im - difference.re};
}

// In place: DFTs of the three residue classes, a turn of each by its own angles, DFTs across.
void dft9(Zet32fc* z) {
    constexpr Zet32fc kTurn40 = {0.76604444311897803520f, -0.64278760968653932632f};
    constexpr Zet32fc kTurn80 = {0.17364817766693034885f, -0.98480775301220805937f};
    constexpr Zet32fc kTurn160 = {-0.93969262078590838405f, -0.34202014332566873304f};
    for (int n = 0; n < 3; ++n) dft3(z[n], z[n + 3], z[n + 6]);
    z[4] = z[4] * kTurn40;
    z[7] = z[7] * kTurn80;
    z[5] = z[5] * kTurn80;
    z[8] = z[8] * kTurn160;
    Zet32fc out[9];
    for (int k = 0; k < 3; ++k) {
        Zet32fc* row = z + 3 * k;
        dft3(row[0], row[1], row[2]);
        for (int m = 0; m < 3; ++m) out[k + 3 * m] = row[m];
    }
    for (int k = 0; k < 9; ++k) z[k] = out[k];
}

// Multiplies by cosine - i sine of the point's twiddle.
Zet32fc rotate(const Zet32f* table, int points, int k, Zet32fc a) {
    return a * Zet32fc{table[points + k], -table[k]};
}

// DCT-IV of 2 * points values, times the squared gain of the twiddles.
void transformBlock(int points, const Zet32f* table, const Zet32f* x, Zet32f* t) {
    Zet32fc z[9];
    const int last = 2 * points - 1;
    for (int k = 0; k < points; ++k) z[k] = rotate(table, points, k, {x[2 * k], x[last - 2 * k]});
    if (points == 3)
        dft3(z[0], z[1], z[2]);
    else
        dft9(z);
    for (int k = 0; k < points; ++k) {
        const Zet32fc turned = rotate(table, points, k, z[k]);
        t[2 * k] = turned.re;
        t[last - 2 * k] = -turned.im;
    }
}

}  // namespace

void forwardBlock(int len, const Zet32f* table, const Zet32f* src, Zet32f* dst, Zet32f* work) {
    foldSamples(src, len, work);
    transformBlock(len / 4, table, work, dst);
}

void inverseBlock(int len, const Zet32f* table, const Zet32f* src, Zet32f* dst, Zet32f* work) {
    const int quarter = len / 4;
    transformBlock(quarter, table, src, work);
    for (int n = 0; n < quarter; ++n) {
        dst[n] = work[quarter + n];
        dst[2 * quarter - 1 - n] = -work[quarter + n];
        dst[2 * quarter + n] = -work[quarter - 1 - n];
        dst[3 * quarter + n] = -work[n];
    }
}

}  // namespace zetac::transform
