#!/usr/bin/env bash
# Compares raw-to-tiff with other raw converters: time and memory of whole processes, and what the pictures are worth
# where the truth is known (X.truth.tif beside X.cr2 or X.crw). The files lie in memory: no disk is measured.
#
#   bench/compare.sh [--install] [--publish] [-n RUNS] [-p PROGRAM] RAW ...
#
#   --install     first installs the other converters and the tools
#   --publish     puts the figures into docs/performance.md and docs/performance.svg; takes 7 runs or more
#   -n RUNS       how often each command is timed: 7 unless said otherwise
#   -p PROGRAM    our program: build/release/cli/raw-to-tiff unless said otherwise
#
# It builds nothing. The figures go to the terminal and, with the plot, to build/compare/.

usage() {
    echo "usage: bench/compare.sh [--install] [--publish] [-n RUNS] [-p PROGRAM] RAW ..." >&2
    exit 2
}

invocation="bench/compare.sh $*"
install=no publish=no runs=7 program=
while [ $# -gt 0 ]; do
    case $1 in
    --install) install=yes ;;
    --publish) publish=yes ;;
    -n) runs=${2-} && shift ;;
    -p) program=$(realpath -ms -- "${2-}") && shift ;;
    -*) usage ;;
    *) break ;;
    esac
    shift || usage
