#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# check.sh gdb|lldb PROGRAM PRINTERS: stops the program in `stopHere`, looks at the caller's variables, and compares what
# the debugger shows with gdb.expected or lldb.expected. Status 77 if there is no such debugger.
set -eu
debugger=$1 program=$2 printers=$3
tests=$(cd "$(dirname "$0")" && pwd)
command -v "$debugger" >/dev/null || {
    echo "$debugger is not installed"
    exit 77
}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
variables="string wide noString builder token list strings array map handle empty reference time guid none number
    timeValue stringValue record"

if [ "$debugger" = gdb ]; then
    # As the shared library is installed, with the program instead of it.
    scripts=$folder/share/gdb/auto-load
    mkdir -p "$scripts${program%/*}" "$folder/share/zspace"
    cp -R "$printers" "$folder/share/zspace/debugger"
    cp "$printers/libzspace-gdb.py" "$scripts$program-gdb.py"
    {
        printf 'break stopHere\nrun\nup\n'
        for name in $variables; do
            printf 'printf "%s: "\noutput %s\nprintf "\\n"\n' "$name" "$name"
        done
        echo kill
    } >"$folder/commands"
    gdb -nx -batch -iex "set auto-load safe-path $folder" -iex "set auto-load scripts-directory $scripts" \
        -x "$folder/commands" "$program" >"$folder/shown" 2>&1 || true
    sed -n -e "/^warning: /d" -e "s/0x[0-9a-f]* //g" -e "s/object = {<.*/object = .../" -e "/^[a-zA-Z]*: /p" \
        "$folder/shown" >"$folder/found"
else
    # Debian's package does not find its own Python files.
    installed=$(cd "$(dirname "$(readlink -f "$(command -v lldb)" || echo /)")/.." && pwd)
    for directory in "$installed"/lib/python3*/dist-packages "$installed"/lib/python3*/site-packages; do
        [ ! -d "$directory/lldb" ] || PYTHONPATH=$directory${PYTHONPATH:+:$PYTHONPATH}
    done
    export PYTHONPATH="${PYTHONPATH:-}"
    {
        printf 'command script import %s/zspace_lldb.py\nbreakpoint set --name stopHere\nrun\nup\n' "$printers"
        for name in $variables; do
            depth=
            [ "$name" != reference ] || depth="-D 1"
            echo "frame variable $depth $name"
        done
        echo kill
    } >"$folder/commands"
    lldb -b --no-lldbinit -s "$folder/commands" "$program" >"$folder/shown" 2>&1 || true
    sed -n -e '/^(lldb) kill/q' -e '/^(lldb) frame variable/,$p' "$folder/shown" | sed -e '/^(lldb)/d' -e 's/^(.*) \([a-zA-Z]* = \)/\1/' >"$folder/found"
fi
if grep -q -e 'ptrace: ' -e 'Could not trace' -e 'personality set failed' "$folder/shown"; then
    echo "debugging is not permitted here"
    exit 77
fi
if ! diff "$tests/$debugger.expected" "$folder/found"; then
    cat "$folder/shown"
    exit 1
fi
