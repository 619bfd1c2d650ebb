#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# private-root.sh ROOT COMMAND...: runs a command whose "/" is the folder ROOT, in a mount namespace of its own. The
# host's programs and devices appear in it; everything else is what ROOT holds. Nothing of this is seen outside, and
# it is gone when the command ends.
set -eu
root=$1
shift

if [ "${ZSPACE_IN_NAMESPACE:-}" != yes ]; then
    as_root=
    [ "$(id -u)" -eq 0 ] || as_root=--map-root-user
    ZSPACE_IN_NAMESPACE=yes exec unshare --mount $as_root "$0" "$root" "$@"
fi

for folder in usr bin sbin lib lib32 lib64 etc dev proc; do
    if [ -L "/$folder" ]; then
        [ -e "$root/$folder" ] || cp -P "/$folder" "$root/$folder"
    elif [ -d "/$folder" ]; then
        mkdir -p "$root/$folder"
        mount --rbind "/$folder" "$root/$folder"
    fi
done
unset ZSPACE_IN_NAMESPACE
HOME=/home TMPDIR=/tmp exec chroot "$root" "$@"
