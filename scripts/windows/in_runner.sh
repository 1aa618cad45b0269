#!/usr/bin/env bash
# Opens a throw-away copy of the Windows runner, in which scripts/windows/run.sh then starts programs, and
# runs COMMAND beside it, on this system. All of it, the copy, its mounts, its network (a loopback of its
# own) and every process, is gone when COMMAND ends or this script is stopped. Windows programs see, under
# the paths that they have here, this project and the folder in which the script was called, unless the
# runner has such a folder of its own, as /tmp; any number of copies may be open at a time. Needs root and
# the right to mount.
# usage: in_runner.sh COMMAND [ARGS...]   gives COMMAND's exit code
#        in_runner.sh --can               succeeds if that is possible here, and prints what is missing if not
set -euo pipefail
PATH=$PATH:/usr/sbin:/sbin
project=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
maker=$project/scripts/windows/make_runner.sh
cache=${XDG_CACHE_HOME:-~/.cache}/skuan
runner=runner-$(sha256sum "$maker" | head -c 12) # an older clone's runner may be in use beside this one's

fail() {
    echo "in_runner: $*" >&2
    exit 1
}

namespaces=(unshare --mount --propagation private --pid --fork --kill-child --mount-proc --net)
missing() { # prints what keeps Windows programs from running here; nothing if they can
    local tool tools=(ip)
    [[ $EUID -eq 0 ]] || { echo "root"; return; }
    [[ -d $cache/$runner ]] || tools+=(debootstrap)
    for tool in "${tools[@]}"; do
        command -v "$tool" >/dev/null || { echo "the program $tool (./dev setup runner)"; return; }
    done
    "${namespaces[@]}" sh -ec 'mount -t tmpfs skuan /mnt && ip link set lo up' 2>/dev/null ||
        { echo "the right to mount, and to have namespaces of one's own"; return; }
    "${namespaces[@]}" sh -ec 'mount -t tmpfs skuan /mnt && cd /mnt && mkdir lower upper work root &&
        mount -t overlay skuan -o lowerdir=lower,upperdir=upper,workdir=work root' 2>/dev/null ||
        echo "the overlay file system (modprobe overlay)"
}

case ${1:-} in
'') fail "usage: in_runner.sh COMMAND [ARGS...]" ;;
--can)
    lacking=$(missing)
    [[ -n $lacking ]] || exit 0
    echo "$lacking"
    exit 1
    ;;
--inside) shift ;;
*)
    [[ -z ${SKUAN_RUNNER:-} ]] || exec "$@" # in a runner already
    lacking=$(missing)
    [[ -z $lacking ]] || fail "running Windows programs needs $lacking"
    mkdir -p "$cache/runner-session"

    # Whoever uses a runner holds its lock; one that nobody has used for a week gives its space back.
    exec {lock}>"$cache/$runner.lock" && touch "$cache/$runner.lock"
    if [[ ! -d $cache/$runner ]]; then
        flock "$lock"
        [[ -d $cache/$runner ]] || "$maker" "$cache/$runner" {lock}>&-
        find "$cache" -maxdepth 1 -name 'runner-*.lock' -mtime +7 -print0 | while IFS= read -r -d '' old; do
            # shellcheck disable=SC2016 # that shell is to expand these
            flock --nonblock "$old" sh -c 'mv "$0" "$0.new" && rm -rf "$0.new" "$0.lock"' "${old%.lock}" || true
        done
    fi
    flock --shared "$lock"

    # unshare itself lets no signal but SIGKILL end it, and with it everything inside.
    trap 'kill -KILL "$session"; exit 130' INT
    trap 'kill -KILL "$session"; exit 143' HUP TERM
    env --default-signal=INT,QUIT setpriv --pdeathsig KILL "${namespaces[@]}" "$0" --inside "$@" <&0 &
    session=$!
    code=0
    wait "$session" || code=$?
    exit "$code"
    ;;
esac

# From here on in namespaces of our own: what is mounted, nobody else sees.
ip link set lo up
here=$PWD
cd "$cache" # and short names, for in a longer one a comma or colon would mean something to mount
mount -t tmpfs skuan runner-session
mkdir runner-session/{upper,work,root}
mount -t overlay skuan -o "lowerdir=$runner,upperdir=runner-session/upper,workdir=runner-session/work" runner-session/root
session=$(realpath runner-session)
export SKUAN_RUNNER=$session/root
mount -t proc proc "$SKUAN_RUNNER/proc"
mount --rbind /dev "$SKUAN_RUNNER/dev"
for folder in "$here" "$project"; do # either may lie in the other
    [[ ! -d $runner$folder ]] || continue
    mkdir -p "$SKUAN_RUNNER$folder"
    mount --bind "$folder" "$SKUAN_RUNNER$folder"
done
cd "$here"

# One program that waits for ever keeps the Windows side up: each later start takes a fifth of the time,
# and what wine starts on its own account holds this program's pipe open, not that of a test.
mkfifo "$session/never" "$session/up"
sleep infinity >"$session/never" &
"$project/scripts/windows/run.sh" cmd /c 'echo up & pause' <"$session/never" >"$session/up" 2>"$session/log" &
read -r -t 120 _ <"$session/up" || fail "wine does not start: $(cat "$session/log")"
"$@"
