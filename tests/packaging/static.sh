#!/bin/sh
# static.sh CMAKE SOURCE PREFIX LIBDIR VERSION: builds static libraries, unoptimised, installs them and
# links a C program with them in both ways. It needs no library of ours to run.
set -eu
cmake=$1 source=$2 prefix=$3 libdir=$4 version=$5
here=$(dirname "$0")
"$cmake" -S "$source" -B "$prefix/build" -G Ninja -DBUILD_SHARED_LIBS=OFF -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DCMAKE_COMPILE_WARNING_AS_ERROR=OFF \
    -DZETAC_OPTIMIZATION=-O0 -DZETAC_BUILD_TOOL=OFF -DZETAC_BUILD_TESTS=OFF >/dev/null
"$cmake" --build "$prefix/build" --target zetacr5 libzetac
"$cmake" --install "$prefix/build" --prefix "$prefix" >/dev/null
sh "$here/consume_pkgconfig.sh" "$cmake" "$prefix" "$libdir" zetac "$version" --static
sh "$here/consume_findpackage.sh" "$cmake" "$prefix" "$libdir" zetac "$version"
for program in consume_zetac consumer_zetac/consumer; do
    ! LC_ALL=C readelf -d "$prefix/$program" | grep 'NEEDED.*zetac'
done
