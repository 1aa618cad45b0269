#!/usr/bin/env bash
# Plays a transcript (its form: tests/tools/skuanctl_test.cpp) with the command line of one system to the simulator
# of the other: every byte must be as written. For scripts/windows/in_runner.sh, which lets both see one network.
# usage: command_line.sh BUILD_OF_SIMULATOR BUILD_OF_COMMAND_LINE TRANSCRIPT
# It ends with 77, for a skipped test, where a build's folder is not there.
set -euo pipefail
scripts=$(realpath "$(dirname "$0")/../../scripts/windows") servers=$1 clients=$2 transcript=$3
address=127.255.$(($$ >> 8 & 255)).$(($$ & 255))
for build in "$servers" "$clients"; do
    [[ -d $build ]] || {
        echo "Skipped: there is no $build to take programs from."
        exit 77
    }
done
folder=$(mktemp -d)
trap 'rm -rf "$folder"; kill "${process:-}" 2>/dev/null || true' EXIT

program() { # BUILD NAME ARGS...
    local path=$1/bin/$2
    shift 2
    if [[ -f $path.exe ]]; then exec "$scripts/run.sh" "$path.exe" "$@"; else exec "$path" "$@"; fi
}
play() { # COMMAND, whose input lies in the folder: all of it as a transcript has it
    local words code=0
    read -ra words <<<"${1//'\e'/$'\e'}"
    # Into files: a pipe stays open as long as what wine itself starts, with the first program that wants it.
    (program "$clients" skuanctl --host "$address" "${words[@]}") <"$folder/in" >"$folder/out" 2>"$folder/err" || code=$?
    echo "${code#0}\$ $1"
    sed 's/^/< /' "$folder/in"
    cat "$folder/out" "$folder/err"
    true >"$folder/in"
}

coproc simulator { program "$servers" skuan-sim --address "$address" --name 'STUDIO <é>'; }
# shellcheck disable=SC2154 # the shell itself sets simulator_PID
process=$simulator_PID
read -r -u "${simulator[0]}" told
[[ $told == "listening on $address:8913" ]]

true >"$folder/in"
unset command
while IFS= read -r -u 3 line; do
    if [[ $line =~ ^('# '|[0-9]*'$ ') && -v command ]]; then
        play "$command"
        unset command
    fi
    case $line in
    '# '*) echo "$line" ;;
    '< '*) echo "${line:2}" >>"$folder/in" ;;
    '$ '* | [0-9]'$ '*) command=${line#*$ } ;;
    esac
done 3<"$transcript" >"$folder/played"
[[ ! -v command ]] || play "$command" >>"$folder/played"
diff "$transcript" "$folder/played" && echo "$(grep -c '^[0-9]*\$ ' "$transcript") commands, each answered as written"
