#!/usr/bin/env bash
# What scripts/test.sh leaves out for time: kernels of all levels under the sanitizers, two minutes
# for each fuzz target, clang-tidy over everything, all tests under a second compiler, coverage, and
# the planted faults. Takes hours on two cores; fails when any of it does.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/lib.sh

failed=()
part() {
    echo "=== $*"
    "$@" || failed+=("$1 ${2-}")
}

second_compiler() {
    install_missing clang &&
        cmake --preset clang && cmake --build --preset clang -j "$jobs" && ctest --preset clang -j "$jobs"
}

part scripts/test.sh --all-levels --all-files --fuzz 120
part second_compiler
part scripts/coverage.sh
part scripts/mutate.sh

if [ ${#failed[@]} -gt 0 ]; then
    printf 'Failed: %s\n' "${failed[@]}"
    exit 1
fi
echo "All parts passed."
