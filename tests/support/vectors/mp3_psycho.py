# Psychoacoustic model two in double precision (ISO/IEC 11172-3, Annex D.2 and C.1.5.3), and its tables.
# Writes mp3_psycho_tables and mp3_psycho: what mp3_psycho_test.cpp expects.
#
# SPDX-License-Identifier: BSD-2-Clause
# Copyright (c) 2026, The Zetac authors
import re

import numpy as np
from vectors import ROOT, Random, save

SOURCE = (ROOT / "src/tables/mp3/psycho.cpp").read_text()


def listed(rate, name):
    body = re.search(r"struct Rate%d \{.*?%s\[.*?= \{(.*?)\}" % (rate, name), SOURCE, re.S)[1]
    return np.array(re.findall(r"\d+", body), int)


def six_digits(x):
    """Rounded to six significant digits, as an exact fraction of integers."""
    digits, exponent = ("%.5e" % x).split("e")
    shift = int(exponent) - 5
    whole = int(digits.replace(".", ""))
    return (whole * 10**shift, 1) if shift >= 0 else (whole, 10**-shift)


def q31(x):
    whole, part = six_digits(x)
    return min(whole * 2**31 // part, 2**31 - 1)


def bark(f):
    return 13 * np.arctan(0.76 * f) + 3.5 * np.arctan((f / 7.5) ** 2)


def spreading(distance):
    t = distance * (3 if distance >= 0 else 1.5)
    dip = (t - 0.5) ** 2 - 2 * (t - 0.5)
    return min(8 * dip, 0) + 15.811389 + 7.5 * (t + 0.474) - 17.5 * np.sqrt(1 + (t + 0.474) ** 2)


def spreads(distance):
    return abs(distance) < 5 and spreading(distance) >= -70


class Block:
    """The tables of one length of block."""

    def __init__(self, rate, name, length):
        widths = listed(rate, "kLines" + name)
        self.count = len(widths)
        self.first = np.concatenate([[0], np.cumsum(widths)])
        f = np.arange(length) * rate / length / 1000
        z = np.array([(bark(f[a]) + bark(f[b - 1])) / 2 for a, b in zip(self.first, self.first[1:])])
        self.bounds, self.packed = [], []
        self.weights = np.zeros((self.count, self.count))
        for b in range(self.count):
            low = high = b
            while low > 0 and spreads(z[b] - z[low - 1]):
                low -= 1
            while high + 1 < self.count and spreads(z[b] - z[high + 1]):
                high += 1
            spread = np.array([10 ** (spreading(z[b] - z[k]) / 10) for k in range(low, high + 1)])
            q = [q31(x) for x in spread / spread.sum()]
            self.bounds.append(low | high << 16)
            self.packed += q
            self.weights[b, low:high + 1] = np.array(q) / 2**31
        self.bmld = [q31(10 ** ((15 * (1 - np.cos(np.pi * min(x, 15.5) / 15.5)) - 30) / 10)) for x in z]
        quiet = np.maximum(f, 0.05)
        quiet = (3.64 * quiet**-0.8 - 6.8 * np.exp(-0.6 * (quiet - 3.4) ** 2)
                 + 6 * np.exp(-0.15 * (quiet - 8.7) ** 2) + 0.0006 * quiet**4)
        scale = 89.75 / (16 if length == 256 else 1)
        self.quiet = [whole // part for whole, part in
                      (six_digits((b - a) * scale * 10 ** (quiet[a:b].min() / 10))
                       for a, b in zip(self.first, self.first[1:]))]
        self.start = listed(rate, "pPartToSfbBuo" + name)
        self.share = [q31(x / 1000) for x in listed(rate, "kThousandths" + name)]
        self.ratio = [[322053827, 386570678, 429466664][min(b // 10, 2)] for b in range(self.count)]

    def tables(self, name):
        return [*self.first, self.count, *self.bounds, *self.packed, *self.bmld, *self.quiet, *self.start,
                *self.share, *(self.ratio if name == "Short" else [])]

    def sums(self, lines):
        return np.add.reduceat(lines[..., :self.first[-1]], self.first[:-1], axis=-1)

    def band_ratios(self, eb, nb):
        def value(x):
            inner = [x[a + 1:b].sum() for a, b in zip(self.start, self.start[1:])]
            upper = np.array(self.share) / 2**31 * x[self.start]
            return upper[:-1] + inner + (x[self.start] - upper)[1:]
        en = value(eb)
        return np.where(en == 0, 1, np.minimum(1, value(nb) / np.where(en == 0, 1, en)))


def spectrum(pcm, length):
    """Of integers, as integers."""
    w = np.minimum(np.round(32768 * (0.5 - 0.5 * np.cos(2 * np.pi * (np.arange(length) + 0.5) / length))), 32767)
    x = np.fft.rfft(np.floor(pcm * w / 32768))
    return np.round(x.real) + 1j * np.round(x.imag)


def unpredictability(now, last, before):
    magnitude = 2 * abs(last) - abs(before)
    predicted = magnitude * np.exp(1j * (2 * np.angle(last) - np.angle(before))) * ((last != 0) & (before != 0))
    total = abs(now) + abs(magnitude)
    return np.where(total == 0, 1, abs(now - predicted) / np.where(total == 0, 1, total))


def energies(x):
    """Of left, right, mid and side from spectra [2][lines]."""
    return np.array([abs(x[0]) ** 2, abs(x[1]) ** 2, abs(x[0] + x[1]) ** 2 / 2, abs(x[0] - x[1]) ** 2 / 2])


def couple(nb, masking, bmld):
    mld = np.array(bmld) / 2**31 * masking
    r = np.minimum(nb[2], nb[3]) / np.maximum(nb[2], nb[3])
    coupled = np.where(nb >= mld, np.maximum(r * nb, mld), nb)
    lower = np.minimum(nb[0], nb[1])
    for a in (2, 3):
        coupled[a] = np.minimum(lower, np.maximum(nb[a], np.minimum(nb[5 - a], mld[5 - a])))
    return coupled


def model(pcm, rate, joint, granules):
    """pcm [2][steps]. Per granule: type, entropies, long and short ratios."""
    long, short = Block(rate, "Long", 1024), Block(rate, "Short", 256)
    nb1 = nb2 = np.zeros((4, long.count))
    last = before = np.zeros((2, 513))
    results, kind = [], 0
    for g in range(granules):
        at = pcm[:, 576 * g:]
        now = np.array([spectrum(x[:1024], 1024) for x in at])
        shorts = np.array([[spectrum(x[256 + 128 * k:512 + 128 * k], 256) for x in at] for k in range(3)])
        c = np.full((2, 513), 0.4)
        c[:, :6] = unpredictability(now, last, before)[:, :6]
        c[:, 6:206] = np.repeat(unpredictability(shorts[2], shorts[1], shorts[0])[:, 2:52], 4, axis=1)
        last, before = now, last
        e = energies(now)
        eb = long.sums(e)
        ecb = eb @ long.weights.T
        ct = long.sums(e * [c[0], c[1], c.min(0), c.min(0)]) @ long.weights.T
        t = ct / np.where(ecb == 0, 1, ecb)
        tonality = np.clip(-0.299 - 0.43 * np.log(np.maximum(t, 1e-9)), 0, 1)  # Annex D: 6 to 18 dB
        nb = np.where(ecb == 0, 1, ecb * 10 ** (-(6 + 12 * tonality) / 10))
        if joint:
            nb = couple(nb, ecb / 2, long.bmld)
        limited = np.minimum(nb, 2 * nb1)
        if kind != 2:
            limited = np.minimum(limited, 16 * nb2)
        limited = np.maximum(limited, long.quiet)
        nb1, nb2 = nb, nb1
        pe = (np.diff(long.first) * np.log10(np.clip(eb / (limited + 1), 1, 2**20))).sum(1)
        ratios_long = [long.band_ratios(eb[a], limited[a]) for a in range(4)]
        eb = np.array([short.sums(energies(x)) for x in shorts])
        ratios_short = np.zeros((4, 12, 3))
        for k in range(3):
            ecb = eb[k] @ short.weights.T
            nb = np.where(ecb == 0, 1, ecb * np.array(short.ratio) / 2**31)
            if joint:
                nb = couple(nb, ecb, short.bmld)
            nb = np.maximum(nb, short.quiet)
            ratios_short[:, :, k] = [short.band_ratios(eb[k, a], nb[a]) for a in range(4)]
        totals = eb.sum(2)[:, :2]
        rise = totals.max(0) / np.maximum(totals.min(0), 1e-9)
        kind, pending = int(any((rise > 40) | ((rise > 8) & (pe[:2] > 800)) | (pe[:2] > 1000))) * 2, kind
        if kind == 0 and pending == 2:
            kind = 3
        if kind == 2 and g > 0 and pending in (0, 3):
            results[-1][0] = 1 if pending == 0 else 2
        results.append([kind, pe, ratios_long, ratios_short])
    for kind, pe, ratios_long, ratios_short in results:
        for a in range(4):
            yield [kind, pe[a], *np.resize(ratios_short[a] if kind == 2 else ratios_long[a], 36)]


def signal(mode, noise, width, granules):
    """Noise, tones that drift apart between the channels, and two attacks; without noise square waves."""
    i = np.arange(576 * granules + 448)
    random = Random(1)
    common, own = random.integers(2 * len(i)).reshape(-1, 2).T / 2**31
    loud = ((i > 6784) & (i < 9000)) | ((i > 16000) & (i < 16500))
    if noise == 0:
        left = np.where(i // np.where(loud, 2, 144) % 2, 32767, -32768)
        return np.array([left, np.where(i // 36 % 2, left, -32768)])
    channels = [np.where(loud, 14000, noise) * (common + width * ch * own)
                + 3000 * np.sin(0.02 * i + ch) + 2000 * np.sin((0.3 + 0.1 * ch) * i)
                + 300 * np.sin(1.1 * i) for ch in ([0, 0] if mode == 3 else [0, 1])]
    return np.trunc(np.clip(channels, -32768, 32767))


RATES = [44100, 48000, 32000]
SESSIONS = [(3, 0, 600, 0), (0, 1, 600, 0.3), (1, 0, 600, 0.3), (1, 2, 600, 4), (2, 0, 90, 0.3), (1, 1, 90, 0.3),
            (1, 0, 0, 0)]  # mode, rate, noise, width
save("mp3_psycho_tables", [x for rate in RATES for name, length in (("Long", 1024), ("Short", 256))
                           for x in Block(rate, name, length).tables(name)], np.int64)
save("mp3_psycho", [row for mode, rate, noise, width in SESSIONS
                    for row in model(signal(mode, noise, width, 32), RATES[rate], mode == 1, 32)], np.float32)
