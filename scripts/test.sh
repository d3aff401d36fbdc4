#!/usr/bin/env bash
# Installs what is missing, then builds and tests everything.
#
#   scripts/test.sh                  all stages
#   scripts/test.sh --quick          formatting and the x64 build only
#   scripts/test.sh --preset NAME    that preset only (x64, x86, asan, tsan, fuzz); may be repeated
#
# Logs are under build/logs/; those of failing stages are shown without the lines of progress. The
# last line counts the tests of all presets; a stage that fails without a failing test (format,
# build, tidy) counts as one.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/lib.sh

presets=()
quick=false
while [ $# -gt 0 ]; do
    case $1 in
    --quick) quick=true ;;
    --preset) presets+=("${2:?--preset needs a name}") && shift ;;
    *) sed -n '2,/^set/{/^#/s/^# \?//p}' "$0" && exit 2 ;;
    esac
    shift
done

packages=(g++ cmake ninja-build pkg-config binutils googletest libbenchmark-dev libsndfile1-dev
    libsoxr-dev libcli11-dev nlohmann-json3-dev python3 libmpg123-dev
    ffmpeg gstreamer1.0-tools gstreamer1.0-plugins-base gstreamer1.0-plugins-good) # listen to MP3s
if [ ${#presets[@]} -gt 0 ]; then
    stages=("${presets[@]}")
elif $quick; then
    stages=(format x64)
else
    stages=(format x64 x86 asan tsan fuzz tidy)
fi
for stage in "${stages[@]}"; do
    case $stage in
    format) packages+=(clang-format) ;;
    x86) packages+=(g++-multilib libsndfile1-dev:i386 libsoxr-dev:i386 libmpg123-dev:i386) ;;
    fuzz) packages+=(clang libclang-rt-dev) ;;
    tidy) packages+=(clang-tidy) ;;
    x64 | asan | tsan) ;;
    *) echo "There is no preset $stage." >&2 && exit 2 ;;
    esac
done

sources() { find "$@" -regex '.*\.\(c\|cpp\|h\|inc\)' -print0 2>/dev/null; }

stage_install() { install_missing "${packages[@]}"; }

stage_format() {
    sources include src codec tool tests examples bench fuzz | xargs -0 clang-format --dry-run -Werror
}

# The compile database of the x64 preset serves; it is all that is taken from that build.
stage_tidy() {
    cmake --preset x64 &&
        find src codec tool -name '*.cpp' -print0 |
        xargs -0 -P "$jobs" -n 1 clang-tidy -p build/x64 --quiet
}

# gcc's thread sanitizer cannot map its shadow where the kernel randomises addresses widely.
fixed_addresses() {
    if setarch -R true 2>/dev/null; then setarch -R "$@"; else "$@"; fi
}

stage_preset() {
    cmake --preset "$1" && cmake --build --preset "$1" -j "$jobs" &&
        fixed_addresses ctest --preset "$1" -j "$jobs" --output-junit "$PWD/build/logs/$1.xml"
}

# count NAME FILE: the number of that name in a JUnit file.
count() { grep -om1 "\b$1=\"[0-9]*\"" "$2" | tr -dc 0-9; }

passed=0 failed=0 skipped=0 summary=()

# run_stage NAME COMMAND...: runs, times and counts one stage.
run_stage() {
    local name=$1 start=$SECONDS log=build/logs/$1.log junit=build/logs/$1.xml verdict=ok
    local stage_failed=0 stage_skipped=0 tests=0 counts=""
    shift
    rm -f "$junit"
    echo "== $name"
    "$@" >"$log" 2>&1 || verdict=FAILED
    if [ -s "$junit" ]; then
        tests=$(count tests "$junit")
        stage_failed=$(count failures "$junit")
        stage_skipped=$(($(count skipped "$junit") + $(count disabled "$junit")))
        counts=": $((tests - stage_failed - stage_skipped)) passed, $stage_failed failed, $stage_skipped skipped"
    fi
    passed=$((passed + tests - stage_failed - stage_skipped))
    skipped=$((skipped + stage_skipped))
    if [ $verdict = FAILED ]; then
        echo "-- $name failed; $log:"
        grep -vE '^\[[0-9]+/[0-9]+\]|^-- |^ +Start |   Passed +[0-9]' "$log"
        failed=$((failed + (stage_failed > 0 ? stage_failed : 1)))
    fi
    summary+=("$(printf '%-8s %-6s %4d s%s' "$name" "$verdict" $((SECONDS - start)) "$counts")")
    [ $verdict = ok ]
}

mkdir -p build/logs
if run_stage install stage_install; then
    for stage in "${stages[@]}"; do
        case $stage in
        format | tidy) run_stage "$stage" "stage_$stage" ;;
        *) run_stage "$stage" stage_preset "$stage" ;;
        esac
    done
fi

echo
printf '%s\n' "${summary[@]}" "total           $(printf %4d $SECONDS) s"
if [ $skipped -gt 0 ]; then
    echo "$passed passed, $failed failed, $skipped skipped"
else
    echo "$passed passed, $failed failed"
fi
[ $failed = 0 ]
