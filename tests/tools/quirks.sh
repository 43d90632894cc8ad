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

# exists FILE TEST, with a file's name as the page gives it: with or without folders before it.
exists() {
  [[ $tests$'\n' == *"/$1 $2"$'\n'* ]]
}
while IFS='|' read -r _ name _ held _; do
  file=
  test=
  while read -r word; do
    case $word in
      '`'*.cc'`') file=${word//'`'/} ;;
      '`'*'`')
        test=${word//'`'/}
        exists "$file" "$test" || fail "$name: there is no $test in ${file:-a file}"
        ;;
      *)
        rows=${word#rows }
        exists "$file" "$rows/${test%.*}" || fail "$name: there are no rows $rows in $file"
        ;;
    esac
  done < <(grep -oE '`[^`]*`|rows [A-Za-z]+' <<< "$held")
  [[ -n $test ]] || fail "$name: no test holds it"
done < <(grep '^| `' "$page")
exit "$status"
