#!/bin/sh
# Prints the pieces of logs, a line each: an option of kalo decode, a tab, the file. Compressed files and
# archives stay whole; so many threads as one is an option that changes nothing.
# usage: pieces.sh SIZE FILE...   (SIZE in bytes)
set -eu
size=$1
shift
for file; do
    case "$file" in
    *.gz | *.bz2 | *.xz | *.zst | *.lz4 | *.tgz | *.tar | *.zip)
        printf '%s\t%s\n' --jobs=1 "$file"
        continue
        ;;
    esac
    bytes=$(stat -c %s "$file")
    begin=0
    while [ "$begin" -lt "$bytes" ]; do
        printf -- '--range=%s-%s\t%s\n' "$begin" $((begin + size)) "$file"
        begin=$((begin + size))
    done
done
