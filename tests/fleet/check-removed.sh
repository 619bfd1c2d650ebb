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
. "$here/tests/fleet/machine.sh"
failed=0

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

machine "$work/probe"
if ! uninstall; then
    echo "This host lets nobody make a private mount namespace" >&2
    exit 77
fi

machine "$work/never-had-it"
says 0 "removed: "

machine "$work/nobody-tried"
installed "exit 0"
says 3 "unknown: "

machine "$work/removes-itself"
installed "$removes_itself"
uninstall
for _ in 1 2 3 4 5 6 7 8 9 10; do
    [ -e "$root/$service" ] || break
    sleep 0.2
done
says 0 "removed: "

machine "$work/refuses"
installed "exit 1"
uninstall
says 1 "still there: "

machine "$work/not-executable"
installed "exit 0"
chmod 644 "$root/$installer"
uninstall
says 2 "failed to start: "

machine "$work/installer-missing"
mkdir -p "$root/$service"
uninstall
says 2 "failed to start: "

machine "$work/no-program-of-this-system"
installed "exit 0"
printf 'nonsense\n' >"$root/$installer"
uninstall
says 2 "failed to start: "

machine "$work/newest-report-counts"
mkdir -p "$root/$service"
uninstall
installed "exit 1"
sleep 0.01
uninstall
says 1 "still there: "

# Files that another user has planted under later names, which claim that the installer was started.
machine "$work/planted"
mkdir -p "$root/$service"
uninstall
claim=$root/var/log/claim
echo "Running uninstall script: planted" >"$claim"
ln "$claim" "$root/var/log/com.coraldesk.remote/CdkRSUninstaller_9997.txt"
ln -s ../claim "$root/var/log/com.coraldesk.remote/CdkRSUninstaller_9998.txt"
if [ "$(id -u)" -eq 0 ]; then
    cp "$claim" "$root/var/log/com.coraldesk.remote/CdkRSUninstaller_9999.txt"
    chown 65534 "$root/var/log/com.coraldesk.remote/CdkRSUninstaller_9999.txt"
fi
says 2 "failed to start: "

machine "$work/reports-cannot-be-written"
installed "exit 1"
: >"$root/var/log/com.coraldesk.remote"
uninstall
says 3 "unknown: "

exit "$failed"
