#!/usr/bin/env python3
"""Runs a command to which every file system looks like one that makes no files without a name (O_TMPFILE).

SPDX-License-Identifier: BSD-2-Clause
Copyright (c) 2026, The Zetac authors
"""
import ctypes
import os
import struct
import sys

O_TMPFILE = 0o20000000
OPENAT_X86_64, OPENAT_I386 = 257, 295


def instruction(code, yes, no, operand):
    return struct.pack("HBBI", code, yes, no, operand)


# A classic BPF program on struct seccomp_data: the number of the call at 0, its third argument at 32.
LOAD, EQUAL, HAS_BITS, RETURN = 0x20, 0x15, 0x45, 0x06
PROGRAM = b"".join([
    instruction(LOAD, 0, 0, 0),
    instruction(EQUAL, 1, 0, OPENAT_X86_64),
    instruction(EQUAL, 0, 2, OPENAT_I386),
    instruction(LOAD, 0, 0, 32),
    instruction(HAS_BITS, 1, 0, O_TMPFILE),
    instruction(RETURN, 0, 0, 0x7FFF0000),
    instruction(RETURN, 0, 0, 0x00050000 | 95),  # EOPNOTSUPP
])

code = ctypes.create_string_buffer(PROGRAM)
program = struct.pack("HP", len(PROGRAM) // 8, ctypes.addressof(code))
libc = ctypes.CDLL(None)
if libc.prctl(38, 1, 0, 0, 0) != 0 or libc.prctl(22, 2, program, 0, 0) != 0:
    sys.exit("no seccomp filter can be set")
os.execvp(sys.argv[1], sys.argv[1:])
