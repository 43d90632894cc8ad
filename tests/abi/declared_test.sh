#!/usr/bin/env bash
# declared_test.sh CC NM LIBRARY INCLUDE_DIR [OPTION...]: kioapp.h, compiled with the options, declares
# exactly the names that the library exports.
set -euo pipefail
cc=$1 nm=$2 library=$3 include_dir=$4
shift 4

exported=$("$nm" -D --defined-only "$library" | awk '{print $3}' | sort)
# A declaration a line. Behind the attribute stand the type and the name, then the parameters, the
# size or nothing; a pointer to a function has its name in parentheses.
declared=$(echo '#include <kioapp/kioapp.h>' |
  "$cc" -x c -std=c99 -E -P -I"$include_dir" "$@" - | tr '\n' ' ' | tr ';' '\n' |
  sed -nE 's/.*__attribute__\(\(visibility\("default"\)\)\) *//p' |
  sed -E -e 's/^[^(]*\(\*([A-Za-z0-9_]+)\)\(.*/ \1/' -e 's/[[(].*//' -e 's/.*[ *]//' | sort)
if [[ -z $exported ]] || ! diff <(echo "$exported") <(echo "$declared"); then
  echo 'exported (<) and declared (>) names differ' >&2
  exit 1
fi
