#!/bin/sh
# no_mutable_state.sh STATIC_LIBRARY: the four allocation hooks are the only data that can change,
# and nothing runs when the library is loaded. (.data.rel.ro is constant once relocated.)
set -eu
mutable=$(LC_ALL=C objdump -t "$1" |
    awk '$0 ~ /[ \t](\.t?data|\.t?bss|\*COM\*)/ && $0 !~ /\.data\.rel\.ro/ && $0 ~ / O / { print $NF }' |
    LC_ALL=C sort | tr '\n' ' ')
echo "mutable: $mutable"
test "$mutable" = "i_calloc i_free i_malloc i_realloc "
! LC_ALL=C objdump -h "$1" | grep -E '\.(init_array|ctors)'
