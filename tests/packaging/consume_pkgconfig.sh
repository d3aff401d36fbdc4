#!/bin/sh
# consume_pkgconfig.sh CMAKE PREFIX LIBDIR: builds and runs a C program by pkg-config alone.
set -eu
prefix=$2 libdir=$3
export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
pkg-config --exact-version=5.2 zetacr5
# shellcheck disable=SC2086,SC2046 # flags are lists of words
$CC $CFLAGS -std=c99 -o "$prefix/consumer_pkgconfig" "$(dirname "$0")/consumer/consumer.c" \
    $(pkg-config --cflags --libs zetacr5)
LD_LIBRARY_PATH="$prefix/$libdir" "$prefix/consumer_pkgconfig"
