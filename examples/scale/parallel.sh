#!/bin/sh
# The positions of many logs as CSV, a file a piece, made by GNU parallel.
# usage: parallel.sh FOLDER SIZE FILE...   (SIZE in bytes; FOLDER for FOLDER/1.csv, 2.csv, ...)
set -eu
folder=$1
columns=source,offset,time,latitude,longitude,altitude,quality
shift
mkdir -p "$folder"
# --sshlogin host1,host2 spreads the pieces over machines that see the same files.
"$(dirname "$0")/pieces.sh" "$@" | parallel --will-cite --halt now,fail=1 --colsep '\t' --quote \
    kalo decode --quiet --type GGA --format csv --columns $columns {1} --output "$folder/{#}.csv" -- {2}
