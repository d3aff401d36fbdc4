#!/usr/bin/env bash
# Plants faults, one at a time, in a scratch copy of the tree and says which ones the tests catch.
#
#   scripts/mutate.sh                    every fault of tests/mutations/*.txt
#   scripts/mutate.sh --only WORD        the faults whose list, file or text contains WORD
#   scripts/mutate.sh --list             prints the faults and plants none, but says which are stale
#   scripts/mutate.sh --jobs N           at most so many scratch copies side by side (default: cores)
#   scripts/mutate.sh --tree FOLDER      plants them in that checkout's files instead of this one's
#
# tests/mutations/README.md tells how a fault is written. A fault is
#   caught   when one of its tests fails, crashes or takes more than a minute of the processor, or
#            when a static_assert stops the build;
#   missed   when all of them pass;
#   stale    when its text no longer stands exactly once in the files it names, when it does not
#            compile, or when its filter matches no test.
# Fails for stale faults, and below 90 % caught.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/lib.sh

only="" list=false tree=$PWD
while [ $# -gt 0 ]; do
    case $1 in
    --only) only=${2:?--only needs a word} && shift ;;
    --list) list=true ;;
    --jobs) jobs=${2:?--jobs needs a number} && shift ;;
    --tree) tree=$(cd "${2:?--tree needs a folder}" && pwd) && shift ;;
    *) sed -n '2,/^set/{/^#/s/^# \?//p}' "$0" && exit 2 ;;
    esac
    shift
done

scratch=$PWD/build/mutate
shared_streams=$PWD/../shared/streams
mapfile -t sources < <(git -C "$tree" ls-files src codec tool include)

# The faults, as parallel arrays.
fault_list=() fault_tests=() fault_file=() fault_old=() fault_new=()

read_list() {
    local name=$1 line tests="" file change number=0
    while IFS= read -r line; do
        number=$((number + 1))
        case $line in
        '' | '#'*) ;;
        '['*']') tests=${line#[} && tests=${tests%]} ;;
        *:' '*' => '* | *:' '*' =>')
            file=${line%%: *} change=${line#*: }
            [[ "$name $line" == *"$only"* ]] || continue
            [ -n "$tests" ] || { echo "$name:$number: no tests are named above this line" >&2 && exit 2; }
            fault_list+=("$name") fault_tests+=("$tests") fault_file+=("$file")
            fault_old+=("${change%% =>*}")
            change=${change#* =>} && fault_new+=("${change# }")
            ;;
        *) echo "$name:$number: not a fault: $line" >&2 && exit 2 ;;
        esac
    done <"tests/mutations/$name"
}

slurp() { IFS= read -r -d '' "$1" <"$2" || true; }

# place INDEX: sets `place` to the one file in which the fault's text stands exactly once.
place() {
    local file content rest
    place=""
    for file in "${sources[@]}"; do
        [[ /$file == */${fault_file[$1]} ]] || continue
        slurp content "$tree/$file"
        rest=${content#*"${fault_old[$1]}"}
        [ "$rest" != "$content" ] || continue
        [ -z "$place" ] && [ "${rest#*"${fault_old[$1]}"}" = "$rest" ] || return 1
        place=$file
    done
    [ -n "$place" ]
}

# plant INDEX FOLDER: replaces the text in that copy.
plant() {
    local content
    slurp content "$2/$place"
    printf %s "${content%%"${fault_old[$1]}"*}${fault_new[$1]}${content#*"${fault_old[$1]}"}" >"$2/$place"
}

# each_test TESTS COMMAND...: COMMAND... TARGET FILTER for each entry between semicolons, to the first failure.
each_test() {
    local entry entries target filter
    IFS=';' read -ra entries <<<"$1"
    shift
    for entry in "${entries[@]}"; do
        read -r target filter <<<"$entry"
        "$@" "$target" "$filter" || return
    done
}

add_target() { [ "$1" = transcripts ] && targets[zetac]=1 || targets[$1]=1; }

program() { find "$1/build" -name "$2" -type f -perm -u+x | head -n 1; }

run_test() {
    local copy=$1 target=$2 filter=$3
    case $target in
    fuzz_*) set -- "$(program "$copy" "$target")" "$copy/tree/fuzz/corpus/${target#fuzz_}" ;;
    example_*) set -- "$(program "$copy" "$target")" ;;
    transcripts) set -- ctest --test-dir "$copy/build" --stop-on-failure -R "^tool\.(${filter:-.*})$" -E memory ;;
    *) set -- "$(program "$copy" "$target")" --gtest_fail_fast --gtest_brief=1 --gtest_filter="${filter:-*}" ;;
    esac
    # The outer redirection keeps bash's own words about crashes out of the report.
    { (cd "$copy/tree" && ulimit -v 8000000 -t 60 && timeout -k 5 900 "$@") >"$copy/test.log" 2>&1; } 2>/dev/null
}

# check_test COPY TARGET FILTER: whether the filter matches a test and the tests pass without a fault.
check_test() {
    local key="$2 $3"
    [ -z "${checked[$key]-}" ] || return 0
    case $2 in
    fuzz_* | example_*) ;;
    transcripts)
        if ! ctest --test-dir "$1/build" -N -R "^tool\.(${3:-.*})$" -E memory | grep -q 'Test *#'; then
            echo "No transcript matches '$3'." && return 1
        fi
        ;;
    *)
        if ! "$(program "$1" "$2")" --gtest_list_tests --gtest_filter="${3:-*}" | grep -q '^  '; then
            echo "No test of $2 matches '$3'." && return 1
        fi
        ;;
    esac
    run_test "$@" || { echo "Without a fault, $key fails:" && tail -n 20 "$1/test.log" && return 1; }
    checked[$key]=1
}

