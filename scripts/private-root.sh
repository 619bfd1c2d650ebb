#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# private-root.sh ROOT COMMAND...: runs a command whose "/" is the directory ROOT, in a new mount namespace. The host's
# programs and devices are mounted there; everything else is the content of ROOT. The host never sees these mounts, and
# they disappear when the command ends.
set -eu
[ $# -ge 2 ] || { echo "usage: $0 ROOT COMMAND..." >&2; exit 2; }

# The part that mounts exists only as this string, so it cannot run anywhere but in the new namespace, whatever the
# caller's environment contains.
# shellcheck disable=SC2016 # expanded by the inner shell
inside='
set -eu
root=$1
shift
for directory in usr bin sbin lib lib32 lib64 etc dev proc; do
    if [ -L "/$directory" ]; then
        [ -e "$root/$directory" ] || cp -P "/$directory" "$root/$directory"
    elif [ -d "/$directory" ]; then
        mkdir -p "$root/$directory"
        mount --rbind "/$directory" "$root/$directory"
    fi
done
HOME=/home TMPDIR=/tmp exec chroot "$root" "$@"
'

as_root=
[ "$(id -u)" -eq 0 ] || as_root=--map-root-user
exec unshare --mount --propagation private $as_root sh -c "$inside" private-root "$@"
