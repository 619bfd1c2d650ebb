#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Tries what the README shows on a fresh machine: a minimal Debian with git and nothing else, in a directory that is the
# root of a mount namespace. Needs root. Packages come from the mirror that this machine uses.
#
#   ./scripts/fresh-root.sh bookworm user           both commands of the README, as an ordinary user who may use sudo
#   ./scripts/fresh-root.sh trixie root run         only ./scripts/run.sh, as root
#   ./scripts/fresh-root.sh trixie user -- CMD...   another command in the sources' directory
#
# The variable ZSPACE_FRESH_ROOT may name a directory to keep the machine in. The next run with that directory continues
# on the same machine, with the sources as they then are.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

usage() {
    sed -n 's/^#   /    /p' "$0" >&2
    exit 2
}
[ $# -ge 2 ] || usage
suite=$1 who=$2
shift 2
case $who in root | user) ;; *) usage ;; esac
[ "$(id -u)" -eq 0 ] || {
    echo "$0: making a machine's root directory needs root" >&2
    exit 1
}
require_packages debootstrap

# The mirror that apt uses here; its name is stored nowhere.
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Label: Debian' | head -n 1)
[ -n "$mirror" ] || {
    echo "$0: apt has no Debian mirror here" >&2
    exit 1
}

# Shows what debootstrap does: the number of packages that it has fetched, and its other steps.
show_debootstrap() {
    fetched=0
    while read -r _ step line; do
        case $step in
        Retrieving)
            fetched=$((fetched + 1))
            [ $((fetched % 20)) -ne 0 ] || echo "    $fetched packages fetched"
            ;;
        Installing | Unpacking | Configuring)
            case $line in
            *" "*...) echo "    $step $line" ;;
            esac
            ;;
        esac
    done
}

# The fresh system is created once for each suite and kept as an archive.
cache=$PWD/build/fresh
archive=$cache/$suite.tar
if [ ! -e "$archive" ]; then
    mkdir -p "$cache"
    log=$cache/$suite.debootstrap.log
    echo "Making a minimal $suite (a few minutes; log: $log)"
    rm -rf "$cache/$suite.new"
    debootstrap --variant=minbase --include=ca-certificates,git,sudo "$suite" "$cache/$suite.new" "$mirror" 2>&1 |
        tee "$log" | show_debootstrap
    if ! grep -q 'Base system installed successfully' "$log"; then
        tail -n 20 "$log" >&2
        echo "Making $suite failed; the whole log is $log" >&2
        exit 1
    fi
    tar -C "$cache/$suite.new" --one-file-system -cf "$archive.new" .
    rm -rf "$cache/$suite.new"
    mv "$archive.new" "$archive"
fi

if [ -n "${ZSPACE_FRESH_ROOT:-}" ]; then
    mkdir -p "$ZSPACE_FRESH_ROOT"
    root=$(cd "$ZSPACE_FRESH_ROOT" && pwd -P)
else
    root=$(mktemp -d "${TMPDIR:-/tmp}/zspace-fresh.XXXXXX")
    trap 'rm -rf --one-file-system "$root"' EXIT
    trap 'exit 1' HUP INT TERM
fi
if [ ! -e "$root/etc/debian_version" ]; then
    tar -C "$root" -xf "$archive"
    echo "fresh" >"$root/etc/hostname"
    echo "127.0.0.1 localhost fresh" >"$root/etc/hosts"
    cp -L /etc/resolv.conf "$root/etc/resolv.conf"
    chroot "$root" useradd --create-home --shell /bin/bash visitor
    echo "visitor ALL=(ALL) NOPASSWD: ALL" >"$root/etc/sudoers.d/visitor"
fi

# The tracked files as they are here, owned by the user who works with them.
home=/root
[ "$who" = root ] || home=/home/visitor
mkdir -p "$root$home/zspace"
find "$root$home/zspace" -mindepth 1 -maxdepth 1 ! -name build -exec rm -rf {} +
git ls-files -z | tar -cf - --null --files-from=- | tar -C "$root$home/zspace" --no-same-owner -xf -
[ "$who" = root ] || chroot "$root" chown -R visitor: "$home/zspace"

# enter COMMAND...: runs a command in the fresh machine, in the sources' directory. It has its own processes and mounts;
# an ordinary user has the PATH that Debian sets.
enter() {
    unshare --mount --pid --fork --kill-child -- sh -c '
        set -eu
        root=$1 who=$2 directory=$3
        shift 3
        mount --make-rprivate /
        mount --bind "$root" "$root"
        mount -t proc proc "$root/proc"
        mount --rbind /dev "$root/dev"
        mount --rbind /sys "$root/sys"
        cd "$root"
        mkdir -p .host
        pivot_root . .host
        cd /
        umount -l /.host
        rmdir /.host
        system=/usr/local/bin:/usr/bin:/bin
        if [ "$who" = user ]; then
            # Changing the user would otherwise undo --kill-child.
            exec env -i HOME="${directory%/*}" PATH=$system TERM=dumb LANG=C.UTF-8 USER=visitor \
                setpriv --reuid visitor --regid visitor --init-groups --pdeathsig KILL \
                sh -c "cd \"\$0\" && exec \"\$@\"" "$directory" "$@"
        fi
        exec env -i HOME=/root PATH=/usr/local/sbin:/usr/sbin:/sbin:$system TERM=dumb LANG=C.UTF-8 USER=root \
            sh -c "cd \"\$0\" && exec \"\$@\"" "$directory" "$@"
    ' sh "$root" "$who" "$home/zspace" "$@"
}

# What differs from run to run becomes a single word; a line that the README cuts with "..." ends there.
masked() {
    sed -e 's/[0-9]\{4\}-[0-9][0-9]-[0-9][0-9]T[0-9][0-9][:-][0-9][0-9][:-][0-9][0-9]\.[0-9]*/TIME/g' \
        -e 's/Thread\[[0-9a-f]*\]/Thread[N]/g' -e 's|\(Application Support/\).*\(com\.coraldesk\)|\1\2|' \
        -e 's|\(Running uninstall script: /Library/Application Support/\).*|\1...|'
}

# The first block of output that a page shows.
first_block() {
    awk '/^```/ { inside = !inside; if (!inside && shown) exit; shown = inside && $0 == "```"; next } shown' "$1"
}

try_run() {
    echo "== ./scripts/run.sh on a fresh $suite, as $who"
    enter ./scripts/run.sh | tee "$root/run.output"
    first_block README.md | masked >"$root/run.expected"
    sed -n '/^Exit status/,$p' "$root/run.output" | masked >"$root/run.found"
    if ! diff -u "$root/run.expected" "$root/run.found"; then
        echo "run.sh printed something else than what the README shows (-)" >&2
        return 1
    fi
}

if [ "${1:-}" = -- ]; then
    shift
    enter "$@"
    exit
fi
case ${1:-both} in
run) try_run ;;
test) enter ./scripts/test.sh ;;
both)
    try_run
    echo "== ./scripts/test.sh on a fresh $suite, as $who"
    enter ./scripts/test.sh
    ;;
*) usage ;;
esac
echo "A fresh $suite shows what the README shows, as $who."