done
[ $# -gt 0 ] || usage
[[ $runs =~ ^[1-9][0-9]*$ ]] || usage
mapfile -t raws < <(realpath -ms -- "$@")

. "$(dirname "$0")/../scripts/lib.sh"

# The folder's name tells files of the same name apart.
name_of() { printf '%s/%s\n' "$(basename "$(dirname "$1")")" "$(basename "$1")"; }

root=$PWD
program=${program:-$root/build/release/cli/raw-to-tiff}
tools=(hyperfine time python3-numpy python3-tifffile)
peers=(libraw-bin dcraw rawtherapee darktable graphicsmagick)

[ $install = no ] || install_packages "${tools[@]}" "${peers[@]}"
[ $publish = no ] || [ "$runs" -ge 7 ] || fail "figures of fewer than 7 runs are not published"
[ -x "$program" ] || fail "there is no program $program: build it, or name another with -p"
for raw in "${raws[@]}"; do
    [ -f "$raw" ] || fail "there is no raw file $raw"
done
twins=$(for raw in "${raws[@]}"; do name_of "$raw"; done | sort | uniq -d)
[ -z "$twins" ] || fail "two raw files would both be called" $twins
for tool in hyperfine /usr/bin/time bench/quality.py; do
    command -v "$tool" >/dev/null || fail "$tool is missing: bench/compare.sh --install installs it"
done
bench/quality.py --self-check || fail "the measure of quality is wrong"

results=$root/build/compare
rm -rf "$results"
mkdir -p "$results"
touch "$results/notes"
work=$(mktemp -d /dev/shm/compare.XXXXXX)
trap 'rm -rf "$work"' EXIT
cd "$work"

# Every converter begins with its own defaults, whatever the user has set.
export HOME=$work/home XDG_CONFIG_HOME=$work/home/config XDG_CACHE_HOME=$work/home/cache XDG_DATA_HOME=$work/home/data
mkdir -p "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_DATA_HOME"

# A line that stands below the figures, once.
note() {
    grep -qxF -- "$*" "$results/notes" && return
    say "$*"
    printf '%s\n' "$*" >>"$results/notes"
}

# Every command turns $picture into picture.tif, or picture.tiff where a converter names it so.
declare -a labels commands

# add LABEL COMMAND [ARGUMENT ...]
add() {
    labels+=("$1")
    commands+=("$(printf '%q ' "${@:2}")")
}

# The same, for a converter that may not be there.
add_peer() {
    if command -v "$2" >/dev/null; then
        add "$@"
    else
        note "$2 is left out: it is not installed."
    fi
}

write_rawtherapee_profiles() {
    local method
    for method in rcd amaze; do
        printf '[RAW Bayer]\nMethod=%s\n\n[Color Management]\nInputProfile=(camera)\n' $method >$method.pp3
    done
}

# Wherever a converter has a choice, it writes 16 bits without compression in sRGB with sRGB's own curve, with the white
# balance as shot and the brightness as it is, so that all do the same work.
list_commands() {
    local quality
    local as_shot=(-w -W -o 1 -g 2.4 12.92 -T -6)
    local rawtherapee=(rawtherapee-cli -q -Y -t -b16 -o picture.tif)
    local darktable=(darktable-cli "$picture" picture.tif --core --disable-opencl --library :memory:
        --conf write_sidecar_files=never --conf plugins/imageio/format/tiff/bpp=16
        --conf plugins/imageio/format/tiff/compress=0)
    labels=() commands=()
    add "raw-to-tiff" "$program" "$picture" picture.tif
    add "raw-to-tiff, one core" taskset -c "$first_core" "$program" "$picture" picture.tif
    for quality in 0 2 3 4 11 12; do
        add_peer "dcraw_emu -q $quality" dcraw_emu "${as_shot[@]}" -c 0 -q $quality -Z picture.tif "$picture"
    done
    for quality in 0 3; do
        add_peer "dcraw -q $quality" dcraw "${as_shot[@]}" -q $quality "$picture"
    done
    add_peer "RawTherapee" "${rawtherapee[@]}" -d -c "$picture"
    add_peer "RawTherapee RCD" "${rawtherapee[@]}" -p rcd.pp3 -c "$picture"
    add_peer "RawTherapee AMaZE" "${rawtherapee[@]}" -p amaze.pp3 -c "$picture"
    add_peer "darktable" "${darktable[@]}"
    add_peer "darktable, no tone curve" "${darktable[@]}" --conf plugins/darkroom/workflow=none
    add_peer "GraphicsMagick" gm convert "$picture" -depth 16 picture.tif
}

# judge RAW LABEL: the four figures of picture.tif, or four dashes where the truth is not known.
judge() {
    local truth=${1%.*}.truth.tif figures
    if [ -f "$truth" ]; then
        if figures=$("$root/bench/quality.py" "$truth" picture.tif 2>reason); then
            printf '%s\n' "$figures"
            return
        fi
        note "The picture of $2 is not judged: $(tail -n 1 reason)." >&2
    fi
    printf -- '-\t-\t-\t-\n'
}

# run_once COMMAND: takes down the peak memory of its largest process, in KiB. It fails where no picture comes of it.
run_once() {
    rm -f picture.tif picture.tiff
    /usr/bin/time -q -f %M -o peak sh -c "exec $1" >log 2>&1 || return
    [ ! -f picture.tiff ] || mv picture.tiff picture.tif
    [ -s picture.tif ]
}

# try_out RAW FOLDER: runs every command once, which also fills the caches; drops what fails, and judges the pictures.
try_out() {
    local i
    for i in "${!commands[@]}"; do
        if run_once "${commands[i]}"; then
            printf '%s\t%s\t%s\t%s\n' "${labels[i]}" "$(cat peak)" "$(judge "$1" "${labels[i]}")" "${commands[i]}" \
                >>"$2/trials.tsv"
        else
            [ "$i" -gt 1 ] || fail "$program cannot convert $1: $(tail -n 1 log)"
            note "${labels[i]} is left out for $(name_of "$1"), where it failed."
            unset "labels[i]" "commands[i]"
        fi
    done
}

# measure FOLDER: times every command RUNS times, one after the other and then back again, so that a drift of the
# machine hits all alike.
measure() {
    local round i order arguments
    for ((round = 1; round <= runs; ++round)); do
        order=("${!commands[@]}")
        [ $((round % 2)) = 1 ] || mapfile -t order < <(printf '%s\n' "${order[@]}" | tac)
        arguments=()
        for i in "${order[@]}"; do
            arguments+=(--command-name "${labels[i]}" "${commands[i]}")
        done
        hyperfine --shell=none --style none --runs 1 --prepare 'rm -f picture.tif picture.tiff' \
            --export-csv "$1/round-$round.csv" "${arguments[@]}" >log 2>&1 || fail "$(tail -n 1 log)"
    done
}

describe_machine() {
    local model cores
    model=$(lscpu | sed -n 's/^Model name: *//p')
    cores=$(nproc)
    printf '%s, %s cores, %s GiB of memory, Linux %s, %s.\n' "$model" "$cores" \
        "$(awk '/^MemTotal/ { printf "%.0f", $2 / 1048576 }' /proc/meminfo)" "$(uname -r)" \
        "$(. /etc/os-release && echo "$PRETTY_NAME")"
    printf 'Packages: %s.\n' "$(dpkg-query -W -f '${Package} ${Version}\n' "${peers[@]}" hyperfine 2>/dev/null |
        sed 's/$/,/' | xargs | sed 's/,$//')"
}

note_load() {
    local load
    read -r load _ </proc/loadavg
    awk "BEGIN { exit !($load > 0.5) }" || return 0
    note "Other programs were at work when the runs began (load average $load): these times are not to be relied on."
}

first_core=$(taskset -cp $$ | sed 's/.*: //; s/[,-].*//')
printf '%s\n' "$invocation" >"$results/invocation"
describe_machine >"$results/machine"
note_load
write_rawtherapee_profiles
for i in "${!raws[@]}"; do
    raw=${raws[i]}
    folder=$results/$i
    mkdir "$folder"
    name_of "$raw" >"$folder/name"
    picture=picture.${raw##*.}
    cp "$raw" "$picture" # a link would do, but not for darktable
    list_commands
    say "$(name_of "$raw"): trying out ${#commands[@]} commands"
    try_out "$raw" "$folder"
    say "$(name_of "$raw"): timing ${#commands[@]} commands, $runs runs each"
    measure "$folder"
    rm -f picture.*
done
"$root/bench/report.py" "$results" >"$results/figures.md"
cat "$results/figures.md"
if [ $publish = yes ]; then
    publish "$root/docs/performance.md" figures "$results/figures.md"
    cp "$results/performance.svg" "$root/docs/"
    say "wrote docs/performance.svg"
fi
