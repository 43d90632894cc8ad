#!/usr/bin/env bash
# measure.sh TOOL_PREFIX LIBRARY MIPS16_LIBRARY PROGRAM PLUGIN EMULATOR...: prints what a library for
# the target takes, one figure a line, and after the figures its largest symbols. TOOL_PREFIX is what
# the names of size, nm and strip begin with; MIPS16_LIBRARY is only looked at for its size.
set -euo pipefail
tools=$1 library=$2 mips16_library=$3 program=$4 plugin=$5
shift 5
emulator=("$@")
# The C library looks through the environment, and the temporary directory's path has a length: both are
# part of the figures.
alone=(env -i PATH=/usr/bin:/bin)

stripped=$(mktemp)
trap 'rm -f "$stripped" "$stripped.16"' EXIT
"${tools}strip" -o "$stripped" "$library"

# The columns of size; read-only data count as text.
"${tools}size" "$stripped" | awk 'NR == 2 {
  print "text", $1; print "data", $2; print "bss", $3; print "data_and_bss", $2 + $3 }'
"${tools}strip" -o "$stripped.16" "$mips16_library"
"${tools}size" "$stripped.16" | awk 'NR == 2 { print "text_mips16", $1 }'
record=$("${tools}nm" -S "$library" | awk '$4 == "rssXmlData" {print $2}')
record=$((16#$record))
echo "settings_record $record"
# Tables with addresses are data for as long as the loader works, and read-only from then on.
"${tools}size" -A "$stripped" | awk -v record="$record" '
  $1 ~ /^\.s?(data|bss)$/ { writable += $2 }
  END { print "other_static_buffers", writable - record }'

"${alone[@]}" "${emulator[@]}" "$program"
# "cost_NAME ALL SHARE"
costs=$("${alone[@]}" "${emulator[0]}" -plugin "$plugin" "${emulator[@]:1}" "$program" --costs)
if ! grep -Eq '^cost_' <<< "$costs" || grep -Evq '^cost_[a-z0-9_]+ [1-9][0-9]* [1-9][0-9]*$' <<< "$costs"; then
  echo "the instructions are not counted: $costs" >&2
  exit 1
fi
awk '{print $1, $2; print $1 "_library", $3}' <<< "$costs"

# A function of two names is told once, without its parameters.
"${tools}nm" -C -S --size-sort -r "$library" | awk '
  function number(text, i, value) {
    for (i = 1; i <= length(text); ++i) {
      value = value * 16 + index("0123456789abcdef", substr(text, i, 1)) - 1
    }
    return value
  }
  $3 ~ /^[tT]$/ && !($1 in seen) && count < 20 {
    seen[$1] = 1
    ++count
    size = number($2)
    sub(/^[^ ]+ [^ ]+ [^ ]+ /, "")
    gsub(/\(anonymous namespace\)::/, "")
    sub(/\(.*/, "")
    sub(/\.localalias.*/, "")
    print "symbol", size, $0
  }'
