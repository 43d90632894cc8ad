#!/usr/bin/env bash
# temporary_test.sh COMMAND...: a program in C leaves nothing in the temporary directory that it uses.
set -euo pipefail
# The path is short, as the library's commands hold it.
root=$(mktemp -d /tmp/k.XXXX)
trap 'rm -rf "$root"' EXIT
TMPDIR=$root "$@"
left=$(find "$root" -mindepth 1)
if [[ -n $left ]]; then
  printf 'left behind:\n%s\n' "$left" >&2
  exit 1
fi
# Where there is none, it does not run.
if TMPDIR=/none "$@" > /dev/null 2>&1; then
  echo 'it uses no temporary directory' >&2
  exit 1
fi
