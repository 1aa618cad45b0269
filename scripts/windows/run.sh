#!/usr/bin/env bash
# Runs a Windows program as if it were one of this system: same arguments, folder, environment, pipes and
# exit code. It finds the DLLs of this project's build, or those in SKUAN_DLLS (folders with colons
# between). Outside of scripts/windows/in_runner.sh it opens a runner for this one program.
# usage: run.sh PROGRAM [ARGS...]
set -euo pipefail
project=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
[[ -n ${SKUAN_RUNNER:-} ]] || exec "$project/scripts/windows/in_runner.sh" "$0" "$@"

IFS=: read -ra folders <<<"${SKUAN_DLLS:-$project/build/win32/bin:$project/build/windows/qt5-i686/bin}"
dll_path=
for folder in "${folders[@]}"; do
    dll_path+="Z:${folder//\//\\};"
done

# Wine keeps QT_* from the program unless they are given with a prefix.
environment=()
while IFS='=' read -r -d '' name value; do
    case $name in
    QT_*) environment+=("WINE$name=$value") ;;
    PATH | HOME | TMPDIR | LD_* | BASH* | PWD | OLDPWD | SHLVL | _ | SKUAN_*) ;;
    *) environment+=("$name=$value") ;;
    esac
done < <(env -0)

exec chroot "$SKUAN_RUNNER" env -i HOME=/root PATH=/usr/bin:/bin XDG_RUNTIME_DIR=/tmp WINEDEBUG="${WINEDEBUG--all}" \
    WINEDLLOVERRIDES='mscoree,mshtml=' WINEPREFIX=/root/windows WINEPATH="$dll_path" "${environment[@]}" \
    sh -c 'cd "$0" && exec wine "$@"' "$PWD" "$@"
