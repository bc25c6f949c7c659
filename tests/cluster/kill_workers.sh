#!/usr/bin/env bash
# Shows that a job of examples/cluster/ loses and doubles nothing when processes of raw-to-tiff are killed at random
# moments: gives the job's command again until all packs are done, and compares with a run that nobody disturbed.
#
#   tests/cluster/kill_workers.sh KILLS COMMAND [ARGUMENT ...]      # which are followed by PHOTOS TIFFS JOB
#   tests/cluster/kill_workers.sh 50 examples/cluster/parallel.sh :
#   SBATCH_WAIT=1 tests/cluster/kill_workers.sh 50 examples/cluster/slurm.sh

set -euo pipefail
[ $# -ge 2 ] || { echo "usage: kill_workers.sh KILLS COMMAND [ARGUMENT ...]" >&2 && exit 2; }
kills=$1
command=("${@:2}")
project=$(realpath "$(dirname "$0")/../..")

work=$(mktemp -d)
trap 'wait; rm -rf "$work"' EXIT
program=$work/raw-to-tiff # a copy, so that only its own processes are killed
cp "${RAW_TO_TIFF:-$project/build/release/cli/raw-to-tiff}" "$program"
export RAW_TO_TIFF=$program

# 300 raw files in 10 folders, of which every 15th is damaged.
make_photos() {
    local samples=("$project"/samples/synthetic/*.cr[2w]) i photo
    for i in {1..300}; do
        photo="$work/photos/folder $((i % 10))/$i.cr2"
        mkdir -p "$(dirname "$photo")"
        cp "${samples[i % ${#samples[@]}]}" "$photo"
        [ $((i % 15)) != 0 ] || truncate -s 50000 "$photo"
    done
}

processes() {
    find /proc -maxdepth 2 -path '/proc/[0-9]*/exe' -lname "$program" 2>/dev/null | cut -d / -f 3 || true
}

# Kills one process after another for as long as the job runs, and as many as are left to kill.
disturb() {
    local process
    while kill -0 "$1" 2>/dev/null && [ "$killed" -lt "$kills" ]; do
        sleep 0.0$((RANDOM % 90 + 10))
        process=$(processes | shuf -n 1)
        if [ -n "$process" ] && kill -KILL "$process" 2>/dev/null; then
            killed=$((killed + 1))
        fi
    done
}

run_job() { "${command[@]}" "$work/photos" "$work/tiffs" "$work/job" >>"$work/output" 2>&1; }

make_photos
"$project/examples/cluster/make-packs" "$work/photos" "$work/job" 10
"$program" -q -r "$work/photos" -d "$work/want" 2>"$work/failures" || true

killed=0 runs=0
while [ "$killed" -lt "$kills" ] && [ $runs -lt 100 ]; do
    run_job &
    disturb $!
    wait $! || true
    runs=$((runs + 1))
done
run_job || true # with nobody to disturb it

diff -r "$work/want" "$work/tiffs"
count() { cat "$work/job/logs/"* | sed -n 's/.*"input":\("[^"]*"\).*"outcome":"'"$1"'".*/\1/p' | sort | uniq "${@:2}" | wc -l; }
converted=$(find "$work/tiffs" -type f | wc -l)
echo "$killed processes killed in $runs runs; $converted files converted, $(count bad_input) refused, $(count converted -d) converted twice"
[ "$killed $converted $(count bad_input) $(count converted -d)" = "$kills 280 20 0" ]
