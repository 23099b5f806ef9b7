#!/bin/sh
# Compares the table of sentences in docs/formats/nmea.md with what a program prints; --update writes
# it there instead.
# usage: sentenceTable.sh PROGRAM [--update]
set -eu
page=$(cd "$(dirname "$0")/../.." && pwd)/docs/formats/nmea.md
made=$(mktemp)
trap 'rm -f "$made"' EXIT
begin='<!-- sentences: made by script/update -->'
end='<!-- sentences: end -->'
grep -qxF "$begin" "$page" && grep -qxF "$end" "$page"
{
    sed "\\|^$begin\$|q" "$page"
    echo
    "$1"
    echo
    sed -n "\\|^$end\$|,\$p" "$page"
} >"$made"
if [ "${2:-}" = --update ]; then
    cp "$made" "$page"
elif ! diff -u "$page" "$made"; then
    echo "The list of sentences has changed; run script/update."
    exit 1
fi
