#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Rehearses a rollout on this machine:
#   ./scripts/rehearse.sh [MACHINES [FORKS]]      200 machines, and as many forks as Ansible has by default
# Each machine is a private file tree with its own rsyslogd. Some have a service that goes, others none, a failing one,
# a read-only disk or files that a stranger has planted. ansible-playbook runs examples/fleet/uninstall.yml on all of
# them; one rsyslogd collects the reports. Fails unless every machine gets the right verdict and exactly one report
# arrives of each whose directory of reports is safe and writable. Prints what it cost. Needs root.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh
machines=${1:-200}
forks=${2:-5}

if [ "${ZSPACE_IN_NAMESPACE:-}" != yes ]; then
    if [ "$(id -u)" -ne 0 ] || ! unshare --mount --net --pid --fork true 2>/dev/null; then
        echo "SKIPPED: this takes root, and a host that permits private mount, network and process namespaces"
        exit 0
    fi
    # shellcheck disable=SC2154,SC2086 # set in setup.sh; the list is to be split
    require_packages $build_packages ansible rsyslog iproute2 python3 time
    [ -e build/release/CMakeCache.txt ] || configure_options=-DZSPACE_BUILD_TESTS=OFF
    build release CdkRSUninstaller
    ZSPACE_IN_NAMESPACE=yes exec unshare --mount --net --pid --fork --kill-child "$0" "$machines" "$forks"
fi
unset ZSPACE_IN_NAMESPACE
mount -t proc proc /proc
ip link set lo up
prlimit --pid $$ --nofile=20000 # one for each connection

here=$PWD
program=$here/build/release/app/CdkRSUninstaller
. tests/fleet/machine.sh
work=$(mktemp -d)
# Files are removed only after every mount is gone, so nothing outside of $work can be.
trap 'grep -o " $work/[^ ]*" /proc/mounts | sort -r | xargs -r umount -l 2>/dev/null; rm -rf --one-file-system "$work"' EXIT
trap 'exit 1' HUP INT TERM
reports=var/log/com.coraldesk.remote

# prepare KIND: what is special about the machine $root.
prepare() {
    case $1 in
    removes-itself | read-only-log | in-the-way) installed "$removes_itself" ;;
    slow) installed "sleep 3; $removes_itself" ;;
    leftovers) mkdir -p "$root/$service" ;;
    not-executable) installed "exit 0" && chmod 644 "$root/$installer" ;;
    damaged) installed "exit 0" && echo nonsense >"$root/$installer" ;;
    refuses | read-only-disk | planted) installed "exit 1" ;;
    esac
    case $1 in
    read-only-log) mkdir -m 755 "$root/$reports" ;;
    in-the-way) : >"$root/$reports" ;;
    planted)
        mkdir -m 777 "$root/$reports"
        chmod 777 "$root/$reports" # whatever the umask
        echo "CdkRemotedUninstaller: Failed to launch uninstaller task:planted reason:planted userinfo:" >"$root/claim"
        ln -s /claim "$root/$reports/CdkRSUninstaller_9998.txt"
        cp "$root/claim" "$root/$reports/CdkRSUninstaller_9999.txt"
        chown 65534 "$root/$reports/CdkRSUninstaller_9999.txt"
        ;;
    esac
    case $1 in
    read-only-*)
        mount --bind "$root/var/log" "$root/var/log"
        mount -o remount,bind,ro "$root/var/log"
        ;;
    esac
}

# What check-removed must say about a machine (its status, and words in its line), and how many reports must arrive.
expected() {
    case $1 in
    removes-itself | slow | never-had-it) echo "0 removed: 1" ;;
    leftovers) echo "2 failed to start: *No such file or directory 1" ;;
    not-executable) echo "2 failed to start: *Permission denied 1" ;;
    damaged) echo "2 failed to start: *Exec format error 1" ;;
    refuses | planted) echo "1 still there: 1" ;;
    read-only-log) echo "0 removed: 0" ;;
    read-only-disk | in-the-way) echo "3 unknown: 0" ;; # the play stops before it runs the program
    esac
}

# The first half of the machines are usual ones.
kind_of() {
    case $(($1 % 20)) in
    10) echo slow ;; 11) echo never-had-it ;; 12) echo leftovers ;; 13) echo refuses ;; 14) echo not-executable ;;
    15) echo damaged ;; 16) echo read-only-disk ;; 17) echo read-only-log ;; 18) echo in-the-way ;; 19) echo planted ;;
    *) echo removes-itself ;;
    esac
}

