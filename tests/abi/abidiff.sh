#!/usr/bin/env bash
# Compares the binary interface of the library with the recorded one; see usage below.
set -euo pipefail
cd "$(dirname "$0")/../.."
records=packaging/abi

usage() {
  cat << 'END'
usage: tests/abi/abidiff.sh [--record] [LIBRARY]

Compares the exported names of the library and their types, those of all members included, with
packaging/abi. Anything but a name that is new fails. Then looks whether the comparison sees two
members that change places, and a name that is gone. Needs what `cmake/packages.sh abi` installs, on
x86-64.

  LIBRARY   a library with debug information; build/dev/src/libkioapp.so, which is brought up to
            date, by default
  --record  writes the record anew instead
END
}
is_recording=false
library=
for argument in "$@"; do
  case $argument in
    --record) is_recording=true ;;
    -h | --help)
      usage
      exit 0
      ;;
    -*)
      usage >&2
      exit 2
      ;;
    *) library=$argument ;;
  esac
done
for program in abidw abidiff; do
  if ! command -v $program > /dev/null; then
    echo "There is no $program. Type: cmake/packages.sh abi" >&2
    exit 1
  fi
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if [[ -z $library ]]; then
  library=build/dev/src/libkioapp.so
  { cmake --preset dev && cmake --build --preset dev --target kioapp; } > "$work/build" 2>&1 || {
    cat "$work/build" >&2
    exit 1
  }
fi
if [[ $(uname -m) != x86_64 ]]; then
  echo "The record is that of x86-64." >&2
  exit 1
fi
if [[ $(readelf -S "$library") != *.debug_info* ]]; then
  echo "$library has no debug information, which tells the types." >&2
  exit 1
fi

# The library's data have their names as aliases, of which debug information tells no type. So they are
# looked at in a library of their own that defines them as the headers declare them; the real one must
# export the same names with the same sizes, but for tables, whose lengths no header tells.
{
  echo '#include <kioapp/kioapp.h>'
  sed -nE 's/^extern KIOAPP_API (.*;)$/\1/p' include/kioapp/*.h | sed 's/\[\];$/[1];/'
} > "$work/data.c"
cc -g -shared -fPIC -Iinclude -o "$work/data.so" "$work/data.c"
objects() {
  nm -D -S --defined-only "$1" |
    awk '$3 ~ /[BDR]/ { print $4, $4 ~ /Array$/ ? "table" : $2 }' | sort
}
if ! diff <(objects "$work/data.so") <(objects "$library") >&2; then
  echo "The data that the headers declare (<) are not those of $library (>)." >&2
  exit 1
fi

# describe LIBRARY FILE: the names of a library with their types; nothing of its build folder.
describe() {
  abidw --exported-interfaces-only --drop-undefined-syms --no-corpus-path --no-comp-dir-path \
    --no-elf-needed --no-show-locs --no-architecture --type-id-style hash --out-file "$2" "$1"
}
describe "$library" "$work/functions.abi"
describe "$work/data.so" "$work/data.abi"
sed -i "s|path='$work/|path='|" "$work/data.abi"
if $is_recording; then
  mkdir -p "$records"
  cp "$work"/{functions,data}.abi "$records"
  echo "recorded in $records"
  exit 0
fi

# compare WHAT RECORD: fails when anything of the record is changed or gone. A change of names alone is
# harmless to abidiff, but two members of one type that change places are just that.
compare() { abidiff --harmless --no-added-syms "$2" "$work/$1.abi" > "$work/report" 2>&1; }
for what in functions data; do
  compare $what "$records/$what.abi" || {
    cat "$work/report" >&2
    echo "The binary interface is not that of $records/$what.abi." >&2
    echo "docs/binary-interface.md tells what may change." >&2
    exit 1
  }
done

# must_see WHAT CHANGE PROGRAM: changes a record by a program in sed, which the comparison must see.
must_see() {
  sed -E "$3" "$records/$1.abi" > "$work/planted.abi"
  if cmp -s "$records/$1.abi" "$work/planted.abi" || compare "$1" "$work/planted.abi"; then
    echo "the comparison does not see this: $2" >&2
    exit 1
  fi
}
must_see data 'two members of one type change places' \
  "s/name='exeflag'/name='kept'/; s/name='pre_exeflag'/name='exeflag'/; s/name='kept'/name='pre_exeflag'/"
must_see functions 'a name that is gone' "s/^( *<elf-symbol name=')crc32('.*)/&\n\1crc33\2/"
must_see functions 'another type of a parameter' \
  "/<function-decl name='is_in_range'/,/<return/s/(type-id=')[^']*(' name='min')/\1$(
    sed -nE "/<function-decl name='crc32'/,/<return/s/.*type-id='([^']*)' name='seed'.*/\1/p" \
      "$records/functions.abi"
  )\2/"
# A name that is new is no change of what there was.
sed -E "/<elf-symbol name='crc32'/d; /<function-decl name='crc32'/,/<\/function-decl/d" \
  "$records/functions.abi" > "$work/planted.abi"
if cmp -s "$records/functions.abi" "$work/planted.abi" || ! compare functions "$work/planted.abi"; then
  cat "$work/report" >&2
  echo "the comparison takes a new name for a change" >&2
  exit 1
fi
echo 'abidiff: the binary interface is the recorded one'
