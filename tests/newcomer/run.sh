#!/usr/bin/env bash
# Adds a field to a copy of this tree as a newcomer would, and looks what that takes; see usage below.
set -euo pipefail
export LC_ALL=C
cd "$(dirname "$0")/../.."

usage() {
  cat << 'END'
usage: tests/newcomer/run.sh

In a copy of the tree, adds the text setting Device/TimeZone, which documents need not hold:

  member.patch    its member of the record alone: this must not compile
  row.patch       its row: all of the library and the host serves the field, and exactly the tests
                  in expected_failures fail
  complete.patch  its row of expectations, its meaning, the layout of the record; the pages are made
                  anew: all pass

At last kiohost sets it by a document and by a variable. Builds what that needs, with the preset dev.
END
}
if (($# > 0)); then
  usage
  [[ $1 == -h || $1 == --help ]] && exit 0
  exit 2
fi

here=$PWD/tests/newcomer
root=${TMPDIR:-/tmp}
# The library's shell commands hold the path.
((${#root} < 12)) || root=/tmp
work=$(mktemp -d "$root/k.XXXXXX")
host_pid=
cleanup() {
  if [[ -n $host_pid ]]; then
    kill "$host_pid" 2> /dev/null || true
    wait "$host_pid" || true
  fi
  rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

say() { printf '== %s (%d s)\n' "$1" $SECONDS; }
fail() {
  printf 'tests/newcomer/run.sh: %s\n' "$1" >&2
  exit 1
}

# The tree as it is here, changes that are not committed included, and a repository for its patches.
say 'copies the tree'
objects=$(git rev-parse --path-format=absolute --git-path objects)
mkdir "$work/tree"
git ls-files -z --cached --others --exclude-standard |
  while IFS= read -r -d '' file; do
    [[ ! -e $file && ! -L $file ]] || printf '%s\0' "$file"
  done | tar --null -T - -cf - | tar -xf - -C "$work/tree"
cd "$work/tree"
git init -q
# For the states of files that the patches were made from.
export GIT_ALTERNATE_OBJECT_DIRECTORIES=$objects
git add -A

patch_tree() {
  git apply --3way --whitespace=nowarn "$here/$1" > "$work/apply.log" 2>&1 || {
    cat "$work/apply.log" >&2
    fail "tests/newcomer/$1 does not fit this tree any more: make it anew"
  }
  say "applied $1"
}

targets=(abi_layout catalogue_test field_rows_test fields_test reference_pages reference_pages_test
  variable_catalogue openapi kiohost)
build() { cmake --build --preset dev -- "$@" > "$work/build.log" 2>&1; }
build_all() {
  build "${targets[@]}" || {
    tail -n 40 "$work/build.log" >&2
    fail "$1"
  }
  say 'built'
}

# Prints the tests that fail, one a line.
failures() {
  local program
  for program in fields/field_rows_test variables/fields_test tools/catalogue_test \
    tools/reference_pages_test; do
    build/dev/tests/$program --gtest_brief=1 > "$work/${program##*/}.log" 2>&1 || true
    # A program that ends early has no summary.
    grep -q '^\[==========\]' "$work/${program##*/}.log" || echo "$program"
    sed -n 's/^\[  FAILED  \] \([^ ,]*[./][^ ,]*\).*/\1/p' "$work/${program##*/}.log"
  done | sort -u
  ctest --preset dev -j 2 -R '^(abi_layout|docs\.(actions|documents|known_nodes|openapi|store|variables)\..*)$' \
    > "$work/ctest.log" 2>&1 || true
  grep -q 'tests passed' "$work/ctest.log" || echo ctest
  sed -n 's/^[[:space:]]*[0-9]* - \([^ ]*\) (.*/\1/p' "$work/ctest.log"
}

# compare FILE: whether exactly the tests fail that the file names.
compare() {
  failures > "$work/failures"
  if ! diff -u --label expected --label failed <(grep -v '^#' "$1" | sort) \
    <(sort "$work/failures") >&2; then
    fail 'other tests fail than expected'
  fi
}

# told LOG TEXT: whether a test said so.
told() {
  grep -qF -- "$2" "$work/$1" || fail "$1 does not say: $2"
  printf '   %s\n' "$2"
}

cmake --preset dev > "$work/configure.log" 2>&1 || {
  tail -n 20 "$work/configure.log" >&2
  fail 'the copy cannot be configured'
}

patch_tree member.patch
if build src/CMakeFiles/kioapp_objects.dir/settings/sections.cc.o; then
  fail 'a member without a row compiles'
fi
offset=$(printf '#include <kioapp/record.h>\n#include <stddef.h>\n#include <stdio.h>\n%s\n' \
  'int main(void) { return printf("%zu", offsetof(RssXmlData, timeZone)) < 0; }' |
  cc -Iinclude -x c - -o "$work/offset" && "$work/offset")
told build.log 'a member of the record has neither a row nor a place in the bookkeeping'
told build.log "($offset == "

patch_tree row.patch
build_all 'a row and a member are not enough to build everything'
compare "$here/expected_failures"
say 'exactly the expected tests fail'
told field_rows_test.log 'tests/fields has no row of expectations for Device_TimeZone'
told reference_pages_test.log 'tools/meanings.h does not say what Device/TimeZone means'
told ctest.log 'RssXmlData: size is'
told ctest.log 'variables.json is stale'

patch_tree complete.patch
build_all 'the completed tree does not build'
build reference_docs || fail 'the pages cannot be made'
build kiohost || fail 'the host does not take the new catalogue'
compare /dev/null
for program in fields/field_rows_test variables/fields_test; do
  build/dev/tests/$program --gtest_filter='*TimeZone*' > "$work/own.log"
  grep '^\[       OK \]' "$work/own.log" | sed 's/^\[       OK \] \(.*\) (.*/   \1/'
done
say 'all pass, the field in each of these'
grep -q '"rss_TimeZone"' docs/variables.json || fail 'the catalogue does not list it'
for page in variables store documents; do
  grep -q 'TimeZone' "docs/$page.md" || fail "docs/$page.md does not list it"
done

# Over HTTP.
kiohost=build/dev/host/kiohost
: > "$work/out"
"$kiohost" --store "$work/store.db" --temp-dir "$work" --script-dir host/scripts --port 0 --open \
  > "$work/out" 2> "$work/err" &
host_pid=$!
router=
for _ in {1..400}; do
  router=$(sed -n 's|^listening on \(http://.*\)/$|\1|p' "$work/out")
  if [[ -n $router ]] || ! kill -0 "$host_pid" 2> /dev/null; then
    break
  fi
  sleep 0.05
done
[[ -n $router ]] || fail "kiohost does not listen: $(cat "$work/err")"

# expect WHAT WANTED GOT
expect() { [[ $2 == "$3" ]] || fail "$1: expected \"$2\", got \"$3\""; }
# post DOCUMENT: prints the result code.
post() {
  curl -sSf --data-binary "@$1" "$router/settings" |
    sed -n 's|.*<RssSetResult>\(.*\)</RssSetResult>.*|\1|p'
}
node() { "$kiohost" --store "$work/store.db" --get /sys/timezone; }

awk '{ print } /<\/DeviceName>/ { print "<TimeZone>CET-1CEST</TimeZone>" }' host/demo/change.xml \
  > "$work/zone.xml"
expect 'a document without it' 0 "$(post host/demo/change.xml)"
expect 'the variable before' '' "$(curl -sSf "$router/vars/rss_TimeZone")"
expect 'a document with it' 0 "$(post "$work/zone.xml")"
expect 'the node' CET-1CEST "$(node)"
expect 'the variable' CET-1CEST "$(curl -sSf "$router/vars/rss_TimeZone")"
expect 'the variable by its path' CET-1CEST "$(curl -sSf "$router/vars/Device/TimeZone")"
expect 'an older document' 0 "$(post host/demo/change.xml)"
expect 'the node after that' CET-1CEST "$(node)"
curl -sSf "$router/vars" -o "$work/vars.json"
grep -q '"rss_TimeZone"' "$work/vars.json" || fail 'GET /vars does not list it'
expect 'setting the variable' '0 done' "$(curl -sS -X PUT -d UTC0 "$router/vars/rss_TimeZone")"
for action in VerifyAllRssVars ApplyAllRssVars; do
  expect "$action" '0 done' "$(curl -sS -X POST "$router/actions/$action")"
done
expect 'the node at last' UTC0 "$(node)"
say 'kiohost sets it by a document and by a variable, and keeps it for an older document'
