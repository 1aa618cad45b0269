#!/usr/bin/env bash
# Runs a Windows program as if it were one of this system: same arguments, folder, environment, pipes and
# exit code (of which, as always here, the lowest eight bits; wine sees to it that only 0 gives 0). It finds
# the DLLs of this project's build, or those in SKUAN_DLLS (folders with colons between). Outside of
# scripts/windows/in_runner.sh it opens a runner for this one program. WINEDEBUG is for wine to obey.
# usage: run.sh PROGRAM [ARGS...]
set -euo pipefail
project=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
[[ -n ${SKUAN_RUNNER:-} ]] || exec "$project/scripts/windows/in_runner.sh" "$0" "$@"

IFS=: read -ra folders <<<"${SKUAN_DLLS:-$project/build/win32/bin:$project/build/windows/qt5-i686/bin}"
dll_path=
for folder in "${folders[@]}"; do
    dll_path+="Z:${folder//\//\\};"
done

# What describes this system stays here. Wine keeps QT_* from the program unless they are given with a prefix.
environment=()
while IFS='=' read -r -d '' name value; do
    case $name in
    PATH | HOME | TMPDIR | LD_* | LANG | LANGUAGE | LC_* | XDG_* | BASH* | PWD | OLDPWD | SHLVL | _) ;;
    SKUAN_RUNNER | SKUAN_DLLS) ;;
    QT_*) environment+=("WINE$name=$value") ;;
    *) environment+=("$name=$value") ;;
    esac
done < <(env -0)

# shellcheck disable=SC2016 # that shell is to expand these
exec chroot "$SKUAN_RUNNER" env -i WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' "${environment[@]}" \
    HOME=/root PATH=/usr/bin:/bin LC_ALL=C.UTF-8 XDG_RUNTIME_DIR=/tmp WINEPREFIX=/root/windows WINEPATH="$dll_path" \
    sh -c 'cd "$0" && exec wine "$@"' "$PWD" "$@"
