#!/usr/bin/env bash
# record.sh: counts the instructions of reading documents of several sizes, by the library and by other
# parsers, and writes bench/recorded/reading.tsv and the charts anew. The counts repeat but for what the
# C library's allocator does; they are those of Debian 12 on x86-64.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/bench
log=$(cmake --preset bench 2>&1 && cmake --build --preset bench --target kio_reading_counts 2>&1) || {
  echo "$log" >&2
  exit 1
}
readers=(library pugixml rapidxml expat)
recorded=bench/recorded/reading.tsv
mkdir -p "${recorded%/*}"
{
  printf 'rules\tbytes'
  printf '\t%s' "${readers[@]}"
  echo
  for rules in 0 10 20 30 40; do
    row=$rules
    for reader in "${readers[@]}"; do
      said=$(valgrind --tool=callgrind --instr-atstart=no --callgrind-out-file=/dev/null \
        "$build/bench/kio_reading_counts" "$reader" "$rules" 2>&1)
      count=$(sed -n 's/.*Collected : *//p' <<< "$said")
      bytes=$(grep -xE '[0-9]+' <<< "$said")
      ((count > 0)) || {
        echo "not counted: $said" >&2
        exit 1
      }
      [[ $row != "$rules" ]] || row+=$'\t'$bytes
      row+=$'\t'$count
    done
    echo "$row"
  done
} > "$recorded.new"
mv "$recorded.new" "$recorded"
cat "$recorded"
tools/charts/draw.sh --all
