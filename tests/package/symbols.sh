#!/bin/sh
# Compares what a library exports with tests/symbols.txt; --update writes that list instead.
# usage: symbols.sh LIBRARY [--update]
set -eu
list=$(cd "$(dirname "$0")/.." && pwd)/symbols.txt
version=KALO_0 # as in cmake/kalo.map; every symbol has it, and the list leaves it out
exported=$(nm -DC --defined-only "$1" | cut -d ' ' -f 3- |
    sed -e "/^$version\$/d" -e "s/@@$version\$//; t" -e 's/$/ (has no version)/' | LC_ALL=C sort -u)
if [ "${2:-}" = --update ]; then
    printf '%s\n' "$exported" >"$list"
elif ! printf '%s\n' "$exported" | diff -u "$list" -; then
    echo "The exported symbols have changed. Where they should: sh $0 $1 --update"
    exit 1
fi
