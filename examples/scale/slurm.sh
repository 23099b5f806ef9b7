#!/bin/sh
# The positions of many logs as CSV, a file a piece, made by an array of Slurm.
# usage: slurm.sh FOLDER SIZE FILE...   (SIZE in bytes; FOLDER is seen by all machines)
set -eu
columns=source,offset,time,latitude,longitude,altitude,quality
if [ -z "${SLURM_ARRAY_TASK_ID:-}" ]; then
    folder=$1
    shift
    mkdir -p "$folder"
    "$(dirname "$0")/pieces.sh" "$@" >"$folder/pieces"
    count=$(wc -l <"$folder/pieces")
    exec sbatch --wait --array="1-$count" --output="$folder/%a.log" "$0" "$folder"
fi
piece=$(sed -n "${SLURM_ARRAY_TASK_ID}p" "$1/pieces")
tab=$(printf '\t')
exec kalo decode --quiet --type GGA --format csv --columns $columns \
    "${piece%%"$tab"*}" --output "$1/$SLURM_ARRAY_TASK_ID.csv" -- "${piece#*"$tab"}"
