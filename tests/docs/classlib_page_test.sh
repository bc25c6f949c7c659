#!/usr/bin/env bash
# Holds a page of documentation to the programs that it shows: each listing is the source file that it names, and the
# program prints what stands under it.
#
#   classlib_page_test.sh PAGE SOURCE-ROOT PROGRAM-FOLDER

set -euo pipefail
page=$1 sources=$2 programs=$3

shown=$(mktemp -d)
trap 'rm -rf "$shown"' EXIT
awk -v folder="$shown" '
    /^<!-- .*\.cpp -->$/ { count = split($2, parts, "/"); name = parts[count]; print $2 > (folder "/" name ".source") }
    /^```/ { target = ""; if ($0 == "```cpp") target = name ".listing"; if ($0 == "```text") target = name ".output"; next }
    target { print > (folder "/" target) }
' "$page"

n_programs=0
for source in "$shown"/*.source; do
    name=$(basename "$source" .source)
    diff "$sources/$(cat "$source")" "$shown/$name.listing" || { echo "the page does not show $name" && exit 1; }
    "$programs/${name%.cpp}" | diff "$shown/$name.output" - || { echo "$name prints something else" && exit 1; }
    n_programs=$((n_programs + 1))
done
echo "$n_programs programs"
[ "$n_programs" = "$(ls "$sources"/examples/classlib/*.cpp | wc -l)" ] || { echo "a program is not on the page" && exit 1; }
