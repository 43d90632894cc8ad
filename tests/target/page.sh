#!/usr/bin/env bash
# page.sh [--check PAGE]: prints the page with the recorded figures of all targets, or tells whether
# a page is what would be printed.
# shellcheck disable=SC2016  # backticks are the page's
set -euo pipefail
cd "$(dirname "$0")"

if [[ ${1:-} == --check ]]; then
  diff "$2" <(./page.sh) && echo 'the page holds what is recorded'
  exit
fi

targets=(mips-uclibc mipsel-uclibc mips-glibc mipsel-glibc)
# figure TARGET NAME: grouped by thousands.
figure() {
  awk -v name="$2" '$1 == name {
    text = $2
    while (match(text, /[0-9][0-9][0-9][0-9]($|,)/)) {
      text = substr(text, 1, RSTART) "," substr(text, RSTART + 1)
    }
    print text; found = 1 }
    END { if (!found) print "-" }' "recorded/$1.txt"
}
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
# goal TITLE LIMIT VALUE
goal() {
  local word=held
  (($3 <= $2)) || word=missed
  printf '| %s | %d | %d | %s |\n' "$1" "$2" "$3" "$word"
}
# deepest: the largest stack of the first target.
number() { awk -v name="$1" '$1 == name {print $2}' recorded/mips-uclibc.txt; }
# A login adds a client node.
largest() { awk -v begin="$1" 'index($1, begin) == 1 && $1 !~ /heap_login/ && $2 > most {most = $2} END {print most + 0}' \
  recorded/mips-uclibc.txt; }
# The scenarios that have a figure of a kind.
names() { sed -nE "s/^$1_([a-z0-9_]+) .*/\1/p" recorded/mips-uclibc.txt; }

cat page_begin.md
cat << 'END_OF_TEXT'

## Goals

For `mips-uclibc`, in bytes; the stack is the deepest of all that is measured below.

| Figure | Goal | Value | |
|---|---:|---:|---|
END_OF_TEXT
goal 'Text' 65536 "$(number text)"
goal 'Text of the settings exchange alone, with `-mips16`' 49152 "$(number parts_text_mips16_settings)"
goal 'Data and bss' 49152 "$(number data_and_bss)"
goal 'Stack' 24576 "$(largest stack_)"
goal 'Calls of the allocator but for client nodes and timers' 0 "$(largest heap_)"

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

## Parts

Text of the stripped library for `mips-uclibc` in every combination of the parts that a build may
leave out (`KIO_WITH_...`). The settings exchange is always there.

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
done < <(names cost)

cat << 'END_OF_TEXT'

## Where the text goes

The largest functions for `mips-uclibc`, in bytes of code.

| Bytes | Function |
|---:|---|
END_OF_TEXT
sed -nE 's/^symbol ([0-9]+) (.*)/\1 \2/p' recorded/mips-uclibc.txt | while read -r size name; do
  echo "| $size | \`$name\` |"
done
