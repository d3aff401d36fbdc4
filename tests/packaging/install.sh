#!/bin/sh
# install.sh CMAKE BUILD PREFIX FILE...: installs into PREFIX; these files are in their places.
set -eu
cmake=$1 build=$2 prefix=$3
shift 3
rm -rf "$prefix"
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
cd "$prefix"
for file in "$@"; do
    test -f "$file" || { echo "not installed: $file"; exit 1; }
done
if [ -x bin/zetac ]; then # it starts, so it finds the libraries that were installed with it
    env -u LD_LIBRARY_PATH bin/zetac --help >/dev/null
fi
