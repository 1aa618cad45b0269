#!/usr/bin/env bash
# Builds for Windows the Qt that this machine's own programs use, from the distribution's source package:
# shared libraries, with the tools (moc, rcc) that run here, and no more modules than the tree links. Needs
# no root. About 10 minutes on two cores for Core and Network; ccache, where there is one, makes a second time short.
# usage: build_qt.sh i686|x86_64 PREFIX WORKDIR; the folder WORKDIR may be deleted afterwards
#        build_qt.sh --name i686|x86_64: the name of what would be built, which is another one whenever
#        something is different about it
set -euo pipefail
modules=(Core Network) # also known: Gui, Widgets (wants Gui), Test

self=$(realpath "${BASH_SOURCE[0]}")
if [[ ${1:-} == --name ]]; then
    version=$(dpkg-query -W -f '${source:Version}' libqt5core5a)
    wanted=${modules[*],,}
    echo "qt-$version-$2-${wanted// /-}-$(sha256sum "$self" | head -c 12)"
    exit
fi
arch=$1 prefix=$(realpath -m "$2") work=$(realpath -m "$3")
triple=$arch-w64-mingw32
jobs=${SKUAN_JOBS:-$(nproc)}

left_out=()
for module in Gui Widgets Test; do
    [[ " ${modules[*]} " != *" $module "* ]] || continue
    case $module in
    Test) left_out+=(-no-feature-testlib) ;;
    *) left_out+=("-no-${module,,}") ;;
    esac
done

# The sources come from where this machine's packages come from, through lists of their own, so that its own
# configuration stays as it is.
mkdir -p "$work"/apt/{lists,cache}/partial "$work"/{build,bin}
# shellcheck source=/dev/null
release=$(. /etc/os-release && echo "$VERSION_CODENAME")
# shellcheck disable=SC2016 # apt-get expands these
apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
    awk -v release="$release" '$2 ~ "^" release "(-updates|-security)?$" && $3 == "main" {
        print "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg]", $0 }' >"$work/apt/sources.list"
apt=(apt-get -qq -o Dir::Etc::SourceList="$work/apt/sources.list" -o Dir::Etc::SourceParts=/dev/null
    -o Dir::State::Lists="$work/apt/lists" -o Dir::Cache="$work/apt/cache" -o APT::Sandbox::User=)
"${apt[@]}" update
version=$(dpkg-query -W -f '${source:Version}' libqt5core5a)
rm -rf "$work/source" && mkdir "$work/source"
(
    cd "$work/source"
    # The archive keeps the newest only; what it then differs in are the distribution's own patches.
    "${apt[@]}" source "qtbase-opensource-src=$version" || "${apt[@]}" source qtbase-opensource-src
    mv qtbase-opensource-src-*/ qt # the same paths for each version, so that ccache knows them again
)

# Qt's description of this target calls the compiler by its plain name, behind which is either of two variants.
for tool in gcc g++; do
    printf '#!/bin/sh\nexec %s %s "$@"\n' "$(command -v ccache)" "$triple-$tool-posix" >"$work/bin/$triple-$tool"
    chmod +x "$work/bin/$triple-$tool"
done
export PATH=$work/bin:$PATH MAKEFLAGS=-j$jobs CCACHE_BASEDIR=$work CCACHE_NOHASHDIR=yes

cd "$work/build"
../source/qt/configure -xplatform win32-g++ -device-option CROSS_COMPILE="$triple-" -prefix "$prefix" \
    -opensource -confirm-license -release -shared -no-pch -silent \
    -nomake examples -nomake tests -nomake tools -no-compile-examples "${left_out[@]}" \
    -no-openssl -no-schannel -no-dbus -no-icu -no-glib -no-opengl -no-feature-vulkan \
    -qt-zlib -qt-pcre -qt-libpng -qt-freetype -qt-harfbuzz -no-libjpeg \
    -no-sql-odbc -no-feature-sql -no-feature-printer -no-feature-tabletevent \
    -no-feature-direct2d -no-feature-concurrent -no-feature-xml -no-feature-bearermanagement
make
make install

# The compiler's own run-time libraries stand beside Qt's, which load them.
runtime=$(dirname "$("$triple-g++-posix" -print-file-name=libstdc++-6.dll)")
cp "$runtime"/lib{stdc++-6,gcc_s_*}.dll "/usr/$triple/lib/libwinpthread-1.dll" "$prefix/bin/"
"$triple-strip" "$prefix"/bin/*.dll
rm -f "$prefix"/bin/{qlalr,qvkgen,tracegen,*.pl} "$prefix/lib/libQt5Bootstrap.a"
find "$prefix/bin" -type f ! -name '*.*' -exec strip {} +
