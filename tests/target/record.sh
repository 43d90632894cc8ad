#!/usr/bin/env bash
# record.sh: measures the library on all targets, and writes the records, docs/footprint.md, docs/size.md
# and the charts anew.
set -euo pipefail
cd "$(dirname "$0")/../.."
for preset in mips-uclibc mipsel-uclibc mips-glibc mipsel-glibc; do
  cmake --preset "$preset" > /dev/null
  cmake --build --preset "$preset" --target footprint_record
done
tools/size/record.sh library
tools/charts/draw.sh --all
git --no-pager diff --stat -- tests/target/recorded tools/size docs
