#!/usr/bin/env bash
# targets_test.sh SOURCE_DIR: each target has a toolchain file, and its name stands wherever targets are
# listed: in the presets, in what ./test says and takes, and on the pages.
# shellcheck disable=SC2016  # the pages have the names in backquotes
set -euo pipefail
cd "$1"
toolchains=$(find cmake/toolchains -name '*-*.cmake' -printf '%f\n' | sed 's/\.cmake$//' | sort)
failures=0
# The last of a pipeline counts in this shell.
shopt -s lastpipe

# compare WHERE: with the names from standard input, each of which is a word.
compare() {
  local found
  found=$(grep -oE '[a-z0-9_]+-(uclibc|glibc|musl)' | sort)
  if [[ $found != "$toolchains" ]]; then
    echo "$1 (>) has not the targets that have a toolchain file (<):"
    diff <(echo "$toolchains") <(echo "$found") || true
    failures=$((failures + 1))
  fi
}

for kind in configure build test; do
  jq -r ".${kind}Presets[].name" CMakePresets.json | compare "CMakePresets.json, ${kind}Presets"
done
bash ./test --help | sed -n '/^Targets:/,/^$/p' | compare './test --help'
{ ./test --target=none 2>&1 || true; } | compare './test --target'
sed -n '/^## The targets/,/^The tests in C/p' docs/porting.md | sed -nE 's/^\| `([^`]*)`.*/\1/p' | compare docs/porting.md
grep -F '`mips-uclibc`, ' README.md | compare README.md
((failures == 0))
