#!/usr/bin/env bash
# Compares how many files a second raw-to-tiff converts on one core and with -j 1, 2 and 4, and GNU parallel running
# dcraw_emu on the same files: copies of one, in memory, as the TIFFs are.
#
#   bench/throughput.sh [--install] [--publish] [-n ROUNDS] [-c COPIES] [-p PROGRAM] RAW
#
#   --install     first installs parallel and dcraw_emu
#   --publish     puts the figures into docs/performance.md; takes 7 rounds or more
#   -n ROUNDS     how often each command is timed: 7 unless said otherwise
#   -c COPIES     how many files: 24 unless said otherwise
#   -p PROGRAM    our program: build/release/cli/raw-to-tiff unless said otherwise
#
# It builds nothing. The figures go to the terminal and to build/throughput.md.

usage() {
    sed -n 's/^#   \(bench.*\)/usage: \1/p' "$0" >&2
    exit 2
}

invocation="bench/throughput.sh $*"
install=no publish=no rounds=7 copies=24 program=
while [ $# -gt 0 ]; do
    case $1 in
    --install) install=yes ;;
    --publish) publish=yes ;;
    -n) rounds=${2-} && shift ;;
    -c) copies=${2-} && shift ;;
    -p) program=$(realpath -ms -- "${2-}") && shift ;;
    -*) usage ;;
    *) break ;;
    esac
    shift || usage
done
[[ $# = 1 && $rounds =~ ^[1-9][0-9]*$ && $copies =~ ^[1-9][0-9]*$ ]] || usage
raw=$(realpath -ms -- "$1")

# shellcheck source=scripts/lib.sh
. "$(dirname "$0")/../scripts/lib.sh"

program=${program:-$PWD/build/release/cli/raw-to-tiff}
[ $install = no ] || install_packages parallel libraw-bin
[ $publish = no ] || [ "$rounds" -ge 7 ] || fail "figures of fewer than 7 rounds are not published"
[ -x "$program" ] || fail "there is no program $program: build it, or name another with -p"
[ -f "$raw" ] || fail "there is no raw file $raw"
for tool in parallel dcraw_emu; do
    command -v $tool >/dev/null || fail "$tool is missing: bench/throughput.sh --install installs it"
done

work=$(mktemp -d /dev/shm/throughput.XXXXXX)
trap 'rm -rf "$work"' EXIT
mkdir "$work/in" "$work/times"
for ((i = 0; i < copies; ++i)); do
    cp "$raw" "$work/in/$i.${raw##*.}"
done

# dcraw_emu writes beside its input.
first_core=$(taskset -cp $$ | sed 's/.*: //; s/[,-].*//')
labels=("taskset -c $first_core raw-to-tiff -j 1" "raw-to-tiff -j 1" "raw-to-tiff -j 2" "raw-to-tiff -j 4"
    "parallel -j 2 dcraw_emu -w -W -T -6" "parallel -j 4 dcraw_emu -w -W -T -6")

# Runs the command of a label over all files, and answers the seconds that it took.
seconds_of() {
    local words start end
    read -ra words <<<"$1"
    rm -rf "$work/out"
    mkdir "$work/out"
    start=$EPOCHREALTIME
    if [ "${words[0]}" = parallel ]; then
        "${words[@]}" ::: "$work/in"/* >"$work/log" 2>&1
    else
        "${words[@]/#raw-to-tiff/$program}" -q -r "$work/in" -d "$work/out" >"$work/log" 2>&1
    fi || fail "$1: $(tail -n 1 "$work/log")"
    end=$EPOCHREALTIME
    find "$work/in" -name '*.tiff' -exec mv -t "$work/out" {} +
    [ "$(find "$work/out" -type f -size +0 | wc -l)" = "$copies" ] || fail "$1 did not convert all files"
    awk "BEGIN { print $end - $start }"
}

# One line of a file for each label: how many times as many files a second as the first label, in this round. Every
# second round goes backwards, so that a drift of the machine hits all alike.
measure() {
    local round i seconds order
    for ((round = 1; round <= rounds; ++round)); do
        say "round $round of $rounds"
        order=("${!labels[@]}")
        [ $((round % 2)) = 1 ] || mapfile -t order < <(printf '%s\n' "${order[@]}" | tac)
        for i in "${order[@]}"; do
            seconds[i]=$(seconds_of "${labels[i]}")
        done
        for i in "${!labels[@]}"; do
            awk "BEGIN { printf \"%.2f\n\", ${seconds[0]} / ${seconds[i]} }" >>"$work/times/$i"
        done
    done
}

write_figures() {
    local i
    echo "| command | files a second, as multiples of the first |"
    echo "|---|---|"
    for i in "${!labels[@]}"; do
        sort -n "$work/times/$i" | awk -v label="${labels[i]}" '{ ratio[NR] = $1 }
            END { printf "| `%s` | %.2f (%.2f - %.2f) |\n", label, ratio[int((NR + 1) / 2)], ratio[1], ratio[NR] }'
    done
    echo
    echo "Medians of $rounds rounds, with the least and the greatest; $copies copies of $(basename "$raw") in memory."
    echo "$(lscpu | sed -n 's/^Model name: *//p'), $(dpkg-query -W -f '${Package} ${Version}, ' parallel libraw-bin)$(nproc) cores."
    # shellcheck disable=SC2016 # Markdown
    printf '\nMeasured with `%s`.\n' "$invocation"
}

measure
write_figures | tee build/throughput.md
[ $publish = no ] || publish docs/performance.md throughput build/throughput.md
