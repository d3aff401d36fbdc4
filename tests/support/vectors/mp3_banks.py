# The filter banks of Layer III in double precision, by the formulas of ISO/IEC 11172-3 term by term.
# Writes mp3_slots, mp3_pcm, mp3_analysis and mp3_lines: what mp3_banks_test.cpp expects.
#
# SPDX-License-Identifier: BSD-2-Clause
# Copyright (c) 2026, The Zetac authors
import re

import numpy as np
from vectors import ROOT, Random, save

TYPES = [0, 1, 2, 2, 3, 0, 1, 2, 2, 3, 0, 2, 0]
MIXED = [0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 0, 0]

# Table B.3: its first half is listed; the second one mirrors it, with the other sign but at multiples of 64.
source = (ROOT / "src/tables/mp3/polyphase.h").read_text()
listed = re.search(r"kSynthesisWindow = \{\{(.*?)\}\}", source, re.S)[1]
half = np.array(re.findall(r"-?\d+", listed), float) / 65536
D = np.array([half[i] if i <= 256 else half[512 - i] * (1 if i % 64 == 0 else -1) for i in range(512)])
C = np.array([-0.6, -0.535, -0.33, -0.185, -0.095, -0.041, -0.0142, -0.0037])
CS, CA = 1 / np.sqrt(1 + C * C), C / np.sqrt(1 + C * C)


def window(kind):
    """2.4.3.4.10.3"""
    i = np.arange(36)
    normal, short = np.sin(np.pi / 36 * (i + 0.5)), np.sin(np.pi / 12 * (i - 18 + 0.5))
    start = np.where(i < 18, normal, np.where(i < 24, 1, np.where(i < 30, short, 0)))
    return {0: normal, 1: start, 3: start[::-1]}[kind]


def cosines(n):
    i, k = np.arange(n)[:, None], np.arange(n // 2)
    return np.cos(np.pi / (2 * n) * (2 * i + 1 + n // 2) * (2 * k + 1))


SHORT = np.sin(np.pi / 12 * (np.arange(12) + 0.5))


def subband_inverse(x, kind):
    if kind != 2:
        return window(kind) * (cosines(36) @ x)
    z = np.zeros(36)
    for w in range(3):
        z[6 + 6 * w:18 + 6 * w] += SHORT * (cosines(12) @ x[6 * w:6 * w + 6])
    return z


def subband_forward(z, kind):
    if kind != 2:
        return (window(kind) * z) @ cosines(36) / 9
    return np.concatenate([(SHORT * z[6 + 6 * w:18 + 6 * w]) @ cosines(12) / 3 for w in range(3)])


def butterflies(x, kind, mixed, ca):
    for sb in range(1, 32 if kind != 2 else 2 if mixed else 0):
        lower, upper = x[sb - 1, 17:9:-1].copy(), x[sb, :8].copy()
        x[sb - 1, 17:9:-1], x[sb, :8] = lower * CS - upper * ca, upper * CS + lower * ca
    return x


INVERSION = np.where(np.arange(18)[:, None] % 2 * (np.arange(32) % 2), -1, 1)


def synthesis(granules):
    """2.4.3.4.10: time slots of each granule [18][32]."""
    overlap = np.zeros((32, 18))
    for x, kind, mixed in granules:
        x = butterflies(x.copy(), kind, mixed, CA)
        z = np.array([subband_inverse(x[sb], 0 if mixed and sb < 2 else kind) for sb in range(32)])
        yield (z[:, :18] + overlap).T * INVERSION
        overlap = z[:, 18:]


def analysis(granules):
    """C.1.5.3.3: lines of each granule [32][18], short ones window by window."""
    previous = np.zeros((18, 32))
    for samples, kind, mixed in granules:
        z = np.concatenate([previous, samples * INVERSION])
        x = np.array([subband_forward(z[:, sb], 0 if mixed and sb < 2 else kind) for sb in range(32)])
        yield butterflies(x, kind, mixed, -CA)
        previous = samples * INVERSION


def polyphase_synthesis(slots):
    """Figure A.2."""
    matrix = np.cos(np.pi / 64 * np.outer(16 + np.arange(64), 2 * np.arange(32) + 1))
    v = np.zeros(1024)
    for s in slots:
        v = np.concatenate([matrix @ s, v[:960]])
        u = np.concatenate([v[128 * i:128 * i + 32] if j == 0 else v[128 * i + 96:128 * i + 128]
                            for i in range(8) for j in range(2)])
        yield (u * D).reshape(16, 32).sum(0)


def polyphase_analysis(pcm):
    """C.1.3, with the window C = D / 32."""
    matrix = np.cos(np.pi / 64 * np.outer(2 * np.arange(32) + 1, np.arange(64) - 16))
    x = np.zeros(512)
    for new in pcm.reshape(-1, 32):
        x = np.concatenate([new[::-1] / 32768, x[:480]])
        yield matrix @ (D / 32 * x).reshape(8, 64).sum(0)


random = Random(1)
lines = [(random.integers(576) >> 9).reshape(32, 18) / 2**26 for _ in TYPES]
slots = list(synthesis(zip(lines, TYPES, MIXED)))
save("mp3_slots", np.round(np.array(slots) * 2**31), np.int32)
save("mp3_pcm", np.round(np.array(list(polyphase_synthesis(np.concatenate(slots)))) * 32768 * 2**14), np.int32)
pcm = random.integers(480 + 5 * 576) >> 16
save("mp3_analysis", np.round(np.array(list(polyphase_analysis(pcm)))[15:] * 2**31), np.int32)
samples = [(random.integers(576) >> 6).reshape(18, 32) / 2**26 for _ in TYPES]
save("mp3_lines", np.round(np.array(list(analysis(zip(samples, TYPES, MIXED)))) * 2**31), np.int32)
