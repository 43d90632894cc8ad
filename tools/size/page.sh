#!/usr/bin/env bash
# page.sh [--check PAGE]: prints the page with the recorded sizes, or tells whether a page is what would
# be printed.
set -euo pipefail
cd "$(dirname "$0")"
export LC_ALL=C

if [[ ${1:-} == --check ]]; then
  if ! diff "$2" <(./page.sh); then
    echo "$2 is stale: tools/size/page.sh > docs/size.md" >&2
    exit 1
  fi
  # The same library is on record for the footprint too.
  if ! awk -F '[\t ]' '
    FNR == NR { if ($1 == "text") footprint = $2; next }
    $1 == "mipsel-glibc" && $2 == "libkioapp" && $3 == "whole" { size = $5 }
    END { exit !(size > 0 && (size - footprint) ^ 2 <= (footprint * 0.002) ^ 2) }
    ' ../../tests/target/recorded/mipsel-glibc.txt figures.tsv; then
    echo "The library in tools/size/figures.tsv is not that of docs/footprint.md:" >&2
    echo "tools/size/record.sh library" >&2
    exit 1
  fi
  exit
fi

cat page_begin.md
cat << 'END_OF_TEXT'

![Bars: text, data and bss of the library and its peers on three targets](charts/peers.svg)
END_OF_TEXT

awk -F '\t' '
  function grouped(number, text) {
    text = number
    while (match(text, /[0-9][0-9][0-9][0-9]($|,)/)) {
      text = substr(text, 1, RSTART) "," substr(text, RSTART + 1)
    }
    return text
  }
  function needs(names, count, i, name, text) {
    count = split(names, name, " ")
    for (i = 1; i <= count; ++i) {
      if (name[i] !~ /^(libc|libm|ld|ld-linux[a-z0-9-]*)\.so/) {
        sub(/\.so.*/, "", name[i])
        text = text (text == "" ? "" : ", ") "`" name[i] "`"
      }
    }
    return text
  }
  function row(title) {
    printf "| %s | %s | %s | %s | %s | %s |\n", title, grouped($5), grouped($6), grouped($7), grouped($8),
      needs($9)
  }
  function finish() {
    if (further != "") {
      printf "\n`libxml2` needs these, and they need one another: %s. Together they take %s bytes of files.\n",
        further, grouped(bytes)
    }
    further = ""
    bytes = 0
  }
  BEGIN {
    part["whole"] = "`libkioapp`, whole"
    part["without_dump"] = "without `KIO_WITH_DUMP`"
    part["without_auth"] = "without `KIO_WITH_AUTH`"
    part["without_variables"] = "without `KIO_WITH_VARIABLES`"
    part["without_firmware"] = "without `KIO_WITH_FIRMWARE`"
    part["settings"] = "without all four: the settings alone"
  }
  /^#/ { next }
  $1 != target {
    finish()
    target = $1
    printf "\n## `%s`\n\n| Library | Text | Data | Bss | File | Needs |\n|---|---:|---:|---:|---:|---|\n", target
  }
  $2 == "libkioapp" { row(part[$3]); next }
  $3 == "-" { row("`" $2 "` " $4); next }
  { further = further (further == "" ? "" : ", ") $2; bytes += $8 }
  END { finish() }' figures.tsv

cat << 'END_OF_TEXT'

## Measured anew

    tools/size/record.sh library    # builds the library for each of the targets, in all variants
    tools/size/record.sh peers      # fetches the packages by apt-get and measures what is in them

The second takes package lists of its own, in a temporary folder; nothing is installed. Debian's packages
of an architecture do not change after a release, but for faults that are mended. `tests/target/record.sh`
runs the first. The sizes for uClibc, of every combination of the parts, stand in
[footprint.md](footprint.md#parts).
END_OF_TEXT
