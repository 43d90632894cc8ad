#!/usr/bin/env bash
# headers_test.sh COMPILER LANGUAGE STANDARD INCLUDE_DIR: each public header compiles alone, twice in
# one file too, with the short names and without; without them it declares none of them.
set -euo pipefail
compiler=$1 language=$2 standard=$3 include_dir=$4

# compiles [OPTION...]: whether the program on standard input does.
compiles() {
  "$compiler" -x "$language" -std="$standard" -pedantic-errors -Wall -Wextra -Werror \
    -I"$include_dir" "$@" -fsyntax-only -
}

short_names=$(sed -n 's/^\(extern \)\?KIOAPP_API [^;(]*[ *]\([A-Za-z0-9_]*\)[[(].*/\2/p' \
  "$include_dir/kioapp/short_names.h")
for name in string check crc32 trim; do
  grep -qx "$name" <<< "$short_names" || {
    echo "short_names.h does not declare $name" >&2
    exit 1
  }
done

count=0
for header in "$include_dir"/kioapp/*.h; do
  name=kioapp/${header##*/}
  # A file without a declaration of its own is not allowed by the standards.
  program=$(printf '#include <%s>\n#include <%s>\nextern int g_of_this_file;\n' "$name" "$name")
  compiles <<< "$program"
  compiles -DKIOAPP_NO_SHORT_NAMES <<< "$program"
  count=$((count + 1))
  if [[ $name == kioapp/short_names.h ]]; then
    continue
  fi
  # A name that is declared cannot become another kind of thing.
  others=$(printf '%s\nenum KioShortNames { %s };\n' "$program" "${short_names//$'\n'/, }")
  compiles -DKIOAPP_NO_SHORT_NAMES <<< "$others"
done
[[ $count -gt 0 ]]

# With the names, kioapp.h declares every one, and so does short_names.h where the others do not.
for name in $short_names; do
  for program in '#include <kioapp/kioapp.h>' \
    $'#define KIOAPP_NO_SHORT_NAMES\n#include <kioapp/kioapp.h>\n#include <kioapp/short_names.h>'; do
    if compiles <<< "$program"$'\n'"enum KioShortNames { $name };" 2> /dev/null; then
      echo "$name is not declared by: $program" >&2
      exit 1
    fi
  done
done
