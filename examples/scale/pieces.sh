#!/bin/sh
# Prints the pieces of logs, a line each: a range of bytes, a tab, the file.
# usage: pieces.sh SIZE FILE...   (SIZE in bytes)
set -eu
size=$1
shift
for file; do
    bytes=$(stat -c %s "$file")
    begin=0
    while [ "$begin" -lt "$bytes" ]; do
        printf '%s-%s\t%s\n' "$begin" $((begin + size)) "$file"
        begin=$((begin + size))
    done
done
