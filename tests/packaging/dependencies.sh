#!/bin/sh
# dependencies.sh LIBRARY SONAME RUNPATH [NEEDED...]: it bears its name and needs the C and the maths
# library and those named alone, which it finds by that path; "-" for none.
set -eu
library=$1 soname=$2 runpath=$3
shift 3
dynamic=$(LC_ALL=C readelf -d "$library")
echo "$dynamic" | grep -E 'NEEDED|SONAME|RPATH|RUNPATH'
echo "$dynamic" | grep -qF "Library soname: [$soname]"
for needed in libc.so.6 libm.so.6 ld-linux.so.2 ld-linux-x86-64.so.2 "$@"; do
    dynamic=$(echo "$dynamic" | grep -vF "Shared library: [$needed]")
done
! echo "$dynamic" | grep NEEDED
if [ "$runpath" != - ]; then
    dynamic=$(echo "$dynamic" | grep -vF "Library runpath: [$runpath]")
fi
! echo "$dynamic" | grep -E 'RPATH|RUNPATH'
