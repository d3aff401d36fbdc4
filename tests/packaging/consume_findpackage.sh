#!/bin/sh
# consume_findpackage.sh CMAKE PREFIX LIBDIR PACKAGE VERSION: builds and runs a C program by
# find_package alone.
set -eu
cmake=$1 prefix=$2 package=$4 version=$5
build=$prefix/consumer_$package
"$cmake" -S "$(dirname "$0")/consumer" -B "$build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
    -DPACKAGE="$package" -DVERSION="$version"
"$cmake" --build "$build"
"$build/consumer"
