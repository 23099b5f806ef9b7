#!/bin/sh
# Whether programs and libraries were built as the preset `release` asks.
# usage: hardening.sh FILE...
set -eu
status=0
for file; do
    name=$(basename "$file")
    headers=$(readelf --wide --program-headers --dynamic "$file")
    symbols=$(readelf --wide --symbols "$file")
    require() { # require WHAT TEXT PATTERN
        if ! printf '%s\n' "$2" | grep -Eq "$3"; then
            echo "$name: no $1" >&2
            status=1
        fi
    }
    require "position-independent code" "$(readelf --file-header "$file")" 'Type: *DYN'
    require "stack that cannot be executed" "$headers" 'GNU_STACK.* RW '
    require "table of addresses that is read-only" "$headers" 'GNU_RELRO'
    require "binding at the start" "$headers" 'BIND_NOW|FLAGS_1.*NOW'
    require "protection of the stack" "$symbols" '__stack_chk_fail'
    # The start code of the compiler brings a few of the marks that -fcf-protection makes.
    if [ "$(uname -m)" = x86_64 ] && [ "$(objdump --disassemble "$file" | grep -c endbr64)" -lt 100 ]; then
        echo "$name: targets of jumps without marks" >&2
        status=1
    fi
    if printf '%s\n' "$headers" | grep -Eq 'LOAD.* RWE '; then
        echo "$name: memory that can be written and executed" >&2
        status=1
    fi
    if printf '%s\n' "$headers" | grep -Eq 'TEXTREL|RPATH.*\[/'; then
        echo "$name: relocations in the code, or an absolute path to libraries" >&2
        status=1
    fi
done
# Calls of the C library that write to buffers are checked. Only the tool has such calls.
for file; do
    case $file in
    *.so*) ;;
    *)
        readelf --wide --symbols "$file" | grep -q '__[a-z]*_chk@' || {
            echo "$(basename "$file"): no checked copies" >&2
            status=1
        } ;;
    esac
done
exit "$status"
