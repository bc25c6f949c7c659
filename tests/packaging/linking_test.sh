#!/usr/bin/env bash
# Builds the program of examples/linking against an installed library, once with CMake and once with pkg-config, and has
# it convert a picture.
#
#   linking_test.sh PREFIX LIBRARY-FOLDER EXAMPLE RAW

set -euo pipefail
prefix=$1 libraries=$1/$2 example=$3 raw=$4

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$raw" "$work/IMG_0001.CR2"

with_cmake() {
    cmake -S "$example" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" >"$work/log"
    cmake --build "$work/cmake" >>"$work/log" || { cat "$work/log" && exit 1; }
}

with_pkg_config() {
    local flags
    mkdir "$work/pkg-config"
    read -ra flags < <(PKG_CONFIG_PATH=$libraries/pkgconfig pkg-config --cflags --libs raw_to_tiff)
    cc -std=c11 -Wall -Wextra -Werror "$example/linked_host.c" -o "$work/pkg-config/linked_host" "${flags[@]}"
}

with_cmake
with_pkg_config
cd "$work"
for program in cmake pkg-config; do
    LD_LIBRARY_PATH=$libraries "$program/linked_host"
    [ "$(head -c 2 IMG_0001.tif)" = II ] || { echo "no TIFF" && exit 1; }
    rm IMG_0001.tif
done