echo "Preparing $machines machines"
sed -e "s|/var/log/uninstaller|$work/central|" examples/fleet/rsyslog-central.conf >"$work/central.conf"
mkdir "$work/central"
rsyslogd -n -f "$work/central.conf" -i "$work/central.pid" 2>"$work/central.errors" &
central=$!
{
    echo "[all:vars]"
    echo "ansible_connection=local"
    echo "ansible_become=false"
    echo "ansible_python_interpreter=/usr/bin/python3"
    echo "[all]"
} >"$work/inventory"
number=0
while [ "$number" -lt "$machines" ]; do
    name=$(printf 'm%06d' "$number")
    kind=$(kind_of "$number")
    machine "$work/$name"
    mkdir -p "$root/var/spool/rsyslog"
    prepare "$kind"
    # The shipped file. Nobody may have 200 inotify instances, so this rsyslogd looks for new files by itself.
    {
        echo "global(localHostname=\"$name\")"
        sed -e 's|target="logs"|target="127.0.0.1"|' \
            -e 's|module(load="imfile")|module(load="imfile" mode="polling" pollingInterval="2")|' \
            examples/fleet/rsyslog-machine.conf
    } >"$root/rsyslog.conf"
    scripts/private-root.sh "$root" /usr/sbin/rsyslogd -n -f /rsyslog.conf -i /tmp/rsyslogd.pid 2>"$root/rsyslog.errors" &
    daemons="${daemons:-} $!"
    printf '#!/bin/sh\nexec "%s/scripts/private-root.sh" "%s" /program/CdkRSUninstaller\n' "$here" "$root" >"$root/run"
    chmod 755 "$root/run"
    echo "$name root=$root uninstaller=$root/run" >>"$work/inventory"
    echo "$name $kind" >>"$work/kinds"
    number=$((number + 1))
done

# measured COMMAND...: its seconds, those of the processor, and the memory of its largest process in kB.
measured() {
    python3 -c '
import resource, subprocess, sys, time
start = time.monotonic()
with open(sys.argv[1], "w") as output:
    subprocess.run(sys.argv[2:], stdout=output, stderr=output, check=False)
used = resource.getrusage(resource.RUSAGE_CHILDREN)
print("%.3f %.3f %d" % (time.monotonic() - start, used.ru_utime + used.ru_stime, used.ru_maxrss))' "$@"
}
# kilobytes FIELD PID: of a process that runs.
kilobytes() { sed -n "s/^$1:[^0-9]*\([0-9]*\) kB/\1/p" "/proc/$2/status"; }

echo "Rolling out with $forks forks"
ANSIBLE_LOCAL_TEMP=$work/ansible ANSIBLE_REMOTE_TEMP=$work/ansible HOME=$work ANSIBLE_NOCOLOR=1 ANSIBLE_PIPELINING=1
TMPDIR=$work/tmp
mkdir "$TMPDIR"
export TMPDIR ANSIBLE_LOCAL_TEMP ANSIBLE_REMOTE_TEMP HOME ANSIBLE_NOCOLOR ANSIBLE_PIPELINING
rollout=$(measured "$work/output" ansible-playbook -i "$work/inventory" -f "$forks" -e collected="$work/collected" \
    -e patience=1 examples/fleet/uninstall.yml)
grep -q '^PLAY RECAP' "$work/output" || {
    tail -n 20 "$work/output" >&2
    exit 1
}

# arrived NAME: the number of reports of a machine that the central host has.
arrived() {
    : >>"$work/central/$1.log" # nothing has arrived of some
    grep -c 'Running uninstall script: /Library/Application Support/com.coraldesk.remote/' "$work/central/$1.log" || :
}
echo "Waiting for the reports"
waited=0
while [ "$waited" -lt 120 ]; do
    missing=0
    while read -r name kind; do
        [ "$(arrived "$name")" -ge "$(expected "$kind" | sed 's/.* //')" ] || missing=$((missing + 1))
    done <"$work/kinds"
    # Some must not arrive: a report comes within one round of polling.
    [ "$missing" -gt 0 ] || [ "$waited" -lt 6 ] || break
    sleep 1
    waited=$((waited + 1))
done

wrong=0
while read -r name kind; do
    status=0
    line=$(examples/fleet/check-removed "$work/$name") || status=$?
    count=$(arrived "$name")
    fetched=0
    [ ! -e "$work/collected/$name.txt" ] || fetched=1
    wanted=$(expected "$kind")
    # shellcheck disable=SC2254 # a pattern
    case "$status $line" in
    ${wanted% *}*) [ "$count $fetched" != "${wanted##* } ${wanted##* }" ] || continue ;;
    esac
    echo "WRONG   $name, $kind: expected \"$wanted\", found \"$status $line\", $count collected, $fetched fetched" >&2
    wrong=$((wrong + 1))
