#!/usr/bin/env bash
# Prints which share of the lines of src, codec and tool the tests run, by room; the pages in
# build/coverage/html show the lines.
set -eu
cd "$(dirname "$0")/.."
. scripts/lib.sh

install_missing lcov
build=build/coverage
cmake --preset coverage >/dev/null
cmake --build --preset coverage -j "$jobs"
find $build -name '*.gcda' -delete
ctest --preset coverage -j "$jobs" --quiet
lcov --quiet --capture --directory $build --base-directory . --output-file $build/all.info
lcov --quiet --extract $build/all.info "$PWD/src/*" "$PWD/codec/*" "$PWD/tool/*" --output-file $build/own.info
genhtml --quiet --prefix "$PWD" --output-directory $build/html $build/own.info

# Lines found (LF) and hit (LH) of each file, added up by folder.
awk -F: -v root="$PWD/" '
    $1 == "SF" { split(substr($2, length(root) + 1), part, "/"); room = part[1] "/" part[2] }
    $1 == "LF" { found[room] += $2; found["total"] += $2 }
    $1 == "LH" { hit[room] += $2; hit["total"] += $2 }
    END { for (room in found) printf "%-18s %6d of %6d lines  %5.1f %%\n", room, hit[room], found[room], 100 * hit[room] / found[room] }
' $build/own.info | sort
