#!/usr/bin/env bash
# page.sh [--check PAGE|--limits]: prints the page with the recorded figures of all targets, tells
# whether a page is what would be printed, or fails when a figure is above its limit.
# shellcheck disable=SC2016  # backticks are the page's
set -euo pipefail
cd "$(dirname "$0")"

if [[ ${1:-} == --check ]]; then
  diff "$2" <(./page.sh) && echo 'the page holds what is recorded'
  exit
fi

targets=(mips-uclibc mipsel-uclibc mips-glibc mipsel-glibc)
# grouped NUMBER: by thousands.
grouped() { sed -E ':again; s/([0-9])([0-9]{3})($|,)/\1,\2\3/; t again' <<< "$1"; }
# figure TARGET NAME
figure() { grouped "$(awk -v name="$2" '$1 == name { print $2; found = 1 } END { if (!found) print "-" }' \
  "recorded/$1.txt")"; }
# row TITLE NAME: a line of a table, a column for each target.
row() {
  local target
  printf '| %s |' "$1"
  for target in "${targets[@]}"; do
    printf ' %s |' "$(figure "$target" "$2")"
  done
  echo
}
head_of_table() {
  local target
  printf '| %s |' "$1"
  printf ' `%s` |' "${targets[@]}"
  printf '\n|---|'
  for target in "${targets[@]}"; do
    printf -- '---:|'
  done
  echo
}
# limit TITLE FIGURE LIMIT GOAL: what a figure must not exceed, and what it should come down to.
limit() {
  local word=held value
  value=$(number "$2")
  case $2 in
    largest_*) value=$(largest "${2#largest_}") ;;
  esac
  (($4 == 0 || value <= $4)) || word='held; not yet the goal'
  ((value <= $3)) || word=MISSED
  printf '| %s | %s | %s | %s | %s |\n' "$1" "$(grouped "$3")" "$(grouped "$4")" "$(grouped "$value")" "$word"
}
# deepest: the largest stack of the first target.
number() { awk -v name="$1" '$1 == name {print $2}' recorded/mips-uclibc.txt; }
# A login adds a client node.
largest() { awk -v begin="$1" 'index($1, begin) == 1 && $1 !~ /heap_login/ && $2 > most {most = $2} END {print most + 0}' \
  recorded/mips-uclibc.txt; }
# The scenarios that have a figure of a kind.
names() { sed -nE "s/^$1_([a-z0-9_]+) .*/\1/p" recorded/mips-uclibc.txt; }

limits() {
  limit 'Text' text 98304 90112
  limit 'Text, with `-mips16`' text_mips16 73728 65536
  limit 'Text of the settings exchange alone, with `-mips16`' parts_text_mips16_settings 49152 40960
  limit 'Data and bss' data_and_bss 29049 27000
  limit 'Stack' largest_stack_ 11920 8192
  limit 'Calls of the allocator but for client nodes and timers' largest_heap_ 0 0
  limit 'Exchange of the full document' cost_exchange_library 260000 200000
  limit 'Firmware search' cost_firmware_search_library 110000 80000
  limit 'Variable read' cost_variable_read_library 1000 600
  limit 'CRC of 1 MiB' cost_crc_1mib_library 11534400 6291456
}
if [[ ${1:-} == --limits ]]; then
  limits
  if limits | grep MISSED > /dev/null; then
    exit 1
  fi
  exit 0
fi

cat page_begin.md
cat << 'END_OF_TEXT'

## Limits

For `mips-uclibc`, in bytes or instructions of the library alone. A test fails when a limit is missed.
The stack is the deepest of all that is measured below.

| Figure | Limit | Goal | Value | |
|---|---:|---:|---:|---|
END_OF_TEXT
limits

cat << 'END_OF_TEXT'

## Size

Bytes of the stripped library.

