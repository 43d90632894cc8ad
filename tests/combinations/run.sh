#!/usr/bin/env bash
# run.sh: builds the library in every combination of the parts that may be left out, and tests it.
#
# The 16 libraries are linked from the objects of the debug build, which leaving parts out does not
# change. On each of them run the programs in C that call every function it has, with null pointers
# too, and the scripts that compare its names with the list and with the headers. Unit tests run on
# five of them, as CMakeLists.txt says. What CMake makes of the options is tried on the smallest
# library: it is configured, built, installed and used.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit 1
# shellcheck source=cmake/progress.sh
. cmake/progress.sh
work=$(mktemp -d /tmp/k.XXXX) || exit 1
trap 'rm -rf "$work"' EXIT
export TMPDIR=$work

build_preset dev build/build-combinations.log tests/combinations/run.sh combinations || exit 1

folders=(build/dev/tests/combinations/settings*/)
# What takes longest begins first.
checks=$(
  echo smallest
  find "${folders[@]}" -name '*_test' -printf '%f %h\n' | sort -r
  printf 'names %s\n' "${folders[@]%/}"
)
results=$(xargs -P 2 -L 1 tests/combinations/check.sh "$work" <<< "$checks")
status=$?
# All that a check said comes with its failure.
grep '^ok ' <<< "$results" | sort
grep -v '^ok ' <<< "$results" >&2
all=$(wc -l <<< "$checks")
passed=$(grep -c '^ok ' <<< "$results")
printf '%d combinations, %d of %d checks passed\n' "${#folders[@]}" "$passed" "$all"
[[ $status -eq 0 && $passed -eq $all && ${#folders[@]} -eq 16 ]]
