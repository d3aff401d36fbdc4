# What the scripts in this folder share: random input that the tests make as well, and where vectors go.
#
# SPDX-License-Identifier: BSD-2-Clause
# Copyright (c) 2026, The Zetac authors
import pathlib

import numpy as np

ROOT = pathlib.Path(__file__).resolve().parents[3]


class Random:
    """The generator of tests/support/vectors.h."""

    def __init__(self, seed):
        self.state = seed

    def integers(self, count):
        """Signed numbers of 32 bits."""
        values = np.empty(count, np.uint32)
        for i in range(count):
            self.state = (self.state * 1664525 + 1013904223) % 2**32
            values[i] = self.state
        return values.view(np.int32).astype(np.int64)


def save(name, values, kind):
    np.asarray(values).astype(kind).tofile(ROOT / "tests/data/vectors" / name)
