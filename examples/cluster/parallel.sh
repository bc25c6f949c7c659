#!/usr/bin/env bash
# Converts the packs of a job on several hosts with GNU parallel, one pack at a time on each. Give the same command again
# after whatever ended it: packs that went well are left out, and the others go on where they were.
#
#   parallel.sh HOSTS PHOTOS TIFFS JOB [OPTION-OF-RAW-TO-TIFF ...]
#   parallel.sh alpha,beta,gamma /shared/photos /shared/tiffs /shared/job --timeout 60
#
# HOSTS is a list as parallel's -S takes it, and ":" this machine. All of them have the same folders and raw-to-tiff, or
# RAW_TO_TIFF says where it is.

set -euo pipefail
[ $# -ge 4 ] || { echo "usage: parallel.sh HOSTS PHOTOS TIFFS JOB [OPTION ...]" >&2 && exit 2; }
hosts=$1 photos=$(realpath "$2") tiffs=$(realpath -m "$3") job=$(realpath "$4")
export RAW_TO_TIFF=${RAW_TO_TIFF:-raw-to-tiff}

seq 0 $(($(find "$job/packs" -type f | wc -l) - 1)) |
    parallel --sshlogin "$hosts" --jobs 1 --env RAW_TO_TIFF --joblog "$job/joblog" --resume-failed --quote \
        "$(realpath "$(dirname "$0")/convert-pack")" "$photos" "$tiffs" "$job" {} "${@:5}"
