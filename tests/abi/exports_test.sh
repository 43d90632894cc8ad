#!/usr/bin/env bash
# exports_test.sh NM LIBRARY EXPORTS_MAP SOURCE_DIR [PART...]: the library exports the names of
# EXPORTS_MAP and no other, code as functions and data as objects, and each of them is tested from C:
# functions with null pointers too, data in a host that has namesakes. Names of the parts that are left
# out are not exported; what is written for them is passed over.
set -euo pipefail
nm=$1 library=$2 exports_map=$3 source_dir=$4
shift 4
status=0

# compare WHAT EXPECTED ACTUAL: two lists of names.
compare() {
  if [[ -z $2 ]]; then
    echo "$1: the list of expected names is empty" >&2
    status=1
  elif ! diff <(echo "$2") <(echo "$3"); then
    echo "$1 (< expected, > found)" >&2
    status=1
  fi
}
# The names in the part of the map that is global. A comment begins a section, and tells the option
# that its names go with.
mapped() {
  awk -v left_out=" $* " '
    /local:/ { exit }
    /\/\*/ { is_left_out = match($0, /KIO_WITH_[A-Z]+/) &&
      index(left_out, " " substr($0, RSTART + 9, RLENGTH - 9) " ") }
    /^ *[A-Za-z0-9_]+;/ && !is_left_out { gsub(/[ ;]/, ""); print }' "$exports_map" | sort
}
expected=$(mapped "$@")
left_out=$(comm -13 <(echo "$expected") <(mapped))
for part in "$@"; do
  grep -q "KIO_WITH_$part " "$exports_map" || {
    echo "no name goes with KIO_WITH_$part" >&2
    status=1
  }
done
# present: the lines of standard input that are not left out, sorted.
present() { grep -vxF -f <(echo "${left_out:-;}") | sort; }
# exported PATTERN: the names that the library exports as such a kind.
exported() { "$nm" -D --defined-only "$library" | awk -v kind="$1" '$2 ~ kind {print $3}' | sort; }

compare 'exported names' "$expected" "$(exported .)"
# A FUNCTION's name is followed by its parameters, which may begin on the next line.
functions=$(sed -nE 's/^FUNCTION\([^,]*, ([A-Za-z0-9_]+),.*/\1/p' "$source_dir/signatures.c" | present)
compare 'functions' "$functions" "$(exported '^T$')"
objects=$(sed -nE -e 's/^OBJECT\([^,]*, ([A-Za-z0-9_]+)\);/\1/p' \
  -e 's/^(TEXT|TABLE)\(([A-Za-z0-9_]+)(, [0-9]+)?\);/\2/p' "$source_dir/signatures.c" | present)
compare 'objects' "$objects" "$(exported '^[BDR]$')"

# used SUFFIX NAMES: those of the names that stand in a test before such a text.
used() {
  for name in $2; do
    if grep -qE "(^|[^A-Za-z0-9_])$name$1" "$source_dir"/calls_*.c; then
      echo "$name"
    fi
  done
}
compare 'functions called by a test' "$functions" "$(used '\(' "$functions")"
compare 'objects used by a test' "$objects" "$(used '[^A-Za-z0-9_]' "$objects")"

rows=$(sed -nE 's/^ *(ROW|NO_POINTER)\(([A-Za-z0-9_]+).*/\2/p' "$source_dir/null_rows.c" | present)
compare 'functions called with null pointers' "$functions" "$rows"
namesakes=$(sed -nE 's/^NAMESAKE\([a-z]+, ([A-Za-z0-9_]+)\);/\1/p' "$source_dir/namesakes.c" | present)
compare 'data that a host has namesakes of' "$objects" "$namesakes"
exit "$status"
