# shellcheck shell=bash
# What the tests of the scripts have in common; `source` it. SOURCE_DIR is their first argument.
set -euo pipefail
# shellcheck disable=SC2034  # for those that source this
source_dir=$1
work=$(mktemp -d "${TMPDIR:-/tmp}/k.XXXXXX")
trap 'rm -rf "$work"' EXIT
failures=0

# expect WHAT WANTED GOT
expect() {
  if [[ $2 != "$3" ]]; then
    printf '%s: expected\n%s\ngot\n%s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
  fi
}
# expect_in WHAT TEXT FILE: FILE holds the text, which may have several lines.
expect_in() {
  if [[ "$(< "$3")"$'\n' != *"$2"* ]]; then
    printf '%s: expected\n%s\nin\n' "$1" "$2"
    cat "$3"
    failures=$((failures + 1))
  fi
}
# expect_not_in WHAT TEXT FILE
expect_not_in() {
  if [[ "$(< "$3")"$'\n' == *"$2"* ]]; then
    printf '%s: did not expect\n%s\nin\n' "$1" "$2"
    cat "$3"
    failures=$((failures + 1))
  fi
}
# shellcheck disable=SC2034  # for those that source this
# run COMMAND...: runs it with its output in $work/said; tells its exit code in `code`.
run() {
  code=0
  "$@" > "$work/said" 2>&1 < /dev/null || code=$?
}
# copy_scripts: a tree with the scripts alone.
copy_scripts() {
  mkdir -p "$work/tree/cmake" "$work/bin"
  cp "$source_dir"/{demo,test} "$work/tree"
  cp "$source_dir"/cmake/*.sh "$work/tree/cmake"
}
# stand_in NAME: a program of the test's own, from standard input, in the place of another.
stand_in() {
  cat > "$work/bin/$1"
  chmod +x "$work/bin/$1"
}
