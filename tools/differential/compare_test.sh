#!/bin/sh
# compare_test.sh PROGRAM LIBRARY: compare.sh finds no difference between a library and itself, and
# one between the library and one that names its result document otherwise.
set -u
here=$(dirname "$0")
program=$1
library=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
: > "$work/nothing"

# expect STATUS TEXT ARGUMENT...: compare.sh ends with the status and says the text.
expect() {
  status=$1
  text=$2
  shift 2
  said=$("$here/compare.sh" --scenarios=300 "$@" 2>&1)
  got=$?
  if [ "$got" -ne "$status" ] || ! printf '%s\n' "$said" | grep -q -e "$text"; then
    printf 'compare.sh %s\nended with %s, not with %s and "%s":\n%s\n' "$*" "$got" "$status" \
      "$text" "$said" >&2
    exit 1
  fi
}

cp -L "$library" "$work/same"
LC_ALL=C sed 's/rssset_result\.xml/rssset_resulT.xml/' "$work/same" > "$work/other"
if cmp -s "$work/same" "$work/other"; then
  echo "the library does not hold the name of the result document" >&2
  exit 1
fi

expect 0 '^300 scenarios: no difference$' --allowed="$work/nothing" "$program" "$library" \
  "$work/same"
expect 1 '^+system .*rssset_resulT.xml' --allowed="$work/nothing" "$program" "$library" \
  "$work/other"
expect 1 'of 300 scenarios differ; the first is [0-9]*:' --allowed="$work/nothing" "$program" \
  "$work/other" "$library"

printf '# The document has another name.\n*: s/rssset_resulT.xml/rssset_result.xml/\n' \
  > "$work/allowed"
expect 0 'no difference but those allowed' --allowed="$work/allowed" "$program" "$library" \
  "$work/other"
printf '# For documents alone.\ndocument: s/rssset_resulT.xml/rssset_result.xml/\n' \
  > "$work/allowed"
expect 1 '^+system .*rssset_resulT.xml' --allowed="$work/allowed" "$program" "$library" \
  "$work/other"
echo '*: s/T/t/' > "$work/allowed"
expect 2 'has no reason' --allowed="$work/allowed" "$program" "$library" "$work/same"
expect 2 'cannot be loaded' "$program" "$library" "$work/nothing"
expect 2 "no file '$work/none'" "$program" "$library" "$work/none"

# The scenarios call every function that the library exports.
nm -D "$program" | awk '{ print $NF }' | sed 's/@.*//' | sort > "$work/called"
uncalled=$(nm -D --defined-only "$library" | awk '{ print $NF }' | sed 's/@.*//' | sort |
  comm -23 - "$work/called")
if [ -n "$uncalled" ]; then
  printf 'no scenario calls what the library exports:\n%s\n' "$uncalled" >&2
  exit 1
fi
