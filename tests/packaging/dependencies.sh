#!/bin/sh
# dependencies.sh LIBRARY: it bears its name and needs the C and the maths library alone.
set -eu
dynamic=$(LC_ALL=C readelf -d "$1")
echo "$dynamic" | grep -E 'NEEDED|SONAME|RPATH|RUNPATH'
echo "$dynamic" | grep -qF 'Library soname: [libzetacr5.so.5.2]'
strangers=$(echo "$dynamic" | grep NEEDED |
    grep -vE '\[(libc\.so\.6|libm\.so\.6|ld-linux(-x86-64)?\.so\.2)\]' || true)
test -z "$strangers"
! echo "$dynamic" | grep -qE 'RPATH|RUNPATH'
