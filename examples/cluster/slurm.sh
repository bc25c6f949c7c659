#!/usr/bin/env bash
# Converts the packs of a job as a Slurm array, a task for each pack. A task that the system failed, or that was killed, is
# put into the queue again, three times at most; one with bad raw files has failed for good. Give the same command again
# to go on after all tasks have ended.
#
#   slurm.sh PHOTOS TIFFS JOB [OPTION-OF-RAW-TO-TIFF ...]
#
# SBATCH_... variables choose the partition, the time and so on; a task has as many worker processes as CPUs.
#
#SBATCH --job-name=raw-to-tiff
#SBATCH --nodes=1
#SBATCH --cpus-per-task=2
#SBATCH --requeue
#SBATCH --open-mode=append

set -euo pipefail

if [ -z "${SLURM_ARRAY_TASK_ID-}" ]; then
    [ $# -ge 3 ] || { echo "usage: slurm.sh PHOTOS TIFFS JOB [OPTION ...]" >&2 && exit 2; }
    photos=$(realpath "$1") tiffs=$(realpath -m "$2") job=$(realpath "$3")
    export CONVERT_PACK
    CONVERT_PACK=$(realpath "$(dirname "$0")/convert-pack")
    exec sbatch --array="0-$(($(find "$job/packs" -type f | wc -l) - 1))" --output="$job/slurm-%a.txt" "$0" \
        "$photos" "$tiffs" "$job" "${@:4}"
fi

code=0
"$CONVERT_PACK" "$1" "$2" "$3" "$SLURM_ARRAY_TASK_ID" -j "$SLURM_CPUS_PER_TASK" "${@:4}" || code=$?
if { [ $code = 3 ] || [ $code -gt 128 ]; } && [ "${SLURM_RESTART_COUNT:-0}" -lt 3 ]; then
    scontrol requeue "$SLURM_JOB_ID"
fi
exit $code