done <"$work/kinds"

echo
echo "$(nproc) processors, $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1)"
sort -k 2 "$work/kinds" | awk '{ print $2 }' | uniq -c | while read -r count kind; do
    printf '%5d  %-15s %s\n' "$count" "$kind" "$(expected "$kind" | sed 's/[*]//; s/ \([01]\)$/ reports: \1/')"
done
# Of the program, 100 runs in a row; the shell that starts them counts as well.
machine "$work/one"
installed "exit 0"
scripts/private-root.sh "$work/one" /usr/bin/time -o /tmp/time -f '%e %U %S %M' sh -c \
    'for run in $(seq 100); do /program/CdkRSUninstaller; done' 2>"$work/one.errors"
one=$(awk '{ print $1 / 100, ($2 + $3) / 100, $4 }' "$work/one/tmp/time")
sum=0
for daemon in $daemons; do
    sum=$((sum + $(kilobytes VmHWM "$daemon")))
done
ticks=$(awk '{ print $14 + $15 }' "/proc/$central/stat")
lines=$(cat "$work"/central/*.log | wc -l)
size=$(cat "$work"/central/*.log | wc -c)

# The central host alone, with as many machines as examples/fleet/rsyslog-central.conf is meant for: each connects, sends
# the two lines of a failed start, and stays connected.
connections=5000
sed -e "s|/var/log/uninstaller|$work/many|" -e 's|10514|10515|' examples/fleet/rsyslog-central.conf >"$work/many.conf"
mkdir "$work/many"
rsyslogd -n -f "$work/many.conf" -i "$work/many.pid" 2>"$work/many.errors" &
many=$!
python3 - "$connections" "$work/many" >"$work/many.seconds" <<'FLOOD'
import os, socket, sys, time
def connected():
    for attempt in range(300):
        try:
            return socket.create_connection(("127.0.0.1", 10515))
        except ConnectionRefusedError: # it is starting
            time.sleep(0.1)
    sys.exit("rsyslogd does not listen")
def written():
    return sum(open(entry.path, "rb").read().count(b"\n") for entry in os.scandir(sys.argv[2]))
open_connections = [connected()]
start = time.monotonic()
for number in range(int(sys.argv[1])):
    line = b"<173>Nov 22 05:06:07 c%06d CdkRSUninstaller: %s\n"
    connection = connected()
    connection.sendall(line % (number, b"s" * 150) + line % (number, b"f" * 300))
    open_connections.append(connection)
while written() < 2 * int(sys.argv[1]) and time.monotonic() - start < 120:
    time.sleep(0.2)
print("%.1f %d" % (time.monotonic() - start, written()))
FLOOD
read -r seconds written <"$work/many.seconds"
if [ "$written" -ne $((2 * connections)) ]; then
    echo "WRONG   the central host wrote $written of $((2 * connections)) lines" >&2
    wrong=$((wrong + 1))
fi

echo "$rollout $one $(kilobytes VmHWM "$central") $sum $ticks $lines $size $(getconf CLK_TCK)" |
    awk -v machines="$machines" -v forks="$forks" -v waited="$waited" '{
        printf "rollout, %d machines, %d forks: %.0f s, %.0f s of processor time, largest process %.0f MB\n",
            machines, forks, $1, $2, $3 / 1024
        printf "per machine: %.2f s, %.2f s of processor time\n", $1 / machines, $2 / machines
        printf "one run of the program: %.1f ms, %.1f ms of processor time, at most %.1f MB\n", $4 * 1000, $5 * 1000,
            $6 / 1024
        printf "rsyslogd of a machine: %.1f MB\n", $8 / machines / 1024
        printf "central rsyslogd: %.1f MB, %.2f s of processor time for %d lines of %.0f bytes\n", $7 / 1024, $9 / $12, $10,
            $11 / $10
        printf "linear to 5000 machines: %.1f hours; to 100000: %.0f hours\n", $1 / machines * 5000 / 3600,
            $1 / machines * 100000 / 3600
    }'
printf 'central rsyslogd with %d connections: %.1f s until the last line was written, %d MB\n' \
    "$connections" "$seconds" "$(($(kilobytes VmHWM "$many") / 1024))"
echo "the last report arrived within $waited s after the rollout"
if [ "$wrong" -gt 0 ]; then
    echo "$wrong of $machines machines, or the central host, are wrong" >&2
    exit 1
fi
echo "All verdicts are right, and every expected report arrived once."
