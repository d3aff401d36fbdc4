#!/bin/sh
# exports.sh LIBRARY HEADER MARK VERSION [NAMES]: the library exports exactly the names that the header
# declares with the mark, all of that version unless it is "-", and none of the names that a release
# had is gone.
set -eu
library=$1 header=$2 mark=$3 version=@@$4 released=${5-/dev/null}
[ "$4" != - ] || version=
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Without comments and preprocessor lines, a declaration runs from the mark to the semicolon, and
# its name stands before the first bracket, or in it for a pointer to a function: (*name)(...).
declared_names() {
    sed -z -e 's:/\*\([^*]\|\*\+[^*/]\)*\*\+/: :g' -e 's/\\\n//g' "$1" |
        sed -e '/^[[:space:]]*#/d' -e 's://.*$::' | tr '\n;{}' ' \n\n\n' |
        sed -n -e "s/.*\\<$mark\\>//p" |
        sed -e 's/^[^([]*([[:space:]]*\*[[:space:]]*\(\w\+\).*/\1/;t' \
            -e 's/[[(].*//' -e 's/[[:space:]]*$//' -e 's/.*[^[:alnum:]_]//' | LC_ALL=C sort -u
}

declared_names "$header" | sed "s/\$/$version/" >"$work/declared"
nm -D --defined-only "$library" | awk '$2 != "A" { print $3 }' | LC_ALL=C sort -u >"$work/exported"
echo "$(wc -l <"$work/declared") names declared, $(wc -l <"$work/exported") exported"
test -s "$work/declared"
echo "Differences (- declared only, + exported only):"
diff -U0 "$work/declared" "$work/exported"
echo "Released, and not exported:"
! LC_ALL=C comm -23 "$released" "$work/exported" | grep .
