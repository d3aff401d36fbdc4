#!/bin/sh
# install.sh CMAKE BUILD PREFIX LIBDIR [FILE...]: installs into PREFIX; everything is in its place.
set -eu
cmake=$1 build=$2 prefix=$3 libdir=$4
shift 4
rm -rf "$prefix"
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
cd "$prefix"
test "$(readlink "$libdir/libzetacr5.so")" = libzetacr5.so.5.2
for file in include/zetac.h "$libdir/libzetacr5.so.5.2" "$libdir/pkgconfig/zetacr5.pc" \
    "$libdir/cmake/zetacr5/zetacr5Config.cmake" "$@"; do
    test -f "$file" || { echo "not installed: $file"; exit 1; }
done
if [ -x bin/zetac ]; then # it starts, so it finds the library that was installed with it
    env -u LD_LIBRARY_PATH bin/zetac --help >/dev/null
fi
