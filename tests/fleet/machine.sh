# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# shellcheck shell=sh disable=SC2154,SC2034 # set and used by the scripts that source it
# Sourced by what tries the files of examples/fleet on private file trees, each of which stands for one machine. The
# caller sets $program, the uninstaller.

PATH=$PATH:/usr/sbin:/sbin
service="Library/Application Support/com.coraldesk.remote"
installer="$service/bin/CdkRemotedInstaller.app/Contents/MacOS/CdkRemotedInstaller"

# machine DIRECTORY: an empty machine there, in $root.
machine() {
    root=$1
    mkdir -p "$root/var/log" "$root/home" "$root/tmp" "$root/program"
    cp "$program" "$root/program/CdkRSUninstaller"
}

# installed BODY: the service on the machine $root; its installer is a shell script.
installed() {
    mkdir -p "$root/${installer%/*}"
    printf '#!/bin/sh\n%s\n' "$1" >"$root/$installer"
    chmod 755 "$root/$installer"
}
removes_itself='rm -rf "/Library/Application Support/com.coraldesk.remote"'
