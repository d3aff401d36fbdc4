#!/bin/sh
# consume_findpackage.sh CMAKE PREFIX LIBDIR: builds and runs a C program by find_package alone.
set -eu
cmake=$1 prefix=$2
build=$prefix/consumer
"$cmake" -S "$(dirname "$0")/consumer" -B "$build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
"$cmake" --build "$build"
"$build/consumer"
