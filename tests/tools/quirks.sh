#!/usr/bin/env bash
# quirks.sh SOURCE_DIR: fails unless docs/quirks.md and the sources tell of the same quirks: each is
# named once on the page and in one comment, `Quirk "name"`, and the tests that hold it exist.
# shellcheck disable=SC2016  # the page has its names in backquotes
set -euo pipefail
cd "$1"
page=docs/quirks.md
status=0

fail() {
  echo "$1"
  status=1
}
# Names from standard input, each followed by its complaint.
fail_each() {
  local name
  while read -r name; do
    fail "$name: $1"
  done
}

listed=$(sed -n 's/^| `\([^`]*\)` |.*/\1/p' "$page" | sort)
comments=$(grep -rhoE '// Quirk( "[^"]*")?' src host include || true)
commented=$(sed -n 's/.*"\(.*\)"/\1/p' <<< "$comments" | sort)
[[ -n $listed && -n $commented ]] || fail "no quirks found"
fail_each "listed more than once" < <(uniq -d <<< "$listed")
fail_each "named in more than one place" < <(uniq -d <<< "$commented")
fail_each "named in no comment" < <(comm -23 <(uniq <<< "$listed") <(uniq <<< "$commented"))
fail_each "not on the page" < <(comm -13 <(uniq <<< "$listed") <(uniq <<< "$commented"))
# Whatever else begins with the word, or has it in another place, would not be counted.
if grep -rn Quirk src host include | grep -v '// Quirk "[^"]*"[:.]'; then
  fail 'a comment on a quirk begins with // Quirk "name":'
fi

# All tests and the names of their rows: "/tests/settings/a_test.cc Suite.Test", "... Rows/Suite".
tests=$(grep -rHzoE --include='*.cc' \
  '(TEST(_F|_P)?|INSTANTIATE_TEST_SUITE_P)\([A-Za-z0-9_]+,[[:space:]]+[A-Za-z0-9_]+' tests |
  tr '\n' ' ' | tr '\0' '\n' |
  sed -E 's/^([^:]*):TEST(_F|_P)?\((.*), +(.*)/\1 \3.\4/
          s/^([^:]*):INSTANTIATE_TEST_SUITE_P\((.*), +(.*)/\1 \2\/\3/
          s/^/\//')

# The page gives a file with or without folders before its name.
complaints=$(awk -F'|' '
  NR == FNR {
    place = $0
    while ((slash = index(place, "/")) > 0) {
      place = substr(place, slash + 1)
      exists[place] = 1
    }
    next
  }
  /^\| `/ {
    name = $2
    gsub(/[` ]/, "", name)
    file = test = ""
    for (held = $4; match(held, /`[^`]*`|rows [A-Za-z]+/); held = substr(held, RSTART + RLENGTH)) {
      word = substr(held, RSTART, RLENGTH)
      if (sub(/^rows /, "", word)) {
        suite = test
        sub(/\.[^.]*$/, "", suite)
        if (!((file " " word "/" suite) in exists)) {
          print name ": there are no rows " word " in " file
        }
        continue
      }
      gsub(/`/, "", word)
      if (word ~ /\.cc$/) {
        file = word
        continue
      }
      test = word
      if (!((file " " test) in exists)) {
        print name ": there is no " test " in " (file == "" ? "a file" : file)
      }
    }
    if (test == "") {
      print name ": no test holds it"
    }
  }
' <(echo "$tests") "$page")
[[ -z $complaints ]] || fail "$complaints"
exit "$status"
