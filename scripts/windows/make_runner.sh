#!/usr/bin/env bash
# Makes the folder in which 32-bit and 64-bit Windows programs run here: a Debian 13 tree with wine 10,
# whose 64-bit Linux half runs 32-bit programs by itself. (Debian 12's own wine is older, and its 32-bit
# packages do not go beside an up-to-date Debian 12.) About a minute, 330 MB to fetch, 3.4 GB on disk.
# Needs root and the right to mount; nothing stays mounted. usage: make_runner.sh ROOT
set -euo pipefail
root=$(realpath -m "$1")

# In a mount namespace of its own, so that whatever happens no mount is left in the tree.
if [[ ${2:-} != inside ]]; then
    rm -rf "$root.new" && mkdir -p "$root.new"
    unshare --mount --propagation private "$0" "$root.new" inside
    rm -rf "$root" && mv "$root.new" "$root"
    exit
fi

# The mirror that this machine already uses.
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' | grep -v security | head -n 1)
debootstrap --variant=minbase trixie "$root" "$mirror"
cp /etc/resolv.conf /etc/hosts "$root/etc/"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
echo 'APT::Install-Recommends "false";' >"$root/etc/apt/apt.conf.d/90lean"

inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive HOME=/root "$@"; }
inside apt-get -q update
inside apt-get -qy install wine wine64
# What wine lacks for 32-bit programs is Windows code only: unpacked rather than installed, it needs no
# 32-bit Linux library.
inside dpkg --add-architecture i386
inside apt-get -q update
inside sh -ec '
    cd /tmp
    apt-get -q download libwine:i386
    dpkg-deb -x libwine_*_i386.deb x32
    cp -a x32/usr/lib/i386-linux-gnu/wine/i386-windows/. /usr/lib/x86_64-linux-gnu/wine/i386-windows/
    rm -rf x32 libwine_*.deb'
inside dpkg --remove-architecture i386
inside apt-get clean
inside env WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' WINEPREFIX=/root/windows wineboot -i
inside env WINEPREFIX=/root/windows wineserver -w
