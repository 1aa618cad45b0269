#!/usr/bin/env bash
# Shows a real conversation: a server on this machine, and skuanctl asking it over TCP.
# usage: scripts/demo.sh FOLDER_OF_THE_PROGRAMS
set -euo pipefail
bin=$1

# An address of its own, so that demos and tests never meet.
host=127.$((RANDOM % 64 + 192)).$((RANDOM % 254 + 1)).$((RANDOM % 254 + 1))

server_pid=
trap 'kill "$server_pid" 2>/dev/null || true' EXIT
start_server() {
    local ready
    exec {server}< <(exec setsid "$bin/skuan-sim" --address "$host") # Ctrl-C is for who talks to it
    server_pid=$!
    if ! read -r -t 20 -u "$server" ready; then
        echo "demo: the server did not say that it is ready" >&2
        exit 1
    fi
    echo "skuan-sim: $ready"
}
start_server

show_command() {
    printf '\n$ skuanctl --host %s' "$host"
    local word
    for word; do
        if [[ $word == *[^a-zA-Z0-9_=/.:,-]* ]]; then printf " '%s'" "$word"; else printf ' %s' "$word"; fi
    done
    printf '\n'
}
ask() {
    show_command "$@"
    "$bin/skuanctl" --host "$host" --timeout 10 "$@"
}
ask info
ask clip list news
ask cue A news/weather_tonight --loop loop
ask play A
ask record B demo/interview --length 50 --wait
ask list save evening <<'END'
{"ContentID": {"ClipID": "demo/interview"}}
{"ContentID": {"ClipID": "sports/derby_2nd_half"}, "GotoPosition": 500}
END
ask list load B evening
ask list take B
ask --count 3 reports A:speed B:listplay
ask channel list A,B,C
ask --json --count 2 reports A:timecode
ask layout --board tansy3
ask raw '<cmd><xid>1</xid><get_computer_name/></cmd>'

# A session: one program that stays while its server does not.
watch=(--count 4 config watch StationName)
show_command "${watch[@]}"
exec {watching}< <(exec "$bin/skuanctl" --host "$host" --listen 30 "${watch[@]}")
seen() {
    local line
    if ! read -r -t 20 -u "$watching" line; then
        echo "demo: the watch did not go on" >&2
        exit 1
    fi
    echo "  $line"
}
seen
ask config set StationName Harbour
seen
printf '\nThe server is killed, and started again; it has forgotten the name.\n'
kill -KILL "$server_pid"
while (: <>"/dev/tcp/$host/8913") 2>/dev/null; do # it is gone, and its port free, when the system has seen to it
    sleep 0.05
done
start_server
seen # the session has come back by itself, and looked again
ask config set StationName Harbour
seen

# Channels at work, followed field by field.
ask cue A news/weather_tonight --loop loop
ask play A
ask cue B sports/derby_2nd_half --at 900 --loop pingpong
ask play B --speed -0.5
ask cue C news/1800_headlines --loop loop
ask play C --speed 4
ask record D demo/night --length 3000
ask dict set Tally0 red

echo
echo "All of this was a program linked to this library, talking to a server over TCP. What to try next:"
printf '  %-36s  %s\n' \
    "$bin/skuan-sim" "a server at 127.0.0.1 that stays; --help: how it can misbehave" \
    "$bin/skuanctl clip list" "ask it; --help: all that the command line can do" \
    "examples/" "small programs to start from, the smallest first" \
    "./dev test" "run every test"

if [[ -t 0 && -t 1 ]]; then
    echo
    echo "Ctrl-C ends what follows, and the server. Until then another terminal may ask it, too, as with"
    echo "  $bin/skuanctl --host $host stop A"
    show_command monitor
    trap : INT
    "$bin/skuanctl" --host "$host" monitor || true
else
    ask --count 24 monitor A,B,C,D
fi