END_OF_TEXT
head_of_table 'Figure'
row 'Text, read-only data included' text
row 'Text, with `-mips16`' text_mips16
row 'Data' data
row 'Bss' bss
row 'Of data and bss: `rssXmlData`' settings_record
row 'Of data and bss: other buffers' other_static_buffers

cat << 'END_OF_TEXT'

The rest of the data are tables with addresses, read-only once the loader has set them.

## Rooms

Code of each room of the sources for `mips-uclibc`, in bytes. *Constants* are all read-only data; *linking*
is what the loader needs: names, relocations, stubs.

![Bars: text by room, in both instruction sets](charts/rooms.svg)

| Room | Text | With `-mips16` |
|---|---:|---:|
END_OF_TEXT
for room in platform settings variables firmware auth constants linking; do
  printf '| %s | %s | %s |\n' "$room" "$(figure mips-uclibc "room_$room")" \
    "$(figure mips-uclibc "room_mips16_$room")"
done
cat << 'END_OF_TEXT'

## Parts

Text of the stripped library for `mips-uclibc` in every combination of the parts that a build may
leave out (`KIO_WITH_...`). The settings exchange is always there. [size.md](size.md) compares them with
other libraries.

![Bars: text of the whole library, without each part, and of the settings exchange alone](charts/parts.svg)

| Variables | Firmware | Login | Dump | Text | With `-mips16` |
|:---:|:---:|:---:|:---:|---:|---:|
END_OF_TEXT
sed -nE 's/^parts_text_(settings[a-z+]*) .*/\1/p' recorded/mips-uclibc.txt | while read -r combination; do
  printf '|'
  for part in variables firmware auth dump; do
    [[ $combination+ == *+$part+* ]] && printf ' x |' || printf '  |'
  done
  printf ' %s | %s |\n' "$(figure mips-uclibc "parts_text_$combination")" \
    "$(figure mips-uclibc "parts_text_mips16_$combination")"
done

cat << 'END_OF_TEXT'

## Stack

Bytes, with the C library's share; the emulated `system` runs the real shell.

END_OF_TEXT
head_of_table 'Call, log level'
while IFS= read -r name; do
  row "\`${name%_level*}\`, ${name##*_level}" "stack_$name"
done < <(names stack)

cat << 'END_OF_TEXT'

## Heap

Calls of `malloc`, `calloc` and `realloc`.

END_OF_TEXT
head_of_table 'Call, log level'
while IFS= read -r name; do
  row "\`${name%_level*}\`, ${name##*_level}" "heap_$name"
done < <(names heap)

cat << 'END_OF_TEXT'

## Instructions

All that the call executes, the test's store and the C library included, and below it the part of
the library itself. `system` does nothing here.

END_OF_TEXT
head_of_table 'Call'
while IFS= read -r name; do
  if [[ $name == *_library ]]; then
    row "\`${name%_library}\`, the library alone" "cost_$name"
  else
    row "\`$name\`" "cost_$name"
  fi
done < <(names cost | grep -v _rules_)

cat << 'END_OF_TEXT'

### By the size of the document

An exchange of the full document with fewer rules for each radio, on a device in factory state.

![Lines: instructions of an exchange by the size of the document](charts/document.svg)

| Rules | Document, bytes | All, `mips-uclibc` | The library alone |
|---:|---:|---:|---:|
END_OF_TEXT
for rules in 0 10 20 30 40; do
  printf '| %s | %s | %s | %s |\n' "$rules" "$(figure mips-uclibc "document_rules_$rules")" \
    "$(figure mips-uclibc "cost_exchange_rules_$rules")" \
    "$(figure mips-uclibc "cost_exchange_rules_${rules}_library")"
done

cat << 'END_OF_TEXT'

## Where the text goes

The largest functions for `mips-uclibc`, in bytes of code.

| Bytes | Function |
|---:|---|
END_OF_TEXT
sed -nE 's/^symbol ([0-9]+) (.*)/\1 \2/p' recorded/mips-uclibc.txt | while read -r size name; do
  echo "| $size | \`$name\` |"
done
