# Functions for the shell lines of transcripts.
#
# SPDX-License-Identifier: BSD-2-Clause
# Copyright (c) 2026, The Zetac authors

# put FILE OFFSET BYTES: writes bytes, in printf's notation, into a file.
put() { printf "$3" | dd of="$1" bs=1 seek="$2" conv=notrunc status=none; }

# number FILE OFFSET BYTES: a little-endian number.
number() { od -An -tu"$3" -j"$2" -N"$3" "$1" | tr -d ' '; }

# wait_for COMMAND: until the shell line succeeds, for ten seconds.
wait_for() {
    local i
    for ((i = 0; i < 1000; ++i)); do
        eval "$1" >/dev/null 2>&1 && return
        sleep 0.01
    done
    echo "waited in vain: $1"
}

# on_terminal COMMAND: runs it with standard output and standard error on a terminal.
on_terminal() { script -qec "$1" /dev/null </dev/null; }

# without_nameless COMMAND...: as if the file system made no files without a name.
without_nameless() { python3 "$tests/no_nameless_files.py" "$@"; }
