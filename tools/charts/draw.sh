#!/usr/bin/env bash
# draw.sh NAME|--all|--check: prints a chart in SVG, writes all of them to docs/charts, or fails when one
# there is not what would be printed. They are drawn from recorded figures alone, by Debian's gnuplot-nox.
# shellcheck disable=SC2016  # gnuplot reads $data
set -euo pipefail
cd "$(dirname "$0")/../.."
export LC_ALL=C
charts=(rooms parts document peers reading)
footprint=tests/target/recorded/mips-uclibc.txt
sizes=tools/size/figures.tsv

if ! command -v gnuplot > /dev/null; then
  echo "There is no gnuplot. Type: cmake/packages.sh test" >&2
  exit 1
fi

# kibibytes TITLE FIGURE...: a row of a table, from figures of the footprint in bytes.
kibibytes() {
  local title=$1
  shift
  awk -v title="$title" -v names="$*" '
    { value[$1] = $2 }
    END {
      printf "%s", title
      count = split(names, name, " ")
      for (i = 1; i <= count; ++i) {
        if (!(name[i] in value)) { print "no figure " name[i] > "/dev/stderr"; exit 1 }
        printf "\t%.3f", value[name[i]] / 1024
      }
      print "" }' "$footprint"
}
# plot KIND SETTING...: draws the table of the standard input.
plot() {
  local kind=$1
  shift
  {
    echo '$data << END_OF_DATA'
    cat
    echo END_OF_DATA
    printf '%s\n' "$@"
    echo "load 'tools/charts/$kind.gp'"
  } | gnuplot -d
}

draw_rooms() {
  local room
  {
    printf 'room\tMIPS32\tMIPS16\n'
    for room in platform settings variables firmware auth constants linking; do
      kibibytes "$room" "room_$room" "room_mips16_$room"
    done
  } | plot bars 'set title "Text by room, mips-uclibc"' 'unit = "KiB"' 'bars = 2' 'top = 36'
}
draw_parts() {
  local all=settings+variables+firmware+auth+dump part
  {
    printf 'parts\tMIPS32\tMIPS16\n'
    kibibytes 'whole' "parts_text_$all" "parts_text_mips16_$all"
    for part in dump auth variables firmware; do
      kibibytes "without|$part" "parts_text_${all/+$part/}" "parts_text_mips16_${all/+$part/}"
    done
    kibibytes 'settings|alone' parts_text_settings parts_text_mips16_settings
  } | plot bars 'set title "Text by switch, mips-uclibc"' 'unit = "KiB"' 'bars = 2' 'top = 110'
}
draw_document() {
  awk '
    { value[$1] = $2 }
    END {
      print "document\tall, with the C library and the test store\tthe library alone"
      for (rules = 0; ("document_rules_" rules) in value; rules += 10) {
        printf "%.3f\t%.4f\t%.4f\n", value["document_rules_" rules] / 1024,
          value["cost_exchange_rules_" rules] / 1e6, value["cost_exchange_rules_" rules "_library"] / 1e6
      }
      if (rules < 50) { print "too few documents" > "/dev/stderr"; exit 1 }
    }' "$footprint" |
    plot lines 'set title "One exchange, mips-uclibc"' 'place = "document, KiB"' \
      'unit = "million instructions"' 'lines = 2'
}
draw_reading() {
  awk -F '\t' -v OFS='\t' '
    NR == 1 { print "document", "the library", $4, $5, $6; next }
    { print $2 / 1024, $3 / 1000, $4 / 1000, $5 / 1000, $6 / 1000; ++rows }
    END { if (rows < 5) { print "too few documents" > "/dev/stderr"; exit 1 } }' bench/recorded/reading.tsv |
    plot lines 'set title "Reading every leaf, x86-64"' 'place = "document, KiB"' \
      'unit = "thousand instructions"' 'lines = 4'
}
draw_peers() {
  awk -F '\t' '
    /^#/ { next }
    !($1 in seen) { seen[$1] = 1; target[++targets] = $1 }
    { total[$1, $2, $3] = ($5 + $6 + $7) / 1024 }
    END {
      printf "library"
      for (i = 1; i <= targets; ++i) { printf "\t%s", target[i] }
      print ""
      count = split("libkioapp settings,libkioapp whole,libmxml -,json-c -,expat -,libxml2 -", rows, ",")
      split("libkioapp|settings alone,libkioapp|whole,libmxml,json-c,expat,libxml2", titles, ",")
      for (row = 1; row <= count; ++row) {
        split(rows[row], key, " ")
        printf "%s", titles[row]
        for (i = 1; i <= targets; ++i) {
          if (!((target[i], key[1], key[2]) in total)) {
            print "no figure of " rows[row] " for " target[i] > "/dev/stderr"; exit 1
          }
          printf "\t%.3f", total[target[i], key[1], key[2]]
        }
        print ""
      }
    }' "$sizes" |
    plot bars 'set title "Text, data and bss; bars of libxml2 are cut off"' 'unit = "KiB"' 'bars = 3' 'top = 200'
}

case ${1:-} in
  --all)
    for name in "${charts[@]}"; do
      "draw_$name" > "docs/charts/$name.svg"
    done
    ;;
  --check)
    status=0
    for name in "${charts[@]}"; do
      if ! "draw_$name" | cmp - "docs/charts/$name.svg"; then
        echo "docs/charts/$name.svg is stale: tools/charts/draw.sh --all" >&2
        status=1
      fi
    done
    exit $status
    ;;
  *)
    if [[ $# -ne 1 || " ${charts[*]} " != *" $1 "* ]]; then
      echo "usage: tools/charts/draw.sh --all|--check|${charts[*]}" >&2
      exit 2
    fi
    "draw_$1"
    ;;
esac
