#!/usr/bin/env bash
# Installs what is missing, then builds and tests everything.
#
#   scripts/test.sh                  all stages
#   scripts/test.sh --quick          formatting, the x64 build without benchmarks, its tests
#   scripts/test.sh --stage NAME     that stage only; may be repeated
#   scripts/test.sh --all-levels     the sanitizers see kernels of all levels, not of two
#   scripts/test.sh --all-files      clang-tidy sees all files, not only those that changed
#   scripts/test.sh --fuzz SECONDS   for each fuzz target (default: 2)
#
# Stages: format docs x64 x86 asan tsan fuzz tidy. scripts/nightly.sh runs what takes longer.
#
# Logs are under build/logs/; those of failing stages are shown without the lines of progress. Each
# stage's line tells its seconds, and in brackets those of the processor. The last line counts the
# tests of all presets; a stage that fails without a failing test (format, build, tidy) counts as one.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/lib.sh

stages=() quick=false all_files=false fuzz_seconds=2 levels=()
while [ $# -gt 0 ]; do
    case $1 in
    --quick) quick=true ;;
    --stage) stages+=("${2:?$1 needs a name}") && shift ;;
    --all-levels) levels=(-DZETAC_FEW_LEVELS=OFF) ;;
    --all-files) all_files=true ;;
    --fuzz) fuzz_seconds=${2:?--fuzz needs a number} && shift ;;
    *) sed -n '2,/^set/{/^#/s/^# \?//p}' "$0" && exit 2 ;;
    esac
    shift
done
if $quick; then
    stages=(format x64)
elif [ ${#stages[@]} = 0 ]; then
    stages=(format docs x64 x86 asan tsan fuzz tidy)
fi

packages=(g++ cmake ninja-build pkg-config binutils git libgtest-dev libsndfile1-dev
    libsoxr-dev libcli11-dev nlohmann-json3-dev python3 libmpg123-dev
    ffmpeg gstreamer1.0-tools gstreamer1.0-plugins-base gstreamer1.0-plugins-good) # listen to MP3s
for stage in "${stages[@]}"; do
    case $stage in
    format) packages+=(clang-format) ;;
    docs) packages+=(doxygen) ;;
    x86) packages+=(g++-multilib libgtest-dev:i386 libsndfile1-dev:i386 libsoxr-dev:i386
        libmpg123-dev:i386) ;;
    fuzz) packages+=(clang libclang-rt-dev) ;;
    tidy) packages+=(clang-tidy) ;;
    x64 | asan | tsan) ;;
    *) echo "There is no stage $stage." >&2 && exit 2 ;;
    esac
done

sources() { find "$@" -regex '.*\.\(c\|cpp\|h\|inc\)' -print0 2>/dev/null; }

stage_install() { install_missing "${packages[@]}"; }

stage_format() {
    sources include src codec tool tests examples bench fuzz | xargs -0 clang-format --dry-run -Werror
}

stage_docs() { doxygen Doxyfile; }

# Where the present work began: the branch point from the main branch, else the commit before.
base_revision() {
    local branch base
    for branch in origin/main main; do
        base=$(git merge-base HEAD "$branch" 2>/dev/null) || continue
        [ "$base" = "$(git rev-parse HEAD)" ] || { echo "$base" && return; }
    done
    git rev-parse -q --verify HEAD^
}

# The files to check: those that changed, and for a header that changed one file that includes it.
tidy_files() {
    local base file
    if $all_files || ! base=$(base_revision); then
        find src codec tool tests bench fuzz -name '*.cpp'
        return
    fi
    {
        git diff --name-only --diff-filter=d "$base" -- src codec tool tests bench fuzz
        git ls-files --others --exclude-standard -- src codec tool tests bench fuzz
    } | while IFS= read -r file; do
        case $file in
        *.cpp) echo "$file" ;;
        *.h | *.inc) grep -rlF --include='*.cpp' "${file#*/}\"" src codec tool tests bench fuzz | head -n 1 ;;
        esac
    done | sort -u
}

# Takes the compile database of the x64 preset, without headers precompiled by another compiler.
stage_tidy() {
    local files
    configure x64 -B build/tidy -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON && files=$(tidy_files) || return
    echo "$(grep -c . <<<"$files") files"
    [ -z "$files" ] || xargs -P "$jobs" -n 1 clang-tidy -p build/tidy --quiet <<<"$files"
}

# gcc's thread sanitizer cannot map its shadow where the kernel randomises addresses widely.
fixed_addresses() {
    if setarch -R true 2>/dev/null; then setarch -R "$@"; else "$@"; fi
}

# configure PRESET OPTION...: with the compiler cache where there is one.
configure() {
    local preset=$1 cache=()
    shift
    if command -v ccache >/dev/null; then
        cache=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    fi
    cmake --preset "$preset" "${cache[@]}" "$@"
}

stage_preset() {
    local options=(-DZETAC_FUZZ_SECONDS="$fuzz_seconds")
    case $1 in
    x64) $quick && options+=(-DZETAC_BUILD_BENCH=OFF) || options+=(-DZETAC_BUILD_BENCH=ON) ;;
    asan | tsan | fuzz) options+=("${levels[@]}") ;;
    esac
    configure "$1" "${options[@]}" && cmake --build --preset "$1" -j "$jobs" &&
        fixed_addresses ctest --preset "$1" -j "$jobs" --output-junit "$PWD/build/logs/$1.xml"
}

# count NAME FILE: the number of that name in a JUnit file.
count() { grep -om1 "\b$1=\"[0-9]*\"" "$2" | tr -dc 0-9; }

# Sets `processor` to the seconds of the processor that all commands took so far.
note_processor() {
    times >build/logs/times  # not in a subshell, which would have no children
    processor=$(awk 'NR == 2 { split($0, t, /[ms ]+/); printf "%d", t[1] * 60 + t[2] + t[3] * 60 + t[4] }' build/logs/times)
}

passed=0 failed=0 skipped=0 summary=()

# run_stage NAME COMMAND...: runs, times and counts one stage.
run_stage() {
    local name=$1 start=$SECONDS log=build/logs/$1.log junit=build/logs/$1.xml verdict=ok
    local stage_failed=0 stage_skipped=0 tests=0 counts="" processor before
    note_processor
    before=$processor
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
    note_processor
    summary+=("$(printf '%-8s %-6s %4d s (%4d)%s' "$name" "$verdict" $((SECONDS - start)) \
        $((processor - before)) "$counts")")
    [ $verdict = ok ]
}

mkdir -p build/logs
echo "Stages: ${stages[*]}"
if run_stage install stage_install; then
    for stage in "${stages[@]}"; do
        case $stage in
        format | docs | tidy) run_stage "$stage" "stage_$stage" ;;
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
