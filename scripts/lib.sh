# What the scripts share. Sourced, with the project's root as the working folder.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export LC_ALL=C.UTF-8

# One line for each step.
say() { printf '==> %s\n' "$*"; }

fail() {
    printf '==> FAILED: %s\n' "$*" >&2
    exit 1
}

# Runs a step quietly: what it prints goes to a log, and from there to the terminal when it fails.
# quietly NAME COMMAND [ARGUMENT ...]
quietly() {
    local log="build/logs/$1.log"
    shift
    mkdir -p build/logs
    "$@" >"$log" 2>&1 && return
    tail -n 60 "$log" >&2
    fail "$* (all of its output is in $log)"
}

# Installs the Debian packages that are not there yet. It takes root to do so.
# install_packages PACKAGE ...
install_packages() {
    local missing
    missing=$(comm -13 <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' 2>/dev/null |
        sed -n 's/^installed //p' | sort -u) <(printf '%s\n' "$@" | sort -u))
    [ -z "$missing" ] && return
    [ "$(id -u)" = 0 ] || fail "these Debian packages are missing, and only root can install them:" $missing
    say "installing" $missing
    quietly apt-update apt-get update
    DEBIAN_FRONTEND=noninteractive quietly apt-install apt-get install -y --no-install-recommends $missing
}

build_packages=(g++ cmake ninja-build pkg-config libraw-dev libtiff-dev liblcms2-dev libhwy-dev libseccomp-dev
    libcli11-dev nlohmann-json3-dev libturbojpeg0-dev libgtest-dev)
windows_packages=(g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix wine wine64 libc6-i386 googletest)

# Sets sample_picture to a real camera's picture, an EOS 30D raw file of Debian's rawtran-doc. A machine that
# leaves out what packages put under /usr/share/doc gets it straight from the package.
find_sample_picture() {
    sample_picture=/usr/share/doc/rawtran/IMG_5952.CR2
    [ -f "$sample_picture" ] && return
    sample_picture=$PWD/build/rawtran-doc/usr/share/doc/rawtran/IMG_5952.CR2
    [ -f "$sample_picture" ] && return
    say "unpacking the sample picture of rawtran-doc"
    mkdir -p build/rawtran-doc
    quietly rawtran-doc bash -c 'cd build/rawtran-doc && apt-get download rawtran-doc && dpkg-deb -x rawtran-doc_*.deb .'
    [ -f "$sample_picture" ] || fail "rawtran-doc holds no $sample_picture"
}

# Configures and builds a preset.
# build_preset PRESET [TARGET ...]
build_preset() {
    local preset=$1
    shift
    say "building: $preset"
    quietly "$preset-configure" cmake --preset "$preset"
    quietly "$preset-build" cmake --build --preset "$preset" ${1:+--target "$@"}
}

# Puts a file's text into a page, between the lines <!-- NAME --> and <!-- end of NAME -->.
# publish PAGE NAME FILE
publish() {
    local begin="<!-- $2 -->" end="<!-- end of $2 -->"
    [ "$(grep -xF -e "$begin" -e "$end" "$1")" = "$begin"$'\n'"$end" ] || fail "$1 lacks its two markers of $2"
    sed -i -e "/^$begin\$/r $3" -e "/^$begin\$/,/^$end\$/ { /^$begin\$/!{ /^$end\$/!d } }" "$1"
    say "wrote $1"
}
