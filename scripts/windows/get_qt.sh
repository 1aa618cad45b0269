#!/usr/bin/env bash
# Puts the Qt that Windows programs are built against into FOLDER; quick and silent when it is there. It comes
# from the first of these archives: the one that SKUAN_WINDOWS_QT names; the one in ../shared/windows beside this
# project; the one in the cache, which build_qt.sh is run for the first time. usage: get_qt.sh FOLDER
set -euo pipefail
project=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
folder=$(realpath -m "$1")
arch=i686
cache=${XDG_CACHE_HOME:-~/.cache}/skuan
builder=$project/scripts/windows/build_qt.sh

# What FOLDER holds is told by the sum of an archive, or by the name of what this system builds.
archive=${SKUAN_WINDOWS_QT:-$project/../shared/windows/qt5-$arch.tar.xz}
if [[ -n ${SKUAN_WINDOWS_QT:-} || -f $archive ]]; then
    wanted=$(sha256sum "$archive" | head -c 64)
else
    wanted=$("$builder" --name "$arch")
    archive=$cache/$wanted.tar.xz
fi
there() { [[ -f $folder/made_from && $(<"$folder/made_from") == "$wanted" ]]; }
! there || exit 0

# One at a time: sessions share the cache, and perhaps FOLDER. The finished thing gets its name last.
mkdir -p "$cache"
exec {lock}>"$cache/qt.lock"
flock "$lock"
! there || exit 0

work=$cache/qt-work
if [[ ! -f $archive ]]; then
    "$project/dev" setup qt
    echo "Building Qt for Windows, once on this machine; the log is $work/log"
    rm -rf "$work" && mkdir "$work"
    "$builder" "$arch" "$work/qt5-$arch" "$work" >"$work/log" 2>&1 {lock}>&- || { tail -n 30 "$work/log" >&2; exit 1; }
    tar -C "$work" -cJf "$archive.new" "qt5-$arch"
    mv "$archive.new" "$archive"
    rm -rf "$work"
fi

echo "Unpacking Qt for Windows: $archive"
rm -rf "$folder.new" && mkdir -p "$folder.new"
tar -C "$folder.new" --strip-components=1 --touch -xf "$archive" # new files, so that a build sees the change
echo "$wanted" >"$folder.new/made_from"
rm -rf "$folder.old"
[[ ! -d $folder ]] || mv "$folder" "$folder.old"
mv "$folder.new" "$folder"
rm -rf "$folder.old"
