#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# collect.sh PROGRAM: tries the configurations in examples/fleet with the real rsyslogd, at both ends, and the real
# logrotate. Needs root, rsyslog and logrotate; status 77 means that one of them is missing.
set -eu
program=$1
here=$(cd "$(dirname "$0")/../.." && pwd)
. "$here/tests/fleet/machine.sh"
if [ "$(id -u)" -ne 0 ] || ! command -v rsyslogd >/dev/null || ! command -v logrotate >/dev/null; then
    echo "This takes root, rsyslog and logrotate" >&2
    exit 77
fi
if [ "${ZSPACE_IN_NAMESPACE:-}" != yes ]; then
    ZSPACE_IN_NAMESPACE=yes exec unshare --mount --net --pid --fork --kill-child "$0" "$program"
fi
unset ZSPACE_IN_NAMESPACE

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
machine "$work/machine"
mkdir "$work/central" "$work/spool"
mount -t proc proc /proc
ip link set lo up 2>/dev/null || ifconfig lo up 2>/dev/null || :
reports=$work/machine/var/log/com.coraldesk.remote

# The shipped files, with this test's directories and one machine at both ends.
adapted() {
    sed -e "s|/var/log/com.coraldesk.remote|$reports|" -e "s|/var/log/uninstaller|$work/central|" \
        -e "s|/var/spool/rsyslog|$work/spool|" -e 's|target="logs"|target="127.0.0.1"|' "$here/examples/fleet/$1" >"$work/$1"
}
adapted rsyslog-central.conf
adapted rsyslog-machine.conf
adapted logrotate.conf

rsyslogd -n -f "$work/rsyslog-central.conf" -i "$work/central.pid" 2>"$work/central.errors" &
rsyslogd -n -f "$work/rsyslog-machine.conf" -i "$work/machine.pid" 2>"$work/machine.errors" &

"$here/scripts/private-root.sh" "$work/machine" /program/CdkRSUninstaller 2>/dev/null
cat "$reports"/*.txt >"$work/sent"
lines=$(grep -c . "$work/sent")
for _ in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15; do
    cat "$work/central"/*.log >"$work/received" 2>/dev/null || :
    [ "$(grep -c . "$work/received")" -lt "$lines" ] || break
    sleep 1
done
for text in 'Running uninstall script: /Library/Application Support/' 'Failed to launch uninstaller task:/Library'; do
    grep -q "$text" "$work/received" || {
        echo "The central host did not get \"$text\"; it got" >&2
        cat "$work/received" "$work"/*.errors >&2
        exit 1
    }
done
echo "ok      rsyslog: $lines lines arrived"

# A report of 100 days and one of today; logrotate has seen both before.
old=$reports/CdkRSUninstaller_2026-01-01T00-00-00.000.txt
new=$(find "$reports" -name '*.txt' | head -n 1)
echo old >"$old"
touch -d '100 days ago' "$old"
chmod 755 "$reports"
{
    echo "logrotate state -- version 2"
    echo "\"$old\" 2026-1-1-0:0:0"
    echo "\"$new\" 2026-1-1-0:0:0"
} >"$work/state"
chmod 600 "$work/state"
logrotate -s "$work/state" "$work/logrotate.conf"
[ ! -e "$old" ] || {
    echo "logrotate kept a report of 100 days" >&2
    exit 1
}
[ -s "$new" ] || {
    echo "logrotate removed today's report" >&2
    exit 1
}
[ "$(find "$reports" -type f | grep -c .)" -eq 1 ] || {
    echo "logrotate left something else:" >&2
    ls "$reports" >&2
    exit 1
}
echo "ok      logrotate: old reports go, new ones stay"
