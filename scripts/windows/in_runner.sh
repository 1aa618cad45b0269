#!/usr/bin/env bash
# Opens a throw-away copy of the Windows runner, in which scripts/windows/run.sh then starts programs, and
# runs COMMAND beside it, on this system. All of it, the copy, its mounts, its network (a loopback of its
# own) and every process, is gone when COMMAND ends. Needs root and the right to mount.
# usage: in_runner.sh COMMAND [ARGS...]; in_runner.sh --can: tells whether that is possible here
set -euo pipefail
project=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
cache=${XDG_CACHE_HOME:-$HOME/.cache}/skuan
runner=$cache/windows-runner

namespaces=(unshare --mount --propagation private --pid --fork --kill-child --mount-proc --net)
if [[ ${1:-} == --can ]]; then
    "${namespaces[@]}" sh -ec 'mount -t tmpfs skuan /mnt && mkdir /mnt/lower /mnt/upper /mnt/work /mnt/root &&
        mount -t overlay skuan -o lowerdir=/mnt/lower,upperdir=/mnt/upper,workdir=/mnt/work /mnt/root &&
        ip link set lo up' 2>/dev/null
    exit
fi

if [[ ${SKUAN_RUNNER_STAGE:-} != inside ]]; then
    [[ -d $runner ]] || "$project/scripts/windows/make_runner.sh" "$runner"
    mkdir -p "$runner-session"
    SKUAN_RUNNER_STAGE=inside exec "${namespaces[@]}" "$0" "$@"
fi

session=$runner-session # hidden under a mount that only this process and its children see
ip link set lo up
mount -t tmpfs skuan "$session"
mkdir "$session"/{upper,work,root}
mount -t overlay skuan -o "lowerdir=$runner,upperdir=$session/upper,workdir=$session/work" "$session/root"
export SKUAN_RUNNER=$session/root
mount -t proc proc "$SKUAN_RUNNER/proc"
mount --rbind /dev "$SKUAN_RUNNER/dev"
mkdir -p "$SKUAN_RUNNER$project"
mount --bind "$project" "$SKUAN_RUNNER$project"
unset SKUAN_RUNNER_STAGE

# One program that waits for ever keeps the Windows side up: each later start takes a fifth of the time,
# and what wine starts on its own account holds this program's pipe open, not that of a test.
mkfifo "$session/never" "$session/up"
sleep infinity >"$session/never" &
"$project/scripts/windows/run.sh" cmd /c 'echo up & pause' <"$session/never" >"$session/up" 2>/dev/null &
exec 3<"$session/up"
read -r _ <&3
exec 3<&-
"$@"
