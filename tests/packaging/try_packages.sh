#!/usr/bin/env bash
# Tries what scripts/package has made in a bare Debian 12: installs it, converts a picture, links a program with the
# library, and finds nothing left of it afterwards. Takes root's rights.
#
#   tests/packaging/try_packages.sh ROOT
#
# ROOT is the folder of a bare system. Where there is none, debootstrap makes one.

[ $# = 1 ] || { echo "usage: tests/packaging/try_packages.sh ROOT" >&2 && exit 2; }
root=$(realpath -m "$1")

# shellcheck source=scripts/lib.sh
. "$(dirname "$0")/../../scripts/lib.sh"

inside() {
    chroot "$root" env -i HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin "$@"
}

# step NAME COMMAND [ARGUMENT ...], in the bare system.
step() {
    say "$1"
    quietly "try-packages" inside "${@:2}"
}

leave() {
    umount -q "$root/proc" "$root/dev" || true
}

# Every file of the system but those of the package manager's own records.
files() {
    inside find / -xdev \( -path /var/lib/apt -o -path /var/lib/dpkg -o -path /var/cache -o -path /var/log \
        -o -path /tmp -o -path /proc -o -path /dev \) -prune -o -print | sort
}

# try_installation PREFIX
try_installation() {
    step "$1: its program converts" "$1/bin/raw-to-tiff" /root/try/sample.cr2 /root/try/sample.tif
    step "$1: programs link with its library" \
        /root/try/linking_test.sh "$1" lib/x86_64-linux-gnu /root/try/linking /root/try/sample.cr2
    rm "$root/root/try/sample.tif"
}

install_packages debootstrap
if [ ! -d "$root" ]; then
    say "making a bare system in $root"
    quietly debootstrap debootstrap --variant=minbase bookworm "$root" http://deb.debian.org/debian
fi
trap leave EXIT
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
cp /etc/resolv.conf "$root/etc/"
rm -rf "$root/root/try"
mkdir "$root/root/try"
cp -r build/packages/*.deb build/packages/*.tar.gz examples/linking tests/packaging/linking_test.sh "$root/root/try/"
cp samples/synthetic/5d2_1comp.cr2 "$root/root/try/sample.cr2"

step "updating the bare system's lists" apt-get update
step "installing what programs are built with" apt-get install -y --no-install-recommends gcc libc6-dev cmake make pkg-config
files >build/logs/files-before

step "installing the package" sh -c 'apt-get install -y --no-install-recommends /root/try/*.deb'
try_installation /usr
step "purging the package" apt-get purge -y raw-to-tiff

step "unpacking the tarball" sh -c 'mkdir /opt/raw-to-tiff && tar -xf /root/try/*.tar.gz -C /opt/raw-to-tiff --strip-components=1'
try_installation /opt/raw-to-tiff
rm -r "$root/opt/raw-to-tiff"

step "purging the libraries that came with the package" apt-get autoremove -y --purge
files | diff build/logs/files-before - || fail "something is left of the packages"
say "nothing is left"
