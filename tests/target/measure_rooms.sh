#!/usr/bin/env bash
# measure_rooms.sh TOOL_PREFIX LIBRARY MIPS16_LIBRARY: prints what of each library's text is code of
# which folder of src/, one figure a line. Each library has the linker's map beside it.
set -euo pipefail
tools=$1
shift
stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
kind=room
for library in "$@"; do
  "${tools}strip" -o "$stripped" "$library"
  text=$("${tools}size" "$stripped" | awk 'NR == 2 { print $1 }')
  # Long names of sections stand alone on a line. Of constants only the sum is told, as the linker puts
  # equal texts into one place.
  awk -v kind="$kind" -v text="$text" '
    function number(hex, i, value) {
      for (i = 3; i <= length(hex); ++i) {
        value = value * 16 + index("0123456789abcdef", substr(hex, i, 1)) - 1
      }
      return value
    }
    /^Linker script and memory map/ { begun = 1 }
    !begun { next }
    /^\.[a-z]/ { in_constants = $1 == ".rodata"; if (in_constants) constants += number($3) }
    NF == 1 && /^ \./ { section = $1; next }
    /^ +0x/ && section != "" { $0 = " " section " " $0 }
    { section = "" }
    $1 ~ /^\.(text|mips16)/ && $2 ~ /^0x/ && $4 ~ /[.]dir\// {
      room = $4
      sub(/.*[.]dir\/([._]+\/)*(src\/)?/, "", room)
      sub(/\/.*/, "", room)
      code[room] += number($3)
    }
    END {
      count = split("platform settings variables firmware auth", rooms, " ")
      rest = text - constants
      for (i = 1; i <= count; ++i) {
        if (!(rooms[i] in code)) { print "no code of " rooms[i] > "/dev/stderr"; exit 1 }
        print kind "_" rooms[i], code[rooms[i]]
        rest -= code[rooms[i]]
        delete code[rooms[i]]
      }
      for (room in code) { print "code of " room ", which is no room" > "/dev/stderr"; exit 1 }
      print kind "_constants", constants
      print kind "_linking", rest
    }' "$library.map"
  kind=room_mips16
done
