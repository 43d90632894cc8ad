#!/usr/bin/env bash
# man_test.sh SOURCE_DIR KIOHOST KIOFLEET: kiohost(1) has the options and the exit codes of
# `kiohost --help` and no others, kiofleet(1) those of `kiofleet --help`, and the pages that are made
# from docs/*.md have an entry for each row of their tables. scdoc takes all of them.
set -euo pipefail
source_dir=$1 kiohost=$2 kiofleet=$3
export LC_ALL=C
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
page=$source_dir/docs/man/kiohost.1.scd

# help_of PROGRAM: the options and the exit codes that it tells of. An option's name stands behind two
# blanks, or behind another name.
help_of() {
  "$1" --help > "$work/help"
  grep -E '^  --' "$work/help" | grep -oE '^  --[a-z-]+|, --[a-z-]+' | grep -oE -- '--.*' |
    sort > "$work/options"
  sed -n '/^Exit codes:/,$p' "$work/help" | tr '\n' ' ' | grep -oE '[:,] [0-9]+ ' |
    grep -oE '[0-9]+' | sort > "$work/codes"
  [[ $(wc -l < "$work/options") -gt 5 && $(wc -l < "$work/codes") -gt 5 ]]
}

# agrees PAGE: whether the page tells of what the help tells of.
agrees() {
  diff "$work/options" <(sed -nE 's/^\*(--[a-z-]+)\*.*/\1/p' "$1" | sort) &&
    diff "$work/codes" <(sed -nE 's/^\*([0-9]+)\*$/\1/p' "$1" | sort)
}
for program in "$kiofleet" "$kiohost"; do
  name=$(basename "$program")
  help_of "$program"
  agrees "$source_dir/docs/man/$name.1.scd" || {
    echo "docs/man/$name.1.scd (>) and $name --help (<) differ" >&2
    exit 1
  }
done
# The comparison sees what is missing, and what is too much.
for change in '/^\*--port\*/d' 's/^\*--open\*$/*--opened*/' '/^\*7\*$/d'; do
  sed "$change" "$page" > "$work/changed"
  if cmp -s "$page" "$work/changed" || agrees "$work/changed" > /dev/null; then
    echo "the comparison does not see $change" >&2
    exit 1
  fi
done

# is_taken PAGE: whether scdoc makes a manual page of it.
is_taken() {
  scdoc < "$1" > "$work/made" || {
    echo "scdoc does not take ${1##*/}" >&2
    return 1
  }
}
for page in "$source_dir"/docs/man/*.scd; do
  is_taken "$page"
done

# rows PAGE: the first cells of all tables, without the marks of Markdown.
rows() {
  awk -F ' *[|] *' '
    /^```/ { in_code = !in_code }
    in_code || !/^[|]/ { in_table = 0; next }
    in_table > 1 { print $2 }
    { ++in_table }' "$1" | tr -d '`*'
}
# entries PAGE: the lines above those that stand further in.
entries() { awk '/^\t/ && before !~ /^\t/ { print before } { before = $0 }' "$1" | tr -d '\\*'; }
# filled PAGE: how many cells with a text there are behind the first one of a row.
filled() {
  awk -F ' *[|] *' '
    /^```/ { in_code = !in_code }
    in_code || !/^[|]/ { in_table = 0; next }
    in_table > 1 { for (i = 3; i < NF; ++i) count += $i != "" }
    { ++in_table }
    END { print count }' "$1"
}
for name in store documents; do
  markdown=$source_dir/docs/$name.md
  awk -v name="kioapp-$name" -f "$source_dir/docs/man/from_markdown.awk" "$markdown" > "$work/page"
  [[ $(rows "$markdown" | wc -l) -gt 30 ]]
  is_taken "$work/page"
  diff <(rows "$markdown") <(entries "$work/page") || {
    echo "docs/$name.md (<) and kioapp-$name(7) (>) differ" >&2
    exit 1
  }
  # A cell begins with a tab, or behind the end of the cell before.
  [[ $(filled "$markdown") -eq $(grep -oE $'^\t|[+][+]$' "$work/page" | wc -l) ]]
  # Each heading, too.
  [[ $(grep -c '^## ' "$markdown") -eq $(($(grep -c '^# ' "$work/page") - 3)) ]]
done
