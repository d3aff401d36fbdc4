#!/bin/sh
# consume_pkgconfig.sh CMAKE PREFIX LIBDIR PACKAGE VERSION [--static]: builds and runs a C program by
# pkg-config alone.
set -eu
prefix=$2 libdir=$3 package=$4 version=$5 static=${6-}
export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
pkg-config --exact-version="$version" "$package"
# shellcheck disable=SC2086,SC2046 # flags are lists of words
$CC $CFLAGS -std=c99 -o "$prefix/consume_$package" "$(dirname "$0")/consumer/$package.c" \
    $(pkg-config $static --cflags --libs "$package")
LD_LIBRARY_PATH="$prefix/$libdir" "$prefix/consume_$package"
