#!/usr/bin/env bash
# Counts how many damages to the pixel data raw-to-tiff and other converters notice: the same ones for all, by the exit
# code or a missing TIFF, or by the word "corrupt" in what they print.
#
#   bench/noticed.sh [--install] [--publish] SHARE FILE ...    one of SHARE damages of damage_sweep to each file
#
#   --install     first installs the others
#   --publish     puts the table into docs/reliability.md
#
# It builds nothing, and takes hours for a small SHARE. The table goes to the terminal and to build/noticed.md: for each
# converter the damages that it noticed, and in brackets how many of them by the exit code or a missing TIFF.

# shellcheck source=scripts/lib.sh
. "$(dirname "$0")/../scripts/lib.sh"

programs=(raw-to-tiff dcraw_emu dcraw rawtherapee-cli darktable-cli)

publish=no
while [[ ${1-} = --* ]]; do
    case $1 in
    --install) install_packages libraw-bin dcraw rawtherapee darktable ;;
    --publish) publish=yes ;;
    *) break ;;
    esac
    shift
done
[[ $# -ge 2 && $1 =~ ^[1-9][0-9]*$ ]] || fail "usage: bench/noticed.sh [--install] [--publish] SHARE FILE ..."
share=$1
shift
sweep=build/release/tests/sdk/open/damage_sweep
[ -x $sweep ] || fail "there is no $sweep: build the preset release"
for program in "${programs[@]:1}"; do
    command -v "$program" >/dev/null || fail "$program is missing: bench/noticed.sh --install installs it"
done

work=$(mktemp -d /dev/shm/noticed.XXXXXX)
trap 'rm -rf "$work"' EXIT
export work PATH=$PWD/build/release/cli:$PATH TMPDIR=$work

# convert_with PROGRAM RAW TIFF
convert_with() {
    case $1 in
    raw-to-tiff) raw-to-tiff "$2" "$3" ;;
    dcraw_emu) dcraw_emu -T -6 -Z "$3" "$2" ;;
    dcraw) dcraw -T -6 -c "$2" >"$3" ;;
    rawtherapee-cli) rawtherapee-cli -q -Y -t -b16 -o "$3" -c "$2" ;;
    darktable-cli) darktable-cli "$2" "$3" --core --library :memory: --configdir "$work/darktable" ;;
    esac
}

# Fails where the program has noticed the damage.
# takes PROGRAM RAW TIFF
takes() {
    if ! convert_with "$@" >"$work/messages" 2>&1 || [ ! -s "$3" ]; then
        echo >>"$work/by_exit"
        return 1
    fi
    ! grep -qi corrupt "$work/messages"
}
{ declare -f convert_with takes && echo 'takes "$@"'; } >"$work/takes" # sh passes no functions on

# Prints how many of a file's damages a program noticed, and sets n_damages.
# count PROGRAM FILE
count() {
    local refused same other by_exit
    : >"$work/by_exit"
    if ! DAMAGE_SWEEP_CONVERTER="exec bash '$work/takes' $1 \"\$1\" \"\$2\"" \
        $sweep "$share" "$2" >"$work/table" 2>"$work/errors"; then
        noticed="cannot read it"
        return
    fi
    read -r _ refused same other _ < <(tail -n 1 "$work/table")
    by_exit=$(wc -l <"$work/by_exit")
    n_damages=$((refused + same + other))
    noticed="$refused ($by_exit)"
}

{
    printf '| | damages |'
    printf ' `%s` |' "${programs[@]}"
    printf '\n|---|--:|%s\n' "$(printf -- '--:|%.0s' "${programs[@]}")"
    for file; do
        row='' n_damages=0
        for program in "${programs[@]}"; do
            count "$program" "$file"
            row+=" $noticed |"
        done
        printf '| `%s` | %d |%s\n' "$(basename "$file")" "$n_damages" "$row"
    done
} | tee build/noticed.md
[ $publish = no ] || publish docs/reliability.md noticed build/noticed.md
