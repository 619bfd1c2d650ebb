#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# check-removed.sh PROGRAM: runs the uninstaller in private file trees, one for each possible result, and compares what
# examples/fleet/check-removed reports for each.
set -eu
program=$1
here=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
PATH=$PATH:/usr/sbin:/sbin
service="Library/Application Support/com.coraldesk.remote"
installer="$service/bin/CdkRemotedInstaller.app/Contents/MacOS/CdkRemotedInstaller"
failed=0

# machine NAME: an empty machine, in $root.
machine() {
    root=$work/$1
    mkdir -p "$root/var/log" "$root/home" "$root/tmp" "$root/program"
    cp "$program" "$root/program/"
}
# installed BODY: the service, whose installer is a shell script.
installed() {
    mkdir -p "$root/${installer%/*}"
    printf '#!/bin/sh\n%s\n' "$1" >"$root/$installer"
    chmod 755 "$root/$installer"
}
uninstall() {
    "$here/scripts/private-root.sh" "$root" /program/CdkRSUninstaller 2>/dev/null
}
# says STATUS TEXT: what check-removed must report for this machine; TEXT is the beginning of the line.
says() {
    status=0
    line=$("$here/examples/fleet/check-removed" "$root") || status=$?
    case $line in
    "$2"*) ;;
    *) status="$status, other text" ;;
    esac
    if [ "$status" != "$1" ]; then
        echo "${root##*/}: expected $1 \"$2...\", got $status \"$line\"" >&2
        failed=1
    fi
}

machine probe
if ! uninstall; then
    echo "This host lets nobody make a private mount namespace" >&2
    exit 77
fi

machine never-had-it
says 0 "removed: "

machine nobody-tried
installed "exit 0"
says 3 "unknown: "

machine removes-itself
installed 'rm -rf "/Library/Application Support/com.coraldesk.remote"'
uninstall
for _ in 1 2 3 4 5 6 7 8 9 10; do
    [ -e "$root/$service" ] || break
    sleep 0.2
done
says 0 "removed: "

machine refuses
installed "exit 1"
uninstall
says 1 "still there: "

machine not-executable
installed "exit 0"
chmod 644 "$root/$installer"
uninstall
says 2 "failed to start: "

machine installer-missing
mkdir -p "$root/$service"
uninstall
says 2 "failed to start: "

machine no-program-of-this-system
installed "exit 0"
printf 'nonsense\n' >"$root/$installer"
uninstall
says 2 "failed to start: "

machine newest-report-counts
mkdir -p "$root/$service"
uninstall
installed "exit 1"
sleep 0.01
uninstall
says 1 "still there: "

machine reports-cannot-be-written
installed "exit 1"
: >"$root/var/log/com.coraldesk.remote"
uninstall
says 3 "unknown: "

exit "$failed"
