#!/usr/bin/env bash
# temporary_test.sh SOURCE_DIR PROGRAM...: test programs whose tests end processes of their own leave
# nothing in the temporary directory.
# shellcheck source=tests/scripts/check.sh
. "$(dirname "$0")/check.sh"
root=$(mktemp -d /tmp/k.XXXX)
trap 'rm -rf "$work" "$root"' EXIT
for program in "${@:2}"; do
  TMPDIR=$root run "$program"
  expect "exit code of ${program##*/}" 0 "$code"
  expect "left by ${program##*/}" '' "$(ls -A "$root")"
done
# They use it at all: they do not run where there is none.
for program in "${@:2}"; do
  TMPDIR=/none run "$program"
  expect "without a temporary directory ${program##*/}" fails "$( ((code == 0)) || echo fails)"
done
((failures == 0))
