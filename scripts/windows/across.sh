#!/usr/bin/env bash
# Runs a test program with its simulated servers in a process of the other system; programs that end in .exe are
# Windows ones. For scripts/windows/in_runner.sh, which lets both see one network.
# usage: across.sh BUILD_OF_SERVERS BUILD_OF_TEST TEST [ARGS...]
# It ends with 77, for a skipped test, where a build's folder is not there.
set -euo pipefail
scripts=$(dirname "${BASH_SOURCE[0]}")
for build in "$1" "$2"; do
    [[ -d $build ]] || {
        echo "Skipped: there is no $build to take programs from."
        exit 77
    }
done
servers=$(realpath "$1") tests=$(realpath "$2") name=$3
shift 3

# run BUILD LIBRARIES PROGRAM...: with those of that folder before others
run() {
    local build=$1 libraries=$2 program=$1/tests/$3
    shift 3
    if [[ -f $program.exe ]]; then
        SKUAN_DLLS=$libraries:$build/bin:$build/../windows/qt5-i686/bin exec "$scripts/run.sh" "$program.exe" "$@"
    else
        LD_LIBRARY_PATH=$libraries exec "$program" "$@"
    fi
}

coproc stations { run "$servers" "$servers/bin" stations; }
# shellcheck disable=SC2154 # the shell itself sets stations_PID
process=$stations_PID
exec 3<&"${stations[0]}"
trap 'kill "$process"' EXIT
read -r -u 3 place

# Sockets of Windows programs cost some ten times as much here.
export SKUAN_TRAFFIC_SHARE=${SKUAN_TRAFFIC_SHARE:-10}
code=0
(SKUAN_STATIONS=${place%$'\r'} run "$tests" "$tests/across" "$name" "$@") || code=$?
kill "$process"
trap - EXIT
count=$(grep -c '^a server at ' <&3) || {
    echo "No server of $servers was asked for." >&2
    exit 1
}
echo "$count servers, all of $servers"
exit "$code"
