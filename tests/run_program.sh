#!/usr/bin/env bash
# run_program.sh COMMAND...: runs a test program. Fails unless it comes to its end with at least one
# test passed: a filter that matches nothing and a test that ends the process are no success.
set -uo pipefail

log=$(mktemp)
trap 'rm -f "$log"' EXIT
"$@" 2>&1 | tee "$log"
status=${PIPESTATUS[0]}
if [[ $status -eq 0 ]] && ! grep -qE '^\[  PASSED  \] [1-9][0-9]* tests?\.$' "$log"; then
  echo "the program did not tell how many tests passed" >&2
  status=1
fi
exit "$status"
