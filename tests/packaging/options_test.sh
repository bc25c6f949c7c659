#!/usr/bin/env bash
# Holds the manual page and the completions to the options that the program has, and to what their readers accept.
#
#   options_test.sh PROGRAM SOURCE-ROOT

set -euo pipefail
program=$1
sources=$(realpath "$2")
manual_page=$sources/docs/raw-to-tiff.1
completions=$sources/packaging/completions/raw-to-tiff

# Compares the options on standard input, one a line, with those of --help.
check() {
    local missing
    missing=$(comm -3 --output-delimiter='not in --help: ' <(sort -u <<<"$options") <(sort -u)) || exit 1
    [ -z "$missing" ] || { printf '%s differs from --help in\n%s\n' "$1" "$missing" && exit 1; }
}

# What bash offers for the last of these words.
offers() {
    COMP_WORDS=(raw-to-tiff "$@") COMP_CWORD=$#
    _raw_to_tiff
    printf '%s\n' "${COMPREPLY[@]}"
}

# offers_only WANT WORD ...
offers_only() {
    local want=$1 offered
    shift
    offered=$(offers "$@" | xargs)
    [ "$offered" = "$want" ] || { echo "bash offers '$offered' for '$*', not '$want'" && exit 1; }
}

options=$("$program" --help | sed -n 's/^  \(-[^ ]*\).*/\1/p' | tr , '\n')
[ "$(wc -l <<<"$options")" -gt 20 ] || { echo "--help has another form: $options" && exit 1; }

sed -n 's/^\.It Fl //p' "$manual_page" | sed 's/ \(Ar\|Cm\) .*//; s/^/-/; s/ , /\n-/' | check "$manual_page"
sed -n "s/^ *'\(([^)]*)\)\?'\?{\?\(-[^}[]*\).*/\2/p" "$completions.zsh" | tr , '\n' | tr -d '=+' | check "$completions.zsh"
grep -oE -- ' -[ls] [^ ]+' "$completions.fish" | sed 's/ -l /--/; s/ -s /-/' | check "$completions.fish"
# shellcheck source=/dev/null
. "$completions.bash"
offers - | check "$completions.bash"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
touch a.CR2 a.crw a.tif
mkdir 'b c'
offers_only --existing --ex
offers_only overwrite --existing = ov
offers_only newer --existing n
offers_only 'a.CR2 a.crw' a
offers_only 'b c' b
offers_only 'b c a.tif' -o ''
offers_only a.tif --log a.t

# Where they are installed, as scripts/test sees to.
! command -v zsh >/dev/null || zsh -n "$completions.zsh"
! command -v fish >/dev/null || fish --no-execute "$completions.fish"
! command -v mandoc >/dev/null || mandoc -T lint -W warning "$manual_page"
