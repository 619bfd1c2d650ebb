#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Installs missing packages, builds the uninstaller, runs it and shows the result.
#
#   ./scripts/run.sh          in a private directory tree with a sample service; does not touch the host
#   ./scripts/run.sh --here   in this host's own directories
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

# shellcheck disable=SC2154,SC2086 # set in setup.sh; the list is to be split
require_packages $build_packages
# The tests need more packages than the program; a build that includes tests keeps them.
[ -e build/release/CMakeCache.txt ] || configure_options=-DZSPACE_BUILD_TESTS=OFF
build release CdkRSUninstaller
program=$PWD/build/release/app/CdkRSUninstaller

case ${1:-} in
--here)
    echo "Running $program in this host's own directories"
    status=0
    "$program" || status=$?
    echo "Exit status: $status"
    exit 0
    ;;
"") ;;
*)
    echo "usage: $0 [--here]" >&2
    exit 2
    ;;
esac

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
service="Library/Application Support/com.coraldesk.remote"
installer="$service/bin/CdkRemotedInstaller.app/Contents/MacOS/CdkRemotedInstaller"
mkdir -p "$root/${installer%/*}" "$root/var/log" "$root/home" "$root/tmp" "$root/program"
cp examples/sample-service/CdkRemotedInstaller "$root/$installer"
chmod 755 "$root/$installer"
cp "$program" "$root/program/"

if ! scripts/private-root.sh "$root" /bin/true 2>/dev/null; then
    echo "This host does not let you create a private mount namespace (root can)."
    echo "To run the uninstaller in the host's own directories: $0 --here"
    exit 1
fi

echo "Running CdkRSUninstaller with a sample service in /$service"
status=0
scripts/private-root.sh "$root" /program/CdkRSUninstaller 2>"$root/console" || status=$?

# The program does not wait for the installer, so this script does.
for _ in 1 2 3 4 5 6 7 8 9 10; do
    [ ! -e "$root/$service/how-it-was-called" ] || break
    sleep 0.2
done

# show TITLE FILE: the lines of a file, indented.
show() {
    echo
    echo "$1"
    sed 's/^/    /' "$2"
}

echo
echo "Exit status: $status"
show "How the installer was called:" "$root/$service/how-it-was-called"
for report in "$root"/var/log/com.coraldesk.remote/*.txt; do
    show "The report file ${report#"$root"}:" "$report"
done
show "The console, to which lines are echoed because debug logging is on:" "$root/console"
