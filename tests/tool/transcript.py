#!/usr/bin/env python3
"""Runs transcripts of shell sessions, each in a new folder, and compares what commands print.

  transcript.py [--update] TOOL DATA TRANSCRIPT...

A line that begins with "$ " is a shell line; "> " goes on with it. What follows, up to the next one or an empty line,
is what it must print on standard output and standard error, with "[N]" at the end for a status other than 0. "..."
stands for anything within a line, a line of its own for any lines. All other lines are remarks.
Shell lines find the tool as zetac, bundled clips below $data and the functions of prelude.sh.

SPDX-License-Identifier: BSD-2-Clause
Copyright (c) 2026, The Zetac authors
"""
import os
import re
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))


def parse(lines):
    """The shell lines and what each must print: [number of the first line, command, expected lines]."""
    steps = []
    is_expected = False
    for number, line in enumerate(lines):
        if line.startswith("$ "):
            steps.append([number, line[2:], []])
            is_expected = True
        elif is_expected and line.startswith("> ") and not steps[-1][2]:
            steps[-1][1] += "\n" + line[2:]
        elif is_expected and line:
            steps[-1][2].append(line)
        else:
            is_expected = False
    return steps


def pattern(expected):
    text = re.escape("".join(line + "\n" for line in expected))
    anything = re.escape("...")
    text = re.sub(r"(?m)^" + anything + r"\\\n", "(?:.*\\n)*", text)
    return re.compile(text.replace(anything, ".*"))


def run(command, folder, tool, data):
    environment = dict(os.environ, data=data, tests=HERE, zetac=tool, LC_ALL="C.UTF-8")
    environment["PATH"] = os.path.dirname(tool) + ":" + environment["PATH"]
    done = subprocess.run(["bash", "-c", f". '{HERE}/prelude.sh'\n{command}\n"], cwd=folder, env=environment,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
    lines = done.stdout.decode(errors="backslashreplace").replace("\r\n", "\n").split("\n")
    if not lines[-1]:
        lines.pop()
    status = done.returncode if done.returncode >= 0 else 128 - done.returncode
    return lines + ([f"[{status}]"] if status else [])


def check(path, tool, data, update):
    with open(path, encoding="utf-8") as file:
        lines = file.read().split("\n")
    faults = shift = 0
    with tempfile.TemporaryDirectory(prefix="zetac-test-") as folder:
        for number, command, expected in parse(lines):
            found = run(command, folder, tool, data)
            if pattern(expected).fullmatch("".join(line + "\n" for line in found)):
                continue
            faults += 1
            if update:
                begin = number + shift + 1 + command.count("\n")
                lines[begin:begin + len(expected)] = found
                shift += len(found) - len(expected)
            else:
                print(f"{path}:{number + 1}: $ {command}", *(f"- {line}" for line in expected),
                      *(f"+ {line}" for line in found), sep="\n")
    if update:
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(lines))
    return faults


def main():
    arguments = sys.argv[1:]
    update = arguments[0] == "--update"
    tool, data, *transcripts = arguments[update:]
    return sum(check(path, os.path.abspath(tool), os.path.abspath(data), update) for path in transcripts) > 0


if __name__ == "__main__":
    sys.exit(main())
