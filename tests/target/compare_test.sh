#!/usr/bin/env bash
# compare_test.sh: what compare.sh says of figures near the record and far from it.
set -euo pipefail
cd "$(dirname "$0")"
work=$(mktemp -d "${TMPDIR:-/tmp}/k.XXXXXX")
trap 'rm -rf "$work"' EXIT
printf '%s\n' 'text 10000' 'heap_login 0' 'symbol 900 a::function' > "$work/recorded"
failures=0

# expect VERDICT LINE...: what becomes of measured figures. Who fails is told what to do.
expect() {
  local wanted=$1 found=holds
  shift
  printf '%s\n' "$@" > "$work/measured"
  ./compare.sh "$work/measured" "$work/recorded" > "$work/said" 2>&1 || found=fails
  if [[ $found == fails ]] && ! grep -q 'tests/target/record.sh measures all targets' "$work/said"; then
    found='fails and names no script'
  fi
  if [[ $found != "$wanted" ]]; then
    printf 'expected that it %s, it %s: %s\n' "$wanted" "$found" "$*"
    failures=$((failures + 1))
  fi
}

expect holds 'text 10000' 'heap_login 0'
expect holds 'text 10020' 'heap_login 0'
expect holds 'text 9980' 'heap_login 0'
expect holds 'text 10000' 'heap_login 0' 'symbol 1000 another'
expect fails 'text 10021' 'heap_login 0'
expect fails 'text 9979' 'heap_login 0'
expect fails 'text 10000' 'heap_login 1'
expect fails 'text 10000'
expect fails 'text 10000' 'heap_login 0' 'data 5'
: > "$work/recorded"
expect fails 'text 10000' 'heap_login 0'
((failures == 0))
