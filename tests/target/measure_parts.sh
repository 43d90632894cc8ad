#!/usr/bin/env bash
# measure_parts.sh TOOL_PREFIX FOLDER NAME...: prints the text of the stripped libraries in the folders
# of these names, one figure a line.
set -euo pipefail
tools=$1 folder=$2
shift 2
stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
for name in "$@"; do
  "${tools}strip" -o "$stripped" "$folder/$name/libkioapp.so"
  "${tools}size" "$stripped" | awk -v name="$name" 'NR == 2 { print name, $1 }'
done
