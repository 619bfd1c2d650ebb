#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# play.sh PROGRAM: runs examples/fleet/uninstall.yml with the real ansible-playbook against two private file trees, one
# whose service is removed and one whose installer is missing. Needs ansible and root; status 77 means that one is
# missing.
set -eu
program=$1
here=$(cd "$(dirname "$0")/../.." && pwd)
if [ "$(id -u)" -ne 0 ] || ! command -v ansible-playbook >/dev/null; then
    echo "This takes root and ansible-playbook" >&2
    exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export ANSIBLE_LOCAL_TEMP="$work/ansible" ANSIBLE_REMOTE_TEMP="$work/ansible" ANSIBLE_NOCOLOR=1 HOME="$work"
. "$here/tests/fleet/machine.sh"

echo "[all]" >"$work/inventory"
for name in goes missing; do
    machine "$work/$name"
    mkdir -p "$root/$service"
    [ "$name" = missing ] || installed "$removes_itself"
    printf '#!/bin/sh\nexec "%s/scripts/private-root.sh" "%s" /program/CdkRSUninstaller\n' "$here" "$root" >"$work/run-$name"
    chmod 755 "$work/run-$name"
    echo "$name ansible_connection=local ansible_become=false root=$root uninstaller=$work/run-$name" >>"$work/inventory"
done
ansible-playbook -i "$work/inventory" -e collected="$work/collected" -e patience=1 \
    "$here/examples/fleet/uninstall.yml" >"$work/output" 2>&1 || :

fail() {
    cat "$work/output" >&2
    echo "$*" >&2
    exit 1
}
grep -q '^goes .* failed=0 ' "$work/output" || fail "The machine whose service went is reported as failed"
grep -q '^missing .* failed=1 ' "$work/output" || fail "The machine whose installer is missing is not reported as failed"
grep -q '"msg": "failed to start: .*No such file or directory' "$work/output" || fail "The reason is not reported"
for name in goes missing; do
    grep -q 'Running uninstall script: ' "$work/collected/$name.txt" || fail "The report of $name was not fetched"
    [ "$(stat -c %a "$work/$name/var/log/com.coraldesk.remote")" = 755 ] || fail "The directory's mode"
done
