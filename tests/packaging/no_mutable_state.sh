#!/bin/sh
# no_mutable_state.sh STATIC_LIBRARY [NAME...]: these are its only data that can change, and nothing
# runs when it is loaded. (.data.rel.ro is constant once relocated, and so are the words by which C++
# finds its unwinder and the types of exceptions.)
set -eu
library=$1
shift
mutable=$(LC_ALL=C objdump -t "$library" |
    awk '$0 ~ /[ \t](\.t?data|\.t?bss|\*COM\*)/ && $0 !~ /\.data\.rel\.ro/ && $0 ~ / O / { print $NF }' |
    grep -vx "DW\.ref\..*" | LC_ALL=C sort -u | tr '\n' ' ')
echo "mutable: $mutable"
test "$mutable" = "${*:+$* }"
! LC_ALL=C objdump -h "$library" | grep -E '\.(init_array|ctors)'
