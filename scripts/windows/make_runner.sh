#!/usr/bin/env bash
# Makes the folder in which 32-bit and 64-bit Windows programs run here: a Debian 13 tree with wine 10,
# whose 64-bit Linux half runs 32-bit programs by itself. (Debian 12's own wine is older, and its 32-bit
# packages do not go beside an up-to-date Debian 12.) About a minute, 330 MB to fetch, 3.4 GB on disk.
# Needs root and the right to mount; nothing stays mounted, and ROOT is there once it is whole.
# usage: make_runner.sh ROOT
set -euo pipefail
root=$(realpath -m "$1")

fail() {
    echo "make_runner: $*" >&2
    exit 1
}

# In a mount namespace of its own, so that whatever happens no mount is left in the tree.
if [[ ${2:-} != inside ]]; then
    command -v debootstrap >/dev/null || fail "needs debootstrap: ./dev setup runner"
    [[ $(uname -m) == x86_64 ]] || fail "wine's 64-bit half runs on x86_64 only"
    trap 'rm -rf "$root.new"' EXIT
    rm -rf "$root.new" && mkdir -p "$root.new"
    unshare --mount --propagation private "$0" "$root.new" inside
    rm -rf "$root" && mv "$root.new" "$root"
    exit
fi

# The mirror that this machine already uses for Debian itself.
# shellcheck source=/dev/null
release=$(. /etc/os-release && echo "$VERSION_CODENAME")
# shellcheck disable=SC2016 # apt-get expands these
mirror=$(apt-get indextargets --format '$(RELEASE)/$(COMPONENT) $(REPO_URI)' 'Created-By: Packages' |
    awk -v wanted="$release/main" '$1 == wanted { mirror = $2 } END { print mirror }')
[[ -n $mirror ]] || fail "apt knows no mirror with the main packages of this Debian"
debootstrap --force-check-gpg --variant=minbase trixie "$root" "$mirror"
for file in /etc/resolv.conf /etc/hosts; do
    [[ ! -f $file ]] || cp "$file" "$root/etc/"
done
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
inside sh -c 'apt-get clean && rm -rf /var/lib/apt/lists/*'
inside env XDG_RUNTIME_DIR=/tmp WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' WINEPREFIX=/root/windows wineboot -i
inside env WINEPREFIX=/root/windows wineserver -w
