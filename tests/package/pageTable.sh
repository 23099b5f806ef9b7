#!/bin/sh
# Compares the table on a page of the documents with what a program prints; --update writes it there
# instead.
# usage: pageTable.sh PROGRAM PAGE [--update]
set -eu
made=$(mktemp)
trap 'rm -f "$made"' EXIT
begin='<!-- made by script/update -->'
end='<!-- end -->'
grep -qxF "$begin" "$2" && grep -qxF "$end" "$2"
{
    sed "\\|^$begin\$|q" "$2"
    echo
    "$1"
    echo
    sed -n "\\|^$end\$|,\$p" "$2"
} >"$made"
if [ "${3:-}" = --update ]; then
    cp "$made" "$2"
elif ! diff -u "$2" "$made"; then
    echo "The table in $2 is not up to date; run script/update."
    exit 1
fi
