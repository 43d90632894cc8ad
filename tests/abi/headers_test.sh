#!/usr/bin/env bash
# headers_test.sh COMPILER LANGUAGE STANDARD INCLUDE_DIR: each public header compiles alone, twice in
# one file too.
set -euo pipefail
compiler=$1 language=$2 standard=$3 include_dir=$4
count=0
for header in "$include_dir"/kioapp/*.h; do
  name=kioapp/${header##*/}
  # A file without a declaration of its own is not allowed by the standards.
  printf '#include <%s>\n#include <%s>\nextern int g_of_this_file;\n' "$name" "$name" |
    "$compiler" -x "$language" -std="$standard" -pedantic-errors -Wall -Wextra -Werror \
      -I"$include_dir" -fsyntax-only -
  count=$((count + 1))
done
[[ $count -gt 0 ]]