# copy_tree FOLDER: makes it equal to the tree, and touches only what differs.
copy_tree() {
    local file
    mkdir -p "$1"
    git -C "$tree" ls-files --cached --others --exclude-standard | while IFS= read -r file; do
        [ ! -f "$tree/$file" ] || echo "$file"
    done | sort -u >"$1.files"
    (cd "$1" && find . -type f -printf '%P\n' | sort | comm -13 "$1.files" - | xargs -r -d '\n' rm)
    while IFS= read -r file; do
        cmp -s "$tree/$file" "$1/$file" || (cd "$tree" && cp --parents "$file" "$1") || return
    done <"$1.files"
}

# build_copy N JOBS: the tree as it stands and its build, in build/mutate/N.
build_copy() {
    local copy=$scratch/$1 launcher=""
    copy_tree "$copy/tree" || return
    command -v ccache >/dev/null && launcher=ccache
    cmake -G Ninja -S "$copy/tree" -B "$copy/build" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_FLAGS_RELEASE="-O1 -DNDEBUG" -DZETAC_OPTIMIZATION=-O1 \
        -DCMAKE_COMPILE_WARNING_AS_ERROR=OFF -DCMAKE_LINK_DEPENDS_NO_SHARED=ON \
        -DCMAKE_CXX_COMPILER_LAUNCHER=$launcher -DZETAC_SHARED_STREAMS="$shared_streams" \
        -DZETAC_BUILD_FUZZ=ON &&
        cmake --build "$copy/build" -j "$2" --target "${!targets[@]}"
} >"$scratch/build$1.log" 2>&1

# try_fault INDEX COPY: sets `verdict`.
try_fault() {
    local -A targets=()
    plant "$1" "$2/tree"
    each_test "${fault_tests[$1]}" add_target
    if cmake --build "$2/build" -j 1 --target "${!targets[@]}" >"$2/build.log" 2>&1; then
        if each_test "${fault_tests[$1]}" run_test "$2"; then verdict=missed; else verdict=caught; fi
    elif grep -q "static assertion failed" "$2/build.log"; then
        verdict=caught
    else
        verdict=stale
        grep -m 3 "error:" "$2/build.log"
    fi
    cp "$tree/$place" "$2/tree/$place"
}

report() {
    local line="$1 $2 s  ${fault_list[$3]}  ${fault_file[$3]}: ${fault_old[$3]} => ${fault_new[$3]}"
    echo "$line" | tee -a "$scratch/results"
}

next_fault() {
    exec 9>"$scratch/next.lock"
    flock 9
    index=$(<"$scratch/next")
    echo $((index + 1)) >"$scratch/next"
    exec 9>&-
}

# worker N: takes faults until none is left.
worker() {
    local index start verdict
    while next_fault && [ "$index" -lt ${#fault_file[@]} ]; do
        start=$SECONDS
        place "$index" && try_fault "$index" "$scratch/$1" || verdict=stale
        report $verdict $((SECONDS - start)) "$index"
    done
}

count() { grep -c "^$1 .*  $2  " "$scratch/results"; }

summary_line() {
    printf '%-14s %4d planted %4d caught %4d missed %4d stale\n' "$1" \
        "$(count '[a-z]*' "$2")" "$(count caught "$2")" "$(count missed "$2")" "$(count stale "$2")"
}

for path in tests/mutations/*.txt; do
    read_list "$(basename "$path")"
done
[ ${#fault_file[@]} -gt 0 ] || { echo "No fault contains '$only'." >&2 && exit 2; }

if $list; then
    stale=0
    for index in "${!fault_file[@]}"; do
        place "$index" || { stale=$((stale + 1)) && printf 'stale: '; }
        echo "${fault_list[$index]}  ${place:-${fault_file[$index]}}: ${fault_old[$index]} => ${fault_new[$index]}"
    done
    echo "${#fault_file[@]} faults, $stale stale"
    exit $((stale > 0))
fi

declare -A targets=() checked=()
for index in "${!fault_file[@]}"; do
    each_test "${fault_tests[$index]}" add_target
done
mkdir -p "$scratch"
echo "== building"
build_copy 1 "$jobs" || { tail -n 30 "$scratch/build1.log" && exit 1; }
for index in "${!fault_file[@]}"; do
    each_test "${fault_tests[$index]}" check_test "$scratch/1" || exit 1
done
echo "== planting ${#fault_file[@]} faults after $SECONDS s"
: >"$scratch/results"
echo 0 >"$scratch/next"
worker 1 &
# A further copy is built beside the first one's work; a few faults are not worth it.
for ((copy = 2; copy <= jobs && copy <= ${#fault_file[@]} / 15; ++copy)); do
    (build_copy $copy 1 && worker $copy) &
done
wait

echo
for path in tests/mutations/*.txt; do
    name=$(basename "$path")
    [ "$(count '[a-z]*' "$name")" = 0 ] || summary_line "$name" "$name"
done
summary_line total '[a-z0-9_]*.txt'
caught=$(count caught '.*') planted=${#fault_file[@]}
echo "$((caught * 1000 / planted / 10)).$((caught * 1000 / planted % 10)) % caught in $SECONDS s"
[ "$(count stale '.*')" = 0 ] && [ $((caught * 10)) -ge $((planted * 9)) ]
