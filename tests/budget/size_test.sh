#!/bin/sh
# size_test.sh LIBRARY LIMIT: fails when the stripped library has more than LIMIT bytes of text,
# read-only data included.
set -eu
stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
strip -o "$stripped" "$1"
text=$(size "$stripped" | awk 'NR == 2 { print $1 }')
echo "text: $text bytes, at most $2"
test "$text" -gt 0
test "$text" -le "$2"
