#!/usr/bin/env bash
# Holds the embedding guide to the program that it shows, and that program to converting a picture.
#
#   embedding_page_test.sh PAGE SOURCE HOST LIBRARY RAW

set -euo pipefail
page=$1 source=$2 host=$3 library=$4 raw=$5

diff "$source" <(sed -n '/^```c$/,/^```$/{//!p}' "$page") || { echo "the page does not show $source" && exit 1; }

pictures=$(mktemp -d)
trap 'rm -rf "$pictures"' EXIT
cp "$raw" "$pictures/снимок 写真 📷.CR2"
"$host" "$library" "" "${pictures//\//\\}\\" "снимок 写真 📷.CR2" "снимок 写真 📷.tif"
[ "$(head -c 2 "$pictures/снимок 写真 📷.tif")" = II ] || { echo "no TIFF" && exit 1; }
